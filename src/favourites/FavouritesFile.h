#pragma once

#include "ColQueryFiles.h"

// The favourites' file: a line "QueryName|FileName" for each, ended by CR LF, in UTF-8; a line that
// is not is read as Latin-1, as older programs wrote it. A name that holds "|" is read back cut
// short, which is accepted.

// Empty when the file cannot be read or any of its lines has no "|".
ColQueryFiles readFavourites(const QString& path);

// Adds a line at the end and leaves the others byte for byte. Throws Error when the file or its
// folder cannot be written; the old file is then as it was.
void appendFavourite(const QString& path, const QString& QueryName, const QString& FileName);
