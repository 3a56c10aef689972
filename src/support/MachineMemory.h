#pragma once

#include <QtGlobal>

// Bytes of memory that the machine has, used or not; 0 when the system does not tell.
qint64 machineMemory();
