#include "Binding.h"

#include <functional>

namespace ora {

namespace {

using Visit = std::function<bool(const Expr&)>;

bool anyOf(const Expr* expr, const Visit& found);

bool anyIn(std::span<Expr* const> exprs, const Visit& found) {
    for (const Expr* expr : exprs)
        if (anyOf(expr, found))
            return true;
    return false;
}

bool anyIn(std::span<const OrderItem> items, const Visit& found) {
    for (const OrderItem& item : items)
        if (anyOf(item.expr, found))
            return true;
    return false;
}

bool anyInFunction(const Function& function, const Visit& found) {
    return anyIn(function.arguments, found) || anyIn(function.withinGroup, found) ||
           anyOf(function.onError, found) ||
           (function.keep && anyIn(function.keep->order, found)) ||
           (function.over &&
            (anyIn(function.over->partition, found) || anyIn(function.over->order, found)));
}

bool anyInCase(const Case& node, const Visit& found) {
    if (anyOf(node.operand, found) || anyOf(node.otherwise, found))
        return true;
    for (const CaseArm& arm : node.arms)
        if (anyOf(arm.when, found) || anyOf(arm.then, found))
            return true;
    return false;
}

template<class Node>
const Node& as(const Expr& expr) {
    return static_cast<const Node&>(expr);
}

bool anyInCondition(const Expr& expr, const Visit& found) {
    switch (expr.kind) {
    case ExprKind::Comparison:
        return anyOf(as<Comparison>(expr).left, found) || anyOf(as<Comparison>(expr).right, found);
    case ExprKind::Quantified:
        return anyOf(as<Quantified>(expr).left, found) || anyIn(as<Quantified>(expr).list, found);
    case ExprKind::Like:
        return anyOf(as<Like>(expr).operand, found) || anyOf(as<Like>(expr).pattern, found) ||
               anyOf(as<Like>(expr).escape, found);
    case ExprKind::Between:
        return anyOf(as<Between>(expr).operand, found) || anyOf(as<Between>(expr).low, found) ||
               anyOf(as<Between>(expr).high, found);
    case ExprKind::In: return anyOf(as<In>(expr).operand, found) || anyIn(as<In>(expr).list, found);
    case ExprKind::IsNull: return anyOf(as<IsNull>(expr).operand, found);
    default: return false;
    }
}

// A long sum is deep on its left side alone.
bool anyInChain(const Arithmetic& last, const Visit& found) {
    const Arithmetic* step = &last;
    for (;;) {
        if (anyOf(step->right, found))
            return true;
        if (step->left->kind != ExprKind::Arithmetic)
            return anyOf(step->left, found);
        step = static_cast<const Arithmetic*>(step->left);
    }
}

bool anyBelow(const Expr& expr, const Visit& found) {
    switch (expr.kind) {
    case ExprKind::Unary: return anyOf(as<Unary>(expr).operand, found);
    case ExprKind::Arithmetic: return anyInChain(as<Arithmetic>(expr), found);
    case ExprKind::List: return anyIn(as<ListExpr>(expr).items, found);
    case ExprKind::Function: return anyInFunction(as<Function>(expr), found);
    case ExprKind::Case: return anyInCase(as<Case>(expr), found);
    case ExprKind::Cast:
        return anyOf(as<Cast>(expr).operand, found) || anyOf(as<Cast>(expr).onError, found);
    case ExprKind::Extract: return anyOf(as<Extract>(expr).operand, found);
    case ExprKind::Trim:
        return anyOf(as<Trim>(expr).operand, found) || anyOf(as<Trim>(expr).characters, found);
    case ExprKind::AtTimeZone:
        return anyOf(as<AtTimeZone>(expr).operand, found) ||
               anyOf(as<AtTimeZone>(expr).zone, found);
    case ExprKind::IntervalCast: return anyOf(as<IntervalCast>(expr).operand, found);
    default: return anyInCondition(expr, found);
    }
}

// A tree deeper than the binder takes is refused there; here its depths are not looked at.
thread_local int searchDepth = 0;

bool anyOf(const Expr* expr, const Visit& found) {
    constexpr int DeepestSearch = 1000;
    if (!expr || searchDepth >= DeepestSearch)
        return false;
    if (found(*expr))
        return true;
    ++searchDepth;
    const bool below = anyBelow(*expr, found);
    --searchDepth;
    return below;
}

bool isRowNumber(const Expr& expr) {
    if (expr.kind != ExprKind::Column)
        return false;
    const auto& parts = as<ColumnRef>(expr).parts;
    return parts.size() == 1 && parts[0].text == "ROWNUM" && !parts[0].quoted;
}

bool isPseudoColumn(const Expr& expr) {
    if (expr.kind == ExprKind::Unary)
        return as<Unary>(expr).op == UnaryOp::ConnectByRoot;
    if (expr.kind == ExprKind::Function)
        return as<Function>(expr).name[0].text == "SYS_CONNECT_BY_PATH";
    if (expr.kind != ExprKind::Column || as<ColumnRef>(expr).parts.size() != 1)
        return false;
    const std::string_view name = as<ColumnRef>(expr).parts[0].text;
    return name == "LEVEL" || name == "CONNECT_BY_ISLEAF" || name == "CONNECT_BY_ISCYCLE";
}

bool isAggregate(const Expr& expr) {
    return expr.kind == ExprKind::Function && isAggregateCall(as<Function>(expr));
}

} // namespace

bool namesRowNumber(const Expr* expr) {
    return anyOf(expr, isRowNumber);
}

bool namesPseudoColumn(const Expr* expr) {
    return anyOf(expr, isPseudoColumn);
}

bool namesColumn(const Expr* expr, std::string_view name) {
    return anyOf(expr, [name](const Expr& node) {
        return node.kind == ExprKind::Column && as<ColumnRef>(node).parts.back().text == name;
    });
}

bool hasAggregate(const Expr* expr) {
    return anyOf(expr, isAggregate);
}

bool hasNestedAggregate(const Expr* expr) {
    return anyOf(expr, [](const Expr& node) {
        if (!isAggregate(node))
            return false;
        for (const Expr* argument : as<Function>(node).arguments)
            if (hasAggregate(argument))
                return true;
        return false;
    });
}

bool hasWindow(const Expr* expr) {
    return anyOf(expr, [](const Expr& node) {
        return node.kind == ExprKind::Function && as<Function>(node).over != nullptr;
    });
}

bool hasPrior(const Expr* expr) {
    return anyOf(expr, [](const Expr& node) {
        return node.kind == ExprKind::Unary && as<Unary>(node).op == UnaryOp::Prior;
    });
}

void collectColumns(const Expr* expr, std::vector<const ColumnRef*>& references) {
    anyOf(expr, [&](const Expr& node) {
        if (node.kind == ExprKind::Column)
            references.push_back(&as<ColumnRef>(node));
        return false;
    });
}

void collectSequences(const Expr* expr, std::vector<const ColumnRef*>& references) {
    std::vector<const ColumnRef*> all;
    collectColumns(expr, all);
    for (const ColumnRef* reference : all) {
        const std::string_view last = reference->parts.back().text;
        if (reference->parts.size() > 1 && (last == "NEXTVAL" || last == "CURRVAL"))
            references.push_back(reference);
    }
}

bool hasSubquery(const Expr* expr) {
    return anyOf(expr, [](const Expr& node) {
        return node.kind == ExprKind::Subquery || node.kind == ExprKind::Exists ||
               (node.kind == ExprKind::In && as<In>(node).query) ||
               (node.kind == ExprKind::Quantified && as<Quantified>(node).query);
    });
}

} // namespace ora
