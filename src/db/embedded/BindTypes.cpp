#include "Binding.h"
#include "ErrorText.h"
#include "TimeZone.h"

#include <algorithm>

// Conversions that the server makes without being asked.
namespace ora {

namespace {

constexpr int Inconsistent = 932;

bool isLarge(SqlType type) {
    return type == SqlType::Clob || type == SqlType::Nclob || type == SqlType::Blob;
}

std::string withoutTrailingBlanks(std::string text) {
    text.erase(text.find_last_not_of(' ') + 1);
    return text;
}

// The literal as a column of CHAR(length) compares with it.
std::string paddedLiteral(const std::string& literal, int length) {
    std::string text = withoutTrailingBlanks(literal);
    const int missing = length - characterCount(text);
    if (missing > 0)
        text.append(static_cast<std::size_t>(missing), ' ');
    return textLiteral(text);
}

bool isLiteral(const Value& value) {
    return value.literal.has_value();
}

// Blank-padded comparison, which the server uses when neither side is VARCHAR2.
Operands paddedOperands(const Value& left, const Value& right) {
    if (isLiteral(left) && isLiteral(right))
        return {textLiteral(withoutTrailingBlanks(*left.literal)),
                textLiteral(withoutTrailingBlanks(*right.literal))};
    if (isLiteral(right))
        return {left.sql, paddedLiteral(*right.literal, left.type.length)};
    if (isLiteral(left))
        return {paddedLiteral(*left.literal, right.type.length), right.sql};
    if (left.type.length == right.type.length && left.type.length > 0)
        return {left.sql, right.sql};
    return {"rtrim(" + left.sql + ",' ')", "rtrim(" + right.sql + ",' ')"};
}

Operands rowidOperands(const Value& left, const Value& right) {
    const auto side = [](const Value& value) {
        return value.rowid.empty() ? "rowid_number(" + convertTo(value, SqlType::Varchar2) + ")"
                                   : value.rowid;
    };
    return {side(left), side(right)};
}

const std::string instantBytes = std::to_string(ZonedTime::InstantBytes);

// Any two times become one with a zone when one of them has a zone.
bool areTimes(SqlType left, SqlType right) {
    return (isZoned(left) || isDatetime(left)) && (isZoned(right) || isDatetime(right));
}

// What both sides become; texts give way to everything else.
SqlType commonType(SqlType left, SqlType right) {
    const TypeFamily a = familyOf(left);
    const TypeFamily b = familyOf(right);
    if (a == b || b == TypeFamily::Null || (isDatetime(left) && isDatetime(right)))
        return left;
    if (a == TypeFamily::Null)
        return right;
    if (a == TypeFamily::Text)
        return right;
    if (b == TypeFamily::Text)
        return left;
    if (isZoned(left) || isZoned(right)) {
        if (areTimes(left, right))
            return SqlType::TimestampTz;
        raiseInconsistent(left, right);
    }
    if (a == TypeFamily::Number && b == TypeFamily::Binary)
        return right;
    if (a == TypeFamily::Binary && b == TypeFamily::Number)
        return left;
    raiseInconsistent(left, right);
}

TypeInfo widerType(TypeInfo a, const TypeInfo& b) {
    if (familyOf(a.type) == TypeFamily::Text) {
        if (a.type != b.type || (isPadded(a.type) && a.length != b.length))
            a.type = isLarge(b.type) ? b.type : isLarge(a.type) ? a.type : SqlType::Varchar2;
        a.length = std::max(a.length, b.length);
        return a;
    }
    if (a == b)
        return a;
    if (familyOf(b.type) == TypeFamily::Timestamp)
        a = b;
    if (familyOf(a.type) == TypeFamily::Number)
        a = {SqlType::Number};
    if (familyOf(a.type) == TypeFamily::Binary)
        a = {SqlType::BinaryDouble};
    return a;
}

} // namespace

void raiseInconsistent(SqlType expected, SqlType got) {
    throw OraError(Inconsistent, std::string("inconsistent datatypes: expected ") +
                                     messageName(expected) + " got " + messageName(got));
}

void requireComparable(SqlType type) {
    constexpr int IllegalLong = 997;
    if (isLarge(type))
        throw OraError(Inconsistent,
                       std::string("inconsistent datatypes: expected - got ") + messageName(type));
    if (type == SqlType::Long || type == SqlType::LongRaw)
        throw OraError(IllegalLong, "illegal use of LONG datatype");
}

std::vector<SqlType> typesOf(const std::vector<Value>& values) {
    std::vector<SqlType> types;
    for (const Value& value : values)
        types.push_back(value.type.type);
    return types;
}

namespace {

// Intervals and timestamps show the digits that their type has.
std::string textOf(const char* function, const Value& value) {
    switch (familyOf(value.type.type)) {
    case TypeFamily::Timestamp:
    case TypeFamily::Zoned:
    case TypeFamily::LocalTime:
        return call(function, {value.sql, std::to_string(value.type.scale)});
    case TypeFamily::YearMonth:
        return call(function, {value.sql, std::to_string(value.type.precision)});
    case TypeFamily::DaySecond:
        return call(function, {value.sql, std::to_string(value.type.precision),
                               std::to_string(value.type.scale)});
    default: return call(function, value.sql);
    }
}

} // namespace

std::string convertTo(const Value& value, SqlType type) {
    if (value.type.type == SqlType::Null)
        return value.sql;
    const char* const function = conversionFunction(value.type.type, type);
    if (!function)
        raiseInconsistent(type, value.type.type);
    if (familyOf(type) == TypeFamily::Text)
        return textOf(function, value);
    return call(function, value.sql);
}

Value asFloat(Value value) {
    value.sql = call("ora_to_binary_float", value.sql);
    value.type = {SqlType::BinaryFloat};
    return value;
}

bool anyDouble(std::span<const Value> values) {
    return std::any_of(values.begin(), values.end(),
                       [](const Value& value) { return value.type.type == SqlType::BinaryDouble; });
}

Operands comparable(const Value& left, const Value& right) {
    requireComparable(left.type.type);
    requireComparable(right.type.type);
    const bool rowids = !left.rowid.empty() || !right.rowid.empty();
    if (rowids && left.type.type != SqlType::Null && right.type.type != SqlType::Null)
        return rowidOperands(left, right);
    if (isPadded(left.type.type) && isPadded(right.type.type))
        return paddedOperands(left, right);
    const SqlType common = commonType(left.type.type, right.type.type);
    const auto side = [common](const Value& value) {
        const bool alike = isDatetime(value.type.type) && isDatetime(common);
        if (common == SqlType::TimestampTz) // the zone does not count
            return call("substr", {convertTo(value, common), "1", instantBytes});
        return alike ? value.sql : convertTo(value, common);
    };
    return {side(left), side(right)};
}

namespace {

// What the engine keeps, an index, a constraint or a trigger, means the same in every session.
bool sortsByLanguage(const Binding& binding) {
    return binding.impureError == 0 && !binding.insideTrigger && binding.catalog.sort() != "BINARY";
}

bool isSortedText(const Value& value) {
    return familyOf(value.type.type) == TypeFamily::Text && value.rowid.empty();
}

std::string collated(const Binding& binding, const std::string& sql) {
    return call("ora_nlssort", {sql, textLiteral(sortParameter(binding))});
}

} // namespace

std::string sortParameter(const Binding& binding) {
    return "NLS_SORT=" + binding.catalog.sort();
}

std::string sortedBy(const Binding& binding, const Value& value) {
    return isSortedText(value) && sortsByLanguage(binding) ? collated(binding, value.sql)
                                                           : value.sql;
}

bool comparesByLanguage(const Binding& binding) {
    return binding.catalog.comparesBySort() && sortsByLanguage(binding);
}

Operands comparable(const Binding& binding, const Value& left, const Value& right) {
    const Operands sides = comparable(left, right);
    if (!isSortedText(left) || !isSortedText(right) || !comparesByLanguage(binding))
        return sides;
    return {collated(binding, sides.left), collated(binding, sides.right)};
}

TypeInfo unify(std::vector<Value>& values) {
    TypeInfo type{SqlType::Null};
    for (const Value& value : values) {
        if (value.type.type == SqlType::Null)
            continue;
        if (type.type == SqlType::Null) {
            type = value.type;
            continue;
        }
        const TypeFamily known = familyOf(type.type);
        const TypeFamily other = familyOf(value.type.type);
        const bool numbers = isNumeric(type.type) && isNumeric(value.type.type);
        const bool times = areTimes(type.type, value.type.type);
        if (known != other && !numbers && !times)
            raiseInconsistent(type.type, value.type.type);
        if (numbers && known != other)
            type = known == TypeFamily::Binary ? type : value.type;
        else if (times && known != other && (isZoned(type.type) || isZoned(value.type.type)))
            type = {SqlType::TimestampTz, 0, 0, std::max(type.scale, value.type.scale)};
        else
            type = widerType(type, value.type);
    }
    for (Value& value : values)
        if (!isDatetime(type.type))
            value.sql = convertTo(value, type.type);
    return type;
}

TypeInfo unifyColumns(const TypeInfo& left, const TypeInfo& right) {
    constexpr int DifferentTypes = 1790;
    if (left.type == SqlType::Null)
        return right;
    if (right.type == SqlType::Null)
        return left;
    const TypeFamily a = familyOf(left.type);
    const TypeFamily b = familyOf(right.type);
    if (a != b && !(isDatetime(left.type) && isDatetime(right.type)))
        raise(DifferentTypes);
    return widerType(left, right);
}

namespace {

std::string fittedNumber(const std::string& sql, const TypeInfo& type) {
    constexpr int MostDigits = 38;
    if (type.binaryDigits > 0)
        return call("num_float", {sql, std::to_string(type.binaryDigits)});
    if (type.precision == 0 && !type.scaleGiven)
        return sql;
    const int precision = type.precision == 0 ? MostDigits : type.precision;
    return call("num_fit", {sql, std::to_string(precision), std::to_string(type.scale)});
}

std::string fittedText(const std::string& sql, const CatalogColumn& column, const Relation& table) {
    if (column.type.length == 0)
        return sql;
    return call("text_fit",
                {sql, std::to_string(column.type.length), column.type.charLength ? "'C'" : "'B'",
                 isPadded(column.type.type) ? "1" : "0",
                 textLiteral(displayPath(table.owner, table.name, column.name))});
}

std::string fittedDate(const std::string& sql, const TypeInfo& from, const TypeInfo& to) {
    constexpr int AllDigits = 9;
    if (familyOf(to.type) == TypeFamily::Timestamp && to.scale < AllDigits &&
        familyOf(from.type) != TypeFamily::Date)
        return call("ts_cast", {sql, std::to_string(to.scale)});
    return sql;
}

} // namespace

std::string storedValue(const Value& value, const CatalogColumn& column, const Relation& table) {
    if (value.type.type == SqlType::Null || (value.column && value.type == column.type))
        return value.sql;
    const std::string sql = convertTo(value, column.type.type);
    switch (familyOf(column.type.type)) {
    case TypeFamily::Number: return fittedNumber(sql, column.type);
    case TypeFamily::Text: return fittedText(sql, column, table);
    case TypeFamily::Date:
    case TypeFamily::Timestamp: return fittedDate(sql, value.type, column.type);
    case TypeFamily::Binary:
        return column.type.type == SqlType::BinaryFloat ? call("ora_to_binary_float", sql) : sql;
    default: return sql;
    }
}

} // namespace ora
