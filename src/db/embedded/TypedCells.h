#pragma once

#include "Types.h"

#include <sqlite3.h>

class CellStore;

namespace ora {

// Appends a stored value of that type, not null, as a cell; form: what sqlite3_value_type says. A
// value that is not in the stored form of its type is a fault of this program; it is shown as the
// engine has it.
using CellWriter = void (*)(CellStore& rows, sqlite3_value* value, int form, const TypeInfo& type);

CellWriter cellWriter(SqlType type);

} // namespace ora
