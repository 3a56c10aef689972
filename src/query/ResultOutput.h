#pragma once

#include <QString>

class GridData;
class Host;
class QueryWindow;
class Recordset;
class RecordsetText;
struct RunState;

// The three outputs of a recordset. A null recordset does nothing. All throw Error, with their name
// appended to its source, and leave the recordset at its end.

// Moves the rows into the grid, which has a header row and a column of row numbers. results: the
// rows are a statement's result (not its plan), so their number goes to the statistics.
void Load_Recordset_Into_Grid(Recordset* recordset, GridData& grid, bool results,
                              QueryWindow& window, RunState& state);

// Each column as wide as its longest text and a margin.
void Size_Grid_Columns(GridData& grid, const QueryWindow& window);

// A header line and a line a row, each ending in CR LF, into the window's result text. Values are
// not quoted. Throws Error::InvalidUseOfNull for a null in the first column.
void Load_Recordset_Into_Text(Recordset* recordset, QStringView separator, QueryWindow& window);

// The same text into a file that the person chooses.
void Load_RecordSet_Into_File(Recordset* recordset, QStringView separator, QueryWindow& window,
                              Host& host, RunState& state);

// Asks for a file and replaces it with the text. Never throws and shows nothing; returns why the
// text was not saved, empty when it was or when the person cancelled.
QString Save_Results_File(RecordsetText& text, Host& host) noexcept;
