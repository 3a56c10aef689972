#include "PostgresCursor.h"

#include "OdbcError.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype firstRows = 64;   // they may be very wide
constexpr qsizetype mostRows = 16384; // of one part
// Of texts; the driver takes some four times as much. Each part costs a wait for the server, which
// a slow line or a busy machine makes long.
constexpr qsizetype partBytes = 1024 * 1024;

constexpr auto declaration = "DECLARE quillmate_rows NO SCROLL CURSOR FOR "_L1;
// Else the server would plan for a tenth of the rows.
constexpr auto planForAllRows = "SET LOCAL cursor_tuple_fraction = 1; "_L1;

// Only the beginning is looked at: what can be declared after all, the server says.
bool mayBeDeclared(QStringView sql) {
    constexpr std::array kinds{"SELECT"_L1, "WITH"_L1, "VALUES"_L1};
    // One statement, or a later one would run as well.
    while (!sql.isEmpty() && (sql.back() == u';' || sql.back().isSpace()))
        sql.chop(1);
    if (sql.contains(u';'))
        return false;
    while (!sql.isEmpty() && (sql.front() == u'(' || sql.front().isSpace()))
        sql = sql.sliced(1);
    return std::any_of(kinds.begin(), kinds.end(), [&](QLatin1StringView kind) {
        return sql.startsWith(kind, Qt::CaseInsensitive) && sql.size() > kind.size() &&
               !sql[kind.size()].isLetterOrNumber() && sql[kind.size()] != u'_';
    });
}

OdbcHandle statementOf(OdbcLink& link) {
    OdbcHandle statement(SQL_HANDLE_STMT, link.connection.get());
    if (!statement)
        throw link.failureOn(link.connection);
    return statement;
}

void appendCells(CellStore& to, const CellStore& from, qsizetype row) {
    CellStore::Row cells = from.row(row);
    for (int i = 0; i < from.columns(); ++i) {
        const Cell cell = cells.next();
        cell.isNull ? to.appendNull() : to.append(cell.data, cell.size);
    }
    to.endRow();
}

} // namespace

std::unique_ptr<Cursor> PostgresCursor::open(const std::shared_ptr<OdbcLink>& link,
                                             const QString& sql, qsizetype most) {
    if (!mayBeDeclared(sql))
        return nullptr;
    std::unique_ptr<PostgresCursor> cursor(new PostgresCursor(link, most));
    if (!cursor->begin() || !cursor->declare(sql))
        return nullptr;
    cursor->firstPart();
    return cursor;
}

PostgresCursor::PostgresCursor(std::shared_ptr<OdbcLink> link, qsizetype most)
    : m_link(std::move(link))
    , m_control(statementOf(*m_link))
    , m_parts{{{m_link, statementOf(*m_link), true}},
              {{m_link, statementOf(*m_link), true}},
              {{m_link, statementOf(*m_link), true}},
              {{m_link, statementOf(*m_link), true}}}
    , m_left(most > 0 ? most : std::numeric_limits<qsizetype>::max()) {}

PostgresCursor::~PostgresCursor() {
    leaveServer();
}

// A statement that came to an end has left already.
void PostgresCursor::leaveServer() {
    {
        const std::lock_guard lock(m_mutex);
        m_wanted = false;
    }
    m_changed.notify_all();
    if (m_ahead.valid())
        m_ahead.wait();
    if (!m_inTransaction)
        return;
    m_inTransaction = false;
    m_link->cursorAtServer = nullptr;
    if (m_link->lost)
        return;
    SQLFreeStmt(m_control.get(), SQL_CLOSE);
    m_link->execute(m_control, m_atEnd ? u"ROLLBACK"_s : u"COMMIT"_s);
}

// False in a transaction that the user has begun: the server warns of it and nothing has changed.
bool PostgresCursor::begin() {
    const OdbcRunning running(*m_link, m_control);
    const SQLRETURN result = m_link->execute(m_control, u"BEGIN"_s);
    if (!SQL_SUCCEEDED(result))
        throw m_link->failureOn(m_control);
    if (result == SQL_SUCCESS_WITH_INFO && diagnosisOf(m_control).state == "25001"_L1)
        return false;
    m_inTransaction = true;
    m_link->cursorAtServer = this;
    return true;
}

// False when the server refuses, which it does before anything of the statement has run.
bool PostgresCursor::declare(const QString& sql) {
    const bool wantsAll = m_left == std::numeric_limits<qsizetype>::max();
    try {
        run(m_control, (wantsAll ? planForAllRows : QLatin1StringView()) + declaration + sql);
    } catch (const ProviderError&) {
        if (m_link->lost || m_link->stopAsked)
            throw;
        return false;
    }
    return true;
}

void PostgresCursor::firstPart() {
    Part& part = m_parts[m_current];
    part.asked = std::min(firstRows, m_left);
    fetchPart(part);
    m_columns = part.rows.columns();
    m_left -= part.asked;
    if (isLast(part))
        endTransaction();
    else
        m_ahead = std::async(std::launch::async, [this] { fetchAhead(); });
    m_atEnd = false;
}

void PostgresCursor::run(const OdbcHandle& statement, const QString& sql) {
    SQLFreeStmt(statement.get(), SQL_CLOSE);
    const OdbcRunning running(*m_link, statement);
    if (!SQL_SUCCEEDED(m_link->execute(statement, sql)))
        throw m_link->failureOn(statement);
}

void PostgresCursor::fetchPart(Part& part) {
    run(part.rows.statement(), u"FETCH FORWARD %1 FROM quillmate_rows"_s.arg(part.asked));
    if (part.isBound)
        part.rows.startAgain();
    else
        part.isBound = part.rows.takeResult();
}

// The part is whole in the driver: whether the cursor was at its end or no more is needed of it.
bool PostgresCursor::isLast(const Part& part) const {
    SQLLEN got = 0;
    SQLRowCount(part.rows.statement().get(), &got);
    return m_left == 0 || got < part.asked;
}

void PostgresCursor::fetchAhead() noexcept {
    try {
        bool last = false;
        for (int next = (m_current + 1) % partCount; !last && waitForRoom();
             next = (next + 1) % partCount) {
            Part& part = m_parts[next];
            part.asked = std::min(rowsOfNextPart(), m_left);
            m_left -= part.asked;
            fetchPart(part);
            last = isLast(part);
            noteArrival(last);
        }
    } catch (...) {
        const std::lock_guard lock(m_mutex);
        m_failure = std::current_exception();
        m_allArrived = true;
        m_changed.notify_all();
    }
}

// False when nobody wants more.
bool PostgresCursor::waitForRoom() {
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [this] { return !m_wanted || m_arrived < partCount - 1; });
    return m_wanted;
}

void PostgresCursor::noteArrival(bool isLast) {
    const std::lock_guard lock(m_mutex);
    ++m_arrived;
    m_allArrived = isLast;
    m_changed.notify_all();
}

void PostgresCursor::endTransaction() {
    run(m_control, u"COMMIT"_s);
    m_inTransaction = false;
    m_link->cursorAtServer = nullptr;
}

qsizetype PostgresCursor::rowsOfNextPart() {
    const std::lock_guard lock(m_mutex);
    if (m_rowsSoFar == 0)
        return firstRows;
    return std::clamp(partBytes / (m_bytesSoFar / m_rowsSoFar + 1), qsizetype(1), mostRows);
}

// Once all have arrived nothing more is needed of the server.
bool PostgresCursor::nextPart() {
    std::unique_lock lock(m_mutex);
    if (!m_inTransaction && m_arrived == 0)
        return false;
    m_changed.wait(lock, [this] { return m_arrived > 0 || m_allArrived; });
    const bool arrived = m_arrived > 0;
    if (!arrived && m_failure)
        std::rethrow_exception(m_failure);
    if (arrived) {
        --m_arrived;
        m_current = (m_current + 1) % partCount;
        m_changed.notify_all();
    }
    const bool ends = m_allArrived && !m_failure && m_inTransaction;
    lock.unlock();
    if (ends) {
        m_ahead.get();
        endTransaction();
    }
    return arrived;
}

qsizetype PostgresCursor::fetch(CellStore& rows, qsizetype most) {
    if (m_kept)
        return fetchKept(rows, most);
    if (m_atEnd)
        return 0;
    m_atEnd = true; // after a failure as well
    const qsizetype fetched = fetchParts(rows, most);
    m_atEnd = fetched < most;
    return fetched;
}

qsizetype PostgresCursor::fetchParts(CellStore& rows, qsizetype most) {
    qsizetype fetched = 0;
    do {
        const qint64 bytesBefore = rows.textBytes();
        const qsizetype got = m_parts[m_current].rows.fetch(rows, most - fetched);
        fetched += got;
        const std::lock_guard lock(m_mutex);
        m_bytesSoFar += rows.textBytes() - bytesBefore;
        m_rowsSoFar += got;
    } while (fetched < most && nextPart());
    return fetched;
}

void PostgresCursor::keepRest() {
    CellStore kept(int(m_columns.size()));
    try {
        while (fetch(kept, mostRows) > 0) {
        }
    } catch (...) {
        m_keptFailure = std::current_exception();
    }
    m_kept = std::move(kept);
    leaveServer();
}

qsizetype PostgresCursor::fetchKept(CellStore& rows, qsizetype most) {
    const qsizetype end = std::min(m_nextKept + most, m_kept->rows());
    const qsizetype fetched = end - m_nextKept;
    while (m_nextKept < end)
        appendCells(rows, *m_kept, m_nextKept++);
    if (fetched == 0 && m_keptFailure)
        std::rethrow_exception(std::exchange(m_keptFailure, nullptr));
    return fetched;
}
