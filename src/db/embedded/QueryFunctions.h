#pragma once

struct sqlite3;

namespace ora {

// Registers what the emitted SQL calls and no function of the server is:
//   ora_single(x)              aggregate: the value of the only row; ORA-01427
//   rowid_text(i)              a ROWID as text, 18 characters
//   rowid_number(text)         the engine's row number behind it; ORA-01410
//   connect_loop(name, level, parent, child, nocycle)
//                              1 when the child's key is that of the parent or one of its
//                              ancestors; ORA-01436 then unless nocycle. `name` tells hierarchies
//                              apart. Rows must come depth first
//   ora_raise(number, text)    always fails
void registerQueryFunctions(sqlite3* database);

} // namespace ora
