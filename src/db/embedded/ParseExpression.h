#pragma once

#include "TokenCursor.h"
#include "Tree.h"

namespace ora {

// A value: arithmetic, ||, functions, CASE, scalar subqueries. Stops before what cannot continue
// it.
Expr* parseValue(TokenCursor& cursor);

// A value or a row in parentheses, as in an IN list.
Expr* parseValueOrRow(TokenCursor& cursor);

// Throws 920 where a value stands alone.
Expr* parseCondition(TokenCursor& cursor);

// One or more values with commas between; does not take the parentheses.
std::span<Expr*> parseValueList(TokenCursor& cursor);

// True for nodes that are true or false rather than a value.
bool isCondition(const Expr& expr);

// A node over what was consumed since `begin`.
template<class Node, class... Members>
Node* makeExpr(TokenCursor& cursor, ExprKind kind, std::uint32_t begin, Members... members) {
    return cursor.arena().make<Node>(Expr{kind, cursor.extentFrom(begin)}, members...);
}

} // namespace ora
