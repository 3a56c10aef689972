#include "FunctionCall.h"

#include "AsciiText.h"
#include "DateFormat.h"
#include "DateUnits.h"
#include "NamedRow.h"
#include "OraError.h"

#include <optional>

namespace ora {

namespace {

void addMonths(Call& call) {
    call.result(call.date(0).withoutFraction().plusMonths(call.integer(1)));
}

// Its number from 1, or a name that begins with the day's short one.
std::optional<int> weekdayOf(std::string_view text, const DateLocale& locale) {
    constexpr int DaysPerWeek = 7;
    text = trimmedAscii(text);
    if (text.size() == 1 && text[0] >= '1' && text[0] <= '7')
        return (text[0] - '1' + locale.firstWeekday) % DaysPerWeek;
    const auto& names = locale.language->shortDays;
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (matchedName(text, names[i]) > 0 || matchedName(text, locale.language->days[i]) > 0)
            return static_cast<int>(i);
    }
    return std::nullopt;
}

void nextDay(Call& call) {
    const auto weekday = weekdayOf(call.text(1), call.session().dates);
    if (!weekday)
        throw OraError(1846, "not a valid day of the week");
    call.result(call.date(0).withoutFraction().nextDay(*weekday));
}

int firstWeekday(Call& call) {
    return call.session().dates.firstWeekday;
}

void truncDate(Call& call) {
    call.result(call.count() > 1 ? truncatedTo(call.date(0), call.text(1), firstWeekday(call))
                                 : call.date(0).midnight());
}

void roundDate(Call& call) {
    call.result(
        roundedTo(call.date(0), call.count() > 1 ? call.text(1) : "DD", firstWeekday(call)));
}

[[noreturn]] void throwField() {
    throw OraError(30076, "invalid extract field for extract source");
}

OracleNumber secondsOf(int second, std::int64_t nanoseconds) {
    return OracleNumber(second) +
           OracleNumber(nanoseconds) / OracleNumber(OracleDate::NanosPerSecond);
}

void extract(Call& call) {
    const OracleDate date = call.date(0);
    const std::string field = upperAscii(call.text(1));
    if (field == "YEAR")
        call.result(OracleNumber(date.year));
    else if (field == "MONTH")
        call.result(OracleNumber(date.month));
    else if (field == "DAY")
        call.result(OracleNumber(date.day));
    else if (field == "HOUR")
        call.result(OracleNumber(date.hour));
    else if (field == "MINUTE")
        call.result(OracleNumber(date.minute));
    else if (field == "SECOND")
        call.result(secondsOf(date.second, date.nanosecond));
    else
        throwField();
}

void extractYearMonth(Call& call) {
    constexpr std::int64_t MonthsPerYear = 12;
    const std::int64_t months = call.yearMonth(0).months;
    const std::string field = upperAscii(call.text(1));
    if (field == "YEAR")
        call.result(OracleNumber(months / MonthsPerYear));
    else if (field == "MONTH")
        call.result(OracleNumber(months % MonthsPerYear));
    else
        throwField();
}

void extractDaySecond(Call& call) {
    const DaySecondInterval interval = call.daySecond(0);
    const std::string field = upperAscii(call.text(1));
    if (field == "DAY")
        call.result(OracleNumber(interval.seconds / OracleDate::SecondsPerDay));
    else if (field == "HOUR")
        call.result(OracleNumber(interval.seconds / 3600 % 24));
    else if (field == "MINUTE")
        call.result(OracleNumber(interval.seconds / 60 % 60));
    else if (field == "SECOND")
        call.result(secondsOf(static_cast<int>(interval.seconds % 60), interval.nanoseconds));
    else
        throwField();
}

struct Zone {
    std::string_view name;
    int minutes; // from Greenwich
};

constexpr Zone zones[] = {{"AST", -240}, {"ADT", -180}, {"BST", -660}, {"BDT", -600}, {"CST", -360},
                          {"CDT", -300}, {"EST", -300}, {"EDT", -240}, {"GMT", 0},    {"HST", -600},
                          {"HDT", -540}, {"MST", -420}, {"MDT", -360}, {"NST", -210}, {"PST", -480},
                          {"PDT", -420}, {"YST", -540}, {"YDT", -480}};

int zoneMinutes(std::string_view name) {
    const Zone* const zone = findNamed(zones, upperAscii(name));
    if (!zone)
        throw OraError(1857, "not a valid time zone");
    return zone->minutes;
}

void newTime(Call& call) {
    const OracleDate date = call.date(0);
    const int shift = zoneMinutes(call.text(2)) - zoneMinutes(call.text(1));
    call.result(OracleDate::fromDayAndSeconds(date.dayNumber(), date.secondOfDay() + shift * 60));
}

void sysdate(Call& call) {
    call.result(call.session().statementTime.withoutFraction());
}

constexpr ScalarRow rows[] = {
    {"date_add", 2, [](Call& c) { c.result(c.date(0).plusDays(c.number(1))); }},
    {"date_less", 2, [](Call& c) { c.result(c.date(0).plusDays(c.number(1).negated())); }},
    {"date_sub", 2, [](Call& c) { c.result(c.date(0) - c.date(1)); }},
    {"date_cast", 1, [](Call& c) { c.result(c.date(0).withoutFraction()); }},
    {"ts_cast", 2,
     [](Call& c) {
         c.result(c.date(0).withFraction(static_cast<int>(sqlite3_value_int64(c.value(1)))));
     }},
    {"ora_add_months", 2, addMonths},
    {"ora_last_day", 1, [](Call& c) { c.result(c.date(0).withoutFraction().lastDay()); }},
    {"ora_months_between", 2, [](Call& c) { c.result(monthsBetween(c.date(0), c.date(1))); }},
    {"ora_next_day", 2, nextDay},
    {"ora_trunc_date", -1, truncDate},
    {"ora_round_date", -1, roundDate},
    {"ora_extract", 2, extract},
    {"ora_extract_ym", 2, extractYearMonth},
    {"ora_extract_ds", 2, extractDaySecond},
    {"ora_new_time", 3, newTime},
    {"ora_sysdate", 0, sysdate, Nulls::Propagate, Stability::Refused},
};

} // namespace

void registerDateFunctions(sqlite3* database, FunctionContext& context) {
    registerScalars(database, rows, context);
}

} // namespace ora
