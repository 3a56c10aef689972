#pragma once

#include "SqliteDatabase.h"

#include <QString>

// Who may open a database file. Kept in the file itself, as a salted hash.

// The table that holds it; no dictionary view shows it.
inline constexpr const char* loginTable = "quillmate$login";

// Names ignore case. Replaces the user's former password.
void createLogin(const SqliteDatabase& db, const QString& user, const QString& password);

// True for the right password, and for every name when the file was made by another program and
// knows no logins. Throws SqliteFailure when the file cannot be read.
bool mayLogIn(const SqliteDatabase& db, const QString& user, const QString& password);
