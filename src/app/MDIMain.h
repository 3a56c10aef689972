#pragma once

#include "ConnectCommands.h"
#include "MenuTable.h"
#include "QueryWindows.h"
#include "StatementPatience.h"
#include "Workspace.h"

#include <QMainWindow>

#include <map>

class CommandBars;
class FavouriteCommands;
class HelpCommands;
class Host;
class StatusPanels;
class TraceLog;
class TreeCommands;
class Workbench;
class frmTrace;
class modDatabase;

// The program's one top-level window. It owns the bars, the left panel and the query windows, and
// forwards each command to the module that carries it out.
class MDIMain : public QMainWindow, public Workspace {
    Q_OBJECT
public:
    // None is owned; all outlive the window.
    MDIMain(Host& host, modDatabase& database, TraceLog& trace);
    ~MDIMain() override;

    // The load event: caption, place on the screen, options, left panel. A failure is reported and
    // the window stays usable.
    void Load();
    // What the login dialog is filled with.
    void setLoginPrefill(const Logon& logon) { m_connect.setPrefill(logon); }

    QString UserID() const { return m_connect.UserID; }
    QString ServiceName() const { return m_connect.ServiceName; }
    bool Connected() const;
    bool NoToAll() const override { return m_noToAll; }
    void setNoToAll(bool on) override { m_noToAll = on; }

    // A new query window, owned by this one; null after a failure, which was reported.
    frmQuery* New_Query();
    bool Save_File(bool saveAs) override;
    void Undo();
    void Cut();
    void Copy();
    void Paste();
    void SelectAll();
    void Show_Browser(bool show);

    void tickOutputMode(const QString& mode) override;
    void enableSavedFileEntry(bool on) override;

    // As if its menu entry had been chosen; an error ends in the error report.
    void perform(UserCommand command);

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    struct Handler;
    static const std::map<UserCommand, Handler>& handlers();

    void Initialise_Form();
    void wireFavourites();
    void wireConnection();
    void showProgress(const QString& line);
    QWidget* activeControl() const;
    void makePlanTable();
    void showOptions();
    void showTrace();
    void toggleBrowser();
    void clearWindow();
    void execute();
    void print();
    // Asks for the file when path is empty.
    void openQuery(const QString& path = QString());
    void refreshTree();
    void saveAll();
    void addToFavourites();
    void openFavourite();
    void generateCode();
    void chooseOutput(const QString& mode);

    Host& m_host;
    modDatabase& m_database;
    TraceLog& m_trace;
    CommandBars* m_bars;
    Workbench* m_workbench;
    StatusPanels* StatusBar;
    ConnectCommands m_connect;
    QueryWindows m_queries;
    std::unique_ptr<HelpCommands> m_help;
    StatementPatience m_patience;
    std::unique_ptr<TreeCommands> m_trees;
    FavouriteCommands* m_favourites;
    std::unique_ptr<frmTrace> m_traceWindow; // made when first asked for
    bool m_noToAll = false;
};
