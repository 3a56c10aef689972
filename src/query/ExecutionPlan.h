#pragma once

#include <QString>

class Host;
class QueryWindow;
class modDatabase;
struct RunState;

// The statement that creates the user's own PLAN_TABLE.
QString planTableStatement();

// The query that reads the explained plan as indented lines, one column named PLAN.
QString planQuery();

// Creates the table after a connect. A rejected statement (the table is there already) is silent;
// any other Error is thrown with "..MDIMain.Create_Plan_Table" appended to its source.
void Create_Plan_Table(modDatabase& database, Host& host);

// Explains the statement into the plan grid and keeps its total cost and cardinality. A server that
// cannot explain it leaves "Not available." in the grid; any other Error is thrown with "..GetPlan"
// appended to its source.
void GetPlan(const QString& SQL, QueryWindow& window, modDatabase& database, RunState& state);
