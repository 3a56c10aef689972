#pragma once

#include <cstddef>

struct sqlite3;

namespace ora {

// The engine's table function that gives a query's rows: lateral_rows('SELECT …', v1, v2 …), whose
// columns are c1, c2 … and whose values are the query's ?1, ?2 …
struct LateralTable {
    static constexpr const char* Name = "lateral_rows";
    static constexpr std::size_t MostColumns = 250;
    static constexpr std::size_t MostParameters = 60;

    static void registerAt(sqlite3* database);
};

} // namespace ora
