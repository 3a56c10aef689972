#pragma once

#include <QString>

// Whether files can be made in the folder.
bool isWritableFolder(const QString& folder);
