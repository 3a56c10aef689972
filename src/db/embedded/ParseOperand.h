#pragma once

#include "TokenCursor.h"
#include "Tree.h"

namespace ora {

// A literal, column, function, CASE, subquery …, without prefix operators and parentheses that
// only group. Throws 936 where nothing of the kind stands.
Expr* parseOperand(TokenCursor& cursor);

// AT TIME ZONE, AT LOCAL, DAY TO SECOND or YEAR TO MONTH behind `operand`; null when none follows.
Expr* parseDatePostfix(TokenCursor& cursor, Expr* operand);

// The call whose name was consumed; stands on the opening parenthesis.
Expr* parseFunction(TokenCursor& cursor, std::span<Name> name);

// ORDER BY's items; the words ORDER BY are consumed.
std::span<OrderItem> parseOrderItems(TokenCursor& cursor);

// DEFAULT value ON CONVERSION ERROR; null when something else stands here.
Expr* acceptConversionDefault(TokenCursor& cursor);

} // namespace ora
