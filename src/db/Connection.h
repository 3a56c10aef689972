#pragma once

#include "CellStore.h"
#include "Provider.h"

#include <QString>

#include <functional>
#include <memory>

class StatementWatch;

enum class ObjectState { Closed = 0, Open = 1 };

// What a statement gave: no columns for one without rows.
struct FetchedRows {
    std::vector<Column> columns;
    CellStore rows;
};

// A database connection, shaped like ADO's. One thread uses it; while a statement runs it takes no
// second one.
class Connection {
public:
    // How a data source becomes a session; the default asks the provider table.
    using Opener = std::function<std::unique_ptr<Session>(const DataSource&)>;

    Connection();
    explicit Connection(Opener opener);
    ~Connection();

    // Open while a session is held and its server is not known to be gone.
    ObjectState State() const;

    QString ConnectionString;

    // Opens with ConnectionString. Throws ProviderError, or Error when it is open already.
    void Open();
    // Throws Error when it is not open, as ADO does.
    void Close();

    // Statements run on a thread of their own while the watch waits for them; null, the default,
    // runs them on the caller's. The watch is not owned.
    void setWatch(StatementWatch* watch) { m_watch = watch; }

    // Results that need more bytes than this are given up; 0: none is. Half of the machine's memory
    // at first: a program that takes it all is ended by the system, unsaved texts and all.
    void setMostResultBytes(qint64 bytes) { m_mostResultBytes = bytes; }

    // Runs a statement for its effect; rows, if any, are not fetched. Throws Error.
    void Execute(const QString& sql);

    // Runs a statement and fetches all its rows, or `most` when that is more than 0. Throws Error;
    // ORA-04030 for a result that is too large to be kept.
    FetchedRows fetch(const QString& sql, qsizetype most);

private:
    void run(std::function<void(Session&)> work);
    void runOnAThread(std::function<void(Session&)> work);

    Opener m_opener;
    std::shared_ptr<Session> m_session; // shared with a statement that was given up
    StatementWatch* m_watch = nullptr;
    qint64 m_mostResultBytes;
    bool m_busy = false;
};
