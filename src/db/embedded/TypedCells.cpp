#include "TypedCells.h"

#include "CellStore.h"
#include "CellText.h"
#include "IntervalValue.h"
#include "OracleDate.h"
#include "OracleNumber.h"
#include "RealValue.h"
#include "TimeZone.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstring>
#include <string_view>

namespace ora {

namespace {

// The value's bytes, null's and an empty one's excepted; texts come as they are stored, without the
// copy that ends them with a zero.
std::string_view bytesOf(sqlite3_value* value) {
    const auto* bytes = static_cast<const char*>(sqlite3_value_blob(value));
    return {bytes, bytes ? size_t(sqlite3_value_bytes(value)) : 0};
}

bool isStoredAs(int expected, sqlite3_value* value) {
    const int form = sqlite3_value_type(value);
    return form == expected || form == SQLITE_NULL;
}

// A value that has not the engine's form of its type is shown all the same.
void writeUntyped(CellStore& rows, sqlite3_value* value) {
    switch (sqlite3_value_type(value)) {
    case SQLITE_INTEGER: return appendInteger(rows, sqlite3_value_int64(value));
    case SQLITE_FLOAT: return appendReal(rows, sqlite3_value_double(value));
    case SQLITE_BLOB: return appendBinary(rows, bytesOf(value));
    case SQLITE_NULL: return rows.appendNull();
    default: return appendText(rows, bytesOf(value));
    }
}

void requireForm(int expected, sqlite3_value* value) {
    Q_ASSERT_X(isStoredAs(expected, value), "cell",
               "a result value without its type's stored form");
    Q_UNUSED(expected);
    Q_UNUSED(value);
}

constexpr int ten = 10;
constexpr int hundred = 100;

// "00" to "99"; what is no such number has two zero bytes.
struct DigitPair {
    char digits[2];
};
constexpr auto digitPairs = [] {
    std::array<DigitPair, 256> pairs{};
    for (int i = 0; i < hundred; ++i)
        pairs[size_t(i)] = {{char('0' + i / ten), char('0' + i % ten)}};
    return pairs;
}();

const DigitPair& pairOf(int number) {
    return digitPairs[static_cast<unsigned char>(number)];
}

char* writeTwo(char* at, int number) {
    std::memcpy(at, pairOf(number).digits, sizeof(DigitPair));
    return at + sizeof(DigitPair);
}

// Positive numbers below 10^16 with at most 16 digits behind the point, which are nearly all:
// straight from the stored digits.
bool writePlainNumber(CellStore& rows, std::string_view bytes) {
    constexpr int exponentBias = 193;
    constexpr int mostPairs = 8;
    const auto byte = [&](int i) { return int(static_cast<unsigned char>(bytes[size_t(i)])); };
    const int exponent = byte(0) - exponentBias;
    const int count = int(bytes.size()) - 1;
    if (exponent < 0 || exponent >= mostPairs || count < 1 || count > 2 * mostPairs)
        return false;
    char* const cell = rows.shortCell();
    char* at = writeTwo(cell, byte(1) - 1);
    bool damaged = cell[0] == 0;
    if (cell[0] == '0') {
        cell[0] = cell[1];
        --at;
    }
    const int whole = std::min(exponent + 1, count);
    int i = 1;
    for (; i < whole; ++i, at += 2) {
        writeTwo(at, byte(i + 1) - 1);
        damaged |= *at == 0;
    }
    for (int zeros = exponent + 1 - whole; zeros > 0; --zeros)
        at = writeTwo(at, 0);
    if (i < count) {
        *at++ = '.';
        for (; i < count; ++i, at += 2) {
            writeTwo(at, byte(i + 1) - 1);
            damaged |= *at == 0;
        }
        if (at[-1] == '0')
            --at;
    }
    if (damaged)
        return false;
    rows.commit(int(at - cell));
    return true;
}

void writeOtherNumber(CellStore& rows, sqlite3_value* value) {
    if (sqlite3_value_type(value) != SQLITE_BLOB)
        return writeUntyped(rows, value);
    static_assert(OracleNumber::MaxTextSize <= 250);
    const std::string_view bytes = bytesOf(value);
    const auto size =
        OracleNumber::fromBytes(bytes.data(), bytes.size()).writeCell(rows.shortCell());
    rows.commit(int(size));
}

void writeNumber(CellStore& rows, sqlite3_value* value, const TypeInfo&) {
    requireForm(SQLITE_BLOB, value);
    const std::string_view bytes = bytesOf(value);
    if (bytes.empty() || !writePlainNumber(rows, bytes))
        writeOtherNumber(rows, value);
}

void writeDouble(CellStore& rows, sqlite3_value* value, const TypeInfo&) {
    if (sqlite3_value_type(value) != SQLITE_TEXT) // NaN
        requireForm(SQLITE_FLOAT, value);
    writeUntyped(rows, value);
}

// As many digits as a float has.
void writeFloat(CellStore& rows, sqlite3_value* value, const TypeInfo& type) {
    const double real = realOf(value);
    if (sqlite3_value_type(value) != SQLITE_FLOAT || !std::isfinite(real))
        return writeDouble(rows, value, type);
    char digits[64];
    const auto end = std::to_chars(digits, digits + sizeof digits, static_cast<float>(real)).ptr;
    double shown = real;
    std::from_chars(digits, end, shown);
    appendReal(rows, shown);
}

// Dates of our era without a fraction, which are nearly all.
bool writePlainDate(CellStore& rows, std::string_view bytes) {
    constexpr size_t plainBytes = 7;
    if (bytes.size() != plainBytes)
        return false;
    const auto byte = [&](size_t i) { return int(static_cast<unsigned char>(bytes[i])); };
    if (byte(0) < hundred || byte(1) < hundred)
        return false;
    char* const cell = rows.shortCell();
    char* at = writeTwo(writeTwo(cell, byte(0) - hundred), byte(1) - hundred);
    *at++ = '-';
    at = writeTwo(at, byte(2));
    *at++ = '-';
    at = writeTwo(at, byte(3));
    if (byte(4) != 1 || byte(5) != 1 || byte(6) != 1) {
        *at++ = ' ';
        at = writeTwo(at, byte(4) - 1);
        *at++ = ':';
        at = writeTwo(at, byte(5) - 1);
        *at++ = ':';
        at = writeTwo(at, byte(6) - 1);
    }
    rows.commit(int(at - cell));
    return true;
}

void writeDate(CellStore& rows, sqlite3_value* value, const TypeInfo&) {
    requireForm(SQLITE_BLOB, value);
    const std::string_view bytes = bytesOf(value);
    if (writePlainDate(rows, bytes))
        return;
    if (sqlite3_value_type(value) == SQLITE_BLOB)
        appendText(rows, OracleDate::fromBytes(bytes.data(), bytes.size()).cellText());
    else
        writeUntyped(rows, value);
}

void writeZoned(CellStore& rows, sqlite3_value* value, const TypeInfo&) {
    requireForm(SQLITE_BLOB, value);
    if (sqlite3_value_type(value) != SQLITE_BLOB)
        return writeUntyped(rows, value);
    appendText(rows, ZonedTime::fromBytes(bytesOf(value)).cellText());
}

void writeYearMonth(CellStore& rows, sqlite3_value* value, const TypeInfo& type) {
    requireForm(SQLITE_BLOB, value);
    if (sqlite3_value_type(value) != SQLITE_BLOB)
        return writeUntyped(rows, value);
    const std::string_view bytes = bytesOf(value);
    appendText(rows, YearMonthInterval::fromBytes(bytes.data(), bytes.size()).text(type.precision));
}

void writeDaySecond(CellStore& rows, sqlite3_value* value, const TypeInfo& type) {
    requireForm(SQLITE_BLOB, value);
    if (sqlite3_value_type(value) != SQLITE_BLOB)
        return writeUntyped(rows, value);
    const std::string_view bytes = bytesOf(value);
    appendText(
        rows,
        DaySecondInterval::fromBytes(bytes.data(), bytes.size()).text(type.precision, type.scale));
}

void writeBinary(CellStore& rows, sqlite3_value* value, const TypeInfo&) {
    requireForm(SQLITE_BLOB, value);
    writeUntyped(rows, value);
}

void writeText(CellStore& rows, sqlite3_value* value, const TypeInfo&) {
    requireForm(SQLITE_TEXT, value);
    const std::string_view text = bytesOf(value);
    if (text.data())
        appendText(rows, text);
    else
        writeUntyped(rows, value);
}

} // namespace

CellWriter cellWriter(SqlType type) {
    switch (familyOf(type)) {
    case TypeFamily::Number: return writeNumber;
    case TypeFamily::Binary: return type == SqlType::BinaryFloat ? writeFloat : writeDouble;
    case TypeFamily::Date:
    case TypeFamily::Timestamp:
    case TypeFamily::LocalTime: return writeDate;
    case TypeFamily::Zoned: return writeZoned;
    case TypeFamily::YearMonth: return writeYearMonth;
    case TypeFamily::DaySecond: return writeDaySecond;
    case TypeFamily::Raw: return writeBinary;
    default: return writeText;
    }
}

} // namespace ora
