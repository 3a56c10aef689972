#pragma once

#include <QString>

// The name of this computer as its system gives it.
QString systemComputerName();
