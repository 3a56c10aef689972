#pragma once

#include "GridData.h"
#include "QueryWindow.h"

#include <QStringList>

// Writes what a run does to its window into a log, which may be that of a RecordingHost, so that
// one ordered log tells the whole run.
class RecordingWindow : public QueryWindow {
public:
    explicit RecordingWindow(QStringList& effects)
        : log(effects) {}

    QStringList& log;
    QString script;
    QString mode = QStringLiteral("Grid");
    bool results = true;
    bool plan = false;
    GridData resultGridData;
    GridData planGridData;
    QByteArray resultText;

    QString scriptText() const override { return script; }
    QString outputMode() const override { return mode; }
    bool showResults() const override { return results; }
    bool showPlan() const override { return plan; }
    GridData& resultGrid() override { return resultGridData; }
    GridData& planGrid() override { return planGridData; }
    void setResultText(QByteArray utf8) override {
        resultText = std::move(utf8);
        log << QStringLiteral("text of %1 bytes").arg(resultText.size());
    }
    void clearMessages() override { log << QStringLiteral("no messages"); }
    void appendMessage(const QString& text) override { log << QStringLiteral("message ") + text; }
    void showMessagesTab() override { log << QStringLiteral("messages tab"); }
    void setStatus(StatusPanel panel, const QString& text) override {
        log << QStringLiteral("status %1 \"%2\"").arg(int(panel)).arg(text);
    }
    void setStatistics(const std::vector<std::pair<QString, QString>>& rows) override {
        QStringList values;
        for (const auto& [label, value] : rows)
            values << label + QStringLiteral("=") + value;
        log << QStringLiteral("statistics ") + values.join(QStringLiteral(", "));
    }
    // Each character is 100 twips wide.
    int textWidth(const QString& text) const override { return int(text.size()) * 100; }
    void repaintNow() override { log << QStringLiteral("repaint"); }
};

// The grid's texts, a line a row, cells separated by "|".
inline QString gridText(const GridData& grid) {
    QStringList lines;
    for (qsizetype row = 0; row < grid.Rows(); ++row) {
        QStringList cells;
        for (int column = 0; column < grid.Cols(); ++column)
            cells << QString::fromUtf8(grid.text(row, column));
        lines << cells.join(u'|');
    }
    return lines.join(u'\n');
}
