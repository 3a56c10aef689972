#pragma once

#include <QByteArray>
#include <QString>

#include <memory>

struct chmFile;

// A compiled HTML help file, read as a folder of files. The library beneath trusts what the file
// says of itself, so that is checked first; a damaged file is refused or gives empty contents.
class ChmFile {
public:
    // Null when the file is missing, is none or is damaged where it describes itself.
    static std::unique_ptr<ChmFile> open(const QString& path);
    ~ChmFile();
    Q_DISABLE_COPY_MOVE(ChmFile)

    // name: from the root, as "/pages/editor.htm"; case is ignored. Null when there is no such file
    // or it cannot be unpacked.
    QByteArray read(const QString& name) const;

private:
    explicit ChmFile(chmFile* file)
        : m_file(file) {}
    bool isSound() const;

    chmFile* m_file;
};
