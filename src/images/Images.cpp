#include "Images.h"

#include "InkDrawing.h"
#include "InkIconEngine.h"

#include <QFile>
#include <QHash>

using namespace Qt::StringLiterals;

// A static library's resources are left out by the linker unless they are asked for; the macro
// must stand outside of namespaces.
static void bringResources() {
    Q_INIT_RESOURCE(images);
}

QIcon image(const QString& name) {
    bringResources();
    using Colours = InkIconEngine::Colours;
    const Colours colours = name.startsWith("program/"_L1) ? Colours::Own : Colours::Inks;
    return QIcon(new InkIconEngine(drawingFile(name), colours)); // owned by the icon
}

void keepInksWhenSelected(bool keeps) {
    InkIconEngine::keepsInksWhenSelected = keeps;
}

QIcon programIcon() {
    return image(u"program/quillmate"_s);
}

std::function<QIcon(const QString& key)> treeImages() {
    bringResources();
    return [icons = QHash<QString, QIcon>()](const QString& key) mutable {
        const auto known = icons.constFind(key);
        if (known != icons.constEnd())
            return *known;
        const QString name = u"tree/"_s + key;
        const QIcon icon =
            !key.isEmpty() && QFile::exists(drawingFile(name)) ? image(name) : QIcon();
        return *icons.insert(key, icon);
    };
}
