#include "ComputerName.h"

#include <iterator>

#include <qt_windows.h>

// The name in the system's own network, which can differ from the host name.
QString systemComputerName() {
    wchar_t name[MAX_COMPUTERNAME_LENGTH + 1];
    DWORD length = std::size(name);
    return GetComputerNameW(name, &length) ? QString::fromWCharArray(name, int(length)) : QString();
}
