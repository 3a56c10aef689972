#pragma once

#include "ConstraintErrors.h"
#include "TreeStatements.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace ora {

// The constraints that the engine does not look at: DEFERRABLE ones, which wait until COMMIT where
// a session has them so, and foreign keys to such keys. Everything throws SqliteFailure.
class DeferredConstraints {
public:
    // Not owned.
    DeferredConstraints(const SqliteDatabase& db, const DatabaseCatalog& catalog)
        : m_db(db)
        , m_catalog(catalog) {}

    bool none() const { return entries().empty(); }

    // After a statement's changes, before they are kept. target: the changed table; without one any
    // may have changed. Throws OraError, 2091 for what would fail the COMMIT that follows.
    void check(std::optional<ObjectId> target, RowAction action, bool commits);
    // ORA-02091 with what is broken.
    std::optional<OraError> brokenAtCommit() const;

    // SET CONSTRAINTS holds until the transaction's end. Throws 2447, 2448, and what is broken when
    // it may wait no longer.
    void set(const SetConstraints& statement, bool inTransaction);
    // ALTER SESSION SET CONSTRAINTS = DEFAULT, DEFERRED or IMMEDIATE. Throws 2248.
    void setSession(std::string_view value);
    void endTransaction();
    void forget() { m_entries.reset(); }

private:
    struct Entry {
        ConstraintDefinition constraint;
        ObjectId table;
        ObjectId parent; // 0: no foreign key
        std::string violation;
    };

    const std::vector<Entry>& entries() const;
    std::vector<Entry> load() const;
    bool waits(const Entry& entry) const;
    bool reaches(std::optional<ObjectId> target, RowAction action, const Entry& entry) const;
    bool isBroken(const Entry& entry) const;
    std::optional<OraError> firstBroken(const std::vector<ObjectId>& of) const;
    std::vector<ObjectId> chosen(const SetConstraints& statement) const;

    const SqliteDatabase& m_db;
    const DatabaseCatalog& m_catalog;
    mutable std::optional<std::vector<Entry>> m_entries;
    std::map<ObjectId, bool> m_waits; // of the transaction
    std::optional<bool> m_sessionWaits;
    std::map<ObjectId, bool> m_pending; // and whether rows of its own table changed
};

} // namespace ora
