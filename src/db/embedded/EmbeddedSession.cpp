#include "EmbeddedSession.h"

#include "EmbeddedCursor.h"
#include "OracleErrors.h"

namespace {

constexpr std::string_view blanks = " \t\r\n\f\v";

bool isBlank(std::string_view text) {
    return text.find_first_not_of(blanks) == text.npos;
}

} // namespace

EmbeddedSession::EmbeddedSession(SqliteDatabase db, FileIdentity file)
    : m_db(std::move(db))
    , m_file(std::move(file)) {}

void EmbeddedSession::requireFile() {
    if (m_lost)
        throw oraError(OraCode::NotConnected, "not connected to ORACLE");
    if (m_file.stillThere())
        return;
    m_lost = true;
    throw oraError(OraCode::ConnectionLost,
                   "end-of-file on communication channel\nThe database file " +
                       m_file.path().toStdString() + " is gone.");
}

std::unique_ptr<Cursor> EmbeddedSession::execute(const QString& sql) {
    requireFile();
    if (sql.contains(QChar(u'\0'))) // the engine would end the statement there
        throw oraError(OraCode::InvalidCharacter, "invalid character");
    std::string text = sql.toStdString();
    try {
        return run(std::move(text));
    } catch (const SqliteFailure& failure) {
        throw oraError(failure, sql.toStdString());
    }
}

std::unique_ptr<Cursor> EmbeddedSession::run(std::string sql) {
    SqliteStatement statement = m_db.prepare(sql);
    if (!statement.get())
        throw oraError(OraCode::InvalidStatement, "invalid SQL statement");
    if (!isBlank(statement.rest()))
        throw oraError(OraCode::InvalidCharacter, "invalid character");
    const bool hasRow = statement.step();
    return std::make_unique<EmbeddedCursor>(std::move(statement), hasRow, std::move(sql));
}

void EmbeddedSession::requestStop() noexcept {
    sqlite3_interrupt(m_db.get());
}
