#pragma once

#include "ColQueryFiles.h"

// The favourites' file: a line "QueryName|FileName" for each, ended by CR LF, in UTF-8; a line that
// is not is read as Windows-1252, as older programs wrote it. A name that holds "|" is read back
// cut short, which is accepted.

struct FavouritesRead {
    ColQueryFiles favourites; // none after a problem
    QString problem;          // the file cannot be read or a line has no "|"; no file is none
};

FavouritesRead readFavourites(const QString& path);

// Adds a line at the end and leaves the others byte for byte. A line end in the name becomes a
// blank, since it would end the favourite. Throws Error when the file or its folder cannot be
// written or FileName holds a line end; the old file is then as it was.
void appendFavourite(const QString& path, const QString& QueryName, const QString& FileName);
