#include "Connection.h"

#include "ConnectionString.h"
#include "MachineMemory.h"
#include "ProviderTable.h"
#include "StatementWatch.h"
#include "WatchedWork.h"

#include <algorithm>
#include <limits>
#include <new>

namespace {

// ADO's "Operation is not allowed when the object is closed/open."
constexpr qint32 objectClosed = 3704;
constexpr qint32 objectOpen = 3705;
constexpr qint32 stillExecuting = 3711;

constexpr qsizetype rowsPerBlock = 4096;

Error notAllowed(qint32 number, QLatin1String state) {
    return Error(number, QStringLiteral("Quillmate.Connection"),
                 QStringLiteral("Operation is not allowed when the object is %1.").arg(state));
}

// The flag is down again however the statement ends.
class Busy {
public:
    explicit Busy(bool& flag)
        : m_flag(flag) {
        m_flag = true;
    }
    ~Busy() { m_flag = false; }

private:
    bool& m_flag;
};

ProviderError ownError(const QString& code, const QString& text) {
    return ProviderError(DbErrorNumber::GeneralFailure, code, QStringLiteral("Quillmate"),
                         code + QStringLiteral(": ") + text);
}

ProviderError tooLarge(const CellStore& rows) {
    constexpr qint64 megabyte = 1 << 20;
    return ownError(QStringLiteral("ORA-04030"),
                    QStringLiteral("out of process memory (%1 rows with %2 MB of text were fetched "
                                   "and more follow; a row limit helps)")
                        .arg(rows.rows())
                        .arg(rows.textBytes() / megabyte));
}

ProviderError connectionGivenUp() {
    return ownError(QStringLiteral("ORA-03135"),
                    QStringLiteral("connection lost contact (the server did not answer the request "
                                   "to stop)"));
}

void fetchRows(Cursor& cursor, CellStore& rows, qsizetype most) {
    qsizetype left = most > 0 ? most : std::numeric_limits<qsizetype>::max();
    while (left > 0) {
        const qsizetype fetched = cursor.fetch(rows, std::min(left, rowsPerBlock));
        if (fetched == 0)
            return;
        left -= fetched;
    }
}

void fetchAll(Cursor& cursor, CellStore& rows, qsizetype most) {
    try {
        fetchRows(cursor, rows, most);
    } catch (const std::bad_alloc&) {
        throw tooLarge(rows);
    }
}

} // namespace

Connection::Connection()
    : Connection([](const DataSource& source) { return openSession(source, providerTable()); }) {}

Connection::Connection(Opener opener)
    : m_opener(std::move(opener))
    , m_mostResultBytes(machineMemory() / 2) {}

Connection::~Connection() = default;

ObjectState Connection::State() const {
    return m_session && m_session->isOpen() ? ObjectState::Open : ObjectState::Closed;
}

void Connection::Open() {
    if (State() == ObjectState::Open)
        throw notAllowed(objectOpen, QLatin1String("open"));
    m_session.reset(); // a lost one goes before its successor comes
    m_session = m_opener(parseConnectionString(ConnectionString));
}

void Connection::Close() {
    if (!m_session)
        throw notAllowed(objectClosed, QLatin1String("closed"));
    m_session.reset();
}

void Connection::Execute(const QString& sql) {
    run([sql](Session& session) {
        session.expectRows(Session::noRows);
        session.execute(sql);
    });
}

FetchedRows Connection::fetch(const QString& sql, qsizetype most) {
    const auto fetched = std::make_shared<FetchedRows>();
    run([sql, most, fetched, mostBytes = m_mostResultBytes](Session& session) {
        session.expectRows(most);
        const auto cursor = session.execute(sql);
        fetched->columns = cursor->columns();
        fetched->rows = CellStore(int(fetched->columns.size()));
        fetched->rows.setMostBytes(mostBytes);
        if (!fetched->columns.empty())
            fetchAll(*cursor, fetched->rows, most);
    });
    return std::move(*fetched);
}

void Connection::run(std::function<void(Session&)> work) {
    if (!m_session)
        throw notAllowed(objectClosed, QLatin1String("closed"));
    if (m_busy)
        throw Error(stillExecuting, QStringLiteral("Quillmate.Connection"),
                    QStringLiteral("Operation cannot be performed while executing."));
    if (!m_watch) {
        const Busy busy(m_busy);
        work(*m_session);
        return;
    }
    try {
        const Busy busy(m_busy);
        runOnAThread(std::move(work));
    } catch (const Error&) {
        if (State() == ObjectState::Closed)
            m_watch->connectionLost();
        throw;
    }
}

void Connection::runOnAThread(std::function<void(Session&)> work) {
    const auto session = m_session;
    const bool ended = runWatched([session, work = std::move(work)] { work(*session); }, *m_watch,
                                  [session] { session->requestStop(); });
    if (ended)
        return;
    m_session.reset(); // closes itself if the statement ever ends
    throw connectionGivenUp();
}
