#include "TextPrinter.h"

#include "Error.h"

#include <QFontDatabase>
#include <QFontMetrics>
#include <QPagedPaintDevice>
#include <QPainter>
#include <QTextLayout>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int tabColumns = 8;
constexpr int pointSize = 9;
// Characters that are laid out at once: far more than a row holds.
constexpr qsizetype longestLayout = 8'000;

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

// Each character then has a column of the fixed-pitch font to itself.
bool hasColumns(QStringView line) {
    return std::all_of(line.cbegin(), line.cend(), [](QChar c) { return c >= u' ' && c <= u'~'; });
}

class TextPages {
public:
    explicit TextPages(QPagedPaintDevice& device)
        : m_device(device)
        , m_font(QFontDatabase::systemFont(QFontDatabase::FixedFont)) {
        if (!m_painter.begin(&device))
            throw Error(Error::PathFileAccess, QString(), u"The printer could not be started."_s);
        m_font.setPointSize(pointSize);
        m_painter.setFont(m_font);
        const QFontMetrics metrics(m_font, &device);
        m_lineHeight = metrics.lineSpacing();
        m_ascent = metrics.ascent();
        m_wrapping.setWrapMode(QTextOption::WrapAnywhere);
        m_columns = std::max(1, m_painter.viewport().width() /
                                    std::max(1, metrics.horizontalAdvance(u'M')));
        // The foot: one empty line and the page number.
        m_linesPerPage = std::max(1, m_painter.viewport().height() / m_lineHeight - 2);
    }

    void printLine(QStringView line) {
        const QString text = withoutTabs(line);
        if (hasColumns(text)) // takes half the time
            printColumns(text);
        else
            printLaidOut(text);
    }

    void finish() {
        printFoot();
        if (!m_painter.end())
            throw Error(Error::PathFileAccess, QString(), u"The print job failed."_s);
    }

private:
    enum Part { Ends, AndGoesOn };

    void printColumns(QStringView text) {
        do {
            const QStringView row = text.first(std::min<qsizetype>(m_columns, text.size()));
            beginRow();
            m_painter.drawText(0, m_row * m_lineHeight + m_ascent, row.toString());
            ++m_row;
            text = text.sliced(row.size());
        } while (!text.isEmpty());
    }

    void printLaidOut(QStringView text) {
        // The last row of a part is laid out again with what follows it.
        while (text.size() > longestLayout)
            text = text.sliced(printRows(text.first(longestLayout), AndGoesOn));
        printRows(text, Ends);
    }

    // Gives the number of characters printed.
    qsizetype printRows(QStringView text, Part part) {
        QTextLayout layout(text.toString(), m_font, &m_device);
        layout.setTextOption(m_wrapping);
        layout.beginLayout();
        for (QTextLine row = layout.createLine(); row.isValid(); row = layout.createLine())
            row.setLineWidth(m_painter.viewport().width());
        layout.endLayout();
        const int rows = layout.lineCount();
        const bool leavesLast = part == AndGoesOn && rows > 1;
        for (int i = 0; i < rows - int(leavesLast); ++i)
            printRow(layout.lineAt(i));
        return leavesLast ? layout.lineAt(rows - 1).textStart() : text.size();
    }

    void printRow(const QTextLine& row) {
        beginRow();
        // On the row's own base line, however high the fonts of its characters are.
        const double top = m_row * m_lineHeight + m_ascent - row.ascent();
        row.draw(&m_painter, {0, top - row.y()});
        ++m_row;
    }

    void beginRow() {
        if (m_row < m_linesPerPage)
            return;
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
    QFont m_font;
    QTextOption m_wrapping;
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
