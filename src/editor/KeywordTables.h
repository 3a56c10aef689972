#pragma once

#include <QString>

#include <array>
#include <vector>

// Indices in the colour table of the editor's documents.
enum class SqlColour { Default = 0, Operator = 1, Blue = 2, Red = 3, Green = 4 };

// search: the word in capitals and one blank; empty in a slot that is free.
// display: the word in capitals, in small letters, with a capital initial, and a free column. Only
// the first takes part in colouring, since matching ignores case.
struct KeywordSlot {
    QString search;
    std::array<QString, 4> display;
};

struct KeywordTable {
    SqlColour colour;
    std::vector<KeywordSlot> words;
};

// In the order in which they are applied: blue, green, red.
const std::array<KeywordTable, 3>& keywordTables();

// The operators in their order; words end with their blank.
const std::array<QString, 7>& operatorTexts();
