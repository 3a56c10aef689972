#include "AtomicFile.h"

#include "Error.h"

namespace {

bool writeAll(QSaveFile& file, QByteArrayView bytes) {
    return file.write(bytes.data(), bytes.size()) == bytes.size();
}

} // namespace

WholeFile::WholeFile(const QString& path)
    : m_path(path)
    , m_file(path) {
    if (!m_file.open(QIODevice::WriteOnly))
        fail();
}

WholeFile::~WholeFile() {
    if (m_written.valid())
        m_written.wait();
}

void WholeFile::put(QByteArray& bytes) {
    waitUntilWritten();
    m_onItsWay.swap(bytes);
    bytes.resize(0);
    // Deferred, until it is waited for, on a machine that has no thread left.
    m_written = std::async(std::launch::async | std::launch::deferred,
                           [this] { return writeAll(m_file, m_onItsWay); });
}

void WholeFile::write(QByteArrayView bytes) {
    waitUntilWritten();
    if (!writeAll(m_file, bytes))
        fail();
}

void WholeFile::commit() {
    waitUntilWritten();
    // QSaveFile::commit() would not tell that the rest of its buffer does not fit on the disk.
    if (!m_file.flush() || !m_file.commit())
        fail();
}

void WholeFile::waitUntilWritten() {
    if (m_written.valid() && !m_written.get())
        fail();
}

void WholeFile::fail() {
    throw Error(
        Error::PathFileAccess, QString(),
        QStringLiteral("The file '%1' cannot be written: %2").arg(m_path, m_file.errorString()));
}

void Write_Whole_File(const QString& path, QByteArrayView bytes) {
    WholeFile file(path);
    file.write(bytes);
    file.commit();
}
