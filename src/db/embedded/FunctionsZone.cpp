#include "FunctionCall.h"

#include "AsciiText.h"
#include "OraError.h"
#include "TimeZone.h"

namespace ora {

namespace {

ZonedTime zonedAt(Call& call, std::size_t index) {
    return ZonedTime::fromBytes(call.bytes(index));
}

void result(Call& call, const ZonedTime& time) {
    call.resultBytes(time.encoded());
}

ZonedTime inSession(Call& call, const OracleDate& utc) {
    return {utc, call.session().zone};
}

DaySecondInterval negated(const DaySecondInterval& interval) {
    return {-interval.seconds, -interval.nanoseconds};
}

void addInterval(Call& call, const DaySecondInterval& interval) {
    const ZonedTime time = zonedAt(call, 0);
    result(call, {time.utc + interval, time.zone});
}

// Months are counted where the clock shows the time.
void addMonths(Call& call, int sign) {
    const ZonedTime time = zonedAt(call, 0);
    result(call, ZonedTime::ofLocal(
                     time.local().plusIntervalMonths(sign * call.yearMonth(1).months), time.zone));
}

void extractZone(Call& call) {
    constexpr int MinutesPerHour = 60;
    const ZonedTime time = zonedAt(call, 0);
    const ZoneText zone = time.zone.textAt(time.utc);
    const std::string field = upperAscii(call.text(1));
    if (field == "TIMEZONE_HOUR")
        return call.result(OracleNumber(zone.minutes / MinutesPerHour));
    if (field == "TIMEZONE_MINUTE")
        return call.result(OracleNumber(zone.minutes % MinutesPerHour));
    if (field != "TIMEZONE_REGION" && field != "TIMEZONE_ABBR")
        throw OraError(30076, "invalid extract field for extract source");
    // An offset has no name.
    if (zone.region.empty())
        return call.resultText("UNKNOWN");
    call.resultText(field == "TIMEZONE_REGION" ? zone.region : zone.daylight);
}

OracleDate nowWithDigits(Call& call) {
    constexpr int DefaultDigits = 6;
    constexpr int MostDigits = 9;
    const std::int64_t digits = call.integer(0, DefaultDigits);
    if (digits < 0 || digits > MostDigits)
        throw OraError(30088, "datetime/interval precision is out of range");
    return call.session().statementTime.withFraction(static_cast<int>(digits));
}

ZonedTime systemTime(const OracleDate& now) {
    return ZonedTime::ofLocal(now, systemZone());
}

OracleDate sessionTime(Call& call, const OracleDate& now) {
    return call.session().zone.fromUtc(systemTime(now).utc);
}

void zoneOffset(Call& call) {
    const OracleDate utc = systemTime(call.session().statementTime).utc;
    call.resultText(TimeZone::ofMinutes(TimeZone::parse(call.text(0)).minutesAt(utc)).name());
}

void fromLocal(Call& call) {
    result(call, ZonedTime::ofLocal(call.date(0), call.session().zone));
}

constexpr auto Propagate = Nulls::Propagate;
constexpr auto Refused = Stability::Refused;

constexpr ScalarRow rows[] = {
    // Between the three kinds of timestamps; "ltz" is UTC without a zone.
    {"ts_tz", 1, fromLocal},
    {"ts_ltz", 1, [](Call& c) { c.result(c.session().zone.toUtc(c.date(0))); }},
    {"tz_ts", 1, [](Call& c) { c.result(zonedAt(c, 0).local()); }},
    {"tz_date", 1, [](Call& c) { c.result(zonedAt(c, 0).local().withoutFraction()); }},
    {"tz_utc", 1, [](Call& c) { c.result(zonedAt(c, 0).utc); }},
    {"ltz_ts", 1, [](Call& c) { c.result(c.session().zone.fromUtc(c.date(0))); }},
    {"ltz_date", 1,
     [](Call& c) { c.result(c.session().zone.fromUtc(c.date(0)).withoutFraction()); }},
    {"ltz_tz", 1, [](Call& c) { result(c, inSession(c, c.date(0))); }},

    {"tz_at", 2,
     [](Call& c) {
         result(c, {zonedAt(c, 0).utc, TimeZone::parse(c.text(1))});
     }},
    {"tz_at_session", 1, [](Call& c) { result(c, inSession(c, zonedAt(c, 0).utc)); }},
    {"tz_add_ds", 2, [](Call& c) { addInterval(c, c.daySecond(1)); }},
    {"tz_less_ds", 2, [](Call& c) { addInterval(c, negated(c.daySecond(1))); }},
    {"tz_add_ym", 2, [](Call& c) { addMonths(c, 1); }},
    {"tz_less_ym", 2, [](Call& c) { addMonths(c, -1); }},
    {"tz_sub", 2,
     [](Call& c) { c.result(DaySecondInterval::between(zonedAt(c, 0).utc, zonedAt(c, 1).utc)); }},
    {"ora_extract_tz", 2, extractZone},
    {"ora_from_tz", 2,
     [](Call& c) { result(c, ZonedTime::ofLocal(c.date(0), TimeZone::parse(c.text(1)))); }},
    {"ora_tz_offset", 1, zoneOffset},

    {"ora_systimestamp", -1, [](Call& c) { result(c, systemTime(nowWithDigits(c))); }, Propagate,
     Refused},
    {"ora_current_timestamp", -1,
     [](Call& c) { result(c, inSession(c, systemTime(nowWithDigits(c)).utc)); }, Propagate,
     Refused},
    {"ora_localtimestamp", -1, [](Call& c) { c.result(sessionTime(c, nowWithDigits(c))); },
     Propagate, Refused},
    {"ora_current_date", 0,
     [](Call& c) { c.result(sessionTime(c, c.session().statementTime).withoutFraction()); },
     Propagate, Refused},
    {"ora_db_timezone", 0, [](Call& c) { c.resultText(TimeZone().name()); }},
    {"ora_session_timezone", 0, [](Call& c) { c.resultText(c.session().zone.name()); }, Propagate,
     Refused},
};

} // namespace

void registerZoneFunctions(sqlite3* database, FunctionContext& context) {
    registerScalars(database, rows, context);
}

} // namespace ora
