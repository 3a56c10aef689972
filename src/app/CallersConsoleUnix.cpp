#include "CallersConsole.h"

void useCallersConsole() {}
