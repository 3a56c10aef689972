#include "GridPainter.h"

#include "ShownText.h"

namespace {

// Hardly a glyph is narrower, so more characters than this many pixels allow cannot be seen.
constexpr int narrowestGlyph = 2;
constexpr double lineStrength = 0.15;
constexpr double fixedLineStrength = 0.3;
constexpr double headerTint = 0.25;
constexpr double frameStrength = 0.4;
constexpr int focusFrame = 2;

QColor mixed(const QColor& a, const QColor& b, double share) {
    return QColor::fromRgbF(float(a.redF() + (b.redF() - a.redF()) * share),
                            float(a.greenF() + (b.greenF() - a.greenF()) * share),
                            float(a.blueF() + (b.blueF() - a.blueF()) * share));
}

} // namespace

GridPainter::GridPainter(QPainter& painter, const QPalette& palette)
    : m_painter(painter)
    , m_palette(palette)
    , m_metrics(painter.fontMetrics()) {
    const QColor base = palette.color(QPalette::Base);
    const QColor button = palette.color(QPalette::Button);
    const QColor buttonText = palette.color(QPalette::ButtonText);
    const QColor highlight = palette.color(QPalette::Highlight);
    m_line = mixed(base, palette.color(QPalette::Text), lineStrength);
    m_fixedLine = mixed(button, buttonText, fixedLineStrength);
    m_looks[int(Look::Cell)] = {base, palette.color(QPalette::Text)};
    m_looks[int(Look::Selected)] = {highlight, palette.color(QPalette::HighlightedText)};
    m_looks[int(Look::Fixed)] = {button, buttonText};
    m_looks[int(Look::FixedSelected)] = {mixed(button, highlight, headerTint), buttonText};
}

QString GridPainter::fitted(QByteArrayView utf8, int width) const {
    if (utf8.isEmpty() || width <= 0)
        return {};
    const QString text = shownBeginning(utf8, width / narrowestGlyph + 1);
    if (m_metrics.horizontalAdvance(text) <= width)
        return text;
    return m_metrics.elidedText(text, Qt::ElideRight, width);
}

void GridPainter::cell(const QRect& rect, QByteArrayView utf8, Look look) {
    const Colours& colours = m_looks[int(look)];
    const bool fixed = look == Look::Fixed || look == Look::FixedSelected;
    m_painter.fillRect(rect, colours.back);
    const QColor& line = fixed ? m_fixedLine : m_line;
    m_painter.fillRect(rect.right(), rect.top(), 1, rect.height(), line);
    m_painter.fillRect(rect.left(), rect.bottom(), rect.width(), 1, line);

    const QRect inside = rect.adjusted(padding, 0, -padding, -1);
    const QString text = fitted(utf8, inside.width());
    if (text.isEmpty())
        return;
    m_painter.setPen(colours.text);
    m_painter.drawText(inside, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, text);
}

void GridPainter::frame(const QRect& rect, bool focused) {
    const QColor highlight = m_palette.color(QPalette::Highlight);
    const QColor colour = focused ? mixed(highlight, m_palette.color(QPalette::Text), frameStrength)
                                  : m_palette.color(QPalette::Mid);
    const int width = focused ? focusFrame : 1;
    m_painter.fillRect(rect.left(), rect.top(), rect.width(), width, colour);
    m_painter.fillRect(rect.left(), rect.bottom() + 1 - width, rect.width(), width, colour);
    m_painter.fillRect(rect.left(), rect.top(), width, rect.height(), colour);
    m_painter.fillRect(rect.right() + 1 - width, rect.top(), width, rect.height(), colour);
}
