#pragma once

#include "Catalog.h"
#include "ConstraintErrors.h"
#include "TreeStatements.h"
#include "TypedCursor.h"

#include <string>
#include <vector>

namespace ora {

// What a query or a data-changing statement becomes.
struct Compiled {
    // The engine's statements, to be run in order as one; a query has one.
    std::vector<std::string> sql;
    std::vector<ResultColumn> columns; // of a query; empty for a change
    RowAction action = RowAction::Insert;
    RelationPtr target; // of a change
};

} // namespace ora
