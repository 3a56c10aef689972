#pragma once

#include "Catalog.h"
#include "Compiled.h"
#include "SchemaBinder.h"

#include <memory>

namespace ora {

// From the tree to the engine's SQL: binder and emitter. Throws OraError.

// A query, or INSERT, UPDATE, DELETE and MERGE in all their forms.
Compiled compile(const Catalog& catalog, const Statement& statement);

// A change with what the triggers for the whole statement, or those INSTEAD OF it, make of it.
Compiled compileChange(const Catalog& catalog, const Statement& statement);

// catalog is not owned.
std::unique_ptr<SchemaBinder> makeSchemaBinder(const Catalog& catalog);

} // namespace ora
