#pragma once

#include <QString>

// The sample database of a small trading company, for a first hour with the program.

inline const QString demoName = QStringLiteral("DEMO");

// Creates the file when it is missing: built beside it and then renamed, so that a crash leaves no
// half database. Throws ProviderError when it cannot be created.
void ensureDemoDatabase(const QString& path);
