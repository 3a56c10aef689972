#include "ProgramArguments.h"

ProgramArguments::ProgramArguments(int&, char**&) {}

QString argumentText(const char* word) {
    return QString::fromLocal8Bit(word);
}

// Lists of processes show main's own words.
void hidePasswordFromSystem() {}
