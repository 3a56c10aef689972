#pragma once

#include "SqliteDatabase.h"

#include <QString>

// DUAL and the data dictionary as views of this connection alone; nothing of them is in the file.
// user: who logged on, the owner of everything.
void createDictionaryViews(const SqliteDatabase& db, const QString& user);
