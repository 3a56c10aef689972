#include "DateUnits.h"

#include "AsciiText.h"
#include "DateFormat.h"
#include "NamedRow.h"
#include "OraError.h"

#include <algorithm>
#include <string>

namespace ora {

namespace {

enum class Unit {
    Century,
    Year,
    IsoYear,
    Quarter,
    Month,
    YearWeek,
    IsoWeek,
    MonthWeek,
    Day,
    DayWeek,
    Hour,
    Minute
};

struct UnitName {
    std::string_view name;
    Unit unit;
};

constexpr UnitName unitNames[] = {
    {"CC", Unit::Century},  {"SCC", Unit::Century}, {"SYYYY", Unit::Year},  {"YYYY", Unit::Year},
    {"YEAR", Unit::Year},   {"SYEAR", Unit::Year},  {"YYY", Unit::Year},    {"YY", Unit::Year},
    {"Y", Unit::Year},      {"RRRR", Unit::Year},   {"RR", Unit::Year},     {"IYYY", Unit::IsoYear},
    {"IYY", Unit::IsoYear}, {"IY", Unit::IsoYear},  {"I", Unit::IsoYear},   {"Q", Unit::Quarter},
    {"MONTH", Unit::Month}, {"MON", Unit::Month},   {"MM", Unit::Month},    {"RM", Unit::Month},
    {"WW", Unit::YearWeek}, {"IW", Unit::IsoWeek},  {"W", Unit::MonthWeek}, {"DDD", Unit::Day},
    {"DD", Unit::Day},      {"J", Unit::Day},       {"DAY", Unit::DayWeek}, {"DY", Unit::DayWeek},
    {"D", Unit::DayWeek},   {"HH", Unit::Hour},     {"HH12", Unit::Hour},   {"HH24", Unit::Hour},
    {"MI", Unit::Minute},
};

constexpr int DaysPerWeek = 7;
constexpr int MonthsPerQuarter = 3;
constexpr int YearsPerCentury = 100;

Unit unitOf(std::string_view text) {
    std::string upper = upperAscii(text);
    if (upper.starts_with("FM"))
        upper.erase(0, 2);
    if (const UnitName* const entry = findNamed(unitNames, upper))
        return entry->unit;
    if (upper == "SS" || upper == "SSSSS" || upper.starts_with("FF"))
        throw OraError(1899, "bad precision specifier");
    DateFormat::parse(text); // throws for what is no format at all
    throw OraError(1898, "too many precision specifiers");
}

OracleDate firstOf(int year, int month) {
    OracleDate date;
    date.year = year;
    date.month = month;
    return date;
}

OracleDate isoYearStart(int year) {
    OracleDate fourth = firstOf(year, 1);
    fourth.day = 4; // always in week 1
    const std::int64_t number = fourth.dayNumber();
    return OracleDate::fromDayNumber(number - number % DaysPerWeek);
}

// The last day on or before `date` that is a whole number of weeks after `anchor`.
OracleDate weekFrom(const OracleDate& date, std::int64_t anchor) {
    const std::int64_t number = date.dayNumber();
    return OracleDate::fromDayNumber(number - (number - anchor) % DaysPerWeek);
}

int centuryStart(int year) {
    if (year > 0)
        return (year - 1) / YearsPerCentury * YearsPerCentury + 1;
    return -((-year - 1) / YearsPerCentury * YearsPerCentury + YearsPerCentury);
}

OracleDate truncatedTo(const OracleDate& date, Unit unit, int firstWeekday) {
    OracleDate result = date.midnight();
    switch (unit) {
    case Unit::Century: return firstOf(std::max(centuryStart(date.year), OracleDate::MinYear), 1);
    case Unit::Year: return firstOf(date.year, 1);
    case Unit::IsoYear: return isoYearStart(date.isoYear());
    case Unit::Quarter:
        return firstOf(date.year, (date.month - 1) / MonthsPerQuarter * MonthsPerQuarter + 1);
    case Unit::Month: return firstOf(date.year, date.month);
    case Unit::YearWeek: return weekFrom(date, firstOf(date.year, 1).dayNumber());
    case Unit::IsoWeek: return weekFrom(date, 0);
    case Unit::MonthWeek: return weekFrom(date, firstOf(date.year, date.month).dayNumber());
    case Unit::Day: return result;
    case Unit::DayWeek: return weekFrom(date, firstWeekday - 1); // day number 0 is a Monday
    case Unit::Hour: result.hour = date.hour; return result;
    case Unit::Minute:
        result.hour = date.hour;
        result.minute = date.minute;
        return result;
    }
    return result;
}

// Half a period and more rounds up, measured in seconds.
OracleDate roundedUp(const OracleDate& date, const OracleDate& start, std::int64_t period) {
    const std::int64_t passed = (date.dayNumber() - start.dayNumber()) * OracleDate::SecondsPerDay +
                                date.secondOfDay() - start.secondOfDay();
    if (2 * passed < period)
        return start;
    return OracleDate::fromDayAndSeconds(start.dayNumber(), start.secondOfDay() + period);
}

OracleDate roundedTo(const OracleDate& date, Unit unit, int firstWeekday) {
    constexpr int MonthMiddle = 16; // the 16th rounds up
    constexpr int YearMiddle = 7;   // July does
    constexpr int CenturyMiddle = 50;
    constexpr std::int64_t Hour = 3600;
    constexpr std::int64_t Minute = 60;
    const OracleDate start = truncatedTo(date, unit, firstWeekday);
    switch (unit) {
    case Unit::Century:
        return date.year - start.year >= CenturyMiddle ? firstOf(start.year + YearsPerCentury, 1)
                                                       : start;
    case Unit::Year: return date.month >= YearMiddle ? start.plusMonths(12) : start;
    case Unit::IsoYear: return date.month >= YearMiddle ? isoYearStart(date.isoYear() + 1) : start;
    case Unit::Quarter: {
        const int second = start.month + 1; // month of the quarter
        const bool up = date.month > second || (date.month == second && date.day >= MonthMiddle);
        return up ? start.plusMonths(MonthsPerQuarter) : start;
    }
    case Unit::Month: return date.day >= MonthMiddle ? start.plusMonths(1) : start;
    case Unit::Day: return roundedUp(date, start, OracleDate::SecondsPerDay);
    case Unit::Hour: return roundedUp(date, start, Hour);
    case Unit::Minute: return roundedUp(date, start, Minute);
    default: return roundedUp(date, start, DaysPerWeek * OracleDate::SecondsPerDay);
    }
}

} // namespace

OracleDate truncatedTo(const OracleDate& date, std::string_view unit, int firstWeekday) {
    return truncatedTo(date, unitOf(unit), firstWeekday);
}

OracleDate roundedTo(const OracleDate& date, std::string_view unit, int firstWeekday) {
    return roundedTo(date, unitOf(unit), firstWeekday);
}

} // namespace ora
