#pragma once

#include <string>

namespace ora {

// The static types of expressions and columns. familyOf() tells which are stored and compared
// alike.
enum class SqlType {
    Null, // the literal NULL before anything decides its type
    Number,
    BinaryFloat,
    BinaryDouble,
    Varchar2,
    Nvarchar2,
    Char, // stored blank-padded
    Nchar,
    Long,
    Clob,
    Nclob,
    Date,
    Timestamp,
    TimestampTz,      // stored with its zone: ZonedTime
    TimestampLocalTz, // stored as a TIMESTAMP in UTC
    IntervalYearToMonth,
    IntervalDayToSecond,
    Raw,
    LongRaw,
    Blob,
    Bfile,
    Rowid,
};

// What conversions, comparison and function overloads look at.
enum class TypeFamily {
    Null,
    Number,
    Binary,
    Text,
    Date,
    Timestamp,
    Zoned,
    LocalTime,
    YearMonth,
    DaySecond,
    Raw,
    Rowid
};

struct TypeInfo {
    SqlType type = SqlType::Varchar2;

    // Text: characters (bytes for RAW); 0 when nobody declared any.
    int length = 0;
    // NUMBER: digits, 0 = as many as fit. TIMESTAMP and the seconds of an interval: scale holds the
    // fractional digits and precision the leading field's.
    int precision = 0;
    // NUMBER: only meaningful when scaleGiven or precision > 0; may be negative.
    int scale = 0;
    bool scaleGiven = false;
    // FLOAT(126): a NUMBER whose digits are counted in bits; 0 for every other type.
    int binaryDigits = 0;
    // VARCHAR2(10 CHAR) against VARCHAR2(10 BYTE): the dictionary shows which.
    bool charLength = false;
    // BYTE or CHAR stood there, so that NLS_LENGTH_SEMANTICS has no say.
    bool unitGiven = false;

    friend bool operator==(const TypeInfo&, const TypeInfo&) = default;
};

constexpr TypeFamily familyOf(SqlType type) {
    switch (type) {
    case SqlType::Null: return TypeFamily::Null;
    case SqlType::Number: return TypeFamily::Number;
    case SqlType::BinaryFloat:
    case SqlType::BinaryDouble: return TypeFamily::Binary;
    case SqlType::Date: return TypeFamily::Date;
    case SqlType::Timestamp: return TypeFamily::Timestamp;
    case SqlType::TimestampTz: return TypeFamily::Zoned;
    case SqlType::TimestampLocalTz: return TypeFamily::LocalTime;
    case SqlType::IntervalYearToMonth: return TypeFamily::YearMonth;
    case SqlType::IntervalDayToSecond: return TypeFamily::DaySecond;
    case SqlType::Raw:
    case SqlType::LongRaw:
    case SqlType::Blob:
    case SqlType::Bfile: return TypeFamily::Raw;
    case SqlType::Rowid: return TypeFamily::Rowid;
    default: return TypeFamily::Text;
    }
}

// DATE and TIMESTAMP have one stored form and mix freely.
constexpr bool isDatetime(SqlType type) {
    return familyOf(type) == TypeFamily::Date || familyOf(type) == TypeFamily::Timestamp;
}

constexpr bool isZoned(SqlType type) {
    return familyOf(type) == TypeFamily::Zoned || familyOf(type) == TypeFamily::LocalTime;
}

// NUMBER and the binary numbers.
constexpr bool isNumeric(SqlType type) {
    return familyOf(type) == TypeFamily::Number || familyOf(type) == TypeFamily::Binary;
}

// CHAR and NCHAR compare padded with blanks; every other text compares as it stands.
constexpr bool isPadded(SqlType type) {
    return type == SqlType::Char || type == SqlType::Nchar;
}

// "VARCHAR2", "TIMESTAMP(6) WITH TIME ZONE", "INTERVAL DAY(2) TO SECOND(6)": the dictionary's
// DATA_TYPE, which has the digits of timestamps and intervals in it and no length.
std::string dataTypeName(const TypeInfo& type);

// The type as CREATE TABLE would write it: "VARCHAR2(30)", "NUMBER(7,2)".
std::string declarationOf(const TypeInfo& type);

// The short word that the server's messages use: "NUMBER", "CHAR", "DATE".
const char* messageName(SqlType type);

} // namespace ora
