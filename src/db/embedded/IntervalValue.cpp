#include "IntervalValue.h"

#include "AsciiText.h"
#include "NamedRow.h"
#include "OraError.h"

#include <cstdlib>
#include <span>

namespace ora {

namespace {

constexpr std::int64_t MonthsPerYear = 12;
constexpr std::int64_t SecondsPerMinute = 60;
constexpr std::int64_t SecondsPerHour = 3600;
constexpr std::int64_t SecondsPerDay = OracleDate::SecondsPerDay;
constexpr std::int64_t NanosPerSecond = OracleDate::NanosPerSecond;
constexpr std::int64_t MostLeading = 999999999;
constexpr std::int64_t FieldBias = 60;
constexpr int ComputedDigits = 9;
constexpr int FieldDigits = 2;
constexpr std::int64_t LongBias = std::int64_t{1} << 31;

[[noreturn]] void throwLeadingPrecision() {
    throw OraError(1873, "the leading precision of the interval is too small");
}

std::string zeroPadded(std::int64_t value, int digits) {
    std::string text = std::to_string(value);
    const auto width = static_cast<std::size_t>(digits);
    if (text.size() < width)
        text.insert(0, width - text.size(), '0');
    return text;
}

void putLong(std::string& out, std::int64_t value) {
    const auto biased = static_cast<std::uint32_t>(value + LongBias);
    for (int shift = 24; shift >= 0; shift -= 8)
        out += static_cast<char>(biased >> shift & 0xFF);
}

std::int64_t getLong(const std::uint8_t* in) {
    const std::uint32_t biased =
        std::uint32_t{in[0]} << 24 | std::uint32_t{in[1]} << 16 | std::uint32_t{in[2]} << 8 | in[3];
    return static_cast<std::int64_t>(biased) - LongBias;
}

void putField(std::string& out, std::int64_t value) {
    out += static_cast<char>(value + FieldBias);
}

// Leading and following fields must have one sign: a stray nanosecond of the other sign borrows.
DaySecondInterval normalized(std::int64_t seconds, std::int64_t nanoseconds) {
    seconds += nanoseconds / NanosPerSecond;
    nanoseconds %= NanosPerSecond;
    if (seconds > 0 && nanoseconds < 0) {
        --seconds;
        nanoseconds += NanosPerSecond;
    } else if (seconds < 0 && nanoseconds > 0) {
        ++seconds;
        nanoseconds -= NanosPerSecond;
    }
    if (std::abs(seconds / SecondsPerDay) > MostLeading)
        throwLeadingPrecision();
    return {seconds, nanoseconds};
}

} // namespace

YearMonthInterval YearMonthInterval::fromBytes(const void* bytes, std::size_t size) {
    const auto* in = static_cast<const std::uint8_t*>(bytes);
    if (size < Bytes)
        return {};
    return {getLong(in) * MonthsPerYear + in[4] - FieldBias};
}

std::string YearMonthInterval::encoded() const {
    if (std::abs(months / MonthsPerYear) > MostLeading)
        throwLeadingPrecision();
    std::string out;
    putLong(out, months / MonthsPerYear);
    putField(out, months % MonthsPerYear);
    return out;
}

std::string YearMonthInterval::text(int leadingDigits) const {
    const std::int64_t value = std::abs(months);
    return (months < 0 ? "-" : "+") +
           zeroPadded(value / MonthsPerYear, leadingDigits > 0 ? leadingDigits : ComputedDigits) +
           "-" + zeroPadded(value % MonthsPerYear, FieldDigits);
}

namespace {

struct UnitFactor {
    std::string_view name;
    std::int64_t factor;
};

constexpr UnitFactor yearMonthUnits[] = {{"YEAR", MonthsPerYear}, {"MONTH", 1}};
constexpr UnitFactor daySecondUnits[] = {
    {"DAY", SecondsPerDay}, {"HOUR", SecondsPerHour}, {"MINUTE", SecondsPerMinute}, {"SECOND", 1}};

OracleNumber factorOf(std::string_view unit, std::span<const UnitFactor> units) {
    const UnitFactor* const entry = findNamed(units, upperAscii(unit));
    if (!entry)
        throw OraError(1760, "illegal argument for function");
    return OracleNumber(entry->factor);
}

} // namespace

YearMonthInterval YearMonthInterval::fromNumber(const OracleNumber& n, std::string_view unit) {
    return {(n * factorOf(unit, yearMonthUnits)).rounded(0).toInteger()};
}

DaySecondInterval DaySecondInterval::fromBytes(const void* bytes, std::size_t size) {
    const auto* in = static_cast<const std::uint8_t*>(bytes);
    if (size < Bytes)
        return {};
    const std::int64_t seconds = getLong(in) * SecondsPerDay +
                                 (in[4] - FieldBias) * SecondsPerHour +
                                 (in[5] - FieldBias) * SecondsPerMinute + in[6] - FieldBias;
    return normalized(seconds, getLong(in + 7));
}

std::string DaySecondInterval::encoded() const {
    const DaySecondInterval value = normalized(seconds, nanoseconds);
    std::string out;
    putLong(out, value.seconds / SecondsPerDay);
    putField(out, value.seconds / SecondsPerHour % 24);
    putField(out, value.seconds / SecondsPerMinute % 60);
    putField(out, value.seconds % 60);
    putLong(out, value.nanoseconds);
    return out;
}

std::string DaySecondInterval::text(int leadingDigits, int fractionDigits) const {
    constexpr int MostDecimals = 9;
    if (leadingDigits <= 0)
        leadingDigits = fractionDigits = ComputedDigits;
    const std::int64_t value = std::abs(seconds);
    std::string text = seconds < 0 || nanoseconds < 0 ? "-" : "+";
    text += zeroPadded(value / SecondsPerDay, leadingDigits);
    text += " " + zeroPadded(value / SecondsPerHour % 24, FieldDigits);
    text += ":" + zeroPadded(value / SecondsPerMinute % 60, FieldDigits);
    text += ":" + zeroPadded(value % 60, FieldDigits);
    if (fractionDigits <= 0)
        return text;
    const std::string decimals = zeroPadded(std::abs(nanoseconds), MostDecimals);
    return text + "." + decimals.substr(0, static_cast<std::size_t>(fractionDigits));
}

OracleNumber DaySecondInterval::toSeconds() const {
    return OracleNumber(seconds) + OracleNumber(nanoseconds) / OracleNumber(NanosPerSecond);
}

DaySecondInterval DaySecondInterval::fromSeconds(const OracleNumber& seconds) {
    constexpr std::int64_t MostSeconds = (MostLeading + 1) * SecondsPerDay;
    if (seconds.absolute() >= OracleNumber(MostSeconds))
        throwLeadingPrecision();
    const OracleNumber whole = seconds.truncated(0);
    const OracleNumber nanos = ((seconds - whole) * OracleNumber(NanosPerSecond)).rounded(0);
    return normalized(whole.toInteger(), nanos.toInteger());
}

DaySecondInterval DaySecondInterval::fromNumber(const OracleNumber& n, std::string_view unit) {
    return fromSeconds(n * factorOf(unit, daySecondUnits));
}

DaySecondInterval DaySecondInterval::between(const OracleDate& later, const OracleDate& earlier) {
    const std::int64_t seconds = (later.dayNumber() - earlier.dayNumber()) * SecondsPerDay +
                                 later.secondOfDay() - earlier.secondOfDay();
    return normalized(seconds, later.nanosecond - earlier.nanosecond);
}

OracleDate operator+(const OracleDate& date, const DaySecondInterval& interval) {
    std::int64_t seconds = date.secondOfDay() + interval.seconds;
    std::int64_t nanos = date.nanosecond + interval.nanoseconds;
    if (nanos < 0) {
        nanos += NanosPerSecond;
        --seconds;
    } else if (nanos >= NanosPerSecond) {
        nanos -= NanosPerSecond;
        ++seconds;
    }
    return OracleDate::fromDayAndSeconds(date.dayNumber(), seconds, static_cast<int>(nanos));
}

} // namespace ora
