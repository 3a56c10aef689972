#include "OracleDate.h"

#include "OraError.h"

#include <algorithm>
#include <cstdio>

namespace ora {

namespace {

constexpr int MonthsPerYear = 12;
constexpr int DaysPerWeek = 7;
constexpr int Century = 100;
constexpr std::int64_t GregorianStart = 2299161; // 15 October 1582
constexpr int GapYear = 1582;
constexpr int GapMonth = 10;
constexpr int GapFirst = 5;
constexpr int GapLast = 14;
constexpr std::int64_t JulianOffset = 32083;
constexpr std::int64_t GregorianOffset = 32045;

bool isGregorian(int year, int month, int day) {
    if (year != GapYear)
        return year > GapYear;
    return month != GapMonth ? month > GapMonth : day >= GapFirst;
}

bool inGap(int year, int month, int day) {
    return year == GapYear && month == GapMonth && day >= GapFirst && day <= GapLast;
}

[[noreturn]] void throwYear() {
    throw OraError(1841, "(full) year must be between -4713 and +9999, and not be 0");
}

// The usual day number arithmetic over years that begin in March; all divisions are of positive
// numbers because years start at -4800.
std::int64_t toDayNumber(int year, int month, int day) {
    const std::int64_t a = (14 - month) / 12;
    const std::int64_t y = year + 4800 - a;
    const std::int64_t m = month + 12 * a - 3;
    const std::int64_t days = day + (153 * m + 2) / 5 + 365 * y + y / 4;
    return isGregorian(year, month, day) ? days - y / 100 + y / 400 - GregorianOffset
                                         : days - JulianOffset;
}

} // namespace

bool isLeapYear(int year) {
    if (year % 4 != 0)
        return false;
    return year <= GapYear || year % Century != 0 || year % (4 * Century) == 0;
}

int daysInMonth(int year, int month) {
    constexpr int February = 2;
    constexpr int LeapDays = 29;
    constexpr int days[MonthsPerYear] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return month == February && isLeapYear(year) ? LeapDays : days[month - 1];
}

bool isCalendarDay(int year, int month, int day) {
    return year >= OracleDate::MinYear && year <= OracleDate::MaxYear && year != 0 && month >= 1 &&
           month <= MonthsPerYear && day >= 1 && day <= daysInMonth(year, month) &&
           !inGap(year, month, day);
}

OracleDate OracleDate::fromBytes(const void* bytes, std::size_t size) {
    constexpr std::size_t DateBytes = 7;
    const auto* in = static_cast<const std::uint8_t*>(bytes);
    OracleDate date;
    if (size < DateBytes)
        return date;
    date.year = (in[0] - Century) * Century + (in[1] - Century);
    date.month = std::clamp<int>(in[2], 1, MonthsPerYear);
    if (date.year < MinYear || date.year > MaxYear || date.year == 0)
        date.year = 1;
    date.day = std::clamp<int>(in[3], 1, daysInMonth(date.year, date.month));
    if (inGap(date.year, date.month, date.day))
        date.day = GapLast + 1;
    date.hour = std::clamp(in[4] - 1, 0, 23);
    date.minute = std::clamp(in[5] - 1, 0, 59);
    date.second = std::clamp(in[6] - 1, 0, 59);
    if (size >= MaxBytes) {
        const std::uint32_t nanos = std::uint32_t{in[7]} << 24 | std::uint32_t{in[8]} << 16 |
                                    std::uint32_t{in[9]} << 8 | in[10];
        date.nanosecond = static_cast<int>(std::min<std::uint32_t>(nanos, NanosPerSecond - 1));
    }
    return date;
}

std::size_t OracleDate::encode(std::uint8_t* out) const {
    // Years before Christ count down from 100 in both bytes, which keeps the order.
    out[0] = static_cast<std::uint8_t>(year / Century + Century);
    out[1] = static_cast<std::uint8_t>(year % Century + Century);
    out[2] = static_cast<std::uint8_t>(month);
    out[3] = static_cast<std::uint8_t>(day);
    out[4] = static_cast<std::uint8_t>(hour + 1);
    out[5] = static_cast<std::uint8_t>(minute + 1);
    out[6] = static_cast<std::uint8_t>(second + 1);
    if (nanosecond == 0)
        return 7;
    for (int i = 0; i < 4; ++i)
        out[7 + i] = static_cast<std::uint8_t>(static_cast<unsigned>(nanosecond) >> (24 - 8 * i));
    return MaxBytes;
}

std::string OracleDate::encoded() const {
    std::uint8_t bytes[MaxBytes];
    const std::size_t size = encode(bytes);
    return std::string(reinterpret_cast<const char*>(bytes), size);
}

OracleDate OracleDate::fromDayNumber(std::int64_t dayNumber) {
    if (dayNumber < MinDayNumber || dayNumber > MaxDayNumber)
        throwYear();
    std::int64_t c = dayNumber + JulianOffset - 1;
    std::int64_t b = 0;
    if (dayNumber >= GregorianStart) {
        const std::int64_t a = dayNumber + GregorianOffset - 1;
        b = (4 * a + 3) / 146097;
        c = a - 146097 * b / 4;
    }
    const std::int64_t d = (4 * c + 3) / 1461;
    const std::int64_t e = c - 1461 * d / 4;
    const std::int64_t m = (5 * e + 2) / 153;
    OracleDate date;
    date.day = static_cast<int>(e - (153 * m + 2) / 5 + 1);
    date.month = static_cast<int>(m + 3 - 12 * (m / 10));
    date.year = static_cast<int>(100 * b + d - 4800 + m / 10);
    if (date.year == 0)
        throwYear();
    return date;
}

OracleDate OracleDate::fromDayAndSeconds(std::int64_t dayNumber, std::int64_t seconds,
                                         int nanosecond) {
    std::int64_t days = seconds / SecondsPerDay;
    std::int64_t rest = seconds % SecondsPerDay;
    if (rest < 0) {
        rest += SecondsPerDay;
        --days;
    }
    OracleDate date = fromDayNumber(dayNumber + days);
    date.hour = static_cast<int>(rest / 3600);
    date.minute = static_cast<int>(rest / 60 % 60);
    date.second = static_cast<int>(rest % 60);
    date.nanosecond = nanosecond;
    return date;
}

std::int64_t OracleDate::dayNumber() const {
    return toDayNumber(year, month, day);
}

int OracleDate::dayOfWeek() const {
    return static_cast<int>((dayNumber() + 1) % DaysPerWeek);
}

int OracleDate::dayOfYear() const {
    return static_cast<int>(dayNumber() - toDayNumber(year, 1, 1)) + 1;
}

namespace {

// The Monday of ISO week 1: the week with 4 January in it.
std::int64_t isoYearStart(int year) {
    const std::int64_t fourth = toDayNumber(year, 1, 4);
    return fourth - fourth % DaysPerWeek; // day numbers that 7 divides are Mondays
}

} // namespace

int OracleDate::isoYear() const {
    const std::int64_t number = dayNumber();
    if (number < isoYearStart(year))
        return year - 1;
    return number >= isoYearStart(year + 1) ? year + 1 : year;
}

int OracleDate::isoWeek() const {
    return static_cast<int>((dayNumber() - isoYearStart(isoYear())) / DaysPerWeek) + 1;
}

OracleDate OracleDate::midnight() const {
    OracleDate date;
    date.year = year;
    date.month = month;
    date.day = day;
    return date;
}

OracleDate OracleDate::withoutFraction() const {
    OracleDate date = *this;
    date.nanosecond = 0;
    return date;
}

OracleDate OracleDate::withFraction(int digits) const {
    std::int64_t unit = NanosPerSecond;
    for (int i = 0; i < digits; ++i)
        unit /= 10;
    const std::int64_t nanos = (nanosecond + unit / 2) / unit * unit;
    OracleDate date = *this;
    if (unit <= 1)
        return date;
    date.nanosecond = static_cast<int>(nanos % NanosPerSecond);
    if (nanos < NanosPerSecond)
        return date;
    return fromDayAndSeconds(dayNumber(), secondOfDay() + 1);
}

OracleDate OracleDate::plusDays(const OracleNumber& days) const {
    constexpr std::int64_t MostDays = 10000000; // beyond the whole calendar
    if (days.absolute() > OracleNumber(MostDays))
        throwYear();
    const OracleNumber seconds = (days * OracleNumber(SecondsPerDay)).rounded(0);
    return fromDayAndSeconds(dayNumber(), secondOfDay() + seconds.toInteger());
}

namespace {

struct YearMonth {
    int year;
    int month;
};

// Skips the year 0 that does not exist.
YearMonth shiftedMonth(const OracleDate& date, std::int64_t months) {
    constexpr std::int64_t MostMonths = 20000 * MonthsPerYear;
    if (months > MostMonths || months < -MostMonths)
        throwYear();
    const int years = date.year < 0 ? date.year + 1 : date.year;
    const std::int64_t total = std::int64_t{years} * MonthsPerYear + date.month - 1 + months;
    std::int64_t year = total / MonthsPerYear;
    std::int64_t month = total % MonthsPerYear;
    if (month < 0) {
        month += MonthsPerYear;
        --year;
    }
    if (year <= 0)
        --year;
    if (year < OracleDate::MinYear || year > OracleDate::MaxYear)
        throwYear();
    return {static_cast<int>(year), static_cast<int>(month) + 1};
}

OracleDate withDay(OracleDate date, const YearMonth& target, int day) {
    date.year = target.year;
    date.month = target.month;
    date.day = inGap(target.year, target.month, day) ? GapLast + 1 : day;
    return date;
}

} // namespace

OracleDate OracleDate::plusMonths(std::int64_t months) const {
    const YearMonth target = shiftedMonth(*this, months);
    const int last = daysInMonth(target.year, target.month);
    const bool wasLast = day == daysInMonth(year, month);
    return withDay(*this, target, wasLast ? last : std::min(day, last));
}

OracleDate OracleDate::plusIntervalMonths(std::int64_t months) const {
    const YearMonth target = shiftedMonth(*this, months);
    if (day > daysInMonth(target.year, target.month))
        throw OraError(1839, "date not valid for month specified");
    return withDay(*this, target, day);
}

OracleDate OracleDate::lastDay() const {
    OracleDate date = *this;
    date.day = daysInMonth(year, month);
    return date;
}

OracleDate OracleDate::nextDay(int weekday) const {
    const int ahead = (weekday - dayOfWeek() + DaysPerWeek - 1) % DaysPerWeek + 1;
    return fromDayAndSeconds(dayNumber() + ahead, secondOfDay(), nanosecond);
}

OracleNumber operator-(const OracleDate& a, const OracleDate& b) {
    const std::int64_t days = a.dayNumber() - b.dayNumber();
    const std::int64_t seconds = a.secondOfDay() - b.secondOfDay();
    if (seconds == 0)
        return OracleNumber(days);
    return OracleNumber(days * OracleDate::SecondsPerDay + seconds) /
           OracleNumber(OracleDate::SecondsPerDay);
}

OracleNumber monthsBetween(const OracleDate& later, const OracleDate& earlier) {
    constexpr int DaysOfAMonth = 31; // the server's, for the fraction
    const std::int64_t months =
        std::int64_t{later.year - earlier.year} * MonthsPerYear + later.month - earlier.month;
    const bool bothLast = later.day == daysInMonth(later.year, later.month) &&
                          earlier.day == daysInMonth(earlier.year, earlier.month);
    if (later.day == earlier.day || bothLast)
        return OracleNumber(months);
    const std::int64_t seconds = (later.day - earlier.day) * OracleDate::SecondsPerDay +
                                 later.secondOfDay() - earlier.secondOfDay();
    return OracleNumber(months) +
           OracleNumber(seconds) / OracleNumber(DaysOfAMonth * OracleDate::SecondsPerDay);
}

std::string OracleDate::cellText() const {
    char text[64];
    int size = std::snprintf(text, sizeof text, "%s%04d-%02d-%02d", year < 0 ? "-" : "",
                             year < 0 ? -year : year, month, day);
    if (secondOfDay() == 0 && nanosecond == 0)
        return text;
    size += std::snprintf(text + size, sizeof text - size, " %02d:%02d:%02d", hour, minute, second);
    if (nanosecond == 0)
        return text;
    size += std::snprintf(text + size, sizeof text - size, ".%09d", nanosecond);
    while (text[size - 1] == '0')
        --size;
    return std::string(text, size);
}

} // namespace ora
