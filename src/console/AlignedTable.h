#pragma once

class GridData;
class StandardOutput;

// Header, rule and rows of a result grid, without its row numbers, each column padded to its
// longest text. Control characters (line ends, tabs) become blanks, so that a row stays one line.
void writeAlignedTable(const GridData& grid, StandardOutput& output);
