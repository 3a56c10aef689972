#pragma once

#include "ConnectionString.h"
#include "ProviderTable.h"

#include <QDir>
#include <QString>

// The back-ends that the contract tests run against, with what differs in how values are written.
struct Backend {
    const char* name;
    QString connectionString;
    QString timestampLiteral; // %1 is "2026-11-21 14:05:09.250"
    QString binaryLiteral;    // %1 is hexadecimal
};

inline const std::vector<Backend>& backends() {
    static const std::vector<Backend> list{
        {"embedded", QStringLiteral("Data Source=DEMO;User ID=demo;Password=demo"),
         QStringLiteral("TIMESTAMP '%1'"), QStringLiteral("HEXTORAW('%1')")},
    };
    return list;
}

inline const Backend& backendNamed(const QString& name) {
    for (const Backend& backend : backends()) {
        if (name == QLatin1String(backend.name))
            return backend;
    }
    qFatal("unknown back-end");
}

inline std::unique_ptr<Session> openBackend(const QString& name) {
    return openSession(parseConnectionString(backendNamed(name).connectionString), providerTable());
}

// The program's files go there; before anything asks for the program folder.
inline void useProgramFolder(const QString& path) {
    qputenv("QUILLMATE_HOME", path.toUtf8());
}
