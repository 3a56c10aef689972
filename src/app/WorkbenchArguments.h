#pragma once

#include <QString>

// What the options among main's arguments ask to be told (--help, --version); empty when they ask
// for nothing, so that the workbench is to start.
QString answerToOptions(int argc, char** argv);

// Prints a text for whoever started the program, on a console that it need not own. False when it
// could not be written.
bool printAnswer(const QString& text);
void printProblem(const QString& problem);
