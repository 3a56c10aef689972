#pragma once

#include "QueryWindow.h"
#include "SqlEditor.h"
#include "TextEncoding.h"
#include "clsQueryRunner.h"

#include <QWidget>

#include <functional>
#include <memory>

class Host;
class QueryPanels;
class ResultPanel;
class RunBar;
class StatusPanels;
class Workspace;
class modDatabase;

// How a query window is closed: by its own close box or menu, or by a command of the program.
enum class UnloadMode { ControlMenu = 0, Code = 1 };

// What every query window uses; none is owned, all outlive the windows.
struct QueryServices {
    Host& host;
    modDatabase& database;
    Workspace& workspace;
    std::function<void()> showTrace;
};

// The document window: a script in its editor, the choice of where results go, and the results.
class frmQuery : public QWidget, public QueryWindow {
    Q_OBJECT
public:
    explicit frmQuery(const QueryServices& services);
    ~frmQuery() override;

    SqlEditor* txtSQL;

    const QString& FileName() const { return m_fileName; }
    // A path becomes the caption; an empty text leaves the caption as it is.
    void setFileName(const QString& path);
    // In which its file was read or is to be made.
    TextEncoding fileEncoding() const { return m_fileEncoding; }
    void setFileEncoding(TextEncoding encoding) { m_fileEncoding = encoding; }
    bool UnSavedChanges() const { return m_unsavedChanges; }
    void setUnSavedChanges(bool changed) { m_unsavedChanges = changed; }
    qint32 MaxRecords() const { return m_runner.state().MaxRecords; }
    void setMaxRecords(qint32 limit);
    const QString& Caption() const { return m_caption; }
    void setCaption(const QString& caption);

    void Run_Queries() { m_runner.Run_Queries(); }
    void Run_SELECT_Query(const QString& SQL) { m_runner.Run_SELECT_Query(SQL); }
    void Run_General_Query(const QString& SQL) { m_runner.Run_General_Query(SQL); }
    clsQueryRunner& runner() { return m_runner; }

    // Colours the whole script with the options as they are now.
    void txtSQL_Change() { txtSQL->txtSQL_Change(); }

    // When the window becomes the active one: menu ticks, focus, caret at the end, colours.
    void Activate();
    // As if the entry had been chosen in cboResults.
    void chooseOutputMode(const QString& mode);
    void clearEditor();
    // Asks as the mode demands; false when the window stays open.
    bool Unload(UnloadMode mode);
    // A line in the progress panel while a statement runs; empty brings the panel's own back.
    void showProgress(const QString& line);
    // The result view of the selected tab.
    QWidget* shownResult() const;
    // Where a new window's splitter stands; twips, and 0 for the usual place.
    void setSplitterTop(int top);
    // What the edit commands act on; null when nothing of this window had the focus yet.
    QWidget* ActiveControl() const { return focusWidget(); }

    QString scriptText() const override;
    QString outputMode() const override;
    bool showResults() const override;
    bool showPlan() const override;
    GridData& resultGrid() override;
    GridData& planGrid() override;
    void setResultText(QByteArray utf8) override;
    void clearMessages() override;
    void appendMessage(const QString& text) override;
    void showMessagesTab() override;
    void setStatus(StatusPanel panel, const QString& text) override;
    void setStatistics(const std::vector<std::pair<QString, QString>>& rows) override;
    int textWidth(const QString& text) const override;
    void repaintNow() override;

    QSize minimumSizeHint() const override;

Q_SIGNALS:
    // A person moved the splitter; twips.
    void splitterChosen(int top);

protected:
    void resizeEvent(QResizeEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void wireControls();
    void Load();
    void placeCaretAtEnd();
    void cboResults_Click();
    void tickOutputMode();
    bool mayClose();
    bool saveBeforeClosing();
    void bringToFront();

    QueryServices m_services;
    RunBar* m_runBar;
    ResultPanel* m_results;
    StatusPanels* StatusBar1;
    std::unique_ptr<QueryPanels> m_panels;
    clsQueryRunner m_runner;
    QString m_fileName;
    TextEncoding m_fileEncoding = encodingOfNewFiles();
    QString m_caption;
    bool m_unsavedChanges = false;
    UnloadMode m_unloadMode = UnloadMode::ControlMenu;
};
