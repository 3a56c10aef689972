#include "DemoDatabase.h"

#include "CatalogTables.h"
#include "DatabaseFile.h"
#include "DatabaseLogin.h"
#include "DemoScript.h"
#include "OracleErrors.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryFile>

using namespace Qt::StringLiterals;

namespace {

const QString demoUser = QStringLiteral("demo");
const QString demoPassword = QStringLiteral("demo");

ProviderError cannotCreate(const QString& path, const QString& reason) {
    return oraError(OraCode::CannotCreateDatabase,
                    u"CREATE DATABASE failed: %1: %2"_s.arg(path, reason).toStdString());
}

// The file is new and nobody else's: a failure throws the whole of it away, so that nothing needs
// to be safe on the disk before the end.
void runScript(const QString& path) {
    SqliteDatabase db(path.toStdString(), SqliteDatabase::Mode::Create);
    db.run("PRAGMA journal_mode = MEMORY; PRAGMA synchronous = OFF");
    ora::createCatalogTables(db);
    const auto session =
        openCatalogFile(std::move(db), FileIdentity(path), {{}, demoName, demoUser, demoPassword});
    for (const std::string& statement : demoScript())
        session->execute(QString::fromStdString(statement));
}

void build(const QString& path) {
    runScript(path);
    // Written with full care, which brings all of the file to the disk.
    createLogin(SqliteDatabase(path.toStdString(), SqliteDatabase::Mode::Existing), demoUser,
                demoPassword);
}

} // namespace

void ensureDemoDatabase(const QString& path) {
    if (QFileInfo::exists(path))
        return;
    QDir().mkpath(QFileInfo(path).path());
    QTemporaryFile file(path + u".XXXXXX.new"_s); // removes itself unless it was renamed
    if (!file.open())
        throw cannotCreate(path, file.errorString());
    const QString unfinished = file.fileName();
    file.close();
    try {
        build(unfinished);
    } catch (const SqliteFailure& failure) {
        throw cannotCreate(path, QString::fromUtf8(failure.what()));
    }
    // When another process was faster its file stays.
    if (!file.rename(path) && !QFileInfo::exists(path))
        throw cannotCreate(path, file.errorString());
    file.setAutoRemove(file.fileName() != path);
}
