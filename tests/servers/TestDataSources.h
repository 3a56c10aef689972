#pragma once

#include <QFile>
#include <QTemporaryDir>

// The ODBC manager's data sources and drivers, in files of the test's own.
class TestDataSources {
public:
    TestDataSources() { qputenv("ODBCINI", path(QStringLiteral("odbc.ini")).toUtf8()); }

    QString path(const QString& file) const { return m_folder.filePath(file); }

    // A section of odbc.ini.
    void add(const QString& section) { append(QStringLiteral("odbc.ini"), section); }

    // Sections of odbcinst.ini, in the place of the system's. Before the manager is first asked.
    void addDrivers(const QString& sections) {
        qputenv("ODBCSYSINI", m_folder.path().toUtf8());
        append(QStringLiteral("odbcinst.ini"), sections);
    }

private:
    void append(const QString& name, const QString& sections) {
        QFile file(path(name));
        if (!file.open(QFile::Append) || file.write(sections.toUtf8()) < 0)
            qFatal("cannot write the manager's files");
    }

    QTemporaryDir m_folder;
};
