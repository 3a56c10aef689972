#include "TextPrinter.h"

#include "Error.h"

#include <QFontDatabase>
#include <QFontMetrics>
#include <QPagedPaintDevice>
#include <QPainter>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int tabColumns = 8;
constexpr int pointSize = 9;

QString withoutTabs(QStringView line) {
    QString expanded;
    for (const QChar c : line) {
        if (c == u'\t')
            expanded.append(QString(tabColumns - expanded.size() % tabColumns, u' '));
        else
            expanded.append(c);
    }
    return expanded;
}

class TextPages {
public:
    explicit TextPages(QPagedPaintDevice& device)
        : m_device(device) {
        if (!m_painter.begin(&device))
            throw Error(Error::PathFileAccess, QString(), u"The printer could not be started."_s);
        QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
        font.setPointSize(pointSize);
        m_painter.setFont(font);
        const QFontMetrics metrics(font, &device);
        m_lineHeight = metrics.lineSpacing();
        m_ascent = metrics.ascent();
        m_columns = std::max(1, m_painter.viewport().width() /
                                    std::max(1, metrics.horizontalAdvance(u'M')));
        // The foot: one empty line and the page number.
        m_linesPerPage = std::max(1, m_painter.viewport().height() / m_lineHeight - 2);
    }

    void printLine(QStringView line) {
        const QString text = withoutTabs(line);
        qsizetype from = 0;
        do {
            const qsizetype length = wrapLength(text, from);
            printRow(text.mid(from, length));
            from += length;
        } while (from < text.size());
    }

    void finish() {
        printFoot();
        if (!m_painter.end())
            throw Error(Error::PathFileAccess, QString(), u"The print job failed."_s);
    }

private:
    // Never between the halves of a surrogate pair.
    qsizetype wrapLength(const QString& text, qsizetype from) const {
        const qsizetype length = std::min<qsizetype>(m_columns, text.size() - from);
        const bool cutsPair =
            length > 1 && from + length < text.size() && text[from + length].isLowSurrogate();
        return cutsPair ? length - 1 : length;
    }

    void printRow(const QString& row) {
        if (m_row == m_linesPerPage)
            turnPage();
        m_painter.drawText(0, m_row * m_lineHeight + m_ascent, row);
        ++m_row;
    }

    void turnPage() {
        printFoot();
        if (!m_device.newPage())
            throw Error(Error::PathFileAccess, QString(), u"The printer gave no further page."_s);
        ++m_page;
        m_row = 0;
    }

    void printFoot() {
        const QRect foot(0, (m_linesPerPage + 1) * m_lineHeight, m_painter.viewport().width(),
                         m_lineHeight);
        m_painter.drawText(foot, Qt::AlignHCenter, QString::number(m_page));
    }

    QPagedPaintDevice& m_device;
    QPainter m_painter;
    int m_lineHeight = 0;
    int m_ascent = 0;
    int m_columns = 0;
    int m_linesPerPage = 0;
    int m_row = 0;
    int m_page = 1;
};

} // namespace

void printText(const QString& text, QPagedPaintDevice& device) {
    TextPages pages(device);
    for (QStringView line : QStringView(text).split(u'\n')) {
        if (line.endsWith(u'\r'))
            line.chop(1);
        pages.printLine(line);
    }
    pages.finish();
}
