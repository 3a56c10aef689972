#include "TimeZone.h"

#include "AsciiText.h"
#include "OraError.h"

#include <QDateTime>
#include <QTimeZone>

#include <cstdio>
#include <cstdlib>
#include <unordered_map>

namespace ora {

namespace {

constexpr int HoursPerDay = 24;
constexpr int MinutesPerHour = 60;
constexpr int SecondsPerMinute = 60;
constexpr std::int64_t MillisPerSecond = 1000;
constexpr int NanosPerMilli = 1000000;
constexpr int OffsetBias = 0x4000;
constexpr unsigned char RegionMark = 0xFF;
constexpr std::int64_t EpochDay = 2440588; // 1 January 1970

[[noreturn]] void throwRegion() {
    throw OraError(1882, "timezone region not found");
}

// Names of long standing that many systems no longer install, and what they are called now.
struct FormerName {
    std::string_view name;
    const char* id;
};
constexpr FormerName formerNames[] = {
    {"US/ALASKA", "America/Anchorage"},
    {"US/ARIZONA", "America/Phoenix"},
    {"US/CENTRAL", "America/Chicago"},
    {"US/EASTERN", "America/New_York"},
    {"US/HAWAII", "Pacific/Honolulu"},
    {"US/MICHIGAN", "America/Detroit"},
    {"US/MOUNTAIN", "America/Denver"},
    {"US/PACIFIC", "America/Los_Angeles"},
    {"US/PACIFIC-NEW", "America/Los_Angeles"},
    {"CANADA/ATLANTIC", "America/Halifax"},
    {"CANADA/CENTRAL", "America/Winnipeg"},
    {"CANADA/EASTERN", "America/Toronto"},
    {"CANADA/MOUNTAIN", "America/Edmonton"},
    {"CANADA/PACIFIC", "America/Vancouver"},
    {"ASIA/CALCUTTA", "Asia/Kolkata"},
    {"ASIA/SAIGON", "Asia/Ho_Chi_Minh"},
    {"ASIA/KATMANDU", "Asia/Kathmandu"},
    {"AUSTRALIA/NSW", "Australia/Sydney"},
    {"AUSTRALIA/VICTORIA", "Australia/Melbourne"},
    {"BRAZIL/EAST", "America/Sao_Paulo"},
    {"CUBA", "America/Havana"},
    {"EGYPT", "Africa/Cairo"},
    {"EIRE", "Europe/Dublin"},
    {"EST", "America/Panama"},
    {"EST5EDT", "America/New_York"},
    {"CST6CDT", "America/Chicago"},
    {"MST7MDT", "America/Denver"},
    {"PST8PDT", "America/Los_Angeles"},
    {"CST", "America/Chicago"},
    {"MST", "America/Phoenix"},
    {"PST", "America/Los_Angeles"},
    {"CET", "Europe/Brussels"},
    {"EET", "Europe/Athens"},
    {"MET", "Europe/Brussels"},
    {"WET", "Europe/Lisbon"},
    {"GB", "Europe/London"},
    {"GMT", "Etc/GMT"},
    {"GREENWICH", "Etc/GMT"},
    {"HONGKONG", "Asia/Hong_Kong"},
    {"ICELAND", "Atlantic/Reykjavik"},
    {"IRAN", "Asia/Tehran"},
    {"ISRAEL", "Asia/Jerusalem"},
    {"JAPAN", "Asia/Tokyo"},
    {"NZ", "Pacific/Auckland"},
    {"POLAND", "Europe/Warsaw"},
    {"PORTUGAL", "Europe/Lisbon"},
    {"PRC", "Asia/Shanghai"},
    {"ROC", "Asia/Taipei"},
    {"ROK", "Asia/Seoul"},
    {"SINGAPORE", "Asia/Singapore"},
    {"TURKEY", "Europe/Istanbul"},
    {"UTC", "Etc/UTC"},
    {"ZULU", "Etc/UTC"},
};

// The system's regions by their names in upper case.
const QTimeZone& regionZone(const std::string& upper) {
    using Zones = std::unordered_map<std::string, QByteArray>;
    static const Zones ids = [] {
        Zones known;
        for (const QByteArray& id : QTimeZone::availableTimeZoneIds())
            known.emplace(upperAscii(id.toStdString()), id);
        for (const FormerName& former : formerNames)
            known.emplace(former.name, former.id);
        return known;
    }();
    thread_local std::unordered_map<std::string, QTimeZone> made;
    const auto found = made.find(upper);
    if (found != made.end())
        return found->second;
    const auto id = ids.find(upper);
    if (id == ids.end())
        throwRegion();
    return made.emplace(upper, QTimeZone(id->second)).first->second;
}

QDateTime asQtUtc(const OracleDate& date) {
    const std::int64_t seconds =
        (date.dayNumber() - EpochDay) * OracleDate::SecondsPerDay + date.secondOfDay();
    return QDateTime::fromMSecsSinceEpoch(
        seconds * MillisPerSecond + date.nanosecond / NanosPerMilli, Qt::UTC);
}

OracleDate shifted(const OracleDate& date, std::int64_t minutes) {
    return OracleDate::fromDayAndSeconds(
        date.dayNumber(), date.secondOfDay() + minutes * SecondsPerMinute, date.nanosecond);
}

int offsetMinutes(int hours, int minutes, bool negative) {
    constexpr int MostHours = 15;
    if (hours > MostHours)
        throw OraError(1874, "time zone hour must be between -15 and 15");
    if (minutes >= MinutesPerHour)
        throw OraError(1875, "time zone minute must be between -59 and 59");
    const int total = hours * MinutesPerHour + minutes;
    return negative ? -total : total;
}

bool isOffset(std::string_view text) {
    return !text.empty() && (text[0] == '+' || text[0] == '-' || isAsciiDigit(text[0]));
}

int parsedOffset(std::string_view text) {
    const bool negative = text[0] == '-';
    if (text[0] == '+' || negative)
        text.remove_prefix(1);
    int hours = 0;
    int minutes = 0;
    int taken = 0;
    const std::string digits(text);
    const int read = std::sscanf(digits.c_str(), "%2d:%2d%n", &hours, &minutes, &taken);
    const bool whole = read == 2 ? taken == static_cast<int>(digits.size())
                                 : read == 1 && digits.find(':') == std::string::npos;
    if (!whole || hours < 0 || minutes < 0)
        throwRegion();
    return offsetMinutes(hours, minutes, negative);
}

} // namespace

TimeZone TimeZone::ofMinutes(int minutes) {
    TimeZone zone;
    zone.m_minutes = minutes;
    return zone;
}

TimeZone TimeZone::parse(std::string_view text) {
    text = trimmedAscii(text);
    if (isOffset(text))
        return ofMinutes(parsedOffset(text));
    TimeZone zone;
    zone.m_region = upperAscii(text);
    regionZone(zone.m_region);
    return zone;
}

TimeZone TimeZone::of(const ZoneInput& input, const TimeZone& otherwise) {
    if (!input.region.empty())
        return parse(input.region);
    if (!input.hours)
        return otherwise;
    return ofMinutes(offsetMinutes(*input.hours, input.minutes, input.negative));
}

std::string TimeZone::name() const {
    if (!m_region.empty())
        return m_region;
    char text[16];
    std::snprintf(text, sizeof text, "%c%02d:%02d", m_minutes < 0 ? '-' : '+',
                  std::abs(m_minutes) / MinutesPerHour, std::abs(m_minutes) % MinutesPerHour);
    return text;
}

int TimeZone::minutesAt(const OracleDate& utc) const {
    if (m_region.empty())
        return m_minutes;
    return regionZone(m_region).offsetFromUtc(asQtUtc(utc)) / SecondsPerMinute;
}

OracleDate TimeZone::fromUtc(const OracleDate& utc) const {
    return shifted(utc, minutesAt(utc));
}

OracleDate TimeZone::toUtc(const OracleDate& local) const {
    if (m_region.empty())
        return shifted(local, -m_minutes);
    const OracleDate first = shifted(local, -minutesAt(local));
    const OracleDate second = shifted(local, -minutesAt(first));
    const OracleDate dayBefore = shifted(local, -HoursPerDay * MinutesPerHour);
    return fromUtc(second) == local ? second : shifted(local, -minutesAt(dayBefore));
}

ZoneText TimeZone::textAt(const OracleDate& utc) const {
    ZoneText text{minutesAt(utc), m_region, {}};
    if (!m_region.empty())
        text.daylight = regionZone(m_region).abbreviation(asQtUtc(utc)).toStdString();
    return text;
}

TimeZone systemZone() {
    return TimeZone::ofMinutes(QDateTime::currentDateTime().offsetFromUtc() / SecondsPerMinute);
}

ZonedTime ZonedTime::fromBytes(std::string_view bytes) {
    ZonedTime time;
    time.utc = OracleDate::fromBytes(bytes.data(), std::min(bytes.size(), InstantBytes));
    bytes.remove_prefix(std::min(bytes.size(), InstantBytes));
    if (bytes.size() < 2)
        return time;
    const auto high = static_cast<unsigned char>(bytes[0]);
    if (high != RegionMark) {
        constexpr int MostMinutes = 15 * MinutesPerHour + MinutesPerHour - 1;
        const int minutes = (high << 8 | static_cast<unsigned char>(bytes[1])) - OffsetBias;
        time.zone = TimeZone::ofMinutes(std::clamp(minutes, -MostMinutes, MostMinutes));
        return time;
    }
    try {
        time.zone = TimeZone::parse(bytes.substr(1));
    } catch (const OraError&) {
        // A region that this system does not know: the instant stands as UTC.
    }
    return time;
}

std::string ZonedTime::encoded() const {
    constexpr std::size_t FractionBytes = 4;
    std::string bytes = utc.encoded();
    if (bytes.size() < InstantBytes)
        bytes.append(FractionBytes, '\0');
    if (!zone.region().empty())
        return bytes + static_cast<char>(RegionMark) + zone.region();
    const int minutes = zone.minutesAt(utc) + OffsetBias;
    bytes += static_cast<char>(minutes >> 8);
    bytes += static_cast<char>(minutes & 0xFF);
    return bytes;
}

std::string ZonedTime::cellText() const {
    std::string text = local().cellText();
    constexpr std::size_t DateLength = 10;
    if (text.size() == DateLength)
        text += " 00:00:00";
    return text + ' ' + zone.name();
}

} // namespace ora
