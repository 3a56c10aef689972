#include "ChangeRunner.h"

#include "TableSql.h"
#include "Transaction.h"

namespace ora {

namespace {

// While it lives the engine looks at no foreign key. Unlike the pragma this takes effect inside a
// transaction, too.
class ForeignKeyPause {
public:
    explicit ForeignKeyPause(const SqliteDatabase& db)
        : m_db(db) {
        enforce(false);
    }
    ~ForeignKeyPause() { enforce(true); }
    ForeignKeyPause(const ForeignKeyPause&) = delete;
    ForeignKeyPause& operator=(const ForeignKeyPause&) = delete;

private:
    void enforce(bool on) const {
        sqlite3_db_config(m_db.get(), SQLITE_DBCONFIG_ENABLE_FKEY, int(on), nullptr);
    }
    const SqliteDatabase& m_db;
};

} // namespace

std::optional<ObjectId> ChangeRunner::targetId(const Compiled& change) const {
    if (!change.target || !change.target->isStored())
        return std::nullopt;
    const auto object = m_catalog.ownObject(change.target->name);
    return object ? std::optional(object->id) : std::nullopt;
}

void ChangeRunner::runStatements(const Compiled& change) const {
    for (const std::string& statement : change.sql)
        m_db.run(statement);
}

void ChangeRunner::runAll(const Compiled& change) const {
    if (change.sql.size() == 1 && m_deferred.none()) // the engine undoes it by itself
        return runStatements(change);
    const bool commits = sqlite3_get_autocommit(m_db.get()) != 0;
    AtomicChange all(m_db);
    runStatements(change);
    m_deferred.check(targetId(change), change.action, commits);
    all.keep();
}

void ChangeRunner::run(const Compiled& change) const {
    try {
        runAll(change);
    } catch (const SqliteFailure& failure) {
        if (failure.code() == SQLITE_CONSTRAINT_FOREIGNKEY)
            explainForeignKey(change, failure);
        const bool duplicate = failure.code() == SQLITE_CONSTRAINT_UNIQUE;
        if (duplicate && change.action == RowAction::Update && targetId(change)) {
            runWithoutUniqueIndexes(change);
            return;
        }
        if (const auto error = constraintError(failure, m_catalog, change.action))
            throw *error;
        throw;
    }
}

// The engine checks uniqueness row by row, the server at the end: SET a = a + 1 may pass through
// duplicates. The indexes go, the statement runs, and they come back if they still can. Foreign
// keys need their parents' indexes, so they are checked afterwards as well.
void ChangeRunner::runWithoutUniqueIndexes(const Compiled& change) const {
    const ObjectId id = *targetId(change);
    const TableDefinition table = m_catalog.store().table(id);
    const ForeignKeyPause pause(m_db);
    const bool commits = sqlite3_get_autocommit(m_db.get()) != 0;
    try {
        AtomicChange all(m_db);
        std::vector<IndexDefinition> unique;
        for (IndexDefinition& index : m_catalog.store().indexesOf(id)) {
            if (!index.unique)
                continue;
            m_db.run("DROP INDEX " + index.sqlName());
            unique.push_back(std::move(index));
        }
        runStatements(change);
        for (const IndexDefinition& index : unique)
            m_db.run(createIndexSql(index, table));
        if (const auto broken = brokenForeignKey(m_db, m_catalog, id, change.action))
            throw *broken;
        m_deferred.check(id, change.action, commits);
        all.keep();
    } catch (const SqliteFailure& failure) {
        if (const auto error = constraintError(failure, m_catalog, change.action))
            throw *error;
        throw;
    }
}

// The engine does not tell which key was broken: the statement runs once more with the checks put
// off, the broken key is looked up, and all is undone.
void ChangeRunner::explainForeignKey(const Compiled& change, const SqliteFailure& failure) const {
    const auto id = targetId(change);
    std::optional<OraError> broken;
    if (id) {
        const AtomicChange undone(m_db);
        m_db.run("PRAGMA defer_foreign_keys = ON");
        try {
            runStatements(change);
            broken = brokenForeignKey(m_db, m_catalog, *id, change.action);
        } catch (const SqliteFailure&) {
            // Then the text without a name has to do.
        }
    }
    m_db.run("PRAGMA defer_foreign_keys = OFF");
    if (broken)
        throw *broken;
    throw *constraintError(failure, m_catalog, change.action);
}

} // namespace ora
