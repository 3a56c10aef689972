#include "Binding.h"
#include "ErrorText.h"

// CAST, VALIDATE_CONVERSION and conversions with a value for their failure.
namespace ora {

namespace {

// A converted value as the type has it.
std::string fittedSql(const std::string& sql, const Value& operand, const TypeInfo& type) {
    constexpr int MostDigits = 38;
    switch (familyOf(type.type)) {
    case TypeFamily::Number:
        if (type.binaryDigits > 0)
            return call("num_float", {sql, std::to_string(type.binaryDigits)});
        if (type.precision == 0 && !type.scaleGiven)
            return sql;
        return call("num_fit",
                    {sql, std::to_string(type.precision == 0 ? MostDigits : type.precision),
                     std::to_string(type.scale)});
    case TypeFamily::Text:
        if (type.length == 0)
            return sql;
        return call(familyOf(operand.type.type) == TypeFamily::Text ? "text_cast" : "value_cast",
                    {sql, std::to_string(type.length), isPadded(type.type) ? "1" : "0"});
    case TypeFamily::Date: return call("date_cast", sql);
    case TypeFamily::Timestamp: return call("ts_cast", {sql, std::to_string(type.scale)});
    default: return sql;
    }
}

// The function that reads a text with a format model.
const char* modelFunction(SqlType type) {
    switch (familyOf(type)) {
    case TypeFamily::Number: return "ora_to_number";
    case TypeFamily::Date: return "ora_to_date";
    case TypeFamily::Timestamp: return "ora_to_timestamp";
    case TypeFamily::Zoned: return "ora_to_timestamp_tz";
    default: return nullptr;
    }
}

struct Conversion {
    const char* name; // empty: the value is of the type already
    std::vector<std::string> arguments;
};

Conversion conversionOf(const Value& operand, const TypeInfo& type,
                        const std::vector<Value>& model) {
    constexpr int InvalidInput = 43909;
    const char* const plain = conversionFunction(operand.type.type, type.type);
    if (!plain)
        throw OraError(InvalidInput, "invalid input data type");
    Conversion conversion{plain, {operand.sql}};
    const char* const modelled = modelFunction(type.type);
    if (model.empty() || *plain == '\0' || !modelled)
        return conversion;
    conversion.name = modelled;
    for (const Value& part : model)
        conversion.arguments.push_back(convertTo(part, SqlType::Varchar2));
    return conversion;
}

std::string tolerant(std::string_view function, Conversion conversion,
                     const std::vector<std::string>& extra) {
    std::vector<std::string>& arguments = conversion.arguments;
    arguments.insert(arguments.end(), extra.begin(), extra.end());
    arguments.push_back(textLiteral(conversion.name));
    return call(function, arguments);
}

std::string plainSql(const Conversion& conversion) {
    return *conversion.name == '\0' ? conversion.arguments[0]
                                    : call(conversion.name, conversion.arguments);
}

} // namespace

Value bindCast(Binding& binding, Scope& scope, const Cast& cast) {
    const Value operand = bindValue(binding, scope, *cast.operand);
    const std::vector<Value> model = bindValues(binding, scope, cast.model);
    Value value;
    if (!cast.validates && !cast.onError && model.empty()) {
        value.type = cast.type;
        value.sql = fittedSql(convertTo(operand, cast.type.type), operand, cast.type);
        return value;
    }
    const Conversion conversion = conversionOf(operand, cast.type, model);
    const bool never = *conversion.name == '\0'; // fails
    if (cast.validates) {
        value.type = {SqlType::Number};
        value.sql = never ? numberLiteral("1") : tolerant("converts", conversion, {});
        return value;
    }
    value.type = cast.type;
    value.sql = plainSql(conversion);
    if (cast.onError && !never) {
        const Value otherwise = bindValue(binding, scope, *cast.onError);
        value.sql = tolerant("convert_or", conversion,
                             {plainSql(conversionOf(otherwise, cast.type, model))});
    }
    value.sql = fittedSql(value.sql, operand, cast.type);
    return value;
}

Value withConversionDefault(const FunctionEntry& entry, const std::vector<Value>& arguments,
                            const Value& otherwise) {
    std::vector<std::string> parts;
    for (const Value& argument : arguments)
        parts.push_back(convertTo(argument, SqlType::Varchar2));
    // What is given instead is read as the value would have been.
    std::string instead = otherwise.sql;
    if (familyOf(otherwise.type.type) == TypeFamily::Text) {
        std::vector<std::string> same = parts;
        same[0] = otherwise.sql;
        instead = call(entry.sqliteName, same);
    }
    parts.push_back(instead);
    parts.push_back(textLiteral(entry.sqliteName));
    return finishResult(entry, arguments, call("convert_or", parts));
}

} // namespace ora
