#pragma once

#include "DateFormat.h"
#include "OracleDate.h"

#include <string>
#include <string_view>

namespace ora {

// A time zone as values carry it: a fixed offset or a region's name.
class TimeZone {
public:
    TimeZone() = default; // UTC, written as +00:00
    static TimeZone ofMinutes(int minutes);
    // "+02:00", "-8:30", "Europe/Paris". Throws 1874, 1875 and 1882.
    static TimeZone parse(std::string_view text);
    // Throws likewise; nothing given is `otherwise`.
    static TimeZone of(const ZoneInput& input, const TimeZone& otherwise);

    const std::string& region() const { return m_region; } // upper case; empty for an offset
    std::string name() const;                              // "+02:00" or the region

    int minutesAt(const OracleDate& utc) const;
    // A time that the region skips is taken as if its clocks had not been put forward yet.
    OracleDate toUtc(const OracleDate& local) const;
    OracleDate fromUtc(const OracleDate& utc) const;
    ZoneText textAt(const OracleDate& utc) const;

    friend bool operator==(const TimeZone&, const TimeZone&) = default;

private:
    std::string m_region;
    int m_minutes = 0;
};

// TIMESTAMP WITH TIME ZONE. Stored as the UTC time in 11 bytes, which alone are compared, and
// behind them the zone: two bytes of an offset in minutes, or a mark and the region's name.
struct ZonedTime {
    static constexpr std::size_t InstantBytes = OracleDate::MaxBytes;

    OracleDate utc;
    TimeZone zone;

    // Damaged bytes give some valid value.
    static ZonedTime fromBytes(std::string_view bytes);
    static ZonedTime ofLocal(const OracleDate& local, const TimeZone& zone) {
        return {zone.toUtc(local), zone};
    }
    std::string encoded() const;
    OracleDate local() const { return zone.fromUtc(utc); }
    std::string cellText() const; // "2026-11-21 14:05:09 +02:00"
};

// That of this computer, as an offset.
TimeZone systemZone();

} // namespace ora
