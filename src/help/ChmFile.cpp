#include "ChmFile.h"

#include <QFile>
#include <QtEndian>

#include <chm_lib.h>

#include <bit>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 largestFile = 16 << 20; // of one page; what says more is damaged

// Little-endian numbers at fixed places; 0 beyond the end.
quint32 numberAt(QByteArrayView bytes, qsizetype offset) {
    if (offset + qsizetype(sizeof(quint32)) > bytes.size())
        return 0;
    return qFromLittleEndian<quint32>(bytes.data() + offset);
}

// What the file says of itself before the library reads more: the two headers.
bool hasSoundHeaders(const QString& path) {
    constexpr qint64 headersSize = 0x60 + 0x18 + 0x54;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || file.size() < headersSize)
        return false;
    const QByteArray head = file.read(headersSize);
    const quint32 directory = numberAt(head, 0x48); // its place in the file
    if (!head.startsWith("ITSF") || directory > file.size() - 0x54 || !file.seek(directory))
        return false;
    const QByteArray listing = file.read(0x54);
    const quint32 blockSize = numberAt(listing, 0x10);
    return listing.startsWith("ITSP") && blockSize >= 0x200 && blockSize <= 0x10000;
}

QByteArray contentOf(chmFile* file, chmUnitInfo& unit) {
    if (unit.length == 0 || unit.length > quint64(largestFile))
        return {};
    QByteArray content(qsizetype(unit.length), '\0');
    const qint64 size = chm_retrieve_object(
        file, &unit, reinterpret_cast<unsigned char*>(content.data()), 0, qint64(unit.length));
    return size == content.size() ? content : QByteArray();
}

QByteArray contentOf(chmFile* file, const QByteArray& name) {
    // The library copies the name into a place of fixed size.
    chmUnitInfo unit;
    if (name.size() >= CHM_MAX_PATHLEN ||
        chm_resolve_object(file, name.constData(), &unit) != CHM_RESOLVE_SUCCESS)
        return {};
    return contentOf(file, unit);
}

} // namespace

std::unique_ptr<ChmFile> ChmFile::open(const QString& path) {
    if (!hasSoundHeaders(path))
        return nullptr;
    chmFile* file = chm_open(QFile::encodeName(path).constData());
    if (!file)
        return nullptr;
    std::unique_ptr<ChmFile> opened(new ChmFile(file));
    return opened->isSound() ? std::move(opened) : nullptr;
}

ChmFile::~ChmFile() {
    chm_close(m_file);
}

// The library divides by the sizes of the compressed section and unpacks blocks of that size from
// its window without asking whether they fit.
bool ChmFile::isSound() const {
    const QByteArray storage = "::DataSpace/Storage/MSCompressed/"_ba;
    const QByteArray control = contentOf(m_file, storage + "ControlData");
    const QByteArray table = contentOf(
        m_file,
        storage + "Transform/{7FC28940-9D31-11D0-9B27-00A0C91E9C7C}/InstanceData/ResetTable");
    constexpr quint32 blockSize = 0x8000; // the only one that compilers write
    constexpr quint32 largestWindow = 64; // blocks
    const bool countsBlocks = numberAt(control, 8) == 2;
    const quint32 window = countsBlocks ? numberAt(control, 16) : numberAt(control, 16) / blockSize;
    return control.size() >= 24 && control.sliced(4, 4) == "LZXC" && std::has_single_bit(window) &&
           window <= largestWindow && numberAt(table, 0x20) == blockSize &&
           numberAt(table, 0x24) == 0;
}

QByteArray ChmFile::read(const QString& name) const {
    return contentOf(m_file, name.toUtf8());
}
