#pragma once

#include <QString>

// The help file: in the program folder's Help, else where it was installed beside the executable.
// Where it should be when it is nowhere.
QString helpFile();
