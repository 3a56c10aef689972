#include "FunctionCall.h"

#include "OraError.h"
#include "Utf8.h"

#include <QByteArray>
#include <QRandomGenerator>

#include <algorithm>
#include <chrono>
#include <functional>
#include <numeric>
#include <random>
#include <utility>
#include <vector>

namespace ora {

namespace {

// DBMS_RANDOM, DBMS_LOB and UTL_RAW as far as queries use them.

constexpr int NumberDigits = 38;

// From low (0) up to, not including, high (1), with as many digits as a NUMBER promises.
void randomValue(Call& call) {
    std::string digits = ".";
    for (int i = 0; i < NumberDigits; ++i)
        digits += static_cast<char>('0' + QRandomGenerator::global()->bounded(10));
    const OracleNumber share = OracleNumber::parse(digits).value_or(OracleNumber());
    if (call.count() < 2)
        return call.result(share);
    const OracleNumber low = call.number(0);
    call.result(low + share * (call.number(1) - low));
}

// Of the standard normal distribution.
void randomNormal(Call& call) {
    thread_local std::normal_distribution<double> distribution;
    call.result(OracleNumber::fromDouble(distribution(*QRandomGenerator::global())));
}

// From -2^31 up to, not including, 2^31.
void randomInteger(Call& call) {
    call.result(OracleNumber(static_cast<std::int64_t>(
        static_cast<std::int32_t>(QRandomGenerator::global()->generate()))));
}

// Hundredths of a second from some moment.
void getTime(Call& call) {
    using Hundredths = std::chrono::duration<std::int64_t, std::centi>;
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    call.result(OracleNumber(std::chrono::duration_cast<Hundredths>(now).count()));
}

std::string_view alphabetOf(std::string_view option) {
    constexpr std::string_view printable =
        " !\"#$%&'()*+,-./0123456789:;<=>?@ABCDEFGHIJKLMNOPQRSTUVWXYZ[\\]^_`"
        "abcdefghijklmnopqrstuvwxyz{|}~";
    constexpr std::string_view upper = "ABCDEFGHIJKLMNOPQRSTUVWXYZ";
    constexpr std::string_view lower = "abcdefghijklmnopqrstuvwxyz";
    constexpr std::string_view letters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
    constexpr std::string_view upperAndDigits = "ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789";
    switch (option.empty() ? 'U' : option.front()) {
    case 'l':
    case 'L': return lower;
    case 'a':
    case 'A': return letters;
    case 'x':
    case 'X': return upperAndDigits;
    case 'p':
    case 'P': return printable;
    default: return upper;
    }
}

void randomString(Call& call) {
    constexpr std::int64_t MostText = 4000;
    const std::string_view alphabet = alphabetOf(call.text(0));
    const std::int64_t length = std::clamp<std::int64_t>(call.integer(1), 0, MostText);
    std::string text;
    for (std::int64_t i = 0; i < length; ++i)
        text += alphabet[QRandomGenerator::global()->bounded(static_cast<int>(alphabet.size()))];
    call.resultText(text);
}

// DBMS_LOB.SUBSTR(text, amount, offset): not in SUBSTR's order.
void lobSubstr(Call& call) {
    constexpr std::int64_t MostText = 32767;
    const std::string_view text = call.text(0);
    const std::int64_t amount = call.integer(1, MostText);
    const std::int64_t offset = call.integer(2, 1);
    if (amount < 1 || offset < 1)
        return call.resultNull();
    const std::string_view rest =
        text.substr(utf8::offsetOf(text, static_cast<std::size_t>(offset - 1)));
    call.resultText(rest.substr(0, utf8::offsetOf(rest, static_cast<std::size_t>(amount))));
}

void binToNum(Call& call) {
    OracleNumber value;
    for (std::size_t i = 0; i < call.count(); ++i) {
        const std::int64_t bit = call.integer(i);
        if (bit != 0 && bit != 1)
            throw OraError(1428, "argument '" + std::to_string(bit) + "' is out of range");
        value = value + value + OracleNumber(bit);
    }
    call.result(value);
}

// Byte by byte; where one side has ended the other's bytes stay.
template<class Operation>
void rawBits(Call& call) {
    std::string longer(call.bytes(0));
    std::string_view other = call.bytes(1);
    const std::string first = longer;
    if (other.size() > longer.size()) {
        longer = std::string(other);
        other = first;
    }
    for (std::size_t i = 0; i < other.size(); ++i)
        longer[i] = static_cast<char>(Operation()(longer[i], other[i]));
    call.resultBytes(longer);
}

void rawConcat(Call& call) {
    std::string bytes;
    for (std::size_t i = 0; i < call.count(); ++i)
        bytes += call.bytes(i);
    call.resultBytes(bytes);
}

void rawReverse(Call& call) {
    std::string bytes(call.bytes(0));
    std::reverse(bytes.begin(), bytes.end());
    call.resultBytes(bytes);
}

// Bytes count from 1, or from -1 backwards.
void rawSubstr(Call& call) {
    constexpr int ValueError = 6502;
    const std::string_view bytes = call.bytes(0);
    const auto size = static_cast<std::int64_t>(bytes.size());
    const std::int64_t place = call.integer(1);
    const std::int64_t begin = place > 0 ? place - 1 : size + place;
    if (begin < 0 || begin >= size)
        throw OraError(ValueError, "PL/SQL: numeric or value error");
    const std::int64_t length = call.integer(2, size - begin);
    if (length < 1 || length > size - begin)
        throw OraError(ValueError, "PL/SQL: numeric or value error");
    call.resultBytes(
        bytes.substr(static_cast<std::size_t>(begin), static_cast<std::size_t>(length)));
}

void rawToNumber(Call& call) {
    const std::string_view bytes = call.bytes(0);
    call.result(OracleNumber::fromBytes(bytes.data(), bytes.size()));
}

// In lines of 64 characters.
void base64Encode(Call& call) {
    constexpr std::size_t LineLength = 64;
    const std::string_view bytes = call.bytes(0);
    const std::string all =
        QByteArray::fromRawData(bytes.data(), qsizetype(bytes.size())).toBase64().toStdString();
    std::string lines;
    for (std::size_t at = 0; at < all.size(); at += LineLength)
        lines += (at > 0 ? "\r\n" : "") + all.substr(at, LineLength);
    call.resultBytes(lines);
}

void base64Decode(Call& call) {
    const std::string_view text = call.bytes(0);
    call.resultBytes(
        QByteArray::fromBase64(QByteArray(text.data(), qsizetype(text.size()))).toStdString());
}

// The fewest bytes to insert, delete or replace.
void editDistance(Call& call) {
    constexpr int ValueError = 6502;
    constexpr std::size_t MostText = 4000;
    const std::string_view from = call.text(0);
    const std::string_view to = call.text(1);
    if (from.size() > MostText || to.size() > MostText)
        throw OraError(ValueError, "PL/SQL: numeric or value error");
    std::vector<std::size_t> row(to.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t(0));
    for (std::size_t i = 1; i <= from.size(); ++i) {
        std::size_t diagonal = std::exchange(row[0], i);
        for (std::size_t j = 1; j <= to.size(); ++j) {
            const std::size_t replaced = diagonal + (from[i - 1] == to[j - 1] ? 0 : 1);
            diagonal = row[j];
            row[j] = std::min({replaced, row[j] + 1, row[j - 1] + 1});
        }
    }
    call.result(OracleNumber(static_cast<std::int64_t>(row.back())));
}

constexpr auto Refused = Stability::Refused;

constexpr ScalarRow rows[] = {
    {"ora_random_value", -1, randomValue, Nulls::Propagate, Refused},
    {"ora_random_normal", 0, randomNormal, Nulls::Propagate, Refused},
    {"ora_random_integer", 0, randomInteger, Nulls::Propagate, Refused},
    {"ora_get_time", 0, getTime, Nulls::Propagate, Refused},
    {"ora_random_string", 2, randomString, Nulls::Propagate, Refused},
    {"ora_lob_substr", -1, lobSubstr},
    {"ora_raw_length", 1,
     [](Call& c) { c.result(OracleNumber(static_cast<std::int64_t>(c.bytes(0).size()))); }},
    {"ora_base64_encode", 1, base64Encode},
    {"ora_base64_decode", 1, base64Decode},
    {"ora_edit_distance", 2, editDistance},
    {"ora_raw_and", 2, rawBits<std::bit_and<>>},
    {"ora_raw_or", 2, rawBits<std::bit_or<>>},
    {"ora_raw_xor", 2, rawBits<std::bit_xor<>>},
    {"ora_raw_concat", -1, rawConcat, Nulls::Handled},
    {"ora_raw_reverse", 1, rawReverse},
    {"ora_raw_substr", -1, rawSubstr},
    {"ora_raw_to_number", 1, rawToNumber},
    {"ora_number_to_raw", 1, [](Call& c) { c.resultBytes(c.bytes(0)); }},
    {"ora_text_to_raw", 1, [](Call& c) { c.resultBytes(c.text(0)); }},
    {"ora_raw_to_text", 1, [](Call& c) { c.resultText(c.bytes(0)); }},
    {"ora_bin_to_num", -1, binToNum},
    {"ora_null", 0, [](Call& c) { c.resultNull(); }},
};

} // namespace

void registerPackageFunctions(sqlite3* database, FunctionContext& context) {
    registerScalars(database, rows, context);
}

} // namespace ora
