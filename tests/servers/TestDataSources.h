#pragma once

#include <QFile>
#include <QTemporaryDir>

// The user's data sources of the ODBC manager, in a file of the test's own.
class TestDataSources {
public:
    TestDataSources() { qputenv("ODBCINI", path(QStringLiteral("odbc.ini")).toUtf8()); }

    QString path(const QString& file) const { return m_folder.filePath(file); }

    // A section of odbc.ini.
    void add(const QString& section) {
        QFile file(path(QStringLiteral("odbc.ini")));
        if (!file.open(QFile::Append) || file.write(section.toUtf8()) < 0)
            qFatal("cannot write the data sources");
    }

private:
    QTemporaryDir m_folder;
};
