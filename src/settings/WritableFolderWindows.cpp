#include "WritableFolder.h"

#include <QTemporaryFile>

// Only a file that is made tells: the folder's attributes say nothing of its access list.
bool isWritableFolder(const QString& folder) {
    QTemporaryFile probe(folder + QStringLiteral("/quillmate-XXXXXX"));
    return probe.open();
}
