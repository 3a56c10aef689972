#pragma once

#include "RtfText.h"

#include <QStringView>

#include <vector>

// Colouring of one line in one pass, with the result that replacing over the whole document
// (SqlDocument.h) has. This is possible because no search text spans a line end, every word ends in
// its blank, and so what happens at a blank depends on the letters before it alone.

// The coloured stretches of a line, as reading the document would give them.
std::vector<ColourRun> colourRuns(QStringView line);

// Stretch of a text that changed; empty when none did.
struct ChangedPart {
    qsizetype begin = 0;
    qsizetype end = 0;
    bool isEmpty() const { return begin == end; }
};

// Colouring puts keywords in capitals: does that to the line at `line` of which these are the runs.
ChangedPart putInCapitals(QChar* line, const std::vector<ColourRun>& runs);
