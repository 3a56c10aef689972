#include "CallersConsole.h"

#include <cstdio>

#include <qt_windows.h>

void useCallersConsole() {
    const bool isRedirected = GetStdHandle(STD_OUTPUT_HANDLE) != nullptr;
    if (isRedirected || !AttachConsole(ATTACH_PARENT_PROCESS))
        return;
    std::freopen("CONOUT$", "w", stdout);
    std::freopen("CONOUT$", "w", stderr);
}
