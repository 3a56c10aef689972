#pragma once

#include <QString>

// A favourite: a name for a query file.
class CQueryFile {
public:
    const QString& FileName() const { return m_fileName; }
    void setFileName(const QString& path) { m_fileName = path; }
    const QString& QueryName() const { return m_queryName; }
    void setQueryName(const QString& name) { m_queryName = name; }

private:
    QString m_fileName; // full path; empty for a query that was never saved
    QString m_queryName;
};
