#include "DateParts.h"

#include "OraError.h"

namespace ora {

namespace {

void setDay(OracleDate& date, const DateParts& parts) {
    if (parts.dayOfYear) {
        constexpr int LongestYear = 366;
        if (*parts.dayOfYear == LongestYear && !isLeapYear(date.year))
            throw OraError(1848, "day of year must be between 1 and 365 (366 for leap year)");
        date.month = 1;
        date.day = 1;
        date = OracleDate::fromDayNumber(date.dayNumber() + *parts.dayOfYear - 1);
        return;
    }
    date.day = parts.day.value_or(1);
    if (date.day > daysInMonth(date.year, date.month))
        throw OraError(1839, "date not valid for month specified");
    // The days that the change of calendars left out count as the first one after it.
    constexpr int FirstGregorianDay = 15;
    if (!isCalendarDay(date.year, date.month, date.day))
        date.day = FirstGregorianDay;
}

void setTime(OracleDate& date, const DateParts& parts) {
    constexpr int Noon = 12;
    date.hour =
        parts.hourOfMeridian ? parts.hour % Noon + (parts.afternoon ? Noon : 0) : parts.hour;
    date.minute = parts.minute;
    date.second = parts.second;
    date.nanosecond = parts.nanosecond;
    if (!parts.secondOfDay)
        return;
    constexpr int Sixty = 60; // seconds of a minute, minutes of an hour
    date.hour = *parts.secondOfDay / (Sixty * Sixty);
    date.minute = *parts.secondOfDay / Sixty % Sixty;
    date.second = *parts.secondOfDay % Sixty;
}

} // namespace

OracleDate DateParts::date(const OracleDate& now) const {
    OracleDate result;
    if (julianDay) {
        result = OracleDate::fromDayNumber(*julianDay);
    } else {
        result.year = year.value_or(now.year);
        if (beforeChrist && result.year > 0)
            result.year = -result.year;
        if (result.year < OracleDate::MinYear || result.year > OracleDate::MaxYear)
            throw OraError(1841, "(full) year must be between -4713 and +9999, and not be 0");
        result.month = month.value_or(now.month);
        setDay(result, *this);
    }
    if (weekday && *weekday != result.dayOfWeek())
        throw OraError(1835, "day of week conflicts with Julian date");
    setTime(result, *this);
    return result;
}

} // namespace ora
