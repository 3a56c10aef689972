#pragma once

#include "FunctionCall.h"

#include <string>
#include <string_view>

namespace ora {

// A value as bytes whose memcmp is its order, and that no other value's bytes begin with; so that
// several can be joined. descending turns the order round; nullsFirst is independent of it.
void appendSortKey(std::string& key, sqlite3_value* value, bool descending, bool nullsFirst);

// Less than, equal to or greater than 0 as the server compares two values of one type.
int compareValues(sqlite3_value* a, sqlite3_value* b);

} // namespace ora
