#pragma once

#include "TokenCursor.h"
#include "Types.h"

namespace ora {

// A data type with its lengths; ANSI names become the server's own. Throws 902, 906, 907, 910,
// 1723, 1727, 1728.
TypeInfo parseType(TokenCursor& cursor);

// YEAR [(n)] [TO MONTH], DAY [(n)] [TO SECOND [(n)]] and the like. Throws 30089.
IntervalQualifier parseIntervalQualifier(TokenCursor& cursor);

} // namespace ora
