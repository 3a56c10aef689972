#include "TextRow.h"

#include "ShownText.h"
#include "TextBuffer.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QTextBoundaryFinder>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace {

constexpr int tabColumns = 8;

bool isAscii(QByteArrayView bytes) {
    unsigned char all = 0;
    for (const char byte : bytes)
        all |= static_cast<unsigned char>(byte);
    return all < 0x80;
}

qsizetype afterTab(qsizetype column) {
    return (column / tabColumns + 1) * tabColumns;
}

} // namespace

TextType::TextType(const QFont& font)
    : font(font) {
    const QFontMetricsF metrics(font);
    constexpr int sample = 64; // an average, because one advance may be rounded
    charWidth = metrics.horizontalAdvance(QString(sample, u'M')) / sample;
    fixedPitch =
        std::abs(metrics.horizontalAdvance(QString(sample, u'i')) / sample - charWidth) < 0.01;
    lineHeight = int(std::ceil(metrics.height()));
    ascent = metrics.ascent();
    tabDistance = charWidth * tabColumns;
}

TextRow::TextRow(QByteArrayView utf8, const TextType& type)
    : m_utf8(utf8)
    , m_type(type)
    , m_tabs(utf8.contains('\t')) {
    if (type.fixedPitch && isAscii(utf8))
        return;
    m_layout = std::make_unique<QTextLayout>(shown(), type.font);
    QTextOption option;
    option.setTabStopDistance(type.tabDistance);
    option.setWrapMode(QTextOption::NoWrap);
    option.setTextDirection(Qt::LeftToRight); // lines of a listing start at the left
    m_layout->setTextOption(option);
    m_layout->beginLayout();
    m_layout->createLine();
    m_layout->endLayout();
}

TextRow::~TextRow() = default;

QString TextRow::shown() const {
    QString text = QString::fromUtf8(m_utf8);
    makeShown(text);
    return text;
}

qsizetype TextRow::columnOf(qsizetype byte) const {
    if (!m_tabs)
        return byte;
    qsizetype column = 0;
    for (qsizetype i = 0; i < byte; ++i)
        column = m_utf8[i] == '\t' ? afterTab(column) : column + 1;
    return column;
}

double TextRow::width() const {
    if (m_layout)
        return m_layout->lineAt(0).naturalTextWidth();
    return double(columnOf(m_utf8.size())) * m_type.charWidth;
}

double TextRow::xOf(qsizetype byte) const {
    if (!m_layout)
        return double(columnOf(byte)) * m_type.charWidth;
    return m_layout->lineAt(0).cursorToX(int(utf16Length(m_utf8.first(byte))));
}

qsizetype TextRow::byteAt(double x) const {
    if (m_layout)
        return utf8Offset(m_utf8, m_layout->lineAt(0).xToCursor(x));
    const double wanted = std::max(0.0, x / m_type.charWidth);
    if (!m_tabs)
        return std::min(qsizetype(wanted + 0.5), m_utf8.size());
    qsizetype column = 0;
    for (qsizetype i = 0; i < m_utf8.size(); ++i) {
        const qsizetype next = m_utf8[i] == '\t' ? afterTab(column) : column + 1;
        if (wanted < double(column + next) / 2)
            return i;
        column = next;
    }
    return m_utf8.size();
}

qsizetype TextRow::next(qsizetype byte) const {
    if (!m_layout)
        return std::min(byte + 1, m_utf8.size());
    return utf8Offset(m_utf8, m_layout->nextCursorPosition(int(utf16Length(m_utf8.first(byte)))));
}

qsizetype TextRow::previous(qsizetype byte) const {
    if (!m_layout)
        return std::max<qsizetype>(byte - 1, 0);
    return utf8Offset(m_utf8,
                      m_layout->previousCursorPosition(int(utf16Length(m_utf8.first(byte)))));
}

std::pair<qsizetype, qsizetype> TextRow::wordAt(qsizetype byte) const {
    const QString text = QString::fromUtf8(m_utf8);
    QTextBoundaryFinder finder(QTextBoundaryFinder::Word, text);
    const qsizetype at = utf16Length(m_utf8.first(byte));
    finder.setPosition(at);
    const qsizetype begin = finder.isAtBoundary() && at < text.size()
                                ? at
                                : std::max<qsizetype>(finder.toPreviousBoundary(), 0);
    finder.setPosition(begin);
    const qsizetype end = finder.toNextBoundary();
    return {utf8Offset(m_utf8, begin), end < 0 ? m_utf8.size() : utf8Offset(m_utf8, end)};
}

void TextRow::paint(QPainter& painter, QPointF at, double from, double to, const QPalette& palette,
                    qsizetype selBegin, qsizetype selEnd) const {
    if (m_layout)
        paintLayout(painter, at, palette, selBegin, selEnd);
    else
        paintCells(painter, at, from, to, palette, selBegin, selEnd);
}

void TextRow::paintCells(QPainter& painter, QPointF at, double from, double to,
                         const QPalette& palette, qsizetype selBegin, qsizetype selEnd) const {
    const qsizetype begin = byteAt(from - m_type.charWidth);
    const qsizetype end = byteAt(to + m_type.charWidth);
    // A tab is painted as the blanks up to its stop, each piece where its own column is.
    const auto piece = [&](qsizetype first, qsizetype last, QPalette::ColorRole role) {
        painter.setPen(palette.color(role));
        for (qsizetype i = first; i < last;) {
            qsizetype stop = m_tabs ? m_utf8.indexOf('\t', i) : last;
            if (stop < 0 || stop > last)
                stop = last;
            QString text = QString::fromLatin1(m_utf8.sliced(i, stop - i));
            makeShown(text);
            painter.drawText(QPointF(at.x() + xOf(i), at.y() + m_type.ascent), text);
            i = std::max(stop, i) + (stop < last);
        }
    };
    const qsizetype markBegin = std::clamp(selBegin, begin, std::max(begin, end));
    const qsizetype markEnd = std::clamp(selEnd, markBegin, std::max(markBegin, end));
    piece(begin, markBegin, QPalette::Text);
    if (markBegin < markEnd) {
        painter.fillRect(QRectF(at.x() + xOf(markBegin), at.y(), xOf(markEnd) - xOf(markBegin),
                                m_type.lineHeight),
                         palette.color(QPalette::Highlight));
        piece(markBegin, markEnd, QPalette::HighlightedText);
    }
    piece(markEnd, end, QPalette::Text);
}

void TextRow::paintLayout(QPainter& painter, QPointF at, const QPalette& palette,
                          qsizetype selBegin, qsizetype selEnd) const {
    QList<QTextLayout::FormatRange> marks;
    if (selBegin < selEnd) {
        QTextLayout::FormatRange mark;
        mark.start = int(utf16Length(m_utf8.first(selBegin)));
        mark.length = int(utf16Length(m_utf8.sliced(selBegin, selEnd - selBegin)));
        mark.format.setBackground(palette.color(QPalette::Highlight));
        mark.format.setForeground(palette.color(QPalette::HighlightedText));
        marks.append(mark);
    }
    painter.setPen(palette.color(QPalette::Text));
    m_layout->draw(&painter, at, marks);
}
