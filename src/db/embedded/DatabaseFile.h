#pragma once

#include "FileIdentity.h"
#include "Provider.h"
#include "SqliteDatabase.h"

// From an open file to a session.

// The session for what the file holds: the server's dialect over a database of this program or an
// empty file, the engine's own SQL over a file of another program. Throws ProviderError, also for
// a wrong login.
std::unique_ptr<Session> openDatabaseFile(const QString& path, const DataSource& source);

// The session over a file with a catalog; the login has been checked. Throws SqliteFailure.
std::unique_ptr<Session> openCatalogFile(SqliteDatabase db, FileIdentity file,
                                         const DataSource& source);
