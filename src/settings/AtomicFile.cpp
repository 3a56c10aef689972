#include "AtomicFile.h"

#include "Error.h"

#include <QSaveFile>

namespace {

[[noreturn]] void fail(const QString& path, const QString& reason) {
    throw Error(Error::PathFileAccess, QString(),
                QStringLiteral("The file '%1' cannot be written: %2").arg(path, reason));
}

} // namespace

void Write_Whole_File(const QString& path, QByteArrayView bytes) {
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        fail(path, file.errorString());
    // commit() would not tell that the rest of its buffer does not fit on the disk.
    const bool written = file.write(bytes.data(), bytes.size()) == bytes.size() && file.flush();
    if (!written || !file.commit())
        fail(path, file.errorString());
}
