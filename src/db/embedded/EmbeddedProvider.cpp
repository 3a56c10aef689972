#include "EmbeddedProvider.h"

#include "DatabaseFile.h"
#include "DemoDatabase.h"
#include "ProgramFolder.h"

#include <QDir>
#include <QFileInfo>

#include <optional>

using namespace Qt::StringLiterals;

namespace {

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

class EmbeddedProvider : public Provider {
public:
    QString name() const override { return u"embedded database"_s; }

    std::unique_ptr<Session> open(const DataSource& source, QStringList& tried) override {
        const QString name = source.name.trimmed();
        if (name.compare(demoName, Qt::CaseInsensitive) == 0)
            ensureDemoDatabase(fileOfName(demoName));
        const auto path = findFile(name, tried);
        return path ? openDatabaseFile(*path, source) : nullptr;
    }
};

} // namespace

std::unique_ptr<Provider> makeEmbeddedProvider() {
    return std::make_unique<EmbeddedProvider>();
}
