#include "Binding.h"
#include "ErrorText.h"
#include "NamedRow.h"

#include <algorithm>

// Group functions without OVER.
namespace ora {

namespace {

constexpr int NestedTooDeeply = 935;
constexpr int NotSingleGroup = 937;

// The arguments as the function takes them, with the words DISTINCT or ALL before them.
std::string argumentList(const Function& function, const std::vector<std::string>& parts) {
    return (function.distinct ? "DISTINCT " : "") + joined(parts, ",");
}

std::string sqliteNameOf(const FunctionEntry& entry) {
    return entry.sqliteName;
}

Value countCall(const FunctionEntry& entry, const Function& function,
                const std::vector<Value>& arguments) {
    const std::string inside = function.arguments[0]->kind == ExprKind::Star
                                   ? "*"
                                   : argumentList(function, {arguments[0].sql});
    return finishResult(entry, arguments, "count(" + inside + ')');
}

Value listaggCall(Binding& binding, Scope& scope, const FunctionEntry& entry,
                  const Function& function, const std::vector<Value>& arguments) {
    const std::string separator =
        arguments.size() > 1 ? convertTo(arguments[1], SqlType::Varchar2) : "NULL";
    const std::string name = sqliteNameOf(entry) + (function.distinct ? "_distinct" : "");
    std::vector<std::string> parts{convertTo(arguments[0], SqlType::Varchar2), separator,
                                   sortKey(binding, scope, function.withinGroup, false)};
    if (const Overflow* const overflow = function.overflow) {
        parts.push_back(overflow->filler ? convertTo(bindValue(binding, scope, *overflow->filler),
                                                     SqlType::Varchar2)
                                         : "'...'");
        parts.push_back(overflow->counted ? "1" : "0");
    }
    return finishResult(entry, arguments, call(name, parts));
}

// PERCENTILE_DISC takes a value that is there, of any type; PERCENTILE_CONT lies between two
// numbers or dates.
Value percentileCall(Binding& binding, Scope& scope, const FunctionEntry& entry,
                     const Function& function, const std::vector<Value>& arguments) {
    if (function.withinGroup.size() != 1)
        raise(30491, function.at.begin);
    const OrderItem& item = function.withinGroup[0];
    Value ordered = bindValue(binding, scope, *item.expr);
    const TypeFamily family = familyOf(ordered.type.type);
    const bool isDate = family == TypeFamily::Date || family == TypeFamily::Timestamp;
    std::string name = sqliteNameOf(entry);
    if (entry.name == std::string_view("PERCENTILE_CONT") && isDate) {
        name += "_date";
    } else if (entry.name == std::string_view("PERCENTILE_CONT")) {
        ordered.sql = convertTo(ordered, SqlType::Number);
        ordered.type = {SqlType::Number};
    }
    return finishResult(entry, {ordered},
                        call(name, {ordered.sql, convertTo(arguments[0], SqlType::Number),
                                    item.descending ? "1" : "0"}));
}

Value rankCall(Binding& binding, Scope& scope, const FunctionEntry& entry, const Function& function,
               const std::vector<Value>& arguments) {
    std::vector<std::string> hypothetical{"''"};
    std::string letters;
    for (std::size_t i = 0; i < arguments.size() && i < function.withinGroup.size(); ++i) {
        const Value ordered = bindValue(binding, scope, *function.withinGroup[i].expr);
        letters += orderLetter(function.withinGroup[i], false);
        hypothetical.push_back(convertTo(arguments[i], ordered.type.type));
    }
    hypothetical[0] = textLiteral(letters);
    return finishResult(
        entry, arguments,
        call(sqliteNameOf(entry), {sortKey(binding, scope, function.withinGroup, false),
                                   call("sort_key", hypothetical)}));
}

const char* keepName(std::string_view name) {
    struct KeepName {
        std::string_view name;
        const char* function;
    };
    constexpr KeepName names[] = {
        {"SUM", "keep_sum"},       {"AVG", "keep_avg"}, {"COUNT", "keep_count"},
        {"MIN", "keep_min"},       {"MAX", "keep_max"}, {"VARIANCE", "keep_variance"},
        {"STDDEV", "keep_stddev"},
    };
    const KeepName* const keep = findNamed(names, name);
    return keep ? keep->function : nullptr;
}

Value keepCall(Binding& binding, Scope& scope, const FunctionEntry& entry, const Function& function,
               const std::vector<Value>& arguments) {
    const char* const name = keepName(entry.name);
    if (!name)
        refuse(std::string(entry.name) + " with KEEP", function.at.begin);
    const bool star = function.arguments[0]->kind == ExprKind::Star;
    const std::string argument =
        star ? "1"
             : convertTo(arguments[0], typeOfParameter(entry.parameter(0), arguments[0].type.type));
    return finishResult(entry, arguments,
                        call(name, {argument, sortKey(binding, scope, function.keep->order,
                                                      !function.keep->first)}));
}

Value plainCall(const FunctionEntry& entry, const Function& function,
                const std::vector<Value>& arguments) {
    std::vector<std::string> parts;
    for (std::size_t i = 0; i < arguments.size(); ++i)
        parts.push_back(
            convertTo(arguments[i], typeOfParameter(entry.parameter(i), arguments[i].type.type)));
    return asBinary(entry, arguments,
                    finishResult(entry, arguments,
                                 sqliteNameOf(entry) + '(' + argumentList(function, parts) + ')'));
}

std::vector<Value> bindArguments(Binding& binding, Scope& scope, const Function& function) {
    if (function.arguments.size() == 1 && function.arguments[0]->kind == ExprKind::Star) {
        Value star;
        star.type = {SqlType::Number};
        return {star};
    }
    return bindValues(binding, scope, function.arguments);
}

// A group function of a group function: the inner ones are computed for each group in a query of
// their own, and this one over its rows.
Value bindOuterAggregate(Binding& binding, Scope& scope, const Function& function) {
    scope.nested = false;
    std::vector<Value> arguments = bindValues(binding, scope, function.arguments);
    scope.nested = true;
    for (Value& argument : arguments) {
        scope.nestedValues.push_back(argument.sql);
        argument.sql = "g.c" + std::to_string(scope.nestedValues.size());
        argument.column = false;
    }
    const FunctionEntry* const entry = findFunction(function.name[0].text, typesOf(arguments));
    if (entry->form == SpecialForm::Count)
        return countCall(*entry, function, arguments);
    return plainCall(*entry, function, arguments);
}

Value aggregateCall(Binding& binding, Scope& scope, const Function& function) {
    const std::vector<Value> arguments = bindArguments(binding, scope, function);
    const FunctionEntry* const entry = findFunction(function.name[0].text, typesOf(arguments));
    const bool compares = function.distinct || (entry->parameter(0) == Parameter::Any &&
                                                entry->form == SpecialForm::None);
    if (compares && !arguments.empty())
        requireComparable(arguments[0].type.type);
    if (function.keep)
        return keepCall(binding, scope, *entry, function, arguments);
    switch (entry->form) {
    case SpecialForm::Count: return countCall(*entry, function, arguments);
    case SpecialForm::Listagg: return listaggCall(binding, scope, *entry, function, arguments);
    case SpecialForm::Percentile:
        return percentileCall(binding, scope, *entry, function, arguments);
    case SpecialForm::RankWithin: return rankCall(binding, scope, *entry, function, arguments);
    default: return plainCall(*entry, function, arguments);
    }
}

} // namespace

char orderLetter(const OrderItem& item, bool opposite) {
    const bool nullsFirst =
        item.nulls == NullsOrder::Default ? item.descending : item.nulls == NullsOrder::First;
    const bool descending = item.descending != opposite;
    const bool first = nullsFirst != opposite;
    if (descending)
        return first ? 'd' : 'D';
    return first ? 'A' : 'a';
}

std::string sortKey(Binding& binding, Scope& scope, std::span<const OrderItem> items,
                    bool opposite) {
    if (items.empty())
        return "X''";
    std::string letters;
    std::vector<std::string> arguments{{}};
    for (const OrderItem& item : items) {
        letters += orderLetter(item, opposite);
        arguments.push_back(sortedBy(binding, bindValue(binding, scope, *item.expr)));
    }
    arguments[0] = textLiteral(letters);
    return call("sort_key", arguments);
}

Value bindAggregate(Binding& binding, Scope& scope, const Function& function) {
    if (scope.aggregateError != 0)
        raise(scope.aggregateError, function.at.begin);
    if (scope.insideAggregate > 0)
        raise(NestedTooDeeply, function.at.begin);
    scope.aggregates = true;
    if (scope.nested) {
        if (!hasAggregate(function.arguments.empty() ? nullptr : function.arguments[0]))
            raise(NotSingleGroup, function.at.begin);
        return bindOuterAggregate(binding, scope, function);
    }
    ++scope.insideAggregate;
    Value value = aggregateCall(binding, scope, function);
    --scope.insideAggregate;
    value.nullable = true;
    return value;
}

} // namespace ora
