#pragma once

#include <QByteArray>
#include <QString>

#include <utility>
#include <vector>

class GridData;

// Panels of a query window's status bar; the record restriction is the window's own affair.
enum class StatusPanel { Progress = 1, RecordCount = 2 };

// What a run needs of its window. The query window implements it, the console program's window and
// the tests' recorder do too.
class QueryWindow {
public:
    virtual ~QueryWindow() = default;

    // The editor's selected text when something is selected, else its whole text.
    virtual QString scriptText() const = 0;
    // The text of cboResults.
    virtual QString outputMode() const = 0;
    virtual bool showResults() const = 0;
    virtual bool showPlan() const = 0;

    // Owned by the window, alive as long as it.
    virtual GridData& resultGrid() = 0;
    virtual GridData& planGrid() = 0;
    // The text output, UTF-8; may be hundreds of megabytes, so it is handed over.
    virtual void setResultText(QByteArray utf8) = 0;

    virtual void clearMessages() = 0;
    // Puts a line break (CR LF) and the text behind the messages.
    virtual void appendMessage(const QString& text) = 0;
    // Selects the tab "messages" and shows its pane.
    virtual void showMessagesTab() = 0;

    virtual void setStatus(StatusPanel panel, const QString& text) = 0;
    // Label and value, in order; replaces what is shown.
    virtual void setStatistics(const std::vector<std::pair<QString, QString>>& rows) = 0;

    // The width of the text in twips, as the window's form measures it.
    virtual int textWidth(const QString& text) const = 0;
    // Paints what is pending, so that a status is seen before a call blocks.
    virtual void repaintNow() = 0;
};
