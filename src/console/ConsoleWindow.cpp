#include "ConsoleWindow.h"

#include "AlignedTable.h"
#include "StandardOutput.h"

#include <limits>

using namespace Qt::StringLiterals;

ConsoleWindow::ConsoleWindow(QString script, QString outputMode, bool quiet, StandardOutput& output)
    : m_script(std::move(script))
    , m_outputMode(std::move(outputMode))
    , m_quiet(quiet)
    , m_output(output) {}

void ConsoleWindow::setResultText(QByteArray utf8) {
    m_output.write(utf8);
}

void ConsoleWindow::appendMessage(const QString& text) {
    if (text == "Query Complete."_L1)
        return; // the status has just said so
    if (text != "Query Complete"_L1 || !m_quiet)
        say(text);
}

void ConsoleWindow::setStatus(StatusPanel panel, const QString& text) {
    // A count without a number is that of no grid.
    const bool empty = text.isEmpty() || (panel == StatusPanel::RecordCount && text[0] == u' ');
    if (!empty && !m_quiet)
        say(text);
}

// Comes when a statement is done, so that a grid is printed before the next one loads over it.
void ConsoleWindow::setStatistics(const std::vector<std::pair<QString, QString>>&) {
    if (m_resultGrid.Cols() > 1)
        writeAlignedTable(m_resultGrid, m_output);
    m_resultGrid.clear();
}

// Of a terminal's equally wide characters.
int ConsoleWindow::textWidth(const QString& text) const {
    constexpr qsizetype characterTwips = 120;
    return int(std::min<qsizetype>(text.size() * characterTwips, std::numeric_limits<int>::max()));
}
