#pragma once

#include "ConnectCommands.h"
#include "MenuTable.h"

#include <QMainWindow>

#include <map>

class CommandBars;
class Host;
class StatusPanels;
class TraceLog;
class Workbench;
class modDatabase;

// The program's one top-level window. It owns the bars, the left panel and the query windows, and
// forwards each command to the module that carries it out.
class MDIMain : public QMainWindow {
    Q_OBJECT
public:
    // None is owned; all outlive the window.
    MDIMain(Host& host, modDatabase& database, TraceLog& trace);
    ~MDIMain() override;

    // The load event: caption, place on the screen, options, left panel. A failure is reported and
    // the window stays usable.
    void Load();
    // What the login dialog is filled with.
    void setLoginPrefill(const Logon& fields);

    QString UserID() const;
    QString ServiceName() const;
    bool Connected() const;
    void Show_Browser(bool show);

    // As if its menu entry had been chosen; an error ends in the error report.
    void perform(UserCommand command);

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    struct Handler;
    static const std::map<UserCommand, Handler>& handlers();

    void Initialise_Form();
    void wireConnection();
    void connectToDatabase() { m_connect.Connect(); }
    void disconnectFromDatabase() { m_connect.Disconnect(); }
    void exitProgram() { close(); }
    void toggleBrowser();
    void doNothing() {}

    Host& m_host;
    modDatabase& m_database;
    ConnectCommands m_connect;
    CommandBars* m_bars;
    Workbench* m_workbench;
    StatusPanels* StatusBar;
};
