#pragma once

#include <sqlite3.h>

#include <limits>

namespace ora {

// The engine has no NaN. It is stored as this text, which the engine sorts behind all numbers and
// finds equal to itself, as the server does.
constexpr const char* NotANumber = "Nan";

inline double realOf(sqlite3_value* value) {
    return sqlite3_value_type(value) == SQLITE_TEXT ? std::numeric_limits<double>::quiet_NaN()
                                                    : sqlite3_value_double(value);
}

} // namespace ora
