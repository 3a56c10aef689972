#include "Binding.h"
#include "ErrorText.h"
#include "NamedRow.h"

#include <algorithm>

// Scalar functions; group and window functions are handed on.
namespace ora {

namespace {

constexpr int InvalidIdentifier = 904;
constexpr int LongestText = 4000;

std::string nameOf(const Function& function) {
    std::string name;
    for (const Name& part : function.name)
        name += (name.empty() ? "" : ".") + std::string(part.text);
    return name;
}

std::string displayOf(const Function& function) {
    std::string name;
    for (const Name& part : function.name)
        name += (name.empty() ? "\"" : ".\"") + std::string(part.text) + '"';
    return name;
}

const Value* firstTyped(const std::vector<Value>& values) {
    for (const Value& value : values)
        if (value.type.type != SqlType::Null)
            return &value;
    return values.empty() ? nullptr : &values.front();
}

std::string argumentSql(const FunctionEntry& entry, std::size_t index,
                        const std::vector<Value>& arguments) {
    const Value& value = arguments[index];
    const Parameter parameter = entry.parameter(index);
    if (parameter == Parameter::SameAsFirst)
        return convertTo(value, firstTyped(arguments)->type.type);
    const std::string sql = convertTo(value, typeOfParameter(parameter, value.type.type));
    return parameter == Parameter::Integer ? call("num_int", sql) : sql;
}

TypeInfo widestText(const std::vector<Value>& values, TypeInfo type) {
    for (const Value& value : values)
        type.length = std::max(type.length, value.type.length);
    if (isPadded(type.type))
        type.type = SqlType::Varchar2;
    return type;
}

// Functions whose result is no longer than their first argument.
bool keepsLength(std::string_view name) {
    constexpr std::string_view names[] = {"UPPER", "LOWER", "INITCAP",       "SUBSTR", "LTRIM",
                                          "RTRIM", "TRIM",  "REGEXP_SUBSTR", "REVERSE"};
    return isOneOf(name, names);
}

TypeInfo textResult(const FunctionEntry& entry, const std::vector<Value>& arguments) {
    TypeInfo type{SqlType::Varchar2, LongestText};
    if (arguments.empty())
        return type;
    if (keepsLength(entry.name) && arguments[0].type.length > 0)
        type.length = arguments[0].type.length;
    if (arguments[0].type.type == SqlType::Clob && keepsLength(entry.name))
        type = {SqlType::Clob};
    return type;
}

TypeInfo sameAs(const Value* value, const std::vector<Value>& arguments) {
    if (!value)
        return {SqlType::Null};
    if (familyOf(value->type.type) == TypeFamily::Text)
        return widestText(arguments, value->type);
    if (value->type.type == SqlType::Number)
        return {SqlType::Number};
    return value->type;
}

TypeInfo resultType(const FunctionEntry& entry, const std::vector<Value>& arguments) {
    constexpr int FractionDigits = 6;
    constexpr int IntervalDigits = 9;
    switch (entry.result) {
    case ResultRule::Text: return textResult(entry, arguments);
    case ResultRule::Date: return {SqlType::Date};
    case ResultRule::Timestamp: return {SqlType::Timestamp, 0, 0, FractionDigits};
    case ResultRule::Zoned:
        return {SqlType::TimestampTz, 0, 0,
                arguments.empty() || arguments[0].type.scale == 0 ? FractionDigits
                                                                  : arguments[0].type.scale};
    case ResultRule::YearMonth: return {SqlType::IntervalYearToMonth, 0, IntervalDigits};
    case ResultRule::DaySecond:
        return {SqlType::IntervalDayToSecond, 0, IntervalDigits, IntervalDigits};
    case ResultRule::Raw: return {SqlType::Raw, LongestText / 2};
    case ResultRule::Clob: return {SqlType::Clob};
    case ResultRule::Rowid: return {SqlType::Rowid};
    case ResultRule::Double: return {SqlType::BinaryDouble};
    case ResultRule::Float: return {SqlType::BinaryFloat};
    case ResultRule::SameAsFirst: return sameAs(firstTyped(arguments), arguments);
    case ResultRule::SameAsSecond:
        return sameAs(arguments.size() > 1 ? &arguments[1] : nullptr, arguments);
    default: return {SqlType::Number};
    }
}

// The operand of DECODE against one search value; two nulls are equal there.
std::string decodeTest(const Value& operand, const Value& search) {
    if (search.sql == "NULL")
        return operand.sql + " IS NULL";
    const Operands sides = comparable(operand, search);
    const bool never = !search.nullable || search.literal;
    return sides.left + (never ? "=" : " IS ") + sides.right;
}

Value convertedResult(const Value& result, const Value& first) {
    Value value = result;
    const bool untyped = first.type.type == SqlType::Null;
    value.sql = convertTo(result, untyped ? SqlType::Varchar2 : first.type.type);
    return value;
}

// DECODE becomes CASE: the engine takes only so many arguments, and evaluates all of them.
Value bindDecode(Binding& binding, Scope& scope, const Function& function) {
    constexpr int NotEnoughArguments = 938;
    const auto arguments = function.arguments;
    if (arguments.size() < 3)
        raise(NotEnoughArguments, function.at.begin);
    std::vector<Value> values = bindValues(binding, scope, arguments);
    // Every search value is compared as the first one is.
    Value operand = values[0];
    if (values[1].type.type != SqlType::Null &&
        familyOf(operand.type.type) != familyOf(values[1].type.type) &&
        operand.type.type != SqlType::Null && familyOf(values[1].type.type) == TypeFamily::Text) {
        operand.sql = convertTo(operand, SqlType::Varchar2);
        operand.type = {SqlType::Varchar2};
    }
    Value value;
    std::vector<Value> results;
    value.sql = "CASE";
    std::size_t i = 1;
    for (; i + 1 < values.size(); i += 2) {
        const Value result = convertedResult(values[i + 1], values[2]);
        value.sql += " WHEN " + decodeTest(operand, values[i]) + " THEN " + result.sql;
        results.push_back(result);
    }
    if (i < values.size()) {
        results.push_back(convertedResult(values[i], values[2]));
        value.sql += " ELSE " + results.back().sql;
    }
    value.sql += " END";
    value.type = results[0].type;
    if (value.type.type == SqlType::Null || familyOf(value.type.type) == TypeFamily::Text)
        value.type = widestText(results, {SqlType::Varchar2});
    else if (value.type.type == SqlType::Number)
        value.type = {SqlType::Number};
    return value;
}

Value bindNvl2(Binding& binding, Scope& scope, const Function& function) {
    constexpr int WrongCount = 909;
    if (function.arguments.size() != 3)
        raise(WrongCount, function.at.begin);
    const std::vector<Value> values = bindValues(binding, scope, function.arguments);
    std::vector<Value> results{values[1], values[2]};
    if (values[1].type.type != SqlType::Null)
        results[1].sql = convertTo(results[1], values[1].type.type);
    Value value;
    value.type = sameAs(firstTyped(results), results);
    value.sql = "CASE WHEN " + values[0].sql + " IS NOT NULL THEN " + results[0].sql + " ELSE " +
                results[1].sql + " END";
    return value;
}

// Both sides are compared as they are: one is never converted to the other's kind.
Value bindNullIf(const std::vector<Value>& values) {
    constexpr int Inconsistent = 932;
    const SqlType left = values[0].type.type;
    const SqlType right = values[1].type.type;
    if (left == SqlType::Null)
        throw OraError(Inconsistent, std::string("inconsistent datatypes: expected - got ") +
                                         (right == SqlType::Null ? "CHAR" : messageName(right)));
    const bool alike = familyOf(left) == familyOf(right) || right == SqlType::Null ||
                       (isNumeric(left) && isNumeric(right)) ||
                       (isDatetime(left) && isDatetime(right));
    if (!alike)
        raiseInconsistent(left, right);
    Value value = values[0];
    const Operands sides = comparable(values[0], values[1]);
    value.sql =
        "CASE WHEN " + sides.left + '=' + sides.right + " THEN NULL ELSE " + values[0].sql + " END";
    value.literal.reset();
    value.column = false;
    value.nullable = true;
    return value;
}

Value bindCoalesce(std::vector<Value> values) {
    Value value;
    value.type = unify(values);
    // The engine takes only so many arguments: the last of them are a call of their own.
    constexpr std::size_t MostArguments = 100;
    std::vector<std::string> parts;
    for (std::size_t i = values.size(); i-- > 0;) {
        parts.insert(parts.begin(), values[i].sql);
        if (parts.size() == MostArguments)
            parts.assign(1, call("coalesce", parts));
    }
    value.sql = parts.size() == 1 ? parts[0] : call("coalesce", parts);
    return value;
}

// The second argument takes the first one's type, and fails to do so even where it is not needed.
Value bindNvl(const FunctionEntry& entry, const std::vector<Value>& arguments) {
    Value value = applyEntry(entry, arguments);
    const std::string second = argumentSql(entry, 1, arguments);
    if (second != arguments[1].sql)
        value.sql = call("ora_nvl", {argumentSql(entry, 0, arguments), second});
    return value;
}

Value bindTimestampText(const FunctionEntry& entry, const std::vector<Value>& arguments) {
    const std::string parameters = arguments.size() > 2 ? argumentSql(entry, 2, arguments) : "''";
    return finishResult(
        entry, arguments,
        call(entry.sqliteName, {argumentSql(entry, 0, arguments), argumentSql(entry, 1, arguments),
                                parameters, std::to_string(arguments[0].type.scale)}));
}

Value bindTypedCall(const FunctionEntry& entry, const std::vector<Value>& arguments) {
    std::vector<std::string> parts;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        parts.push_back(std::to_string(static_cast<int>(arguments[i].type.type)));
        parts.push_back(argumentSql(entry, i, arguments));
    }
    return finishResult(entry, arguments, call(entry.sqliteName, parts));
}

// GROUPING(x), GROUPING_ID(x, y …): which of the keys are totalled in the set at hand.
Value bindGrouping(Binding& binding, Scope& scope, const Function& function) {
    constexpr int NotGrouped = 979;
    std::int64_t bits = 0;
    scope.aggregates = true;
    for (const Expr* argument : function.arguments) {
        const std::size_t ungrouped = scope.ungrouped.size();
        ++scope.insideAggregate;
        const Value value = bindValue(binding, scope, *argument);
        --scope.insideAggregate;
        scope.ungrouped.resize(ungrouped);
        const auto key = scope.groupKeys.find(value.sql);
        if (key == scope.groupKeys.end())
            raise(NotGrouped, argument->at.begin);
        bits = bits * 2 + (scope.nulledKeys[key->second] ? 1 : 0);
    }
    Value value;
    value.sql = numberLiteral(std::to_string(bits));
    value.type = {SqlType::Number};
    return value;
}

Value bindGroupId(Scope& scope) {
    scope.aggregates = true;
    Value value;
    value.sql = numberLiteral(std::to_string(scope.groupId));
    value.type = {SqlType::Number};
    return value;
}

// Functions whose result depends on the session; the words without parentheses do as well.
bool dependsOnSession(std::string_view name) {
    return name == "SYS_CONTEXT" || name == "USERENV" || name == "SYS_GUID" ||
           name.starts_with("DBMS_RANDOM.");
}

// Conversions between texts and dates that leave the model to the session.
bool lacksModel(std::string_view name, const std::vector<Value>& arguments) {
    constexpr std::string_view fromText[] = {"TO_DATE", "TO_TIMESTAMP", "TO_TIMESTAMP_TZ"};
    if (arguments.size() != 1)
        return false;
    const TypeFamily family = familyOf(arguments[0].type.type);
    if (name == "TO_CHAR")
        return family == TypeFamily::Date || family == TypeFamily::Timestamp ||
               family == TypeFamily::Zoned;
    return isOneOf(name, fromText);
}

void requirePure(const Binding& binding, const std::string& name,
                 const std::vector<Value>& arguments) {
    if (binding.impureError == 0)
        return;
    if (dependsOnSession(name) || (binding.modelsGiven && lacksModel(name, arguments)))
        raise(binding.impureError);
}

// Functions that give as many digits as they were given.
bool keepsPrecision(std::string_view name) {
    constexpr std::string_view names[] = {"ABS",       "AVG",   "CEIL", "FLOOR", "MOD",
                                          "REMAINDER", "ROUND", "SUM",  "TRUNC"};
    return isOneOf(name, names);
}

// Functions see a time of the session's zone as one that carries it.
void giveZone(Value& value) {
    value.sql = convertTo(value, SqlType::TimestampTz);
    value.type.type = SqlType::TimestampTz;
}

Value bindScalar(Binding& binding, Scope& scope, const Function& function,
                 const std::string& name) {
    std::vector<Value> arguments = bindValues(binding, scope, function.arguments);
    for (Value& argument : arguments)
        if (argument.type.type == SqlType::TimestampLocalTz)
            giveZone(argument);
    const FunctionEntry* const entry = findFunction(name, typesOf(arguments));
    if (!entry || entry->result == ResultRule::Condition)
        raiseNamed(InvalidIdentifier, displayOf(function), function.at.begin);
    requirePure(binding, name, arguments);
    if (function.onError && std::string_view(entry->sqliteName).starts_with("ora_to_"))
        return withConversionDefault(*entry, arguments,
                                     bindValue(binding, scope, *function.onError));
    if (name == "CONCAT")
        return bindValue(binding, scope,
                         *binding.arena.make<ListExpr>(Expr{ExprKind::List, function.at},
                                                       ListOp::Concat, function.arguments));
    if (name == "NULLIF")
        return bindNullIf(arguments);
    if (name == "COALESCE")
        return bindCoalesce(arguments);
    if (name == "NVL")
        return bindNvl(*entry, arguments);
    if (entry->form == SpecialForm::SortOrder && arguments.size() == 1)
        arguments.push_back(literalText(sortParameter(binding)));
    if (entry->form == SpecialForm::TypedCall)
        return bindTypedCall(*entry, arguments);
    if (entry->form == SpecialForm::TimestampText)
        return bindTimestampText(*entry, arguments);
    if (entry->form == SpecialForm::DigitsText)
        return finishResult(*entry, arguments, convertTo(arguments[0], SqlType::Varchar2));
    return asBinary(*entry, arguments, applyEntry(*entry, arguments));
}

} // namespace

Value finishResult(const FunctionEntry& entry, const std::vector<Value>& arguments,
                   const std::string& call) {
    Value value;
    value.type = resultType(entry, arguments);
    value.sql = entry.result == ResultRule::NativeInteger ? numberFromInteger(call)
                : entry.result == ResultRule::NativeReal  ? ora::call("num_from_real", call)
                                                          : call;
    return value;
}

Value asBinary(const FunctionEntry& entry, const std::vector<Value>& arguments, Value value) {
    const bool binary = std::any_of(arguments.begin(), arguments.end(), [](const Value& argument) {
        return familyOf(argument.type.type) == TypeFamily::Binary;
    });
    if (!binary || entry.result != ResultRule::Number || entry.parameter(0) != Parameter::Number)
        return value;
    value.sql = call("num_double", value.sql);
    value.type = {SqlType::BinaryDouble};
    return keepsPrecision(entry.name) && !anyDouble(arguments) ? asFloat(value) : value;
}

Value applyEntry(const FunctionEntry& entry, const std::vector<Value>& arguments) {
    std::vector<std::string> parts;
    for (std::size_t i = 0; i < arguments.size(); ++i)
        parts.push_back(argumentSql(entry, i, arguments));
    return finishResult(entry, arguments, call(entry.sqliteName, parts));
}

bool isAggregateCall(const Function& function) {
    if (function.over || function.name.size() != 1)
        return false;
    const auto entries = functionsNamed(function.name[0].text);
    if (entries.empty())
        return false;
    if (!function.withinGroup.empty() || function.keep)
        return true;
    return entries[0].kind == FunctionKind::Aggregate ||
           entries[0].kind == FunctionKind::AggregateOrAnalytic;
}

std::string bindConditionCall(Binding& binding, Scope& scope, const Function& function) {
    constexpr int InvalidOperator = 920;
    const std::string name = nameOf(function);
    const auto entries = functionsNamed(name);
    if (entries.empty() || entries[0].result != ResultRule::Condition)
        raise(InvalidOperator, function.at.begin);
    const std::vector<Value> arguments = bindValues(binding, scope, function.arguments);
    return applyEntry(*findFunction(name, typesOf(arguments)), arguments).sql;
}

Value bindFunction(Binding& binding, Scope& scope, const Function& function) {
    const std::string name = nameOf(function);
    if (name == "DECODE")
        return bindDecode(binding, scope, function);
    if (name == "NVL2")
        return bindNvl2(binding, scope, function);
    if (name == "SYS_CONNECT_BY_PATH")
        return bindPath(binding, scope, function);
    if (name == "GROUPING" || name == "GROUPING_ID")
        return bindGrouping(binding, scope, function);
    if (name == "GROUP_ID")
        return bindGroupId(scope);
    if (function.over)
        return bindWindowFunction(binding, scope, function);
    if (isAggregateCall(function))
        return bindAggregate(binding, scope, function);
    const auto entries = functionsNamed(name);
    if (entries.empty())
        raiseNamed(InvalidIdentifier, displayOf(function), function.at.begin);
    if (entries[0].kind == FunctionKind::Analytic) {
        constexpr int MissingWindow = 30484;
        raise(MissingWindow, function.at.begin);
    }
    return bindScalar(binding, scope, function, name);
}

} // namespace ora
