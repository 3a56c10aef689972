#pragma once

#include "SqliteDatabase.h"

namespace ora {

// The tables of a database file that hold the catalog. Objects of the user are stored under names
// that start with one letter and a number, so that they never meet these.

// True for a file whose catalog this program can read. Throws SqliteFailure.
bool hasCatalog(const SqliteDatabase& db);

// True for a file without any table, which a catalog may be put into.
bool isEmptyFile(const SqliteDatabase& db);

// Throws SqliteFailure.
void createCatalogTables(const SqliteDatabase& db);

// Gives a catalog that an earlier version of the program made what it lacks. Throws SqliteFailure.
void upgradeCatalogTables(const SqliteDatabase& db);

} // namespace ora
