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
    , m_parts{{{m_link, statementOf(*m_link), true}}, {{m_link, statementOf(*m_link), true}}}
    , m_left(most > 0 ? most : std::numeric_limits<qsizetype>::max()) {}

PostgresCursor::~PostgresCursor() {
    leaveServer();
}

// A statement that came to an end has left already.
void PostgresCursor::leaveServer() {
    if (m_ahead.valid())
        m_ahead.wait();
    if (!m_inTransaction)
        return;
    m_inTransaction = false;
    m_link->cursorAtServer = nullptr;
    if (m_link->lost)
        return;
    const OdbcHandle& statement = m_parts[0].rows.statement();
    SQLFreeStmt(statement.get(), SQL_CLOSE);
    m_link->execute(statement, m_atEnd ? u"ROLLBACK"_s : u"COMMIT"_s);
}

// False in a transaction that the user has begun: the server warns of it and nothing has changed.
bool PostgresCursor::begin() {
    const OdbcHandle& statement = m_parts[0].rows.statement();
    const OdbcRunning running(*m_link, statement);
    const SQLRETURN result = m_link->execute(statement, u"BEGIN"_s);
    if (!SQL_SUCCEEDED(result))
        throw m_link->failureOn(statement);
    if (result == SQL_SUCCESS_WITH_INFO && diagnosisOf(statement).state == "25001"_L1)
        return false;
    m_inTransaction = true;
    m_link->cursorAtServer = this;
    return true;
}

// False when the server refuses, which it does before anything of the statement has run.
bool PostgresCursor::declare(const QString& sql) {
    const bool wantsAll = m_left == std::numeric_limits<qsizetype>::max();
    try {
        run(m_parts[0].rows.statement(),
            (wantsAll ? planForAllRows : QLatin1StringView()) + declaration + sql);
    } catch (const ProviderError&) {
        if (m_link->lost || m_link->stopAsked)
            throw;
        return false;
    }
    return true;
}

void PostgresCursor::firstPart() {
    m_parts[0].asked = std::min(firstRows, m_left);
    fetchPart(m_parts[0]);
    m_columns = m_parts[0].rows.columns();
    askAhead();
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

// The current part is whole in the driver: the next one is sent for, or the cursor was at its end
// and nothing more is needed of the server.
void PostgresCursor::askAhead() {
    const Part& current = m_parts[m_current];
    m_left -= current.asked;
    SQLLEN got = 0;
    SQLRowCount(current.rows.statement().get(), &got);
    if (m_left == 0 || got < current.asked)
        return endTransaction();
    Part& next = m_parts[1 - m_current];
    next.asked = std::min(rowsOfNextPart(), m_left);
    m_ahead = std::async(std::launch::async, [this, &next] { fetchPart(next); });
}

void PostgresCursor::endTransaction() {
    run(m_parts[1 - m_current].rows.statement(), u"COMMIT"_s);
    m_inTransaction = false;
    m_link->cursorAtServer = nullptr;
}

qsizetype PostgresCursor::rowsOfNextPart() const {
    if (m_rowsSoFar == 0)
        return firstRows;
    return std::clamp(partBytes / (m_bytesSoFar / m_rowsSoFar + 1), qsizetype(1), mostRows);
}

bool PostgresCursor::nextPart() {
    if (!m_ahead.valid())
        return false;
    m_ahead.get();
    m_current = 1 - m_current;
    askAhead();
    return true;
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
        m_bytesSoFar += rows.textBytes() - bytesBefore;
        m_rowsSoFar += got;
        fetched += got;
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
