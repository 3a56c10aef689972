#pragma once

#include "DatabaseCatalog.h"
#include "OraError.h"
#include "RowAction.h"

#include <optional>

namespace ora {

// The engine's constraint failures in the server's words, with schema and name.

// Nothing when the failure is no constraint's. A broken foreign key is not named by the engine:
// the text then names none; see brokenForeignKey.
std::optional<OraError> constraintError(const SqliteFailure& failure,
                                        const DatabaseCatalog& catalog, RowAction action);

// What a broken key, check or foreign key is reported as; lacksParent: of a foreign key, else a
// child was found.
OraError violated(const DatabaseCatalog& catalog, const ConstraintDefinition& constraint,
                  bool lacksParent);

// The first foreign key that rows break now, after a statement on `changed`: 2291 when the rows of
// `changed` lack a parent, else 2292. Reads whole tables. Nothing when all hold.
std::optional<OraError> brokenForeignKey(const SqliteDatabase& db, const DatabaseCatalog& catalog,
                                         ObjectId changed, RowAction action);

} // namespace ora
