#include "GridColumns.h"

#include "GridData.h"
#include "Twips.h"

#include <algorithm>
#include <cstdlib>

namespace {

constexpr int edgeReach = 4;

} // namespace

GridColumns::GridColumns()
    : m_right(1, twipsToPixels(defaultTwips)) {}

void GridColumns::measure(const GridData& data) {
    m_right.resize(size_t(data.Cols()));
    qint64 right = 0;
    for (int col = 0; col < data.Cols(); ++col) {
        const int twips = data.ColWidth(col);
        right += std::min(twipsToPixels(twips < 0 ? defaultTwips : twips), widest);
        m_right[size_t(col)] = right;
    }
}

int GridColumns::width(int col) const {
    return int(m_right[size_t(col)] - (col > 0 ? m_right[size_t(col) - 1] : 0));
}

qint64 GridColumns::left(int col) const {
    return col == 0 ? 0 : m_right[size_t(col) - 1] - m_scroll;
}

int GridColumns::at(int x) const {
    if (x < fixedWidth())
        return 0;
    const auto found = std::upper_bound(m_right.begin(), m_right.end(), x + m_scroll);
    return int(found - m_right.begin());
}

int GridColumns::edgeAt(int x) const {
    // Of columns dragged shut the last one opens again.
    for (int col = std::min(at(x + edgeReach), count() - 1); col >= 0; --col) {
        const qint64 right = left(col) + width(col);
        if (right < x - edgeReach)
            break;
        const bool hidden = col > 0 && right < fixedWidth();
        if (!hidden && std::abs(right - x) <= edgeReach)
            return col;
    }
    return -1;
}
