#pragma once

#include "OracleDate.h"

#include <cstdint>
#include <optional>

namespace ora {

// What a text said of a date, part by part.
struct DateParts {
    std::optional<int> year;
    std::optional<int> month;
    std::optional<int> day;
    std::optional<int> dayOfYear;
    std::optional<std::int64_t> julianDay;
    std::optional<int> weekday; // 0 is Sunday
    std::optional<int> secondOfDay;
    int hour = 0;
    bool hourOfMeridian = false;
    bool afternoon = false;
    bool beforeChrist = false;
    int minute = 0;
    int second = 0;
    int nanosecond = 0;

    // The date that they make; what the text left open comes from `now`. Throws 1835, 1839, 1841,
    // 1848.
    OracleDate date(const OracleDate& now) const;
};

} // namespace ora
