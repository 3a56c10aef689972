#pragma once

#include "CommandLine.h"

#include <QObject>

#include <optional>

class QWidget;
class modDatabase;

// Connect and disconnect: the login dialog, the program's connection, and what the main window
// shows of both.
class ConnectCommands : public QObject {
    Q_OBJECT
public:
    // database is not owned; dialogParent is the window over which the dialog is shown.
    ConnectCommands(modDatabase& database, QWidget& dialogParent);

    // What the login dialog is filled with each time it is shown; empty fields for none.
    void setPrefill(const Logon& fields) { m_prefill = fields; }

    void Connect();
    void Disconnect();
    // The server is gone: shown as disconnected, and a new connect is offered.
    void lost();

    QString UserID;
    QString ServiceName;

Q_SIGNALS:
    // Panels of the main window's status bar, from 1.
    void statusChanged(int panel, const QString& text);
    // Decides which of the two commands is offered.
    void connectedChanged(bool connected);
    // The connection, if there is one, is about to be closed.
    void closing();
    // After a successful connect.
    void ready();

private:
    void close();
    // Nothing when the dialog was cancelled.
    std::optional<Logon> askForLogin();

    modDatabase& m_database;
    QWidget& m_dialogParent;
    Logon m_prefill;
};

// The name of this computer as the status bar shows it.
QString computerName();
