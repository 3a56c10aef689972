#include "FlowLayout.h"

#include <algorithm>

FlowLayout::~FlowLayout() = default;

void FlowLayout::addItem(QLayoutItem* item) {
    m_items.emplace_back(item);
}

QLayoutItem* FlowLayout::itemAt(int index) const {
    return index >= 0 && index < count() ? m_items[size_t(index)].get() : nullptr;
}

QLayoutItem* FlowLayout::takeAt(int index) {
    if (index < 0 || index >= count())
        return nullptr;
    QLayoutItem* taken = m_items[size_t(index)].release();
    m_items.erase(m_items.begin() + index);
    return taken;
}

template<typename Place>
int FlowLayout::flow(const QRect& rect, Place place) const {
    const QRect inner = rect.marginsRemoved(contentsMargins());
    const int gap = std::max(0, spacing());
    int rowHeight = 0; // the same for all, so that what is centred lies on one line
    for (const auto& item : m_items)
        rowHeight = std::max(rowHeight, item->sizeHint().height());
    QPoint at = inner.topLeft();
    for (const auto& item : m_items) {
        const int width = item->sizeHint().width();
        if (at.x() > inner.left() && at.x() + width > inner.left() + inner.width())
            at = {inner.left(), at.y() + rowHeight + gap};
        place(*item, QRect(at, QSize(width, rowHeight)));
        at.rx() += width + gap;
    }
    return at.y() + rowHeight - rect.top() + contentsMargins().bottom();
}

int FlowLayout::heightForWidth(int width) const {
    return flow(QRect(0, 0, width, 0), [](QLayoutItem&, const QRect&) {});
}

QSize FlowLayout::minimumSize() const {
    QSize widest;
    for (const auto& item : m_items)
        widest = widest.expandedTo(item->minimumSize());
    return widest.grownBy(contentsMargins());
}

void FlowLayout::setGeometry(const QRect& rect) {
    QLayout::setGeometry(rect);
    flow(rect, [](QLayoutItem& item, const QRect& place) { item.setGeometry(place); });
}
