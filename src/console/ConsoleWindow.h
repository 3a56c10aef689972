#pragma once

#include "GridData.h"
#include "QueryWindow.h"

class StandardOutput;

// A run's window without a window: rows go to standard output as soon as their statement is done,
// messages and status to standard error.
class ConsoleWindow : public QueryWindow {
public:
    // output is not owned. quiet: notices and status are not shown, only errors.
    ConsoleWindow(QString script, QString outputMode, bool quiet, StandardOutput& output);

    QString scriptText() const override { return m_script; }
    QString outputMode() const override { return m_outputMode; }
    bool showResults() const override { return true; }
    bool showPlan() const override { return false; }
    GridData& resultGrid() override { return m_resultGrid; }
    GridData& planGrid() override { return m_planGrid; }
    void setResultText(QByteArray utf8) override;
    void clearMessages() override {}
    void appendMessage(const QString& text) override;
    void showMessagesTab() override {}
    void setStatus(StatusPanel panel, const QString& text) override;
    void setStatistics(const std::vector<std::pair<QString, QString>>& rows) override;
    int textWidth(const QString& text) const override;
    void repaintNow() override {}

private:
    QString m_script;
    QString m_outputMode;
    bool m_quiet;
    StandardOutput& m_output;
    GridData m_resultGrid;
    GridData m_planGrid;
};
