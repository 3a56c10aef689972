#include "Transaction.h"

#include "OraError.h"

#include <algorithm>

namespace ora {

namespace {

constexpr int noSuchSavepoint = 1086;

std::string engineName(int number) {
    return "s" + std::to_string(number);
}

} // namespace

void Transaction::begin(bool readOnly) {
    if (!m_open)
        m_db.run("BEGIN");
    m_open = true;
    m_readOnly = readOnly;
}

void Transaction::end() {
    m_open = false;
    m_readOnly = false;
    m_savepoints.clear();
}

void Transaction::commit() {
    if (!m_open)
        return;
    m_db.run("COMMIT"); // when it fails the transaction stays open
    end();
}

void Transaction::rollback() {
    if (m_open && sqlite3_get_autocommit(m_db.get()) == 0) // the engine may have done it already
        m_db.run("ROLLBACK");
    end();
}

void Transaction::noteFailure() {
    if (m_open && sqlite3_get_autocommit(m_db.get()) != 0)
        end();
}

void Transaction::savepoint(const std::string& name) {
    begin(m_readOnly);
    m_db.run("SAVEPOINT " + engineName(++m_lastNumber));
    // A later one of the same name takes its place.
    std::erase_if(m_savepoints, [&](const Mark& mark) { return mark.name == name; });
    m_savepoints.push_back({name, m_lastNumber});
}

void Transaction::rollbackTo(const std::string& name) {
    const auto found = std::find_if(m_savepoints.begin(), m_savepoints.end(),
                                    [&](const Mark& mark) { return mark.name == name; });
    if (found == m_savepoints.end())
        throw OraError(noSuchSavepoint,
                       "savepoint '" + name + "' never established in this session or is invalid");
    m_db.run("ROLLBACK TO " + engineName(found->number));
    m_savepoints.erase(found + 1, m_savepoints.end());
}

AtomicChange::AtomicChange(const SqliteDatabase& db)
    : m_db(db) {
    m_db.run("SAVEPOINT change");
}

AtomicChange::~AtomicChange() {
    if (m_kept || sqlite3_get_autocommit(m_db.get()) != 0)
        return;
    try {
        m_db.run("ROLLBACK TO change; RELEASE change");
    } catch (const SqliteFailure&) {
        // The engine rolls back by itself what it could not write.
    }
}

void AtomicChange::keep() {
    m_db.run("RELEASE change");
    m_kept = true;
}

} // namespace ora
