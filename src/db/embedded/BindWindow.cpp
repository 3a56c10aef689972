#include "Binding.h"
#include "ErrorText.h"
#include "NamedRow.h"
#include "WindowText.h"

// Functions with OVER.
namespace ora {

namespace {

bool needsOrder(std::string_view name) {
    constexpr std::string_view names[] = {"ROW_NUMBER", "RANK", "DENSE_RANK", "NTILE",
                                          "LAG",        "LEAD", "CUME_DIST",  "PERCENT_RANK"};
    return isOneOf(name, names);
}

void checkWindow(const FunctionEntry& entry, const Function& function) {
    constexpr int MissingOrder = 30485;
    constexpr int OrderNotAllowed = 30487;
    if (function.over->order.empty() && needsOrder(entry.name))
        raise(MissingOrder, function.at.begin);
    if (!function.over->order.empty() &&
        (entry.form == SpecialForm::RatioToReport || entry.form == SpecialForm::Listagg))
        raise(OrderNotAllowed, function.at.begin);
    if (function.distinct && !function.over->order.empty())
        raise(OrderNotAllowed, function.at.begin);
}

std::string converted(const FunctionEntry& entry, const std::vector<Value>& arguments,
                      std::size_t index) {
    const Parameter parameter = entry.parameter(index);
    const SqlType type = parameter == Parameter::SameAsFirst
                             ? arguments[0].type.type
                             : typeOfParameter(parameter, arguments[index].type.type);
    const std::string sql = convertTo(arguments[index], type);
    if (parameter != Parameter::Integer)
        return sql;
    const bool fromZero = entry.form == SpecialForm::Lag || entry.form == SpecialForm::Lead;
    return call(fromZero ? "num_distance" : "num_place", sql);
}

std::vector<std::string> plainArguments(const FunctionEntry& entry, const Function& function,
                                        const std::vector<Value>& arguments) {
    if (!function.arguments.empty() && function.arguments[0]->kind == ExprKind::Star)
        return {"*"};
    std::vector<std::string> parts;
    for (std::size_t i = 0; i < arguments.size(); ++i)
        parts.push_back(converted(entry, arguments, i));
    return parts;
}

// LAG and LEAD that skip nulls look at the rows before or behind.
std::string skippingNeighbour(const FunctionEntry& entry, const std::vector<Value>& arguments,
                              const WindowText& window) {
    const bool lag = entry.form == SpecialForm::Lag;
    const std::string offset = arguments.size() > 1 ? converted(entry, arguments, 1) : "1";
    const std::string frame = lag ? "ROWS BETWEEN UNBOUNDED PRECEDING AND 1 PRECEDING"
                                  : "ROWS BETWEEN 1 FOLLOWING AND UNBOUNDED FOLLOWING";
    const std::string value =
        call(lag ? "nth_last_not_null" : "nth_not_null", {arguments[0].sql, offset}) + " OVER (" +
        window.with(window.order, frame) + ')';
    if (arguments.size() < 3)
        return value;
    return call("ifnull", {value, converted(entry, arguments, 2)});
}

std::string percentRank(const WindowText& window) {
    const std::string rows = "count(*)" + window.wholePartition();
    return "CASE WHEN " + rows + "=1 THEN " + numberLiteral("0") + " ELSE num_div(" +
           numberFromInteger("rank()" + window.over() + "-1") + ',' +
           numberFromInteger(rows + "-1") + ") END";
}

std::string cumeDist(const WindowText& window) {
    const std::string peers =
        "count(*) OVER (" +
        window.with(window.order, "RANGE BETWEEN UNBOUNDED PRECEDING AND CURRENT ROW") + ')';
    return "num_div(" + numberFromInteger(peers) + ',' +
           numberFromInteger("count(*)" + window.wholePartition()) + ')';
}

std::string ratioToReport(const FunctionEntry& entry, const std::vector<Value>& arguments,
                          const WindowText& window) {
    const std::string value = converted(entry, arguments, 0);
    return "num_div(" + value + ",nullif(num_sum(" + value + ')' + window.wholePartition() + ',' +
           numberLiteral("0") + "))";
}

std::string skippingValue(const char* name, const std::vector<Value>& arguments,
                          const std::string& position, const WindowText& window) {
    return window.call(name, {arguments[0].sql, position});
}

std::string windowCall(const FunctionEntry& entry, const Function& function,
                       const std::vector<Value>& arguments, const WindowText& window) {
    const bool skips = function.nulls == NullsTreatment::Ignore;
    switch (entry.form) {
    case SpecialForm::PercentRank: return percentRank(window);
    case SpecialForm::CumeDist: return cumeDist(window);
    case SpecialForm::RatioToReport: return ratioToReport(entry, arguments, window);
    case SpecialForm::Lag:
    case SpecialForm::Lead:
        if (skips)
            return skippingNeighbour(entry, arguments, window);
        break;
    case SpecialForm::FirstValue:
        if (skips)
            return skippingValue("nth_not_null", arguments, "1", window);
        break;
    case SpecialForm::LastValue:
        if (skips)
            return skippingValue("nth_last_not_null", arguments, "1", window);
        break;
    case SpecialForm::NthValue:
        if (function.fromLast)
            return skippingValue(skips ? "nth_last_not_null" : "nth_last", arguments,
                                 converted(entry, arguments, 1), window);
        if (skips)
            return skippingValue("nth_not_null", arguments, converted(entry, arguments, 1), window);
        break;
    default: break;
    }
    return window.call(entry.sqliteName, plainArguments(entry, function, arguments));
}

// Each value counts once however often it is in the window.
Value distinctCall(const FunctionEntry& entry, const Function& function,
                   const std::vector<Value>& arguments, const WindowText& window) {
    constexpr std::string_view indifferent[] = {"MIN", "MAX"};
    constexpr std::string_view counting[] = {"COUNT", "SUM", "AVG"};
    const std::string_view name = entry.name;
    if (isOneOf(name, indifferent))
        return finishResult(entry, arguments, windowCall(entry, function, arguments, window));
    if (!isOneOf(name, counting))
        refuse("DISTINCT in " + std::string(name) + " with OVER", function.at.begin);
    Value value;
    value.type = {SqlType::Number};
    value.sql = call(std::string(entry.sqliteName) + "_distinct",
                     plainArguments(entry, function, arguments)) +
                window.over();
    return value;
}

// KEEP and WITHIN GROUP: the call is the group function's, OVER the window.
Value aggregateOver(Binding& binding, Scope& scope, const Function& function,
                    const WindowText& window) {
    Function plain = function;
    plain.over = nullptr;
    const bool aggregates = scope.aggregates;
    const int error = scope.aggregateError;
    scope.aggregateError = 0;
    const std::size_t ungrouped = scope.ungrouped.size();
    Value value = bindAggregate(binding, scope, plain);
    scope.ungrouped.resize(ungrouped);
    scope.aggregates = aggregates;
    scope.aggregateError = error;
    const bool wrapped = value.sql.starts_with("num_from_int(");
    const std::string over = window.wholePartition();
    if (wrapped)
        value.sql.insert(value.sql.size() - 1, over);
    else
        value.sql += over;
    return value;
}

} // namespace

std::string orderTerm(const std::string& sql, bool nullable, const OrderItem& item) {
    std::string term = sql;
    if (item.descending)
        term += " DESC";
    if (!nullable)
        return term;
    const bool first =
        item.nulls == NullsOrder::Default ? item.descending : item.nulls == NullsOrder::First;
    return term + (first ? " NULLS FIRST" : " NULLS LAST");
}

Value bindWindowFunction(Binding& binding, Scope& scope, const Function& function) {
    constexpr int InvalidIdentifier = 904;
    constexpr int WindowNotAllowed = 30483;
    if (scope.windowError != 0)
        raise(WindowNotAllowed, function.at.begin);
    scope.windows = true;
    const std::string_view name = function.name.back().text;
    if (functionsNamed(name).empty() || function.name.size() > 1)
        raiseNamed(InvalidIdentifier, displayPath(name), function.at.begin);
    constexpr int MissingParenthesis = 907;
    if (function.over->frame && needsOrder(name))
        raise(MissingParenthesis, function.at.begin);
    const WindowText window = windowText(binding, scope, *function.over);
    constexpr int OrderNotAllowed = 30487;
    const bool grouped = function.keep || !function.withinGroup.empty();
    if (grouped && !function.over->order.empty())
        raise(OrderNotAllowed, function.at.begin);
    if (grouped)
        return aggregateOver(binding, scope, function, window);
    std::vector<Value> arguments;
    if (!function.arguments.empty() && function.arguments[0]->kind == ExprKind::Star)
        arguments.emplace_back().type = {SqlType::Number};
    else
        arguments = bindValues(binding, scope, function.arguments);
    const FunctionEntry* const entry = findFunction(name, typesOf(arguments));
    if (entry->kind == FunctionKind::Scalar)
        raise(923, function.at.begin);
    checkWindow(*entry, function);
    if (function.distinct)
        return distinctCall(*entry, function, arguments, window);
    return finishResult(*entry, arguments, windowCall(*entry, function, arguments, window));
}

} // namespace ora
