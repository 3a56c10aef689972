#pragma once

#include "Connection.h"
#include "Recordset.h"

#include <QString>

#include <memory>

class Host;
class StatementWatch;
class TraceLog;

// Owns the program's one connection: builds its string, opens and closes it, and turns a SQL text
// into a recordset.
class modDatabase {
public:
    // host and trace are not owned. makeConnection: how a new connection is made; the default uses
    // the provider table.
    using MakeConnection = std::function<std::unique_ptr<Connection>()>;
    modDatabase(Host& host, TraceLog& trace, MakeConnection makeConnection = {});
    ~modDatabase();

    // Nothing is quoted or escaped: a value that holds ";" corrupts the string, on purpose.
    void Build_Connection_String(const QString& serviceName, const QString& userId,
                                 const QString& password);

    // True when the connection is open, an already open one included. A failure shows one message
    // and gives false; the trace log names the reason.
    bool Open_Connection();

    // limit: at most so many rows; 0 or less means all. Never null: throws Error with
    // "..modDatabase.Get_Recordset" appended to its source.
    std::unique_ptr<Recordset> Get_Recordset(const QString& sql, qint32 limit);

    void Close_Connection() noexcept;

    // Waits for the statements of this and every later connection. Not owned; null for none.
    void setWatch(StatementWatch* watch);

    // The shared connection; null when there is none.
    Connection* connection() { return m_connection.get(); }
    bool isConnected() const;
    TraceLog& trace() { return m_trace; }

private:
    Host& m_host;
    TraceLog& m_trace;
    MakeConnection m_makeConnection;
    std::unique_ptr<Connection> m_connection;
    StatementWatch* m_watch = nullptr;
    QString m_connectionString; // survives a close, so that the next open reconnects
};
