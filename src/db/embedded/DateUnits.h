#pragma once

#include "OracleDate.h"

#include <string_view>

namespace ora {

// TRUNC(date, unit) and ROUND(date, unit): CC, YYYY, IYYY, Q, MM, WW, IW, W, DDD, DAY, HH, MI and
// their other spellings, in any case. Throws 1821 for an unknown unit, 1898 for a format of several
// elements and 1899 for a unit that dates cannot be cut to (SS). firstWeekday: where a week of DAY
// begins, 0 is Sunday.
OracleDate truncatedTo(const OracleDate& date, std::string_view unit, int firstWeekday = 0);
OracleDate roundedTo(const OracleDate& date, std::string_view unit, int firstWeekday = 0);

} // namespace ora
