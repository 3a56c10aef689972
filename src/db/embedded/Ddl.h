#pragma once

#include "DatabaseCatalog.h"
#include "SchemaBinder.h"
#include "Sequences.h"
#include "TreeStatements.h"

#include <string_view>

namespace ora {

// What a data-definition statement works on. Nothing is owned.
struct DdlContext {
    const SqliteDatabase& db;
    DatabaseCatalog& catalog;
    SchemaBinder& binder;
    Sequences& sequences;

    const CatalogStore& store() const { return catalog.store(); }
};

// True for the statements that runDdl takes.
bool isDdl(StatementKind kind);

// Changes catalog and stored objects. source: the statement's text. The caller commits before,
// runs this in a transaction of its own and forgets what the catalog knew afterwards, also when it
// failed. Throws OraError and SqliteFailure.
void runDdl(const DdlContext& context, const Statement& statement, std::string_view source);

} // namespace ora
