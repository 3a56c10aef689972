#pragma once

#include "OracleDate.h"
#include "OracleNumber.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace ora {

// INTERVAL YEAR TO MONTH. Stored in 5 bytes: years + 2^31 in four, months + 60 in one; memcmp is
// the order. Throws 1873 (leading precision too small) past 999,999,999 years.
struct YearMonthInterval {
    static constexpr int Bytes = 5;

    std::int64_t months = 0;

    static YearMonthInterval fromBytes(const void* bytes, std::size_t size);
    // "1-6", "-1-06"; also "P1Y6M". Throws 1867.
    static YearMonthInterval parse(std::string_view text);
    // n of YEAR or MONTH, in any case; throws 1760.
    static YearMonthInterval fromNumber(const OracleNumber& n, std::string_view unit);

    std::string encoded() const;
    // "+01-06": the sign, at least leadingDigits for the years, two for the months. 0: nobody
    // declared any, then nine as the server shows computed intervals.
    std::string text(int leadingDigits) const;
};

// INTERVAL DAY TO SECOND. Stored in 11 bytes: days + 2^31 in four, hours, minutes and seconds + 60
// in one each, nanoseconds + 2^31 in four. All parts have one sign. Throws 1873 past 999,999,999
// days.
struct DaySecondInterval {
    static constexpr int Bytes = 11;

    std::int64_t seconds = 0;
    std::int64_t nanoseconds = 0; // the sign of seconds, or any when those are 0

    static DaySecondInterval fromBytes(const void* bytes, std::size_t size);
    // "1 02:03:04.5", sign and fraction optional; also "P1DT2H3M4.5S". Throws 1867.
    static DaySecondInterval parse(std::string_view text);
    // n of DAY, HOUR, MINUTE or SECOND, in any case; throws 1760.
    static DaySecondInterval fromNumber(const OracleNumber& n, std::string_view unit);
    // Seconds with a fraction, rounded to nanoseconds.
    static DaySecondInterval fromSeconds(const OracleNumber& seconds);
    static DaySecondInterval between(const OracleDate& later, const OracleDate& earlier);

    OracleNumber toSeconds() const;
    std::string encoded() const;
    // "+01 02:03:04.500000"; leadingDigits 0: nobody declared any, then nine of both.
    std::string text(int leadingDigits, int fractionDigits) const;
};

OracleDate operator+(const OracleDate& date, const DaySecondInterval& interval);

// INTERVAL 'text' fields as a literal: throws 1867 (the interval is invalid) when the text does not
// fit the fields, 1873 when the leading field has more than leadingDigits. First and last name the
// fields in upper case and are equal for a single one ("DAY", "DAY").
YearMonthInterval yearMonthLiteral(std::string_view text, std::string_view first,
                                   std::string_view last, int leadingDigits);
DaySecondInterval daySecondLiteral(std::string_view text, std::string_view first,
                                   std::string_view last, int leadingDigits);

} // namespace ora
