#include "TextWidth.h"

#include "Twips.h"

#include <QFontMetrics>
#include <QString>

#include <algorithm>

namespace {

constexpr qsizetype measuredCharacters = 8192;
constexpr double widestTwips = 2e9; // leaves room for what a caller adds

} // namespace

int textWidthTwips(const QFontMetrics& metrics, const QString& text) {
    const qsizetype measured = std::min(text.size(), measuredCharacters);
    double width = metrics.horizontalAdvance(text, int(measured));
    if (measured < text.size())
        width *= double(text.size()) / double(measured);
    return int(std::min(width * twipsPerPixel, widestTwips));
}
