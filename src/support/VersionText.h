#pragma once

#include <QString>

// "Version 1.2.0", always with its three parts.
QString versionText();

// What --version prints, without a line end behind it; program is the executable's name.
QString versionOutput(const QString& program);
