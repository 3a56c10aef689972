#include "OdbcColumns.h"

#include "OdbcError.h"
#include "OdbcText.h"
#include "PlainText.h"

#include <QDate>

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <cstring>

namespace {

// Wider cells are not bound: they are read in pieces, as long as they are.
constexpr SQLULEN widestBoundCharacters = 4000;
constexpr qsizetype widestNumber = 160; // digits of a bound number; more is read again
constexpr qsizetype dateBytes = 64;
constexpr qsizetype mostDigits = 20; // of an integer, with its sign

// Characters outside the basic plane take two units of UTF-16 and four bytes of UTF-8.
constexpr qsizetype unitsPerCharacter = 2;
constexpr qsizetype bytesPerCharacter = 4;

struct Described {
    QString name;
    SQLSMALLINT type = SQL_UNKNOWN_TYPE;
    SQLULEN size = 0;
};

Described describe(const OdbcHandle& statement, SQLUSMALLINT number, const DriverHabits& habits) {
    Described described;
    SQLSMALLINT digits = 0, nullable = 0;
    const auto wide = [&](SQLWCHAR* name, SQLSMALLINT units, SQLSMALLINT* length) {
        return SQLDescribeColW(statement.get(), number, name, units, length, &described.type,
                               &described.size, &digits, &nullable);
    };
    const auto narrow = [&](SQLCHAR* name, SQLSMALLINT units, SQLSMALLINT* length) {
        return SQLDescribeCol(statement.get(), number, name, units, length, &described.type,
                              &described.size, &digits, &nullable);
    };
    const auto name = habits.narrowCalls ? readText<SQLCHAR>(narrow) : readText<SQLWCHAR>(wide);
    if (!name)
        throw errorOf(diagnosisOf(statement, habits.narrowCalls));
    described.name = *name;
    return described;
}

CellShape textShape(const DriverHabits& habits) {
    return habits.utf8Cells ? CellShape::Narrow : CellShape::Wide;
}

CellShape shapeOf(SQLSMALLINT type, const DriverHabits& habits) {
    switch (type) {
    case SQL_INTEGER:
    case SQL_SMALLINT:
    case SQL_TINYINT:
    case SQL_BIGINT: return habits.plainIntegers ? CellShape::Integer : CellShape::Number;
    case SQL_NUMERIC:
    case SQL_DECIMAL:
    case SQL_FLOAT:
    case SQL_REAL:
    case SQL_DOUBLE: return CellShape::Number;
    case SQL_BIT: return CellShape::Bit;
    case SQL_TYPE_DATE: return CellShape::Date;
    case SQL_TYPE_TIMESTAMP:
        return habits.timestampParts && habits.rereadsBlocks ? CellShape::Timestamp
                                                             : CellShape::Date;
    case SQL_BINARY:
    case SQL_VARBINARY:
    case SQL_LONGVARBINARY: return CellShape::Binary;
    default: return textShape(habits);
    }
}

ColumnType typeOf(CellShape shape) {
    switch (shape) {
    case CellShape::Number:
    case CellShape::Integer:
    case CellShape::Bit: return ColumnType::Number;
    case CellShape::Date:
    case CellShape::Timestamp: return ColumnType::Date;
    case CellShape::Binary: return ColumnType::Binary;
    default: return ColumnType::Text;
    }
}

bool isLong(const Described& described) {
    return described.type == SQL_LONGVARCHAR || described.type == SQL_WLONGVARCHAR ||
           described.type == SQL_LONGVARBINARY || described.size == 0 ||
           described.size > widestBoundCharacters;
}

// A driver that can be asked again for a cell that did not fit need not have its long columns read
// one by one: most of their values are short.
qsizetype cellBytesOf(const Described& described, CellShape shape, const DriverHabits& habits) {
    if (shape == CellShape::Number)
        return widestNumber;
    if (shape == CellShape::Integer)
        return sizeof(SQLBIGINT);
    if (shape == CellShape::Bit)
        return sizeof(SQLCHAR);
    if (shape == CellShape::Date)
        return dateBytes;
    if (shape == CellShape::Timestamp)
        return sizeof(SQL_TIMESTAMP_STRUCT);
    if (isLong(described) && !habits.rereadsBlocks)
        return 0;
    const auto characters =
        isLong(described) ? qsizetype(widestBoundCharacters) / 4 : qsizetype(described.size);
    switch (shape) {
    case CellShape::Wide: return (characters * unitsPerCharacter + 1) * qsizetype(sizeof(SQLWCHAR));
    case CellShape::Narrow: return characters * bytesPerCharacter + 1;
    default: return characters;
    }
}

char* writeDigits(char* at, quint32 value, int digits) {
    for (int i = digits; i-- > 0; value /= 10)
        at[i] = char('0' + value % 10);
    return at + digits;
}

// As plainDate would leave it.
qsizetype writeTimestamp(char* to, const SQL_TIMESTAMP_STRUCT& timestamp) {
    char* at = writeDigits(to, timestamp.year, 4);
    *at++ = '-';
    at = writeDigits(at, timestamp.month, 2);
    *at++ = '-';
    at = writeDigits(at, timestamp.day, 2);
    if (timestamp.hour == 0 && timestamp.minute == 0 && timestamp.second == 0 &&
        timestamp.fraction == 0)
        return at - to;
    *at++ = ' ';
    at = writeDigits(at, timestamp.hour, 2);
    *at++ = ':';
    at = writeDigits(at, timestamp.minute, 2);
    *at++ = ':';
    at = writeDigits(at, timestamp.second, 2);
    if (timestamp.fraction == 0)
        return at - to;
    *at++ = '.';
    at = writeDigits(at, timestamp.fraction, 9);
    while (at[-1] == '0')
        --at;
    return at - to;
}

} // namespace

bool isDoubtful(const SQL_TIMESTAMP_STRUCT& timestamp) {
    if (timestamp.year < 1)
        return true;
    if (timestamp.hour != 0 || timestamp.minute != 0 || timestamp.second != 0)
        return false;
    const QDate date(timestamp.year, timestamp.month, timestamp.day);
    return std::abs(date.daysTo(QDate::currentDate())) <= 1;
}

std::vector<OdbcColumn> describeColumns(const OdbcHandle& statement, const DriverHabits& habits) {
    SQLSMALLINT count = 0;
    if (!SQL_SUCCEEDED(SQLNumResultCols(statement.get(), &count)))
        throw errorOf(diagnosisOf(statement, habits.narrowCalls));
    std::vector<OdbcColumn> columns(size_t(std::max<SQLSMALLINT>(count, 0)));
    for (size_t i = 0; i < columns.size(); ++i) {
        const Described described = describe(statement, SQLUSMALLINT(i + 1), habits);
        OdbcColumn& column = columns[i];
        column.shape = shapeOf(described.type, habits);
        column.column = {described.name, typeOf(column.shape)};
        column.cellBytes = cellBytesOf(described, column.shape, habits);
    }
    return columns;
}

SQLSMALLINT targetType(CellShape shape) {
    switch (shape) {
    case CellShape::Wide: return SQL_C_WCHAR;
    case CellShape::Integer: return SQL_C_SBIGINT;
    case CellShape::Bit: return SQL_C_BIT; // not every driver makes a digit of it
    case CellShape::Timestamp: return SQL_C_TYPE_TIMESTAMP;
    case CellShape::Binary: return SQL_C_BINARY;
    default: return SQL_C_CHAR;
    }
}

qsizetype terminatorBytes(CellShape shape) {
    switch (shape) {
    case CellShape::Wide: return sizeof(SQLWCHAR);
    case CellShape::Integer:
    case CellShape::Bit:
    case CellShape::Timestamp:
    case CellShape::Binary: return 0;
    default: return 1;
    }
}

void appendCell(CellStore& rows, CellShape shape, const char* data, qsizetype bytes) {
    QByteArray cell;
    switch (shape) {
    case CellShape::Narrow:
        if (std::all_of(data, data + bytes, [](char c) { return c >= 0; })) {
            rows.append(data, bytes);
            return;
        }
        cell = repairedUtf8(QByteArray(data, bytes));
        break;
    case CellShape::Wide:
        appendUtf8(cell, reinterpret_cast<const SQLWCHAR*>(data),
                   bytes / qsizetype(sizeof(SQLWCHAR)));
        break;
    case CellShape::Number:
        if (const auto plain = alreadyPlainNumber({data, bytes}); !plain.isEmpty()) {
            rows.append(plain.data(), plain.size());
            return;
        }
        cell = plainNumber({data, bytes});
        break;
    case CellShape::Integer: {
        SQLBIGINT number;
        std::memcpy(&number, data, sizeof number);
        char* const cell = rows.shortCell();
        rows.commit(int(std::to_chars(cell, cell + mostDigits, number).ptr - cell));
        return;
    }
    case CellShape::Bit: rows.append(*data ? "1" : "0", 1); return;
    case CellShape::Date: {
        const QByteArrayView date = plainDate({data, bytes});
        rows.append(date.data(), date.size());
        return;
    }
    case CellShape::Timestamp: {
        SQL_TIMESTAMP_STRUCT timestamp;
        std::memcpy(&timestamp, data, sizeof timestamp);
        rows.commit(int(writeTimestamp(rows.shortCell(), timestamp)));
        return;
    }
    case CellShape::Binary: cell = QByteArray(data, bytes).toHex().toUpper(); break;
    }
    rows.append(cell.constData(), cell.size());
}
