#include "OdbcSession.h"

#include "OdbcCursor.h"
#include "PostgresCursor.h"

using namespace Qt::StringLiterals;

namespace {

bool isDone(SQLRETURN result) {
    // No rows touched is told by SQL_NO_DATA and is no failure.
    return SQL_SUCCEEDED(result) || result == SQL_NO_DATA;
}

// That a server cannot explain a statement, or has no such command, is a general failure: the
// window then says that there is no plan.
ProviderError failureOf(const QString& sql, const ProviderError& error) {
    if (!QStringView(sql).trimmed().startsWith(u"EXPLAIN PLAN", Qt::CaseInsensitive))
        return error;
    return ProviderError(DbErrorNumber::GeneralFailure, error.nativeCode(), error.source(),
                         error.description());
}

[[noreturn]] void reject(const QString& code, const QString& text) {
    throw ProviderError(DbErrorNumber::CommandRejected, code, u"ODBC"_s, code + u": "_s + text);
}

// A driver ends the statement at a zero, which may have stood before its condition.
void requireStatement(const QString& sql) {
    if (sql.trimmed().isEmpty())
        reject(u"ORA-00900"_s, u"invalid SQL statement"_s);
    if (sql.contains(QChar::Null))
        reject(u"ORA-00911"_s, u"invalid character"_s);
}

} // namespace

std::unique_ptr<Cursor> OdbcSession::execute(const QString& sql) {
    m_link->requireServer();
    requireStatement(sql);
    if (m_link->cursorAtServer)
        m_link->cursorAtServer->keepRest();
    m_link->stopAsked = false;
    if (m_link->habits.postgresCursors && m_mostRows != noRows) {
        if (auto cursor = PostgresCursor::open(m_link, sql, m_mostRows))
            return cursor;
    }
    return executePlainly(sql);
}

std::unique_ptr<Cursor> OdbcSession::executePlainly(const QString& sql) {
    OdbcHandle statement(SQL_HANDLE_STMT, m_link->connection.get());
    if (!statement)
        throw m_link->failureOn(m_link->connection);
    if (m_mostRows > 0) // spares a driver that holds whole results the rest; it may ignore it
        SQLSetStmtAttr(statement.get(), SQL_ATTR_MAX_ROWS,
                       reinterpret_cast<SQLPOINTER>(SQLULEN(m_mostRows)), 0);
    const OdbcRunning running(*m_link, statement);
    if (!isDone(m_link->execute(statement, sql)))
        throw failureOf(sql, m_link->failureOn(statement));
    return std::make_unique<OdbcCursor>(m_link, std::move(statement));
}
