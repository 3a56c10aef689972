#include "WritableFolder.h"

#include <QFileInfo>

bool isWritableFolder(const QString& folder) {
    return QFileInfo(folder).isWritable();
}
