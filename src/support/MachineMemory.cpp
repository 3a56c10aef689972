#include "MachineMemory.h"

#ifdef Q_OS_WIN
#include <qt_windows.h>
#else
#include <unistd.h>
#endif

qint64 machineMemory() {
#ifdef Q_OS_WIN
    MEMORYSTATUSEX status;
    status.dwLength = sizeof status;
    return GlobalMemoryStatusEx(&status) ? qint64(status.ullTotalPhys) : 0;
#else
    const auto pages = qint64(sysconf(_SC_PHYS_PAGES));
    const auto pageBytes = qint64(sysconf(_SC_PAGESIZE));
    return pages > 0 && pageBytes > 0 ? pages * pageBytes : 0;
#endif
}
