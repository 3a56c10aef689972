#pragma once

#include "ProviderTable.h"
#include "SessionText.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

// Runs statements of the server's dialect on an empty database and keeps what came out.
class OracleScript {
public:
    OracleScript() {
        const QString path = m_folder.filePath(QStringLiteral("script.db"));
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly))
            qFatal("no temporary file");
        file.close();
        m_path = path;
        reconnect();
    }

    Session& session() { return *m_session; }
    const QString& path() const { return m_path; }
    void reconnect() {
        m_session.reset();
        m_session = another();
    }
    std::unique_ptr<Session> another() const {
        return openSession({{}, m_path, QStringLiteral("demo"), {}}, providerTable());
    }

    // Rows without the header, "|" between cells; a failure's text; nothing for what has no rows.
    QString run(const QString& sql) { return outcome(*m_session, sql); }

    // Statements end at ";" before a line end; the outcomes of all, one below the other.
    QString runAll(const QString& script) {
        QStringList outcomes;
        for (const QString& statement : script.split(QStringLiteral(";\n"))) {
            if (statement.trimmed().isEmpty())
                continue;
            const QString result = run(statement.trimmed());
            if (!result.isEmpty())
                outcomes << result;
        }
        return outcomes.join(u'\n');
    }

    static QString outcome(Session& session, const QString& sql) {
        try {
            return printed(session, sql).section(u'\n', 1);
        } catch (const ProviderError& error) {
            return error.description();
        }
    }

private:
    // Without a disk behind it where there is such a place: every statement commits.
    static QString folderTemplate() {
        const QString memory = QStringLiteral("/dev/shm");
        return (QFileInfo(memory).isWritable() ? memory : QDir::tempPath()) +
               QStringLiteral("/quillmate-XXXXXX");
    }

    QTemporaryDir m_folder{folderTemplate()};
    QString m_path;
    std::unique_ptr<Session> m_session;
};
