#include "Types.h"

namespace ora {

namespace {

struct TypeWords {
    SqlType type;
    const char* name;
    const char* message;
};

constexpr TypeWords typeWords[] = {
    {SqlType::Null, "VARCHAR2", "CHAR"},
    {SqlType::Number, "NUMBER", "NUMBER"},
    {SqlType::BinaryFloat, "BINARY_FLOAT", "BINARY_FLOAT"},
    {SqlType::BinaryDouble, "BINARY_DOUBLE", "BINARY_DOUBLE"},
    {SqlType::Varchar2, "VARCHAR2", "CHAR"},
    {SqlType::Nvarchar2, "NVARCHAR2", "NCHAR"},
    {SqlType::Char, "CHAR", "CHAR"},
    {SqlType::Nchar, "NCHAR", "NCHAR"},
    {SqlType::Long, "LONG", "LONG"},
    {SqlType::Clob, "CLOB", "CLOB"},
    {SqlType::Nclob, "NCLOB", "NCLOB"},
    {SqlType::Date, "DATE", "DATE"},
    {SqlType::Timestamp, "TIMESTAMP", "TIMESTAMP"},
    {SqlType::TimestampTz, "TIMESTAMP", "TIMESTAMP WITH TIME ZONE"},
    {SqlType::TimestampLocalTz, "TIMESTAMP", "TIMESTAMP WITH LOCAL TIME ZONE"},
    {SqlType::IntervalYearToMonth, "INTERVAL YEAR", "INTERVAL YEAR TO MONTH"},
    {SqlType::IntervalDayToSecond, "INTERVAL DAY", "INTERVAL DAY TO SECOND"},
    {SqlType::Raw, "RAW", "BINARY"},
    {SqlType::LongRaw, "LONG RAW", "LONG BINARY"},
    {SqlType::Blob, "BLOB", "BLOB"},
    {SqlType::Bfile, "BFILE", "FILE"},
    {SqlType::Rowid, "ROWID", "ROWID"},
};

const TypeWords& wordsOf(SqlType type) {
    for (const TypeWords& words : typeWords)
        if (words.type == type)
            return words;
    return typeWords[0];
}

std::string inParentheses(int number) {
    return "(" + std::to_string(number) + ")";
}

std::string lengthOf(const TypeInfo& type) {
    if (type.length <= 0)
        return {};
    return "(" + std::to_string(type.length) + (type.charLength ? " CHAR)" : ")");
}

std::string digitsOf(const TypeInfo& type) {
    if (type.binaryDigits > 0)
        return inParentheses(type.binaryDigits);
    if (type.precision == 0)
        return type.scaleGiven ? "(*," + std::to_string(type.scale) + ")" : std::string();
    if (type.scale == 0)
        return inParentheses(type.precision);
    return "(" + std::to_string(type.precision) + "," + std::to_string(type.scale) + ")";
}

} // namespace

std::string dataTypeName(const TypeInfo& type) {
    const std::string name = wordsOf(type.type).name;
    switch (type.type) {
    case SqlType::Timestamp: return name + inParentheses(type.scale);
    case SqlType::TimestampTz: return name + inParentheses(type.scale) + " WITH TIME ZONE";
    case SqlType::TimestampLocalTz:
        return name + inParentheses(type.scale) + " WITH LOCAL TIME ZONE";
    case SqlType::Number: return type.binaryDigits > 0 ? "FLOAT" : name;
    case SqlType::IntervalYearToMonth: return name + inParentheses(type.precision) + " TO MONTH";
    case SqlType::IntervalDayToSecond:
        return name + inParentheses(type.precision) + " TO SECOND" + inParentheses(type.scale);
    default: return name;
    }
}

std::string declarationOf(const TypeInfo& type) {
    const TypeFamily family = familyOf(type.type);
    if (family == TypeFamily::Number)
        return dataTypeName(type) + digitsOf(type);
    const bool sized = family == TypeFamily::Text || type.type == SqlType::Raw;
    return dataTypeName(type) + (sized ? lengthOf(type) : std::string());
}

const char* messageName(SqlType type) {
    return wordsOf(type).message;
}

} // namespace ora
