#pragma once

#include "SqliteDatabase.h"

#include <string>
#include <vector>

namespace ora {

// The session's transaction. Statements commit themselves unless SET TRANSACTION or SAVEPOINT
// opened one; COMMIT, ROLLBACK and data definition end it. Throws SqliteFailure.
class Transaction {
public:
    // db is not owned.
    explicit Transaction(const SqliteDatabase& db)
        : m_db(db) {}

    bool isOpen() const { return m_open; }
    bool isReadOnly() const { return m_open && m_readOnly; }

    void begin(bool readOnly);
    void commit();
    void rollback();
    void savepoint(const std::string& name);
    // Throws OraError 1086 for a savepoint that is not there.
    void rollbackTo(const std::string& name);
    // After a failed statement: out of memory or disk, the engine may have undone everything.
    void noteFailure();

private:
    void end();

    const SqliteDatabase& m_db;
    bool m_open = false;
    bool m_readOnly = false;
    struct Mark {
        std::string name;
        int number; // the engine knows it as s<number>
    };
    std::vector<Mark> m_savepoints; // in order
    int m_lastNumber = 0;
};

// Several changes as one: they are undone together unless keep() was called. Inside a transaction
// or outside of one.
class AtomicChange {
public:
    explicit AtomicChange(const SqliteDatabase& db);
    ~AtomicChange();
    AtomicChange(const AtomicChange&) = delete;
    AtomicChange& operator=(const AtomicChange&) = delete;

    // Throws SqliteFailure: outside of a transaction this commits.
    void keep();

private:
    const SqliteDatabase& m_db;
    bool m_kept = false;
};

} // namespace ora
