#pragma once

#include "CellStore.h"
#include "Error.h"

#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

// The seam below which database back-ends live: text in, typed text cells and numbered errors out.
// One thread uses a session; only requestStop may come from another.

// Numbers that callers test for (OLE DB's own).
namespace DbErrorNumber {
constexpr qint32 CommandRejected = -2147217900; // 80040E14: name exists, bad syntax
constexpr qint32 GeneralFailure = -2147467259;  // 80004005: no such table, anything else
} // namespace DbErrorNumber

// A failure at the database. source is the back-end's name; description reads like the server's
// own ("ORA-00942: table or view does not exist").
class ProviderError : public Error {
public:
    ProviderError(qint32 number, QString nativeCode, QString source, QString description)
        : Error(number, std::move(source), std::move(description))
        , m_nativeCode(std::move(nativeCode)) {}

    // "ORA-00942"; empty when the server gave none.
    const QString& nativeCode() const { return m_nativeCode; }

private:
    QString m_nativeCode;
};

enum class ColumnType { Text, Number, Date, Binary };

struct Column {
    QString name;
    ColumnType type = ColumnType::Text;
};

// One executed statement. Destroying it closes the statement at the server.
//
// Cell texts: numbers as plain decimal digits, never an exponent; a date at midnight as 2026-11-21,
// else 2026-11-21 14:05:09, with its fraction when it has one; binary as upper-case hexadecimal;
// everything else as UTF-8 (bytes that are not are replaced, never lost with their row).
class Cursor {
public:
    virtual ~Cursor() = default;

    // Empty for a statement that returns no rows.
    virtual const std::vector<Column>& columns() const = 0;

    // Appends at most `most` rows to the store, which has columns().size() columns; returns how
    // many, 0 only at the end. Throws ProviderError; rows appended before the failure stay.
    virtual qsizetype fetch(CellStore& rows, qsizetype most) = 0;
};

class Session {
public:
    virtual ~Session() = default; // closes; never throws

    // At most so many rows of the next statement will be fetched, 0 for all. A hint for back-ends
    // that fetch a whole result at once, or only what is asked for: those run the statement to its
    // end when it is run for its effect alone.
    static constexpr qsizetype noRows = -1;
    virtual void expectRows(qsizetype /*most*/) {}

    // Runs the text as it stands, one statement. A statement without rows has taken effect when
    // this returns. Throws ProviderError. Several cursors may be open at once; none outlives the
    // session.
    virtual std::unique_ptr<Cursor> execute(const QString& sql) = 0;

    // Asks the running statement to stop; it then fails with "ORA-01013". Callable from any thread,
    // a no-op when nothing runs.
    virtual void requestStop() noexcept = 0;

    // False once the server is known to be gone.
    virtual bool isOpen() const = 0;
};

// The parts of a connection string that matter to a back-end.
struct DataSource {
    QString connectionString; // as it stands
    QString name;             // Data Source
    QString user;             // User ID
    QString password;
};

class Provider {
public:
    virtual ~Provider() = default;

    // For traces: "embedded database".
    virtual QString name() const = 0;

    // A session, or null when this back-end does not know the data source; it then adds to `tried`
    // what it looked for and where. Throws ProviderError when it knows the data source and cannot
    // open it (a wrong password, a damaged file).
    virtual std::unique_ptr<Session> open(const DataSource& source, QStringList& tried) = 0;
};
