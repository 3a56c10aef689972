#include "EmbeddedProvider.h"

#include "DatabaseLogin.h"
#include "DemoDatabase.h"
#include "DictionaryViews.h"
#include "EmbeddedSession.h"
#include "OracleErrors.h"
#include "ProgramFolder.h"

#include <QDir>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace {

constexpr int busyMilliseconds = 2000; // another process writes to the same file

bool isPath(const QString& name) {
    return name.endsWith(".db"_L1, Qt::CaseInsensitive);
}

// Databases/NAME.db; names ignore case, as service names do.
QString fileOfName(const QString& name) {
    const QDir folder(Program_File(u"Databases"_s));
    const QString wanted = name + u".db"_s;
    for (const QString& file : folder.entryList(QDir::Files)) {
        if (file.compare(wanted, Qt::CaseInsensitive) == 0)
            return folder.filePath(file);
    }
    return folder.filePath(wanted);
}

bool isPlainName(const QString& name) {
    return !name.isEmpty() && !name.contains(u'/') && !name.contains(u'\\');
}

// The file of the data source, or nothing after a note of what was looked for.
std::optional<QString> findFile(const QString& name, QStringList& tried) {
    if (!isPath(name) && !isPlainName(name)) {
        tried << u"embedded database: \"%1\" is neither a name nor a path that ends in .db"_s.arg(
            name);
        return std::nullopt;
    }
    const QString path = isPath(name) ? name : fileOfName(name);
    if (QFileInfo(path).isFile())
        return path;
    tried << u"embedded database: no file %1"_s.arg(QDir::toNativeSeparators(path));
    return std::nullopt;
}

// Settings of every connection: foreign keys hold, a quoted name that is unknown is an error and
// no text, and no statement reaches another file or the engine's own tables.
void configure(const SqliteDatabase& db) {
    sqlite3_busy_timeout(db.get(), busyMilliseconds);
    sqlite3_db_config(db.get(), SQLITE_DBCONFIG_DQS_DML, 0, nullptr);
    sqlite3_db_config(db.get(), SQLITE_DBCONFIG_DQS_DDL, 0, nullptr);
    sqlite3_db_config(db.get(), SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
    sqlite3_limit(db.get(), SQLITE_LIMIT_ATTACHED, 0);
    db.run("PRAGMA foreign_keys = ON; PRAGMA temp_store = MEMORY");
}

std::unique_ptr<Session> openFile(const QString& path, const DataSource& source) {
    try {
        FileIdentity file(path);
        SqliteDatabase db(path.toStdString(), SqliteDatabase::Mode::Existing);
        configure(db);
        if (!mayLogIn(db, source.user, source.password))
            throw oraError(OraCode::WrongLogin, "invalid username/password; logon denied");
        createDictionaryViews(db, source.user);
        return std::make_unique<EmbeddedSession>(std::move(db), std::move(file));
    } catch (const SqliteFailure& failure) {
        throw oraError(failure, {});
    }
}

class EmbeddedProvider : public Provider {
public:
    QString name() const override { return u"embedded database"_s; }

    std::unique_ptr<Session> open(const DataSource& source, QStringList& tried) override {
        const QString name = source.name.trimmed();
        if (name.compare(demoName, Qt::CaseInsensitive) == 0)
            ensureDemoDatabase(fileOfName(demoName));
        const auto path = findFile(name, tried);
        return path ? openFile(*path, source) : nullptr;
    }
};

} // namespace

std::unique_ptr<Provider> makeEmbeddedProvider() {
    return std::make_unique<EmbeddedProvider>();
}
