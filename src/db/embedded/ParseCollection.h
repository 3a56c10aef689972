#pragma once

#include "TokenCursor.h"
#include "Tree.h"

namespace ora {

// TABLE(SYS.ODCINUMBERLIST(1, 2)) and TABLE(DBMS_XPLAN.DISPLAY) as the query that gives the same
// rows; the word TABLE may be missing. Null when something else stands here. Throws 3001 for any
// other collection.
Query* parseCollection(TokenCursor& cursor);

} // namespace ora
