#include "ParseType.h"

#include "ErrorText.h"

namespace ora {

namespace {

constexpr int InvalidDatatype = 902;
constexpr int MissingLeftParenthesis = 906;
constexpr int MissingRightParenthesis = 907;
constexpr int PrecisionOutOfRange = 1727;
constexpr int InvalidField = 30089;

constexpr int MostDigits = 38;
constexpr int DefaultFraction = 6;

enum class Shape { Plain, Digits, Whole, Bits, Sized, SizedOptional, Fraction, Ignored };

struct TypeSpelling {
    std::string_view word;
    std::string_view second; // "" when the name is one word
    std::string_view third;
    SqlType type;
    Shape shape;
    int most; // longest length; digits of a FLOAT
};

constexpr int LongestVarchar = 4000;
constexpr int LongestChar = 2000;
constexpr int MostBits = 126;
constexpr int RealBits = 63;

// Longer names before their beginnings.
constexpr TypeSpelling typeSpellings[] = {
    {"VARCHAR2", "", "", SqlType::Varchar2, Shape::Sized, LongestVarchar},
    {"VARCHAR", "", "", SqlType::Varchar2, Shape::Sized, LongestVarchar},
    {"NVARCHAR2", "", "", SqlType::Nvarchar2, Shape::Sized, LongestVarchar},
    {"CHARACTER", "VARYING", "", SqlType::Varchar2, Shape::Sized, LongestVarchar},
    {"CHAR", "VARYING", "", SqlType::Varchar2, Shape::Sized, LongestVarchar},
    {"NCHAR", "VARYING", "", SqlType::Nvarchar2, Shape::Sized, LongestVarchar},
    {"NATIONAL", "CHARACTER", "VARYING", SqlType::Nvarchar2, Shape::Sized, LongestVarchar},
    {"NATIONAL", "CHAR", "VARYING", SqlType::Nvarchar2, Shape::Sized, LongestVarchar},
    {"NATIONAL", "CHARACTER", "", SqlType::Nchar, Shape::SizedOptional, LongestChar},
    {"NATIONAL", "CHAR", "", SqlType::Nchar, Shape::SizedOptional, LongestChar},
    {"CHARACTER", "", "", SqlType::Char, Shape::SizedOptional, LongestChar},
    {"CHAR", "", "", SqlType::Char, Shape::SizedOptional, LongestChar},
    {"NCHAR", "", "", SqlType::Nchar, Shape::SizedOptional, LongestChar},
    {"RAW", "", "", SqlType::Raw, Shape::Sized, LongestChar},
    {"LONG", "RAW", "", SqlType::LongRaw, Shape::Plain, 0},
    {"LONG", "VARCHAR", "", SqlType::Long, Shape::Plain, 0},
    {"LONG", "", "", SqlType::Long, Shape::Plain, 0},
    {"CLOB", "", "", SqlType::Clob, Shape::Plain, 0},
    {"NCLOB", "", "", SqlType::Nclob, Shape::Plain, 0},
    {"BLOB", "", "", SqlType::Blob, Shape::Plain, 0},
    {"BFILE", "", "", SqlType::Bfile, Shape::Plain, 0},
    {"DATE", "", "", SqlType::Date, Shape::Plain, 0},
    {"TIMESTAMP", "", "", SqlType::Timestamp, Shape::Fraction, 0},
    {"BINARY_FLOAT", "", "", SqlType::BinaryFloat, Shape::Plain, 0},
    {"BINARY_DOUBLE", "", "", SqlType::BinaryDouble, Shape::Plain, 0},
    {"NUMBER", "", "", SqlType::Number, Shape::Digits, 0},
    {"NUMERIC", "", "", SqlType::Number, Shape::Whole, 0},
    {"DECIMAL", "", "", SqlType::Number, Shape::Whole, 0},
    {"DEC", "", "", SqlType::Number, Shape::Whole, 0},
    {"INTEGER", "", "", SqlType::Number, Shape::Ignored, 0},
    {"INT", "", "", SqlType::Number, Shape::Ignored, 0},
    {"SMALLINT", "", "", SqlType::Number, Shape::Ignored, 0},
    {"DOUBLE", "PRECISION", "", SqlType::Number, Shape::Bits, MostBits},
    {"FLOAT", "", "", SqlType::Number, Shape::Bits, MostBits},
    {"REAL", "", "", SqlType::Number, Shape::Bits, RealBits},
    {"ROWID", "", "", SqlType::Rowid, Shape::Plain, 0},
    {"UROWID", "", "", SqlType::Rowid, Shape::Fraction, 0},
};

const TypeSpelling* spellingHere(TokenCursor& cursor) {
    if (cursor.peek().kind != TokenKind::Word)
        return nullptr;
    for (const TypeSpelling& spelling : typeSpellings) {
        if (!cursor.at(spelling.word) ||
            (!spelling.second.empty() && !cursor.peek(1).isWord(spelling.second)) ||
            (!spelling.third.empty() && !cursor.peek(2).isWord(spelling.third)))
            continue;
        const int words = 1 + !spelling.second.empty() + !spelling.third.empty();
        for (int i = 0; i < words; ++i)
            cursor.next();
        return &spelling;
    }
    return nullptr;
}

int signedInteger(TokenCursor& cursor, int code) {
    const bool negative = cursor.acceptSymbol("-");
    const int value = cursor.integer(code);
    return negative ? -value : value;
}

void parseScale(TokenCursor& cursor, TypeInfo& type) {
    constexpr int ScaleOutOfRange = 1728;
    constexpr int LeastScale = -84;
    constexpr int MostScale = 127;
    if (!cursor.acceptSymbol(","))
        return;
    type.scale = signedInteger(cursor, ScaleOutOfRange);
    if (type.scale < LeastScale || type.scale > MostScale)
        cursor.fail(ScaleOutOfRange);
}

void parseDigits(TokenCursor& cursor, TypeInfo& type) {
    if (!cursor.acceptSymbol("("))
        return;
    if (!cursor.acceptSymbol("*")) {
        type.precision = cursor.integer(PrecisionOutOfRange);
        if (type.precision < 1 || type.precision > MostDigits)
            cursor.fail(PrecisionOutOfRange);
    }
    type.scaleGiven = true;
    parseScale(cursor, type);
    cursor.expectSymbol(")", MissingRightParenthesis);
}

void parseBits(TokenCursor& cursor, const TypeSpelling& spelling, TypeInfo& type) {
    type.binaryDigits = spelling.most;
    if (spelling.word != "FLOAT" || !cursor.acceptSymbol("("))
        return;
    type.binaryDigits = cursor.integer(PrecisionOutOfRange);
    if (type.binaryDigits < 1 || type.binaryDigits > MostBits)
        cursor.fail(PrecisionOutOfRange);
    cursor.expectSymbol(")", MissingRightParenthesis);
}

void parseLength(TokenCursor& cursor, const TypeSpelling& spelling, TypeInfo& type) {
    constexpr int ZeroLength = 1723;
    constexpr int TooLong = 910;
    if (!cursor.acceptSymbol("(")) {
        if (spelling.shape == Shape::Sized)
            cursor.fail(MissingLeftParenthesis);
        type.length = 1;
        return;
    }
    type.length = cursor.integer(InvalidDatatype);
    if (type.length == 0)
        cursor.fail(ZeroLength);
    if (type.length > spelling.most)
        cursor.fail(TooLong);
    type.charLength = cursor.accept("CHAR");
    type.unitGiven = type.charLength || cursor.accept("BYTE");
    cursor.expectSymbol(")", MissingRightParenthesis);
}

int parenthesizedInteger(TokenCursor& cursor, int absent) {
    if (!cursor.acceptSymbol("("))
        return absent;
    const int value = cursor.integer(InvalidDatatype);
    cursor.expectSymbol(")", MissingRightParenthesis);
    return value;
}

void parseTimestamp(TokenCursor& cursor, TypeInfo& type) {
    constexpr int MostFraction = 9;
    constexpr int OutOfRange = 30088;
    type.scale = parenthesizedInteger(cursor, DefaultFraction);
    if (type.scale > MostFraction)
        cursor.fail(OutOfRange);
    if (!cursor.at("WITH"))
        return;
    const bool local = cursor.peek(1).isWord("LOCAL");
    const std::size_t zone = local ? 2 : 1;
    if (!cursor.peek(zone).isWord("TIME") || !cursor.peek(zone + 1).isWord("ZONE"))
        return;
    for (std::size_t i = 0; i < zone + 2; ++i)
        cursor.next();
    type.type = local ? SqlType::TimestampLocalTz : SqlType::TimestampTz;
}

TypeInfo parseIntervalType(TokenCursor& cursor) {
    const IntervalQualifier qualifier = parseIntervalQualifier(cursor);
    TypeInfo type;
    type.type = qualifier.first <= DateField::Month ? SqlType::IntervalYearToMonth
                                                    : SqlType::IntervalDayToSecond;
    type.precision = qualifier.leadingDigits;
    type.scale = qualifier.fractionDigits;
    return type;
}

[[noreturn]] void failType(const TokenCursor& cursor) {
    if (cursor.atAnyOf({"XMLTYPE", "JSON", "SDO_GEOMETRY", "ANYDATA", "REF"}))
        refuse(std::string(cursor.peek().text) + " columns", cursor.begin());
    cursor.fail(InvalidDatatype);
}

struct FieldSpelling {
    std::string_view word;
    DateField field;
};
constexpr FieldSpelling fieldSpellings[] = {
    {"YEAR", DateField::Year}, {"MONTH", DateField::Month},   {"DAY", DateField::Day},
    {"HOUR", DateField::Hour}, {"MINUTE", DateField::Minute}, {"SECOND", DateField::Second},
};

DateField parseField(TokenCursor& cursor) {
    for (const FieldSpelling& spelling : fieldSpellings)
        if (cursor.accept(spelling.word))
            return spelling.field;
    cursor.fail(InvalidField);
}

} // namespace

TypeInfo parseType(TokenCursor& cursor) {
    if (cursor.accept("INTERVAL"))
        return parseIntervalType(cursor);
    const TypeSpelling* const spelling = spellingHere(cursor);
    if (!spelling)
        failType(cursor);
    TypeInfo type;
    type.type = spelling->type;
    type.scaleGiven = spelling->shape == Shape::Whole || spelling->shape == Shape::Ignored;
    if (spelling->shape == Shape::Digits || spelling->shape == Shape::Whole)
        parseDigits(cursor, type);
    else if (spelling->shape == Shape::Bits)
        parseBits(cursor, *spelling, type);
    else if (spelling->shape == Shape::Sized || spelling->shape == Shape::SizedOptional)
        parseLength(cursor, *spelling, type);
    else if (type.type == SqlType::Timestamp)
        parseTimestamp(cursor, type);
    else if (spelling->shape == Shape::Fraction)
        parenthesizedInteger(cursor, 0);
    return type;
}

IntervalQualifier parseIntervalQualifier(TokenCursor& cursor) {
    IntervalQualifier qualifier;
    qualifier.first = qualifier.last = parseField(cursor);
    if (cursor.acceptSymbol("(")) {
        qualifier.leadingDigits = cursor.integer(InvalidField);
        if (cursor.acceptSymbol(","))
            qualifier.fractionDigits = cursor.integer(InvalidField);
        cursor.expectSymbol(")", MissingRightParenthesis);
    }
    if (cursor.accept("TO")) {
        qualifier.last = parseField(cursor);
        if (qualifier.last == DateField::Second)
            qualifier.fractionDigits = parenthesizedInteger(cursor, DefaultFraction);
    }
    const bool months = qualifier.first <= DateField::Month;
    if (qualifier.last < qualifier.first || months != (qualifier.last <= DateField::Month))
        cursor.fail(InvalidField);
    return qualifier;
}

} // namespace ora
