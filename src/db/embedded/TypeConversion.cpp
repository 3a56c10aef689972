#include "FunctionTable.h"

#include "OraError.h"

#include <string>

namespace ora {

namespace {

using enum TypeFamily;

struct ConversionRow {
    TypeFamily from;
    TypeFamily to;
    const char* function;
};

// Families that are stored alike need none; pairs that are missing are inconsistent datatypes.
constexpr ConversionRow conversions[] = {
    {Number, Text, "num_text"},
    {Number, Binary, "num_double"},
    {Binary, Number, "double_num"},
    {Binary, Text, "double_text"},
    {Text, Number, "text_num"},
    {Text, Binary, "text_double"},
    {Text, Date, "text_date"},
    {Text, Timestamp, "text_ts"},
    {Text, YearMonth, "ora_to_yminterval"},
    {Text, DaySecond, "ora_to_dsinterval"},
    {Text, Raw, "ora_hextoraw"},
    {Text, Rowid, ""},
    {Date, Text, "date_text"},
    {Date, Timestamp, ""},
    {Date, Zoned, "ts_tz"},
    {Date, LocalTime, "ts_ltz"},
    {Timestamp, Text, "ts_text"},
    {Timestamp, Zoned, "ts_tz"},
    {Timestamp, LocalTime, "ts_ltz"},
    {Text, Zoned, "text_tz"},
    {Text, LocalTime, "text_ltz"},
    {Zoned, Text, "tz_text"},
    {Zoned, Date, "tz_date"},
    {Zoned, Timestamp, "tz_ts"},
    {Zoned, LocalTime, "tz_utc"},
    {LocalTime, Text, "ltz_text"},
    {LocalTime, Date, "ltz_date"},
    {LocalTime, Timestamp, "ltz_ts"},
    {LocalTime, Zoned, "ltz_tz"},
    {Timestamp, Date, "date_cast"},
    {YearMonth, Text, "ym_text"},
    {DaySecond, Text, "ds_text"},
    {Raw, Text, "ora_rawtohex"},
    {Rowid, Text, ""},
};

struct OperatorRow {
    char symbol;
    TypeFamily left;
    TypeFamily right;
    const char* function;
    SqlType result;
    bool swapped;
};

constexpr bool Straight = false;
constexpr bool Swapped = true;

constexpr OperatorRow operators[] = {
    {'+', Number, Number, "num_add", SqlType::Number, Straight},
    {'-', Number, Number, "num_sub", SqlType::Number, Straight},
    {'*', Number, Number, "num_mul", SqlType::Number, Straight},
    {'/', Number, Number, "num_div", SqlType::Number, Straight},
    {'+', Binary, Binary, "double_add", SqlType::BinaryDouble, Straight},
    {'-', Binary, Binary, "double_sub", SqlType::BinaryDouble, Straight},
    {'*', Binary, Binary, "double_mul", SqlType::BinaryDouble, Straight},
    {'/', Binary, Binary, "double_div", SqlType::BinaryDouble, Straight},
    {'+', Date, Number, "date_add", SqlType::Date, Straight},
    {'+', Number, Date, "date_add", SqlType::Date, Swapped},
    {'-', Date, Number, "date_less", SqlType::Date, Straight},
    {'-', Date, Date, "date_sub", SqlType::Number, Straight},
    {'+', Timestamp, Number, "date_add", SqlType::Date, Straight},
    {'+', Number, Timestamp, "date_add", SqlType::Date, Swapped},
    {'-', Timestamp, Number, "date_less", SqlType::Date, Straight},
    {'-', Timestamp, Timestamp, "ts_sub", SqlType::IntervalDayToSecond, Straight},
    {'-', Timestamp, Date, "ts_sub", SqlType::IntervalDayToSecond, Straight},
    {'-', Date, Timestamp, "ts_sub", SqlType::IntervalDayToSecond, Straight},
    {'+', Date, YearMonth, "date_add_ym", SqlType::Date, Straight},
    {'+', YearMonth, Date, "date_add_ym", SqlType::Date, Swapped},
    {'-', Date, YearMonth, "date_less_ym", SqlType::Date, Straight},
    {'+', Timestamp, YearMonth, "date_add_ym", SqlType::Timestamp, Straight},
    {'+', YearMonth, Timestamp, "date_add_ym", SqlType::Timestamp, Swapped},
    {'-', Timestamp, YearMonth, "date_less_ym", SqlType::Timestamp, Straight},
    {'+', Date, DaySecond, "date_add_ds", SqlType::Date, Straight},
    {'+', DaySecond, Date, "date_add_ds", SqlType::Date, Swapped},
    {'-', Date, DaySecond, "date_less_ds", SqlType::Date, Straight},
    {'+', Timestamp, DaySecond, "ts_add_ds", SqlType::Timestamp, Straight},
    {'+', DaySecond, Timestamp, "ts_add_ds", SqlType::Timestamp, Swapped},
    {'-', Timestamp, DaySecond, "ts_less_ds", SqlType::Timestamp, Straight},
    {'-', Zoned, Zoned, "tz_sub", SqlType::IntervalDayToSecond, Straight},
    {'+', Zoned, YearMonth, "tz_add_ym", SqlType::TimestampTz, Straight},
    {'+', YearMonth, Zoned, "tz_add_ym", SqlType::TimestampTz, Swapped},
    {'-', Zoned, YearMonth, "tz_less_ym", SqlType::TimestampTz, Straight},
    {'+', Zoned, DaySecond, "tz_add_ds", SqlType::TimestampTz, Straight},
    {'+', DaySecond, Zoned, "tz_add_ds", SqlType::TimestampTz, Swapped},
    {'-', Zoned, DaySecond, "tz_less_ds", SqlType::TimestampTz, Straight},
    {'+', YearMonth, YearMonth, "ym_add", SqlType::IntervalYearToMonth, Straight},
    {'-', YearMonth, YearMonth, "ym_sub", SqlType::IntervalYearToMonth, Straight},
    {'*', YearMonth, Number, "ym_mul", SqlType::IntervalYearToMonth, Straight},
    {'*', Number, YearMonth, "ym_mul", SqlType::IntervalYearToMonth, Swapped},
    {'/', YearMonth, Number, "ym_div", SqlType::IntervalYearToMonth, Straight},
    {'+', DaySecond, DaySecond, "ds_add", SqlType::IntervalDayToSecond, Straight},
    {'-', DaySecond, DaySecond, "ds_sub", SqlType::IntervalDayToSecond, Straight},
    {'*', DaySecond, Number, "ds_mul", SqlType::IntervalDayToSecond, Straight},
    {'*', Number, DaySecond, "ds_mul", SqlType::IntervalDayToSecond, Swapped},
    {'/', DaySecond, Number, "ds_div", SqlType::IntervalDayToSecond, Straight},
};

bool isInterval(TypeFamily family) {
    return family == YearMonth || family == DaySecond;
}

bool isDatetime(TypeFamily family) {
    return family == Date || family == Timestamp;
}

// Text in arithmetic is a number; so is NULL, and next to an interval or a binary number it takes
// the other side's kind. A time with a zone keeps it next to intervals and other times.
TypeFamily operandFamily(SqlType type, TypeFamily other) {
    const TypeFamily family = familyOf(type);
    const bool zonedOther = other == Zoned || other == LocalTime;
    if (family == Zoned || family == LocalTime)
        return isInterval(other) || isDatetime(other) || zonedOther ? Zoned : Timestamp;
    if (isDatetime(family) && zonedOther)
        return Zoned;
    if (family == Text || family == Null)
        return other == Binary ? Binary : Number;
    if (family == Number && other == Binary)
        return Binary;
    return family;
}

SqlType typeOfFamily(TypeFamily family, SqlType given) {
    if (familyOf(given) == family)
        return given;
    switch (family) {
    case Binary: return SqlType::BinaryDouble;
    case Timestamp: return SqlType::Timestamp;
    case Zoned: return SqlType::TimestampTz;
    default: return SqlType::Number;
    }
}

[[noreturn]] void throwNoOperator(char symbol, TypeFamily left, TypeFamily right, SqlType leftType,
                                  SqlType rightType) {
    if (symbol == '+' && (isDatetime(left) || left == Zoned) &&
        (isDatetime(right) || right == Zoned))
        throw OraError(975, "date + date not allowed");
    if (isInterval(left) || isInterval(right))
        throw OraError(30081, "invalid data type for datetime/interval arithmetic");
    const SqlType offending = left == Number || left == Binary ? rightType : leftType;
    throw OraError(932, std::string("inconsistent datatypes: expected NUMBER got ") +
                            messageName(offending));
}

} // namespace

const char* conversionFunction(SqlType from, SqlType to) {
    const TypeFamily source = familyOf(from);
    const TypeFamily target = familyOf(to);
    if (source == target || source == Null || target == Null)
        return "";
    if (from == SqlType::BinaryFloat && target == Text)
        return "float_text";
    for (const ConversionRow& row : conversions) {
        if (row.from == source && row.to == target)
            return row.function;
    }
    return nullptr;
}

OperatorChoice findOperator(char symbol, SqlType left, SqlType right) {
    const TypeFamily leftFamily = operandFamily(left, familyOf(right));
    const TypeFamily rightFamily = operandFamily(right, familyOf(left));
    for (const OperatorRow& row : operators) {
        if (row.symbol == symbol && row.left == leftFamily && row.right == rightFamily)
            return {row.function, typeOfFamily(leftFamily, left), typeOfFamily(rightFamily, right),
                    row.result, row.swapped};
    }
    throwNoOperator(symbol, leftFamily, rightFamily, left, right);
}

OperatorChoice findNegation(SqlType operand) {
    const TypeFamily family = operandFamily(operand, Null);
    const SqlType type = typeOfFamily(family, operand);
    switch (family) {
    case Number: return {"num_neg", type, type, SqlType::Number, Straight};
    case Binary: return {"double_neg", type, type, SqlType::BinaryDouble, Straight};
    case YearMonth: return {"ym_neg", type, type, type, Straight};
    case DaySecond: return {"ds_neg", type, type, type, Straight};
    default:
        throw OraError(932, std::string("inconsistent datatypes: expected NUMBER got ") +
                                messageName(operand));
    }
}

} // namespace ora
