#pragma once

#include <QString>

// Tells whether a path still names the file that was opened: the engine goes on with a file that
// was removed or replaced, and what it writes there is lost.
class FileIdentity {
public:
    explicit FileIdentity(QString path);

    const QString& path() const { return m_path; }
    bool stillThere() const;

private:
    QString m_path;
    quint64 m_device = 0;
    quint64 m_file = 0;
};
