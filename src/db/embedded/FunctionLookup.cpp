#include "FunctionTable.h"

#include "FunctionTableRows.h"
#include "OraError.h"

#include <algorithm>
#include <string>
#include <unordered_map>

namespace ora {

Parameter FunctionEntry::parameter(std::size_t index) const {
    std::size_t last = 0;
    while (last + 1 < ParameterSlots && parameters[last + 1] != Parameter::None)
        ++last;
    return parameters[index < last ? index : last];
}

bool FunctionEntry::accepts(std::size_t count) const {
    const int given = static_cast<int>(count);
    return given >= minArguments && (maxArguments == AnyNumber || given <= maxArguments);
}

namespace {

using NameIndex = std::unordered_map<std::string_view, std::span<const FunctionEntry>>;

NameIndex buildIndex() {
    NameIndex index;
    const auto rows = functionRows();
    for (std::size_t first = 0; first < rows.size();) {
        std::size_t end = first + 1;
        while (end < rows.size() && std::string_view(rows[end].name) == rows[first].name)
            ++end;
        index.emplace(rows[first].name, rows.subspan(first, end - first));
        first = end;
    }
    return index;
}

// The server has one message for functions of a fixed count and two for the others.
[[noreturn]] void throwWrongCount(std::span<const FunctionEntry> overloads, std::size_t given) {
    int least = overloads.front().minArguments;
    int most = overloads.front().maxArguments;
    for (const FunctionEntry& entry : overloads) {
        least = std::min(least, entry.minArguments);
        most = entry.maxArguments == FunctionEntry::AnyNumber || most < 0
                   ? FunctionEntry::AnyNumber
                   : std::max(most, entry.maxArguments);
    }
    if (least == most)
        throw OraError(909, "invalid number of arguments");
    if (static_cast<int>(given) < least)
        throw OraError(938, "not enough arguments for function");
    throw OraError(939, "too many arguments for function");
}

enum class Fit { Never, Converted, Exact };

Fit fitOf(const FunctionEntry& entry, std::span<const SqlType> arguments) {
    Fit fit = Fit::Exact;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const SqlType wanted = typeOfParameter(entry.parameter(i), arguments[i]);
        const char* conversion = conversionFunction(arguments[i], wanted);
        if (!conversion)
            return Fit::Never;
        if (*conversion != '\0')
            fit = Fit::Converted;
    }
    return fit;
}

std::string expectedType(const FunctionEntry& entry, std::span<const SqlType> arguments) {
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const SqlType wanted = typeOfParameter(entry.parameter(i), arguments[i]);
        if (!conversionFunction(arguments[i], wanted))
            return std::string("inconsistent datatypes: expected ") + messageName(wanted) +
                   " got " + messageName(arguments[i]);
    }
    return "inconsistent datatypes";
}

} // namespace

std::span<const FunctionEntry> functionsNamed(std::string_view upperName) {
    static const NameIndex index = buildIndex();
    const auto found = index.find(upperName);
    return found == index.end() ? std::span<const FunctionEntry>() : found->second;
}

const FunctionEntry* findFunction(std::string_view upperName, std::span<const SqlType> arguments) {
    const auto overloads = functionsNamed(upperName);
    if (overloads.empty())
        return nullptr;
    const FunctionEntry* counted = nullptr;
    const FunctionEntry* converted = nullptr;
    for (const FunctionEntry& entry : overloads) {
        if (!entry.accepts(arguments.size()))
            continue;
        counted = counted ? counted : &entry;
        const Fit fit = fitOf(entry, arguments);
        if (fit == Fit::Exact)
            return &entry;
        if (fit == Fit::Converted && !converted)
            converted = &entry;
    }
    if (!counted)
        throwWrongCount(overloads, arguments.size());
    if (!converted)
        throw OraError(932, expectedType(*counted, arguments));
    return converted;
}

bool isSessionConstant(std::string_view upperName) {
    const auto overloads = functionsNamed(upperName);
    return !overloads.empty() && overloads.front().form == SpecialForm::SessionConstant;
}

SqlType typeOfParameter(Parameter parameter, SqlType given) {
    switch (parameter) {
    case Parameter::Number:
    case Parameter::Integer: return SqlType::Number;
    case Parameter::Text: return familyOf(given) == TypeFamily::Text ? given : SqlType::Varchar2;
    case Parameter::Date:
        return familyOf(given) == TypeFamily::Timestamp ? given
               : isZoned(given)                         ? SqlType::Timestamp
                                                        : SqlType::Date;
    case Parameter::Zoned: return SqlType::TimestampTz;
    case Parameter::PlainDate: return SqlType::Date;
    case Parameter::Timestamp:
        return familyOf(given) == TypeFamily::Timestamp ? given : SqlType::Timestamp;
    case Parameter::YearMonth: return SqlType::IntervalYearToMonth;
    case Parameter::DaySecond: return SqlType::IntervalDayToSecond;
    case Parameter::Raw: return SqlType::Raw;
    case Parameter::Double: return SqlType::BinaryDouble;
    default: return given;
    }
}

} // namespace ora
