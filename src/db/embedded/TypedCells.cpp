#include "TypedCells.h"

#include "CellStore.h"
#include "CellText.h"
#include "IntervalValue.h"
#include "OracleDate.h"
#include "OracleNumber.h"

#include <string_view>

namespace ora {

namespace {

std::string_view bytesOf(sqlite3_value* value) {
    const auto* bytes = static_cast<const char*>(sqlite3_value_blob(value));
    return {bytes, size_t(sqlite3_value_bytes(value))};
}

std::string_view textOf(sqlite3_value* value) {
    const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(value));
    return {text, size_t(sqlite3_value_bytes(value))};
}

void writeUntyped(CellStore& rows, sqlite3_value* value, int form) {
    switch (form) {
    case SQLITE_INTEGER: return appendInteger(rows, sqlite3_value_int64(value));
    case SQLITE_FLOAT: return appendReal(rows, sqlite3_value_double(value));
    case SQLITE_BLOB: return appendBinary(rows, bytesOf(value));
    default: return appendText(rows, textOf(value));
    }
}

// Whether a value has the engine's form of its type; where not, it is shown all the same.
bool isStoredAs(int expected, CellStore& rows, sqlite3_value* value, int form) {
    if (form == expected)
        return true;
    Q_ASSERT_X(false, "cell", "a result value without its type's stored form");
    writeUntyped(rows, value, form);
    return false;
}

char* writeTwo(char* at, int number) {
    constexpr int ten = 10;
    *at++ = char('0' + number / ten);
    *at++ = char('0' + number % ten);
    return at;
}

// Positive numbers below 10^16 with at most 16 digits behind the point, which are nearly all:
// straight from the stored digits.
bool writePlainNumber(CellStore& rows, std::string_view bytes) {
    constexpr int exponentBias = 193;
    constexpr int mostPairs = 8;
    constexpr int ten = 10;
    const int exponent = int(static_cast<unsigned char>(bytes[0])) - exponentBias;
    const int count = int(bytes.size()) - 1;
    if (exponent < 0 || exponent >= mostPairs || count < 1 || count > 2 * mostPairs)
        return false;
    const auto digit = [&](int i) {
        return int(static_cast<unsigned char>(bytes[size_t(i) + 1])) - 1;
    };
    for (int i = 0; i < count; ++i) {
        if (digit(i) < 0 || digit(i) > 99)
            return false; // damaged
    }
    char* const cell = rows.shortCell();
    char* at = cell;
    if (digit(0) >= ten)
        at = writeTwo(at, digit(0));
    else
        *at++ = char('0' + digit(0));
    for (int i = 1; i <= exponent; ++i)
        at = writeTwo(at, i < count ? digit(i) : 0);
    if (count > exponent + 1) {
        *at++ = '.';
        for (int i = exponent + 1; i < count; ++i)
            at = writeTwo(at, digit(i));
        if (at[-1] == '0')
            --at;
    }
    rows.commit(int(at - cell));
    return true;
}

void writeNumber(CellStore& rows, sqlite3_value* value, int form, const TypeInfo&) {
    if (!isStoredAs(SQLITE_BLOB, rows, value, form))
        return;
    const std::string_view bytes = bytesOf(value);
    if (!bytes.empty() && writePlainNumber(rows, bytes))
        return;
    static_assert(OracleNumber::MaxTextSize <= 250);
    const auto size =
        OracleNumber::fromBytes(bytes.data(), bytes.size()).writeCell(rows.shortCell());
    rows.commit(int(size));
}

void writeDouble(CellStore& rows, sqlite3_value* value, int form, const TypeInfo&) {
    if (isStoredAs(SQLITE_FLOAT, rows, value, form))
        appendReal(rows, sqlite3_value_double(value));
}

// Dates of our era without a fraction, which are nearly all.
bool writePlainDate(CellStore& rows, std::string_view bytes) {
    constexpr size_t plainBytes = 7;
    constexpr int centuryBase = 100;
    if (bytes.size() != plainBytes)
        return false;
    const auto byte = [&](size_t i) { return int(static_cast<unsigned char>(bytes[i])); };
    const int century = byte(0) - centuryBase;
    const int year = byte(1) - centuryBase;
    if (century < 0 || century > 99 || year < 0 || year > 99)
        return false;
    char* const cell = rows.shortCell();
    char* at = writeTwo(writeTwo(cell, century), year);
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

void writeDate(CellStore& rows, sqlite3_value* value, int form, const TypeInfo&) {
    if (!isStoredAs(SQLITE_BLOB, rows, value, form))
        return;
    const std::string_view bytes = bytesOf(value);
    if (!writePlainDate(rows, bytes))
        appendText(rows, OracleDate::fromBytes(bytes.data(), bytes.size()).cellText());
}

void writeYearMonth(CellStore& rows, sqlite3_value* value, int form, const TypeInfo& type) {
    if (!isStoredAs(SQLITE_BLOB, rows, value, form))
        return;
    const std::string_view bytes = bytesOf(value);
    appendText(rows, YearMonthInterval::fromBytes(bytes.data(), bytes.size()).text(type.precision));
}

void writeDaySecond(CellStore& rows, sqlite3_value* value, int form, const TypeInfo& type) {
    if (!isStoredAs(SQLITE_BLOB, rows, value, form))
        return;
    const std::string_view bytes = bytesOf(value);
    appendText(
        rows,
        DaySecondInterval::fromBytes(bytes.data(), bytes.size()).text(type.precision, type.scale));
}

void writeBinary(CellStore& rows, sqlite3_value* value, int form, const TypeInfo&) {
    if (isStoredAs(SQLITE_BLOB, rows, value, form))
        appendBinary(rows, bytesOf(value));
}

void writeText(CellStore& rows, sqlite3_value* value, int form, const TypeInfo&) {
    if (isStoredAs(SQLITE_TEXT, rows, value, form))
        appendText(rows, textOf(value));
}

} // namespace

CellWriter cellWriter(SqlType type) {
    switch (familyOf(type)) {
    case TypeFamily::Number: return writeNumber;
    case TypeFamily::Binary: return writeDouble;
    case TypeFamily::Date:
    case TypeFamily::Timestamp: return writeDate;
    case TypeFamily::YearMonth: return writeYearMonth;
    case TypeFamily::DaySecond: return writeDaySecond;
    case TypeFamily::Raw: return writeBinary;
    default: return writeText;
    }
}

} // namespace ora
