#include "DatabaseFile.h"

#include "CatalogTables.h"
#include "DatabaseLogin.h"
#include "DictionaryViews.h"
#include "EmbeddedSession.h"
#include "OracleErrors.h"
#include "OracleSession.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int busyMilliseconds = 2000; // another process writes to the same file

// Settings of every connection: foreign keys hold, a quoted name that is unknown is an error and
// no text, LIKE minds case, and no statement reaches another file or the engine's own tables.
void configure(const SqliteDatabase& db) {
    sqlite3_busy_timeout(db.get(), busyMilliseconds);
    sqlite3_db_config(db.get(), SQLITE_DBCONFIG_DQS_DML, 0, nullptr);
    sqlite3_db_config(db.get(), SQLITE_DBCONFIG_DQS_DDL, 0, nullptr);
    sqlite3_db_config(db.get(), SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
    sqlite3_limit(db.get(), SQLITE_LIMIT_ATTACHED, 0);
    db.run("PRAGMA foreign_keys = ON; PRAGMA temp_store = MEMORY");
}

// The schema of whoever logged on; a name is not asked for where the file knows none.
std::string schemaOf(const QString& user) {
    const QString schema = user.trimmed().toUpper();
    return schema.isEmpty() ? "DEMO" : schema.toStdString();
}

void requireLogin(const SqliteDatabase& db, const DataSource& source) {
    if (!mayLogIn(db, source.user, source.password))
        throw oraError(OraCode::WrongLogin, "invalid username/password; logon denied");
}

std::unique_ptr<Session> openForeignFile(SqliteDatabase db, FileIdentity file,
                                         const DataSource& source) {
    configure(db);
    requireLogin(db, source);
    createDictionaryViews(db, source.user);
    return std::make_unique<EmbeddedSession>(std::move(db), std::move(file));
}

} // namespace

std::unique_ptr<Session> openCatalogFile(SqliteDatabase db, FileIdentity file,
                                         const DataSource& source) {
    configure(db);
    // Stored expressions call the front end's functions, so these come before the schema is read.
    auto context = std::make_unique<ora::FunctionContext>();
    ora::registerFunctions(db.get(), *context);
    requireLogin(db, source);
    return std::make_unique<ora::OracleSession>(std::move(context), std::move(db), std::move(file),
                                                schemaOf(source.user),
                                                source.name.trimmed().toStdString());
}

std::unique_ptr<Session> openDatabaseFile(const QString& path, const DataSource& source) {
    try {
        FileIdentity file(path);
        SqliteDatabase db(path.toStdString(), SqliteDatabase::Mode::Existing);
        if (!ora::hasCatalog(db) && ora::isEmptyFile(db))
            ora::createCatalogTables(db);
        if (ora::hasCatalog(db)) {
            ora::upgradeCatalogTables(db);
            return openCatalogFile(std::move(db), std::move(file), source);
        }
        return openForeignFile(std::move(db), std::move(file), source);
    } catch (const SqliteFailure& failure) {
        throw oraError(failure, {});
    }
}
