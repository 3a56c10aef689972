#pragma once

#include "Compiled.h"
#include "DeferredConstraints.h"

namespace ora {

// Runs INSERT, UPDATE, DELETE and MERGE as the server does: constraints hold at the end of the
// statement, a failure undoes all of it and names what was violated.
class ChangeRunner {
public:
    // Not owned.
    ChangeRunner(const SqliteDatabase& db, const DatabaseCatalog& catalog,
                 DeferredConstraints& deferred)
        : m_db(db)
        , m_catalog(catalog)
        , m_deferred(deferred) {}

    // Throws OraError and SqliteFailure.
    void run(const Compiled& change) const;

private:
    void runAll(const Compiled& change) const;
    void runStatements(const Compiled& change) const;
    void runWithoutUniqueIndexes(const Compiled& change) const;
    [[noreturn]] void explainForeignKey(const Compiled& change, const SqliteFailure& failure) const;
    std::optional<ObjectId> targetId(const Compiled& change) const;

    const SqliteDatabase& m_db;
    const DatabaseCatalog& m_catalog;
    DeferredConstraints& m_deferred;
};

} // namespace ora
