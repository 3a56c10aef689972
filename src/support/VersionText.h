#pragma once

#include <QString>

// "Version 1.2.0", always with its three parts.
QString versionText();
