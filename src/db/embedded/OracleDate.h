#pragma once

#include "OracleNumber.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace ora {

// DATE and TIMESTAMP: a point of the session's own time, from 4712 BC to 9999. A DATE is one whose
// nanosecond is 0.
//
// Stored as the server stores it: century + 100, year of the century + 100, month, day, hour + 1,
// minute + 1, second + 1; then, when there is a fraction, its nanoseconds in four bytes, most
// significant first. memcmp of the bytes is the order.
//
// The calendar is Julian up to 4 October 1582 and Gregorian from 15 October 1582. Year -1 is 1 BC;
// there is no year 0, though day arithmetic counts one as the server does.
struct OracleDate {
    static constexpr int MaxBytes = 11;
    static constexpr int MinYear = -4712;
    static constexpr int MaxYear = 9999;
    static constexpr std::int64_t MinDayNumber = 0;
    static constexpr std::int64_t MaxDayNumber = 5373484;
    static constexpr std::int64_t SecondsPerDay = 86400;
    static constexpr std::int64_t NanosPerSecond = 1000000000;

    int year = 1;
    int month = 1;
    int day = 1;
    int hour = 0;
    int minute = 0;
    int second = 0;
    int nanosecond = 0;

    // A stored value. Damaged bytes give some valid date.
    static OracleDate fromBytes(const void* bytes, std::size_t size);
    // The server's Julian day number; throws 1841 outside the calendar.
    static OracleDate fromDayNumber(std::int64_t dayNumber);
    // `seconds` may be any number of seconds before or after that midnight.
    static OracleDate fromDayAndSeconds(std::int64_t dayNumber, std::int64_t seconds,
                                        int nanosecond = 0);

    // Returns how many of `out`'s MaxBytes are used.
    std::size_t encode(std::uint8_t* out) const;
    std::string encoded() const;

    std::int64_t dayNumber() const;
    std::int64_t secondOfDay() const { return (hour * 60 + minute) * 60 + second; }
    int dayOfWeek() const; // 0 is Sunday
    int dayOfYear() const; // from 1
    int isoWeek() const;
    int isoYear() const;

    OracleDate midnight() const; // the same day without its time
    OracleDate withoutFraction() const;
    // To `digits` decimals, 0 to 9.
    OracleDate withFraction(int digits) const;

    // Rounds to whole seconds. Throws 1841 outside the calendar.
    OracleDate plusDays(const OracleNumber& days) const;
    // Keeps the time of day; the last day of a month stays the last day.
    OracleDate plusMonths(std::int64_t months) const;
    // Interval years and months: throws 1839 when the month has no such day.
    OracleDate plusIntervalMonths(std::int64_t months) const;
    OracleDate lastDay() const;
    // weekday: 0 is Sunday; always later than this date.
    OracleDate nextDay(int weekday) const;

    // In days; the fraction of a TIMESTAMP does not count.
    friend OracleNumber operator-(const OracleDate& a, const OracleDate& b);

    // "2026-11-21", with " 14:05:09" unless it is midnight and ".123456" when there is a fraction.
    std::string cellText() const;

    friend bool operator==(const OracleDate&, const OracleDate&) = default;
};

OracleNumber monthsBetween(const OracleDate& later, const OracleDate& earlier);

int daysInMonth(int year, int month);
bool isLeapYear(int year);
// False for a day that the calendar never had (5 to 14 October 1582 count as the 15th elsewhere).
bool isCalendarDay(int year, int month, int day);

} // namespace ora
