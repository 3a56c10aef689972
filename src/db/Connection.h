#pragma once

#include "Provider.h"

#include <QString>

#include <functional>
#include <memory>

enum class ObjectState { Closed = 0, Open = 1 };

// A database connection, shaped like ADO's.
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

    // Runs a statement for its effect; rows, if any, are not fetched. Throws Error.
    void Execute(const QString& sql);

    // The statement's cursor, for a Recordset. Throws Error when closed.
    std::unique_ptr<Cursor> executeCursor(const QString& sql);

    // Asks the running statement to stop; from any thread.
    void requestStop() noexcept;

private:
    Opener m_opener;
    std::unique_ptr<Session> m_session;
};
