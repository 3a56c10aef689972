#include "FileIdentity.h"

#include <QFile>

#ifdef Q_OS_UNIX
#include <sys/stat.h>
#endif

namespace {

struct Identity {
    bool exists = false;
    quint64 device = 0;
    quint64 file = 0;
};

Identity identify(const QString& path) {
#ifdef Q_OS_UNIX
    struct stat status {};
    if (::stat(QFile::encodeName(path).constData(), &status) != 0)
        return {};
    return {true, quint64(status.st_dev), quint64(status.st_ino)};
#else
    return {QFile::exists(path), 0, 0}; // an open file cannot be removed or replaced there
#endif
}

} // namespace

FileIdentity::FileIdentity(QString path)
    : m_path(std::move(path)) {
    const Identity now = identify(m_path);
    m_device = now.device;
    m_file = now.file;
}

bool FileIdentity::stillThere() const {
    const Identity now = identify(m_path);
    return now.exists && now.device == m_device && now.file == m_file;
}
