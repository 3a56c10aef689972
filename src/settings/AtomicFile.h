#pragma once

#include <QByteArrayView>
#include <QSaveFile>
#include <QString>

#include <future>

// A file's whole new content, through a temporary file beside it that is renamed over it: a crash
// or a full disk leaves the old bytes or the new ones. A symbolic link is followed. Each failure
// throws Error (PathFileAccess) with the platform's reason; the old file is then intact.
class WholeFile {
public:
    explicit WholeFile(const QString& path);
    ~WholeFile(); // without commit() nothing has happened

    void write(QByteArrayView bytes);
    // The same while the caller makes the next bytes. The array is handed back empty, with the room
    // of an earlier one.
    void put(QByteArray& bytes);
    void commit();

private:
    void waitUntilWritten();
    [[noreturn]] void fail();

    QString m_path;
    QSaveFile m_file;
    QByteArray m_onItsWay;
    std::future<bool> m_written;
};

// The same for bytes that are all there.
void Write_Whole_File(const QString& path, QByteArrayView bytes);
