#pragma once

#include "ConnectionString.h"
#include "ProviderTable.h"

#include <QString>

// A back-end that the contract tests run against, with what differs in how values are written.
struct Backend {
    const char* name;
    QString connectionString;
    QString columnTypes[5];   // key, decimal with 10 places, text of 40, timestamp, 20 bytes
    QString timestampLiteral; // %1 is "2026-11-21 14:05:09.250"
    QString binaryLiteral;    // %1 is hexadecimal
    QString missing;          // why it cannot be tested here; empty when it can
};

// Those of the test program. Asking for them starts what has to be started.
const std::vector<Backend>& backends();
void stopBackends();

inline const Backend& backendNamed(const QString& name) {
    for (const Backend& backend : backends()) {
        if (name == QLatin1String(backend.name))
            return backend;
    }
    qFatal("unknown back-end");
}

inline std::unique_ptr<Session> openBackend(const Backend& backend) {
    return openSession(parseConnectionString(backend.connectionString), providerTable());
}

// The program's files go there; before anything asks for the program folder.
inline void useProgramFolder(const QString& path) {
    qputenv("QUILLMATE_HOME", path.toUtf8());
}
