#pragma once

// Lets standard output and standard error reach whoever started the program, where the system gives
// a program with windows none of its own.
void useCallersConsole();
