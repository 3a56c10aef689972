#include "ProgramFolder.h"

#include "WritableFolder.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

namespace {

// Installed for everyone, below a prefix such as /usr. Root, who can write there, is no exception:
// files of a user would stay behind when the program is removed.
bool isInstalled(const QString& folder) {
    return QFileInfo(folder + QStringLiteral("/../share/quillmate")).isDir();
}

QString chooseFolder() {
    const QString named = qEnvironmentVariable("QUILLMATE_HOME");
    if (!named.isEmpty())
        return QDir::cleanPath(QDir(named).absolutePath());
    const QString own = QCoreApplication::applicationDirPath();
    if (!isInstalled(own) && isWritableFolder(own))
        return own;
    return QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation);
}

} // namespace

QString Program_Folder() {
    static const QString folder = [] {
        const QString chosen = chooseFolder();
        QDir().mkpath(chosen);
        return chosen;
    }();
    return folder;
}

QString Program_File(const QString& name) {
    return QDir::toNativeSeparators(Program_Folder() + QLatin1Char('/') + name);
}
