#pragma once

#include "TokenCursor.h"
#include "Tree.h"

namespace ora {

// A query with everything that belongs to it, from WITH to FOR UPDATE; stops behind it.
Query* parseQuery(TokenCursor& cursor);

// ( query ); stands on the opening parenthesis.
Query* parseParenthesizedQuery(TokenCursor& cursor);

// FROM's items; the word FROM is consumed.
std::span<TableRef*> parseFrom(TokenCursor& cursor);

// One table, view or inline view with its alias, without joins.
TableRef* parseTableFactor(TokenCursor& cursor);

// [schema.]name. Throws `code` where no name stands, 2019 for a remote one.
ObjectName parseObjectName(TokenCursor& cursor, int code);

// An alias; absent where the next word begins a clause.
Name parseTableAlias(TokenCursor& cursor);

// ( name, … )
std::span<Name> parseNameList(TokenCursor& cursor, int code);

// What the server calls a column that was written as the tokens since `firstToken` and has no
// alias: the text in upper case without blanks.
std::string_view headingOf(TokenCursor& cursor, std::size_t firstToken);

} // namespace ora
