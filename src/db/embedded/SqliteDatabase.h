#pragma once

#include <sqlite3.h>

#include <exception>
#include <memory>
#include <string>
#include <string_view>

// The engine below: one connection and its statements, owned, with failures as exceptions.

// What the engine said. code is its extended result code; message its own text.
class SqliteFailure : public std::exception {
public:
    SqliteFailure(int code, std::string message, int offset = -1)
        : m_code(code)
        , m_offset(offset)
        , m_message(std::move(message)) {}

    int code() const { return m_code; }
    int primaryCode() const { return m_code & 0xff; }
    // Byte offset of the offending token in the statement; -1 when the engine gave none.
    int offset() const { return m_offset; }
    const char* what() const noexcept override { return m_message.c_str(); }

private:
    int m_code;
    int m_offset;
    std::string m_message;
};

class SqliteStatement {
public:
    // Prepares the first statement of the text; get() is null when the text holds none. Throws
    // SqliteFailure.
    SqliteStatement(sqlite3* db, std::string_view sql);

    sqlite3_stmt* get() const { return m_statement.get(); }
    // What follows the prepared statement in the text.
    std::string_view rest() const { return m_rest; }

    // True when a row is ready, false at the end. Throws SqliteFailure.
    bool step();
    // Ready to run again; bindings stay.
    void reset() { sqlite3_reset(m_statement.get()); }

    // Parameters count from 1, columns from 0.
    SqliteStatement& bind(int parameter, std::string_view text);
    SqliteStatement& bind(int parameter, sqlite3_int64 value);
    SqliteStatement& bindBlob(int parameter, std::string_view bytes);
    SqliteStatement& bindNull(int parameter);
    std::string text(int column) const; // a null as ""
    sqlite3_int64 integer(int column) const;
    bool isNull(int column) const;

private:
    struct Finalize {
        void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
    };
    std::unique_ptr<sqlite3_stmt, Finalize> m_statement;
    std::string_view m_rest;
};

class SqliteDatabase {
public:
    enum class Mode { Existing, Create };

    // path is UTF-8; ":memory:" makes one without a file. A file that may not be written is opened
    // for reading. Throws SqliteFailure.
    SqliteDatabase(const std::string& path, Mode mode);

    sqlite3* get() const { return m_db.get(); }
    SqliteStatement prepare(std::string_view sql) const { return {get(), sql}; }
    // Runs every statement of the text. Throws SqliteFailure.
    void run(std::string_view sql) const;

private:
    struct Close {
        void operator()(sqlite3* db) const { sqlite3_close_v2(db); }
    };
    std::unique_ptr<sqlite3, Close> m_db;
};

[[noreturn]] void throwSqliteFailure(sqlite3* db, int code);

// The name as the engine's quoted identifier.
std::string quotedName(std::string_view name);
