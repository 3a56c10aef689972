#pragma once

#include "CommandLine.h"
#include "Options.h"

#include <QString>

// What the program was asked to do.
struct ConsoleArguments {
    enum class Action { Run, Help, Version };

    Action action = Action::Run;
    Logon logon;
    QString script; // a path, or "-" for standard input
    QString outputMode = OutputMode::Text;
    QString outputPath; // for OutputMode::File
    qint32 limit = 0;   // rows of a statement; 0: all
    bool quiet = false;
    QString problem; // what is wrong with the command line; empty when nothing is
};

// Reads main's arguments and overwrites the password among them.
ConsoleArguments parseArguments(int argc, char** argv);

QString usageText();
