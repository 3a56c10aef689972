#include "RowNumberLimit.h"

#include "OracleNumber.h"

#include <algorithm>

namespace ora {

namespace {

constexpr const char* NoLimit = "-1";
constexpr const char* NoRow = "0";

bool isRowNumber(const Expr& expr) {
    return expr.kind == ExprKind::Column && namesRowNumber(&expr);
}

CompareOp mirrored(CompareOp op) {
    switch (op) {
    case CompareOp::Less: return CompareOp::Greater;
    case CompareOp::LessEqual: return CompareOp::GreaterEqual;
    case CompareOp::Greater: return CompareOp::Less;
    case CompareOp::GreaterEqual: return CompareOp::LessEqual;
    default: return op;
    }
}

std::optional<OracleNumber> literalOf(const Expr& expr) {
    if (expr.kind != ExprKind::Number)
        return std::nullopt;
    return OracleNumber::parse(static_cast<const Literal&>(expr).text);
}

std::string limitOf(CompareOp op, const OracleNumber& bound) {
    const OracleNumber one(1);
    const auto count = [](const OracleNumber& n) {
        return std::to_string(std::max<std::int64_t>(n.toInteger(), 0));
    };
    switch (op) {
    case CompareOp::Less: return count(bound.ceiling() - one);
    case CompareOp::LessEqual: return count(bound.floor());
    case CompareOp::Equal: return bound == one ? "1" : NoRow;
    case CompareOp::Greater: return bound < one ? NoLimit : NoRow;
    case CompareOp::GreaterEqual: return bound <= one ? NoLimit : NoRow;
    case CompareOp::NotEqual:
        return bound.isInteger() && bound >= one ? count(bound - one) : NoLimit;
    }
    return NoLimit;
}

// The same for a bound that is known only when the statement runs.
std::string limitOf(CompareOp op, const std::string& bound) {
    const std::string one = numberLiteral("1");
    const auto choice = [](const std::string& condition, const char* then, const char* otherwise) {
        return "CASE WHEN " + condition + " THEN " + then + " ELSE " + otherwise + " END";
    };
    switch (op) {
    case CompareOp::Less: return "max(ifnull(num_int(ora_ceil(" + bound + "))-1,0),0)";
    case CompareOp::LessEqual: return "max(ifnull(num_int(ora_floor(" + bound + ")),0),0)";
    case CompareOp::Equal: return choice(bound + '=' + one, "1", NoRow);
    case CompareOp::Greater: return choice(bound + '<' + one, NoLimit, NoRow);
    default: return choice(bound + "<=" + one, NoLimit, NoRow);
    }
}

std::optional<std::string> comparisonLimit(Binding& binding, Scope& scope, CompareOp op,
                                           const Expr& bound) {
    if (namesRowNumber(&bound))
        return std::nullopt;
    if (const auto literal = literalOf(bound))
        return limitOf(op, *literal);
    if (op == CompareOp::NotEqual)
        return std::nullopt;
    scope.named = 0;
    const Value value = bindValue(binding, scope, bound);
    if (scope.named != 0)
        return std::nullopt;
    return limitOf(op, convertTo(value, SqlType::Number));
}

} // namespace

std::optional<std::string> rowNumberLimit(Binding& binding, Scope& scope, const Expr& condition) {
    if (condition.kind == ExprKind::Comparison) {
        const auto& comparison = static_cast<const Comparison&>(condition);
        if (isRowNumber(*comparison.left))
            return comparisonLimit(binding, scope, comparison.op, *comparison.right);
        if (isRowNumber(*comparison.right))
            return comparisonLimit(binding, scope, mirrored(comparison.op), *comparison.left);
        return std::nullopt;
    }
    if (condition.kind != ExprKind::Between)
        return std::nullopt;
    const auto& between = static_cast<const Between&>(condition);
    if (between.negated || !isRowNumber(*between.operand))
        return std::nullopt;
    const auto low = literalOf(*between.low);
    if (!low)
        return std::nullopt;
    if (*low > OracleNumber(1))
        return NoRow;
    return comparisonLimit(binding, scope, CompareOp::LessEqual, *between.high);
}

std::string leastLimit(const std::vector<std::string>& limits) {
    std::vector<std::string> real;
    for (const std::string& limit : limits)
        if (limit != NoLimit)
            real.push_back(limit);
    if (real.empty())
        return {};
    return real.size() == 1 ? real[0] : call("min", real);
}

std::string rowCount(Binding& binding, Scope& scope, const Expr& count) {
    if (const auto literal = literalOf(count))
        return limitOf(CompareOp::LessEqual, *literal);
    return limitOf(CompareOp::LessEqual,
                   convertTo(bindValue(binding, scope, count), SqlType::Number));
}

} // namespace ora
