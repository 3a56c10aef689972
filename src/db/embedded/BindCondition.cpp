#include "Binding.h"
#include "ErrorText.h"
#include "Requirements.h"

#include <algorithm>

// Conditions: the engine's own truth values, which never leave WHERE, ON, HAVING and CASE.
namespace ora {

namespace {

constexpr int InvalidOperator = 920;

template<class Node>
const Node& as(const Expr& expr) {
    return static_cast<const Node&>(expr);
}

constexpr std::string_view compareSymbols[] = {"=", "<>", "<", "<=", ">", ">="};

std::string_view symbolOf(CompareOp op) {
    return compareSymbols[static_cast<int>(op)];
}

std::string compared(const Binding& binding, const Value& left, std::string_view symbol,
                     const Value& right) {
    const Operands sides = comparable(binding, left, right);
    return sides.left + std::string(symbol) + sides.right;
}

bool isRow(const Expr& expr) {
    return expr.kind == ExprKind::List && as<ListExpr>(expr).op == ListOp::Row;
}

// The expressions of a row, or the one.
std::vector<Value> bindRow(Binding& binding, Scope& scope, Expr* const& expr) {
    if (isRow(*expr))
        return bindValues(binding, scope, as<ListExpr>(*expr).items);
    return bindValues(binding, scope, std::span<Expr* const>(&expr, 1));
}

std::string comparedRows(const Binding& binding, const std::vector<Value>& left,
                         std::string_view symbol, const std::vector<Value>& right) {
    requireCount(left.size(), right.size());
    std::vector<std::string> parts;
    for (std::size_t i = 0; i < left.size(); ++i)
        parts.push_back(compared(binding, left[i], symbol, right[i]));
    return joinedConditions(parts, "AND");
}

// Values of a query's columns as seen from outside it, under `alias`.
std::vector<Value> columnsOf(const BoundQuery& query, const std::string& alias) {
    std::vector<Value> values;
    for (std::size_t i = 0; i < query.columns.size(); ++i) {
        Value value;
        value.sql = alias + ".c" + std::to_string(i + 1);
        value.type = query.columns[i].type;
        value.nullable = query.columns[i].nullable;
        values.push_back(value);
    }
    return values;
}

void requireColumns(const std::vector<Value>& left, const BoundQuery& query) {
    requireCount(left.size(), query.columns.size());
}

std::string rowText(const std::vector<std::string>& parts) {
    return parts.size() == 1 ? parts[0] : '(' + joined(parts, ",") + ')';
}

// (a, b) IN (SELECT …), where the query's columns take the form in which the server compares.
std::string inQuery(Binding& binding, const std::vector<Value>& left, const BoundQuery& query) {
    requireColumns(left, query);
    const std::string alias = binding.freshAlias('q');
    const std::vector<Value> columns = columnsOf(query, alias);
    std::vector<std::string> lefts;
    std::vector<std::string> rights;
    bool plain = true;
    for (std::size_t i = 0; i < left.size(); ++i) {
        const Operands sides = comparable(binding, left[i], columns[i]);
        plain = plain && sides.right == columns[i].sql;
        lefts.push_back(sides.left);
        rights.push_back(sides.right);
    }
    if (plain)
        return rowText(lefts) + " IN (" + query.sql + ')';
    return rowText(lefts) + " IN (SELECT " + joined(rights, ",") + " FROM (" + query.sql + ") AS " +
           alias + ')';
}

std::string inValues(const Binding& binding, const Value& left, const std::vector<Value>& items) {
    std::vector<std::string> lefts;
    std::vector<std::string> rights;
    bool alike = true;
    for (const Value& item : items) {
        const Operands sides = comparable(binding, left, item);
        alike = alike && (lefts.empty() || lefts[0] == sides.left);
        lefts.push_back(sides.left);
        rights.push_back(sides.right);
    }
    if (alike && rights.size() == 1)
        return lefts[0] + '=' + rights[0];
    if (alike)
        return lefts[0] + " IN (" + joined(rights, ",") + ')';
    std::vector<std::string> parts;
    for (std::size_t i = 0; i < lefts.size(); ++i)
        parts.push_back(lefts[i] + '=' + rights[i]);
    return joinedConditions(parts, "OR");
}

std::string inRows(Binding& binding, Scope& scope, const std::vector<Value>& left, const In& in) {
    std::vector<std::string> parts;
    for (Expr* const& item : in.list)
        parts.push_back(comparedRows(binding, left, "=", bindRow(binding, scope, item)));
    return joinedConditions(parts, "OR");
}

std::string bindIn(Binding& binding, Scope& scope, const In& in) {
    const std::vector<Value> left = bindRow(binding, scope, in.operand);
    std::string sql;
    if (in.query)
        sql = inQuery(binding, left, bindQuery(binding, *in.query, &scope));
    else if (left.size() > 1)
        sql = inRows(binding, scope, left, in);
    else
        sql = inValues(binding, left[0], bindValues(binding, scope, in.list));
    return in.negated ? "NOT (" + sql + ')' : sql;
}

std::string bindBetween(Binding& binding, Scope& scope, const Between& between) {
    const Value operand = bindValue(binding, scope, *between.operand);
    const Operands low = comparable(binding, operand, bindValue(binding, scope, *between.low));
    const Operands high = comparable(binding, operand, bindValue(binding, scope, *between.high));
    const std::string sql =
        low.left == high.left
            ? low.left + " BETWEEN " + low.right + " AND " + high.right
            : '(' + low.left + ">=" + low.right + " AND " + high.left + "<=" + high.right + ')';
    return between.negated ? "NOT (" + sql + ')' : sql;
}

std::string bindLike(Binding& binding, Scope& scope, const Like& like) {
    std::vector<std::string> arguments{
        convertTo(bindValue(binding, scope, *like.operand), SqlType::Varchar2),
        convertTo(bindValue(binding, scope, *like.pattern), SqlType::Varchar2)};
    if (like.escape)
        arguments.push_back(convertTo(bindValue(binding, scope, *like.escape), SqlType::Varchar2));
    if (comparesByLanguage(binding))
        for (std::string& argument : arguments)
            argument = call("text_like_form", {argument, textLiteral(sortParameter(binding))});
    const std::string sql = call("text_like", arguments);
    return like.negated ? "NOT " + sql : sql;
}

std::string bindIsNull(Binding& binding, Scope& scope, const IsNull& test) {
    if (test.test != NullTest::Null) {
        const Value operand = bindValue(binding, scope, *test.operand);
        const char* const function = test.test == NullTest::Nan ? "ora_is_nan" : "ora_is_infinite";
        return (test.negated ? "NOT " : "") +
               call(function, convertTo(operand, SqlType::BinaryDouble));
    }
    return bindValue(binding, scope, *test.operand).sql +
           (test.negated ? " IS NOT NULL" : " IS NULL");
}

// The row of (a, b) = ((1, 2)).
std::span<Expr* const> comparedRow(const Comparison& comparison) {
    constexpr int QuantifierNeeded = 1797;
    const Expr& right = *comparison.right;
    if (!isRow(right))
        return {&comparison.right, 1};
    const auto items = as<ListExpr>(right).items;
    if (items.size() != 1 || !isRow(*items[0]))
        raise(QuantifierNeeded, comparison.at.begin);
    return as<ListExpr>(*items[0]).items;
}

// The rows of a subquery that may have only one, found among its rows.
std::string inSingleRow(Binding& binding, const std::vector<Value>& left, const BoundQuery& query) {
    const std::string found = inQuery(binding, left, query);
    if (query.singleRow)
        return found;
    return "CASE WHEN (SELECT ora_single(1) FROM (" + query.sql + ")) THEN " + found + " END";
}

std::string bindRowComparison(Binding& binding, Scope& scope, const Comparison& comparison) {
    if (comparison.op != CompareOp::Equal && comparison.op != CompareOp::NotEqual)
        raise(InvalidOperator, comparison.at.begin);
    const std::vector<Value> left = bindRow(binding, scope, comparison.left);
    std::string sql;
    if (comparison.right->kind == ExprKind::Subquery) {
        const auto& subquery = as<SubqueryExpr>(*comparison.right);
        sql = inSingleRow(binding, left, bindQuery(binding, *subquery.query, &scope));
    } else {
        sql = comparedRows(binding, left, "=", bindValues(binding, scope, comparedRow(comparison)));
    }
    return comparison.op == CompareOp::Equal ? sql : "NOT (" + sql + ')';
}

std::string bindComparison(Binding& binding, Scope& scope, const Comparison& comparison) {
    if (isRow(*comparison.left) || isRow(*comparison.right))
        return bindRowComparison(binding, scope, comparison);
    const Value left = bindValue(binding, scope, *comparison.left);
    return compared(binding, left, symbolOf(comparison.op),
                    bindValue(binding, scope, *comparison.right));
}

// True for ALL unless one comparison fails, unknown when none fails and one is unknown; ANY is the
// other way round.
std::string quantifiedQuery(Binding& binding, Scope& scope, const Quantified& quantified,
                            const std::vector<Value>& left) {
    const BoundQuery query = bindQuery(binding, *quantified.query, &scope);
    if (quantified.op == CompareOp::Equal && !quantified.all)
        return inQuery(binding, left, query);
    if (quantified.op == CompareOp::NotEqual && quantified.all)
        return "NOT (" + inQuery(binding, left, query) + ')';
    requireColumns(left, query);
    const std::string alias = binding.freshAlias('q');
    const std::string test =
        compared(binding, left[0], symbolOf(quantified.op), columnsOf(query, alias)[0]);
    const std::string exists = "EXISTS (SELECT 1 FROM (" + query.sql + ") AS " + alias + " WHERE ";
    const std::string decided =
        quantified.all ? exists + "NOT (" + test + "))" : exists + test + ')';
    return "CASE WHEN " + decided + (quantified.all ? " THEN 0" : " THEN 1") + " WHEN " + exists +
           '(' + test + ") IS NULL) THEN NULL ELSE " + (quantified.all ? "1 END" : "0 END");
}

std::string bindQuantified(Binding& binding, Scope& scope, const Quantified& quantified) {
    Expr* const leftExpr = quantified.left;
    const std::vector<Value> left = bindRow(binding, scope, leftExpr);
    if (quantified.query)
        return quantifiedQuery(binding, scope, quantified, left);
    std::vector<std::string> parts;
    for (Expr* const& item : quantified.list)
        parts.push_back(left.size() > 1 ? comparedRows(binding, left, symbolOf(quantified.op),
                                                       bindRow(binding, scope, item))
                                        : compared(binding, left[0], symbolOf(quantified.op),
                                                   bindValue(binding, scope, *item)));
    return joinedConditions(parts, quantified.all ? "AND" : "OR");
}

std::string bindList(Binding& binding, Scope& scope, const ListExpr& list) {
    if (list.op != ListOp::And && list.op != ListOp::Or)
        raise(InvalidOperator, list.at.begin);
    std::vector<std::string> parts;
    for (const Expr* item : list.items)
        parts.push_back(bindCondition(binding, scope, *item));
    return joinedConditions(parts, list.op == ListOp::And ? "AND" : "OR");
}

std::string bindConditionFunction(Binding& binding, Scope& scope, const Function& function) {
    if (function.name.size() == 1 && function.name[0].text == "LNNVL")
        return '(' + bindCondition(binding, scope, *function.arguments[0]) + ") IS NOT TRUE";
    return bindConditionCall(binding, scope, function);
}

} // namespace

std::string joinedConditions(const std::vector<std::string>& conditions, std::string_view word) {
    constexpr std::size_t MostInOneChain = 100; // the engine's trees are only so deep
    if (conditions.size() == 1)
        return conditions[0];
    const std::string separator = ' ' + std::string(word) + ' ';
    if (conditions.size() <= MostInOneChain)
        return '(' + joined(conditions, separator) + ')';
    std::vector<std::string> chunks;
    for (std::size_t first = 0; first < conditions.size(); first += MostInOneChain) {
        const std::size_t end = std::min(conditions.size(), first + MostInOneChain);
        chunks.push_back(joinedConditions({conditions.begin() + static_cast<std::ptrdiff_t>(first),
                                           conditions.begin() + static_cast<std::ptrdiff_t>(end)},
                                          word));
    }
    return joinedConditions(chunks, word);
}

namespace {

void collect(const Expr& condition, std::vector<const Expr*>& conjuncts, int depth) {
    constexpr int DeepestAnd = 100;
    const bool joins =
        condition.kind == ExprKind::List && as<ListExpr>(condition).op == ListOp::And;
    if (!joins || depth == DeepestAnd) {
        conjuncts.push_back(&condition);
        return;
    }
    for (const Expr* item : as<ListExpr>(condition).items)
        collect(*item, conjuncts, depth + 1);
}

} // namespace

void collectConjuncts(const Expr& condition, std::vector<const Expr*>& conjuncts) {
    collect(condition, conjuncts, 0);
}

std::string bindCondition(Binding& binding, Scope& scope, const Expr& condition) {
    const BindDepth depth(binding);
    switch (condition.kind) {
    case ExprKind::Comparison: return bindComparison(binding, scope, as<Comparison>(condition));
    case ExprKind::Quantified: return bindQuantified(binding, scope, as<Quantified>(condition));
    case ExprKind::Like: return bindLike(binding, scope, as<Like>(condition));
    case ExprKind::Between: return bindBetween(binding, scope, as<Between>(condition));
    case ExprKind::In: return bindIn(binding, scope, as<In>(condition));
    case ExprKind::IsNull: return bindIsNull(binding, scope, as<IsNull>(condition));
    case ExprKind::Exists:
        return "EXISTS (" + bindQuery(binding, *as<SubqueryExpr>(condition).query, &scope).sql +
               ')';
    case ExprKind::List: return bindList(binding, scope, as<ListExpr>(condition));
    case ExprKind::Function: return bindConditionFunction(binding, scope, as<Function>(condition));
    case ExprKind::Unary:
        if (as<Unary>(condition).op == UnaryOp::Not)
            return "NOT (" + bindCondition(binding, scope, *as<Unary>(condition).operand) + ')';
        [[fallthrough]];
    default: raise(InvalidOperator, condition.at.begin);
    }
}

} // namespace ora
