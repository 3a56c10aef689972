#include "FunctionCall.h"

namespace ora {

namespace {

DaySecondInterval negated(const DaySecondInterval& interval) {
    return {-interval.seconds, -interval.nanoseconds};
}

DaySecondInterval sum(const DaySecondInterval& a, const DaySecondInterval& b) {
    return {a.seconds + b.seconds, a.nanoseconds + b.nanoseconds};
}

YearMonthInterval wholeMonths(const OracleNumber& months) {
    return {months.truncated(0).toInteger()};
}

void addYearMonth(Call& call, int sign) {
    call.result(call.date(0).plusIntervalMonths(sign * call.yearMonth(1).months));
}

// A DATE stays without a fraction whatever the interval has.
void addToDate(Call& call, const DaySecondInterval& interval) {
    call.result((call.date(0) + interval).withoutFraction());
}

constexpr int LeadingDigits = 9; // as the server shows computed intervals
constexpr int FractionDigits = 9;

int digitsAt(Call& call, std::size_t index, int otherwise) {
    return index < call.count() ? static_cast<int>(sqlite3_value_int64(call.value(index)))
                                : otherwise;
}

void yearMonthText(Call& call) {
    call.resultText(call.yearMonth(0).text(digitsAt(call, 1, LeadingDigits)));
}

void daySecondText(Call& call) {
    call.resultText(call.daySecond(0).text(digitsAt(call, 1, LeadingDigits),
                                           digitsAt(call, 2, FractionDigits)));
}

// A date's place on a line where a month has one length: so many months back are so many back.
void dateMonths(Call& call) {
    constexpr double DaysOfAnyMonth = 32;
    const OracleDate date = call.date(0);
    const double days =
        date.day - 1 + static_cast<double>(date.secondOfDay()) / OracleDate::SecondsPerDay;
    call.result(date.year * 12 + date.month - 1 + days / DaysOfAnyMonth);
}

constexpr ScalarRow rows[] = {
    {"date_add_ym", 2, [](Call& c) { addYearMonth(c, 1); }},
    {"date_less_ym", 2, [](Call& c) { addYearMonth(c, -1); }},
    {"date_add_ds", 2, [](Call& c) { addToDate(c, c.daySecond(1)); }},
    {"date_less_ds", 2, [](Call& c) { addToDate(c, negated(c.daySecond(1))); }},
    {"ts_add_ds", 2, [](Call& c) { c.result(c.date(0) + c.daySecond(1)); }},
    {"ts_less_ds", 2, [](Call& c) { c.result(c.date(0) + negated(c.daySecond(1))); }},
    {"ts_sub", 2, [](Call& c) { c.result(DaySecondInterval::between(c.date(0), c.date(1))); }},
    {"ym_add", 2,
     [](Call& c) { c.result(YearMonthInterval{c.yearMonth(0).months + c.yearMonth(1).months}); }},
    {"ym_sub", 2,
     [](Call& c) { c.result(YearMonthInterval{c.yearMonth(0).months - c.yearMonth(1).months}); }},
    {"ym_neg", 1, [](Call& c) { c.result(YearMonthInterval{-c.yearMonth(0).months}); }},
    {"ym_mul", 2,
     [](Call& c) { c.result(wholeMonths(OracleNumber(c.yearMonth(0).months) * c.number(1))); }},
    {"ym_div", 2,
     [](Call& c) { c.result(wholeMonths(OracleNumber(c.yearMonth(0).months) / c.number(1))); }},
    {"ds_add", 2, [](Call& c) { c.result(sum(c.daySecond(0), c.daySecond(1))); }},
    {"ds_sub", 2, [](Call& c) { c.result(sum(c.daySecond(0), negated(c.daySecond(1)))); }},
    {"ds_neg", 1, [](Call& c) { c.result(negated(c.daySecond(0))); }},
    {"ds_mul", 2,
     [](Call& c) {
         c.result(DaySecondInterval::fromSeconds(c.daySecond(0).toSeconds() * c.number(1)));
     }},
    {"ds_div", 2,
     [](Call& c) {
         c.result(DaySecondInterval::fromSeconds(c.daySecond(0).toSeconds() / c.number(1)));
     }},
    {"date_months", 1, dateMonths},
    {"ym_text", -1, yearMonthText},
    {"ds_text", -1, daySecondText},
    {"ora_to_yminterval", 1, [](Call& c) { c.result(YearMonthInterval::parse(c.text(0))); }},
    {"ora_to_dsinterval", 1, [](Call& c) { c.result(DaySecondInterval::parse(c.text(0))); }},
    {"ora_numtoyminterval", 2,
     [](Call& c) { c.result(YearMonthInterval::fromNumber(c.number(0), c.text(1))); }},
    {"ora_numtodsinterval", 2,
     [](Call& c) { c.result(DaySecondInterval::fromNumber(c.number(0), c.text(1))); }},
};

} // namespace

std::span<const ScalarRow> intervalRows() {
    return rows;
}

void registerIntervalFunctions(sqlite3* database, FunctionContext& context) {
    registerScalars(database, rows, context);
}

} // namespace ora
