#include "SqliteDatabase.h"

void throwSqliteFailure(sqlite3* db, int code) {
    if (!db)
        throw SqliteFailure(code, sqlite3_errstr(code));
    throw SqliteFailure(sqlite3_extended_errcode(db), sqlite3_errmsg(db), sqlite3_error_offset(db));
}

std::string quotedName(std::string_view name) {
    std::string quoted = "\"";
    for (const char c : name) {
        if (c == '"')
            quoted += c;
        quoted += c;
    }
    return quoted + '"';
}

namespace {

// The engine looks every constant of a condition up among all earlier ones, to compute equal ones
// once: 50,000 ORs would take minutes. Large statements do without.
class PlainConstants {
public:
    PlainConstants(sqlite3* db, std::size_t size)
        : m_db(size > LargeStatement ? db : nullptr) {
        setOff(FactorOutConstants);
    }
    ~PlainConstants() { setOff(0); }
    PlainConstants(const PlainConstants&) = delete;
    PlainConstants& operator=(const PlainConstants&) = delete;

private:
    static constexpr std::size_t LargeStatement = 64 * 1024;
    static constexpr int FactorOutConstants = 0x0008;

    void setOff(int optimizations) {
        if (m_db)
            sqlite3_test_control(SQLITE_TESTCTRL_OPTIMIZATIONS, m_db, optimizations);
    }

    sqlite3* m_db;
};

} // namespace

SqliteStatement::SqliteStatement(sqlite3* db, std::string_view sql) {
    const PlainConstants constants(db, sql.size());
    sqlite3_stmt* statement = nullptr;
    const char* tail = nullptr;
    const int code = sqlite3_prepare_v2(db, sql.data(), int(sql.size()), &statement, &tail);
    if (code != SQLITE_OK)
        throwSqliteFailure(db, code);
    m_statement.reset(statement);
    m_rest = sql.substr(size_t(tail - sql.data()));
}

bool SqliteStatement::step() {
    switch (const int code = sqlite3_step(m_statement.get())) {
    case SQLITE_ROW: return true;
    case SQLITE_DONE: return false;
    default: throwSqliteFailure(sqlite3_db_handle(m_statement.get()), code);
    }
}

SqliteStatement& SqliteStatement::bind(int parameter, std::string_view text) {
    sqlite3_bind_text64(get(), parameter, text.data(), text.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
    return *this;
}

SqliteStatement& SqliteStatement::bind(int parameter, sqlite3_int64 value) {
    sqlite3_bind_int64(get(), parameter, value);
    return *this;
}

SqliteStatement& SqliteStatement::bindBlob(int parameter, std::string_view bytes) {
    sqlite3_bind_blob64(get(), parameter, bytes.data(), bytes.size(), SQLITE_TRANSIENT);
    return *this;
}

SqliteStatement& SqliteStatement::bindNull(int parameter) {
    sqlite3_bind_null(get(), parameter);
    return *this;
}

std::string SqliteStatement::text(int column) const {
    const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(get(), column));
    return text ? std::string(text, size_t(sqlite3_column_bytes(get(), column))) : std::string();
}

sqlite3_int64 SqliteStatement::integer(int column) const {
    return sqlite3_column_int64(get(), column);
}

bool SqliteStatement::isNull(int column) const {
    return sqlite3_column_type(get(), column) == SQLITE_NULL;
}

SqliteDatabase::SqliteDatabase(const std::string& path, Mode mode) {
    // One thread uses a connection, so the engine's own locks would only cost time.
    const int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX |
                      (mode == Mode::Create ? SQLITE_OPEN_CREATE : 0);
    sqlite3* db = nullptr;
    const int code = sqlite3_open_v2(path.c_str(), &db, flags, nullptr);
    m_db.reset(db);
    if (code != SQLITE_OK)
        throwSqliteFailure(db, code);
    sqlite3_extended_result_codes(db, 1);
}

void SqliteDatabase::run(std::string_view sql) const {
    while (!sql.empty()) {
        SqliteStatement statement = prepare(sql);
        while (statement.get() && statement.step()) {
        }
        sql = statement.rest();
    }
}
