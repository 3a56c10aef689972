#pragma once

#include <string_view>

namespace ora {

// DBMS_XPLAN.DISPLAY as a query: the statement that was explained last, drawn as a table, a line a
// row in PLAN_TABLE_OUTPUT.
extern const std::string_view planDisplayQuery;

} // namespace ora
