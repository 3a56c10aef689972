#pragma once

#include "Types.h"

#include <sqlite3.h>

class CellStore;

namespace ora {

// Appends a stored value of that type as a cell. A value that is not in the stored form of its type
// is a fault of this program: an assertion where there are assertions; else it is shown as the
// engine has it.
using CellWriter = void (*)(CellStore& rows, sqlite3_value* value, const TypeInfo& type);

CellWriter cellWriter(SqlType type);

} // namespace ora
