#include "FunctionCall.h"

#include "AsciiText.h"
#include "DateFormat.h"
#include "NlsParameters.h"
#include "NumberFormat.h"
#include "OraError.h"
#include "RealValue.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace ora {

namespace {

[[noreturn]] void throwNumber() {
    throw OraError(1722, "invalid number");
}

// The session's own models change rarely; the last two are kept read.
const DateFormat& sessionFormat(const std::string& model) {
    struct Kept {
        std::string model;
        DateFormat format;
    };
    thread_local std::array<Kept, 2> kept;
    thread_local std::size_t next = 0;
    for (const Kept& entry : kept) {
        if (entry.model == model)
            return entry.format;
    }
    Kept& entry = kept[next];
    next = (next + 1) % kept.size();
    entry = {model, DateFormat::parse(model)};
    return entry.format;
}

std::shared_ptr<DateFormat> dateFormat(Call& call) {
    return call.cached<DateFormat>(1, [&] { return DateFormat::parse(call.text(1)); });
}

std::shared_ptr<NumberFormat> numberFormat(Call& call) {
    return call.cached<NumberFormat>(1, [&] { return NumberFormat::parse(call.text(1)); });
}

NumberSymbols symbolsOf(Call& call) {
    const NumberSymbols& own = call.session().symbols;
    return call.count() > 2 ? own.withParameters(call.text(2)) : own;
}

OracleNumber parsedNumber(std::string_view text, char point) {
    if (point == '.') {
        if (const auto number = OracleNumber::parse(text))
            return *number;
        throwNumber();
    }
    std::string pointed(text);
    for (char& c : pointed)
        c = c == point ? '.' : c == '.' ? point : c;
    return parsedNumber(pointed, '.');
}

char pointOf(Call& call) {
    return call.session().symbols.decimal.front();
}

void textNumber(Call& call) {
    call.result(parsedNumber(call.text(0), pointOf(call)));
}

void numberText(Call& call) {
    std::string text = call.number(0).text();
    if (pointOf(call) != '.')
        std::replace(text.begin(), text.end(), '.', pointOf(call));
    call.resultText(text);
}

double parsedDouble(std::string_view text) {
    text = trimmedAscii(text);
    if (text.starts_with('+'))
        text.remove_prefix(1);
    double value = 0;
    const auto end = std::from_chars(text.data(), text.data() + text.size(), value);
    if (end.ec == std::errc::result_out_of_range)
        throw OraError(1426, "numeric overflow");
    if (end.ec != std::errc() || end.ptr != text.data() + text.size())
        throwNumber();
    return value;
}

constexpr int DigitsOfFloat = 9; // as many as tell every two values apart
constexpr int DigitsOfDouble = 17;

// Without zeros at the end, and an exponent of three digits: 1.5E+000.
std::string realText(double value, int mostDigits) {
    if (std::isnan(value))
        return NotANumber;
    if (std::isinf(value))
        return value < 0 ? "-Inf" : "Inf";
    char digits[64];
    const auto end = std::to_chars(digits, digits + sizeof digits, value,
                                   std::chars_format::scientific, mostDigits - 1);
    std::string text(digits, end.ptr);
    const auto mark = text.find('e');
    const int exponent = std::atoi(text.c_str() + mark + 1);
    text.erase(text.find_last_not_of('0', mark - 1) + 1);
    if (text.back() == '.')
        text += '0';
    char power[16];
    std::snprintf(power, sizeof power, "E%c%03d", exponent < 0 ? '-' : '+', std::abs(exponent));
    return text + power;
}

void toCharNumber(Call& call) {
    if (call.count() == 1)
        return numberText(call);
    call.resultText(numberFormat(call)->toText(call.number(0), symbolsOf(call)));
}

void toCharDouble(Call& call) {
    call.resultText(
        numberFormat(call)->toText(OracleNumber::fromDouble(call.real(0)), symbolsOf(call)));
}

void toNumber(Call& call) {
    if (call.count() == 1)
        return textNumber(call);
    call.result(numberFormat(call)->toNumber(call.text(0), symbolsOf(call)));
}

constexpr int TimestampDigits = 6; // of TIMESTAMP without a precision

// The session's, with what the function's last argument says.
DateLocale localeOf(Call& call) {
    const DateLocale& own = call.session().dates;
    return call.count() > 2 ? withDateParameters(own, call.text(2)) : own;
}

int digitsAt(Call& call, std::size_t index) {
    return index < call.count() ? static_cast<int>(sqlite3_value_int64(call.value(index)))
                                : TimestampDigits;
}

void dateText(Call& call) {
    call.resultText(sessionFormat(call.session().dateFormat)
                        .toText(call.date(0), DateFormat::NoFraction, call.session().dates));
}

void timestampText(Call& call) {
    call.resultText(sessionFormat(call.session().timestampFormat)
                        .toText(call.date(0), digitsAt(call, 1), call.session().dates));
}

void toCharDate(Call& call) {
    call.resultText(dateFormat(call)->toText(call.date(0), DateFormat::NoFraction, localeOf(call)));
}

// (time, model, parameters, digits of the type's fraction)
void toCharTimestamp(Call& call) {
    constexpr std::size_t Digits = 3;
    call.resultText(dateFormat(call)->toText(call.date(0), digitsAt(call, Digits), localeOf(call)));
}

std::string zonedText(const DateFormat& format, const ZonedTime& time, int digits,
                      const DateLocale& locale) {
    const ZoneText zone = time.zone.textAt(time.utc);
    return format.toText(time.local(), digits, locale, &zone);
}

void zonedTimeText(Call& call) {
    call.resultText(zonedText(sessionFormat(call.session().timestampTzFormat),
                              ZonedTime::fromBytes(call.bytes(0)), digitsAt(call, 1),
                              call.session().dates));
}

void toCharZoned(Call& call) {
    constexpr std::size_t Digits = 3;
    call.resultText(zonedText(*dateFormat(call), ZonedTime::fromBytes(call.bytes(0)),
                              digitsAt(call, Digits), localeOf(call)));
}

OracleDate readDate(Call& call, const std::string& sessionModel, ZoneInput* zone = nullptr) {
    const FunctionContext& session = call.session();
    if (call.count() == 1)
        return sessionFormat(sessionModel)
            .toDate(call.text(0), session.statementTime, session.dates, zone);
    return dateFormat(call)->toDate(call.text(0), session.statementTime, localeOf(call), zone);
}

void toZoned(Call& call) {
    ZoneInput input;
    const OracleDate local = readDate(call, call.session().timestampTzFormat, &input);
    const TimeZone zone = TimeZone::of(input, call.session().zone);
    call.resultBytes(ZonedTime::ofLocal(local, zone).encoded());
}

// Of the session's zone, stored in UTC.
void localTimeText(Call& call) {
    call.resultText(sessionFormat(call.session().timestampFormat)
                        .toText(call.session().zone.fromUtc(call.date(0)), digitsAt(call, 1),
                                call.session().dates));
}

void toLocalTime(Call& call) {
    call.result(call.session().zone.toUtc(readDate(call, call.session().timestampFormat)));
}

void toDate(Call& call) {
    call.result(readDate(call, call.session().dateFormat).withoutFraction());
}

void toTimestamp(Call& call) {
    call.result(readDate(call, call.session().timestampFormat));
}

constexpr std::string_view hexDigits = "0123456789ABCDEF";

void rawToHex(Call& call) {
    std::string text;
    for (const char c : call.bytes(0)) {
        const auto byte = static_cast<unsigned char>(c);
        text += hexDigits[byte >> 4];
        text += hexDigits[byte & 0xF];
    }
    call.resultText(text);
}

void hexToRaw(Call& call) {
    std::string digits(call.text(0));
    if (digits.size() % 2 != 0)
        digits.insert(0, 1, '0');
    std::string bytes;
    for (std::size_t i = 0; i < digits.size(); i += 2) {
        const auto high = hexDigits.find(upperAscii(digits[i]));
        const auto low = hexDigits.find(upperAscii(digits[i + 1]));
        if (high == std::string_view::npos || low == std::string_view::npos)
            throw OraError(1465, "invalid hex number");
        bytes += static_cast<char>(high << 4 | low);
    }
    call.resultBytes(bytes);
}

constexpr ScalarRow rows[] = {
    {"num_text", 1, numberText},
    {"cell_text", 1, [](Call& c) { c.resultText(c.number(0).cellText()); }},
    {"num_double", 1, [](Call& c) { c.result(c.number(0).toDouble()); }},
    {"double_num", 1, [](Call& c) { c.result(OracleNumber::fromDouble(c.real(0))); }},
    {"double_text", 1, [](Call& c) { c.resultText(realText(c.real(0), DigitsOfDouble)); }},
    {"float_text", 1, [](Call& c) { c.resultText(realText(c.real(0), DigitsOfFloat)); }},
    {"text_num", 1, textNumber},
    {"text_double", 1, [](Call& c) { c.result(parsedDouble(c.text(0))); }},
    {"date_text", 1, dateText},
    {"ts_text", -1, timestampText},
    {"text_date", 1, toDate},
    {"tz_text", -1, zonedTimeText},
    {"text_ts", 1, toTimestamp},
    {"text_tz", 1, toZoned},
    {"ltz_text", -1, localTimeText},
    {"text_ltz", 1, toLocalTime},
    {"ora_to_char_number", -1, toCharNumber},
    {"ora_to_char_double", -1, toCharDouble},
    {"ora_to_char_date", -1, toCharDate},
    {"ora_to_char_ts", -1, toCharTimestamp},
    {"ora_to_char_tz", -1, toCharZoned},
    {"ora_to_number", -1, toNumber},
    {"ora_to_date", -1, toDate},
    {"ora_to_timestamp", -1, toTimestamp},
    {"ora_to_timestamp_tz", -1, toZoned},
    {"ora_to_binary_float", 1, [](Call& c) { c.result(static_cast<float>(c.real(0))); }},
    {"ora_rawtohex", 1, rawToHex},
    {"ora_hextoraw", 1, hexToRaw},
    {"ora_identity", -1, [](Call& c) { c.resultValue(c.value(0)); }},
};

} // namespace

std::span<const ScalarRow> conversionRows() {
    return rows;
}

void registerConversionFunctions(sqlite3* database, FunctionContext& context) {
    registerScalars(database, rows, context);
}

} // namespace ora
