#pragma once

#include <QByteArrayView>
#include <QString>

// Replaces the file's whole content with the bytes through a temporary file beside it that is
// renamed over it: a crash or a full disk leaves the old bytes or the new ones. A symbolic link is
// followed. Throws Error (PathFileAccess) with the platform's reason; the old file is then intact.
void Write_Whole_File(const QString& path, QByteArrayView bytes);
