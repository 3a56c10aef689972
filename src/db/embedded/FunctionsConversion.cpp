#include "FunctionCall.h"

#include "AsciiText.h"
#include "DateFormat.h"
#include "NumberFormat.h"
#include "OraError.h"

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
    return call.count() > 2 ? NumberSymbols::withParameters(call.text(2)) : NumberSymbols();
}

OracleNumber parsedNumber(std::string_view text) {
    const auto number = OracleNumber::parse(text);
    if (!number)
        throwNumber();
    return *number;
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

// The fewest digits that give the value back, and an exponent of three: 1.5E+000.
std::string doubleText(double value) {
    if (std::isinf(value))
        return value < 0 ? "-Inf" : "Inf";
    char digits[64];
    const auto end =
        std::to_chars(digits, digits + sizeof digits, value, std::chars_format::scientific);
    std::string text(digits, end.ptr);
    const auto mark = text.find('e');
    const int exponent = std::atoi(text.c_str() + mark + 1);
    text.erase(mark);
    if (text.find('.') == std::string::npos)
        text += ".0";
    char power[16];
    std::snprintf(power, sizeof power, "E%c%03d", exponent < 0 ? '-' : '+', std::abs(exponent));
    return text + power;
}

void toCharNumber(Call& call) {
    if (call.count() == 1)
        return call.resultText(call.number(0).text());
    call.resultText(numberFormat(call)->toText(call.number(0), symbolsOf(call)));
}

void toCharDouble(Call& call) {
    const double value = sqlite3_value_double(call.value(0));
    if (call.count() == 1)
        return call.resultText(doubleText(value));
    call.resultText(numberFormat(call)->toText(OracleNumber::fromDouble(value), symbolsOf(call)));
}

void toNumber(Call& call) {
    if (call.count() == 1)
        return call.result(parsedNumber(call.text(0)));
    call.result(numberFormat(call)->toNumber(call.text(0), symbolsOf(call)));
}

constexpr int TimestampDigits = 6; // of TIMESTAMP without a precision

void dateText(Call& call) {
    call.resultText(sessionFormat(call.session().dateFormat).toText(call.date(0)));
}

void timestampText(Call& call) {
    call.resultText(
        sessionFormat(call.session().timestampFormat).toText(call.date(0), TimestampDigits));
}

void toCharDate(Call& call) {
    call.resultText(dateFormat(call)->toText(call.date(0)));
}

// The model is followed by the digits of the type's fraction.
void toCharTimestamp(Call& call) {
    const auto digits = static_cast<int>(sqlite3_value_int64(call.value(2)));
    call.resultText(dateFormat(call)->toText(call.date(0), digits));
}

OracleDate readDate(Call& call, const std::string& sessionModel) {
    const OracleDate& now = call.session().statementTime;
    if (call.count() == 1)
        return sessionFormat(sessionModel).toDate(call.text(0), now);
    return dateFormat(call)->toDate(call.text(0), now);
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
    {"num_text", 1, [](Call& c) { c.resultText(c.number(0).text()); }},
    {"cell_text", 1, [](Call& c) { c.resultText(c.number(0).cellText()); }},
    {"num_double", 1, [](Call& c) { c.result(c.number(0).toDouble()); }},
    {"double_num", 1,
     [](Call& c) { c.result(OracleNumber::fromDouble(sqlite3_value_double(c.value(0)))); }},
    {"double_text", 1, [](Call& c) { c.resultText(doubleText(sqlite3_value_double(c.value(0)))); }},
    {"text_num", 1, [](Call& c) { c.result(parsedNumber(c.text(0))); }},
    {"text_double", 1, [](Call& c) { c.result(parsedDouble(c.text(0))); }},
    {"date_text", 1, dateText},
    {"ts_text", 1, timestampText},
    {"text_date", 1, toDate},
    {"text_ts", 1, toTimestamp},
    {"ora_to_char_number", -1, toCharNumber},
    {"ora_to_char_double", -1, toCharDouble},
    {"ora_to_char_date", -1, toCharDate},
    {"ora_to_char_ts", -1, toCharTimestamp},
    {"ora_to_number", -1, toNumber},
    {"ora_to_date", -1, toDate},
    {"ora_to_timestamp", -1, toTimestamp},
    {"ora_to_binary_float", 1,
     [](Call& c) { c.result(static_cast<float>(sqlite3_value_double(c.value(0)))); }},
    {"ora_rawtohex", 1, rawToHex},
    {"ora_hextoraw", 1, hexToRaw},
    {"ora_convert", -1, [](Call& c) { c.resultValue(c.value(0)); }},
    {"ora_identity", -1, [](Call& c) { c.resultValue(c.value(0)); }},
};

} // namespace

void registerConversionFunctions(sqlite3* database, FunctionContext& context) {
    registerScalars(database, rows, context);
}

} // namespace ora
