#pragma once

class QueryWindow;
struct RunState;

// Shows the five figures, and the record count in the status bar. Throws Error with
// "..frmQuery.Show_Stats" appended to its source.
void Show_Stats(QueryWindow& window, const RunState& state);
