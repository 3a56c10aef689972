#pragma once

#include "Parser.h"
#include "SqlText.h"

#include <string>

// Prints expressions and queries so that what the parser understood can be compared as text:
// (op left right), columns as they are named, quoted names in quotes.
namespace treetext {

using namespace ora;

inline std::string text(const Expr* expr);
inline std::string text(const Query* query);
inline std::string text(const TableRef* table);
inline std::string text(const GroupItem& item);
inline std::string text(const SelectItem& item);

inline std::string text(const Name& name) {
    const std::string plain(name.text);
    return name.quoted ? '"' + plain + '"' : plain;
}

template<class Items>
std::string list(const Items& items, const char* separator = " ") {
    std::string all;
    for (const auto& item : items)
        all += (all.empty() ? "" : separator) + text(item);
    return all;
}

inline std::string order(std::span<const OrderItem> items) {
    std::string all;
    for (const OrderItem& item : items) {
        all += (all.empty() ? "" : ",") + text(item.expr) + (item.descending ? " desc" : "");
        if (item.nulls != NullsOrder::Default)
            all += item.nulls == NullsOrder::First ? " nulls-first" : " nulls-last";
    }
    return all;
}

template<class Node>
const Node& as(const Expr* expr) {
    return static_cast<const Node&>(*expr);
}

inline std::string listed(std::span<Expr* const> items, const Query* query) {
    return query ? '[' + text(query) + ']' : '{' + list(items) + '}';
}

inline std::string functionText(const Function& function) {
    std::string all = list(function.name, ".") + '(' + (function.distinct ? "distinct " : "") +
                      list(function.arguments) + ')';
    if (!function.withinGroup.empty())
        all += " within(" + order(function.withinGroup) + ')';
    if (function.keep)
        all += std::string(function.keep->first ? " first(" : " last(") +
               order(function.keep->order) + ')';
    if (function.nulls == NullsTreatment::Ignore)
        all += " ignore-nulls";
    if (function.over)
        all += " over(" + list(function.over->partition) + '|' + order(function.over->order) +
               (function.over->frame ? function.over->frame->rows ? "|rows)" : "|range)" : ")");
    return all;
}

inline std::string caseText(const Case& node) {
    std::string all = "(case";
    if (node.operand)
        all += ' ' + text(node.operand);
    for (const CaseArm& arm : node.arms)
        all += " [" + text(arm.when) + " -> " + text(arm.then) + ']';
    return all + (node.otherwise ? " else " + text(node.otherwise) : "") + ')';
}

inline std::string conditionText(const Expr* expr) {
    static constexpr const char* compare[] = {"=", "!=", "<", "<=", ">", ">="};
    const auto negation = [](bool negated) { return std::string(negated ? "(not-" : "("); };
    switch (expr->kind) {
    case ExprKind::Comparison: {
        const auto& node = as<Comparison>(expr);
        return std::string("(") + compare[int(node.op)] + ' ' + text(node.left) + ' ' +
               text(node.right) + ')';
    }
    case ExprKind::Quantified: {
        const auto& node = as<Quantified>(expr);
        return std::string("(") + compare[int(node.op)] + (node.all ? "all " : "any ") +
               text(node.left) + ' ' + listed(node.list, node.query) + ')';
    }
    case ExprKind::Like: {
        const auto& node = as<Like>(expr);
        return negation(node.negated) + "like " + text(node.operand) + ' ' + text(node.pattern) +
               (node.escape ? " escape " + text(node.escape) : "") + ')';
    }
    case ExprKind::Between: {
        const auto& node = as<Between>(expr);
        return negation(node.negated) + "between " + text(node.operand) + ' ' + text(node.low) +
               ' ' + text(node.high) + ')';
    }
    case ExprKind::In: {
        const auto& node = as<In>(expr);
        return negation(node.negated) + "in " + text(node.operand) + ' ' +
               listed(node.list, node.query) + ')';
    }
    case ExprKind::IsNull:
        return negation(as<IsNull>(expr).negated) + "null " + text(as<IsNull>(expr).operand) + ')';
    default: return "?";
    }
}

inline std::string text(const Expr* expr) {
    static constexpr const char* unary[] = {"+", "-", "not", "prior", "root"};
    static constexpr const char* lists[] = {"and", "or", "||", "row"};
    if (!expr)
        return "-";
    switch (expr->kind) {
    case ExprKind::Number:
    case ExprKind::Bind: return std::string(as<Literal>(expr).text);
    case ExprKind::Text: return textLiteral(as<Literal>(expr).text);
    case ExprKind::NationalText: return 'n' + textLiteral(as<Literal>(expr).text);
    case ExprKind::Date: return "date" + textLiteral(as<Literal>(expr).text);
    case ExprKind::Timestamp: return "timestamp" + textLiteral(as<Literal>(expr).text);
    case ExprKind::Interval: return "interval" + textLiteral(as<IntervalLiteral>(expr).text);
    case ExprKind::Null: return "null";
    case ExprKind::Column:
        return list(as<ColumnRef>(expr).parts, ".") + (as<ColumnRef>(expr).outer ? "(+)" : "");
    case ExprKind::Star: return list(as<Star>(expr).qualifier, ".") + '*';
    case ExprKind::Unary:
        return std::string("(") + unary[int(as<Unary>(expr).op)] + ' ' +
               text(as<Unary>(expr).operand) + ')';
    case ExprKind::Arithmetic:
        return std::string("(") + as<Arithmetic>(expr).op + ' ' + text(as<Arithmetic>(expr).left) +
               ' ' + text(as<Arithmetic>(expr).right) + ')';
    case ExprKind::List:
        return std::string("(") + lists[int(as<ListExpr>(expr).op)] + ' ' +
               list(as<ListExpr>(expr).items) + ')';
    case ExprKind::Function: return functionText(as<Function>(expr));
    case ExprKind::Case: return caseText(as<Case>(expr));
    case ExprKind::Cast:
        return "cast(" + text(as<Cast>(expr).operand) + ' ' + declarationOf(as<Cast>(expr).type) +
               ')';
    case ExprKind::Extract:
        return "extract(" + std::string(as<Extract>(expr).field) + ' ' +
               text(as<Extract>(expr).operand) + ')';
    case ExprKind::Trim:
        return std::string("trim") + as<Trim>(expr).side + '(' + text(as<Trim>(expr).characters) +
               ' ' + text(as<Trim>(expr).operand) + ')';
    case ExprKind::Subquery: return '[' + text(as<SubqueryExpr>(expr).query) + ']';
    case ExprKind::Exists: return "exists[" + text(as<SubqueryExpr>(expr).query) + ']';
    default: return conditionText(expr);
    }
}

inline std::string text(const TableRef* table) {
    static constexpr const char* joins[] = {" join ", " left ", " right ", " full ", " cross "};
    const std::string alias = table->alias ? ' ' + text(table->alias) : std::string();
    switch (table->kind) {
    case TableKind::Named: {
        const auto& name = static_cast<const NamedTable&>(*table).name;
        return (name.schema ? text(name.schema) + '.' : "") + text(name.name) + alias;
    }
    case TableKind::Derived:
        return '[' + text(static_cast<const DerivedTable&>(*table).query) + ']' + alias;
    case TableKind::Join: {
        const auto& join = static_cast<const JoinTable&>(*table);
        std::string how;
        if (join.on)
            how = " on " + text(join.on);
        else if (!join.columns.empty())
            how = " using " + list(join.columns);
        return '(' + text(join.left) + (join.natural ? " natural" : "") + joins[int(join.join)] +
               text(join.right) + how + ')';
    }
    case TableKind::Pivot:
        return "pivot(" + text(static_cast<const PivotTable&>(*table).source) + ')' + alias;
    default:
        return "unpivot(" + text(static_cast<const UnpivotTable&>(*table).source) + ')' + alias;
    }
}

inline std::string text(const GroupItem& item) {
    static constexpr const char* kinds[] = {"", "rollup", "cube", "sets"};
    return item.kind == GroupKind::Simple ? '(' + list(item.exprs) + ')'
                                          : kinds[int(item.kind)] + ('(' + list(item.items) + ')');
}

inline std::string text(const SelectItem& item) {
    return text(item.expr) + (item.alias ? " as " + text(item.alias) : "");
}

inline std::string text(const QueryBlock& block) {
    std::string all = std::string("select ") + (block.distinct ? "distinct " : "") +
                      list(block.items, ", ") + " from " + list(block.from, ", ");
    if (block.where)
        all += " where " + text(block.where);
    if (block.startWith)
        all += " start " + text(block.startWith);
    if (block.connectBy)
        all +=
            std::string(block.noCycle ? " connect-nocycle " : " connect ") + text(block.connectBy);
    if (!block.groupBy.empty())
        all += " group " + list(block.groupBy);
    return all + (block.having ? " having " + text(block.having) : "");
}

inline std::string text(const Query* query) {
    static constexpr const char* operators[] = {
        "", " union ", " union-all ", " intersect ", " intersect-all ", " minus "};
    std::string all;
    for (const WithItem& item : query->with)
        all += "with " + text(item.name) + " [" + text(item.query) + "] ";
    for (const QueryTerm& term : query->terms)
        all += operators[int(term.op)] +
               (term.block ? text(*term.block) : '(' + text(term.nested) + ')');
    if (!query->orderBy.empty())
        all += (query->siblings ? " siblings " : " order ") + order(query->orderBy);
    if (query->limit)
        all += " limit " + text(query->limit->offset) + ' ' + text(query->limit->count);
    return all + (query->forUpdate ? " for-update" : "");
}

} // namespace treetext
