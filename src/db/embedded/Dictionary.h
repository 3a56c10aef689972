#pragma once

#include "Catalog.h"

struct sqlite3;

namespace ora {

struct FunctionContext;

// The data dictionary: DUAL, the USER_, ALL_ and DBA_ views, V$… as relations that are queries over
// the catalog's tables.

// The view of that name, DICT and other public synonyms included; null when there is none. The
// relation lives as long as the program.
RelationPtr dictionaryRelation(std::string_view name);

// What the views ask of the program itself: ora_dictionary(), ora_sessions() from the session list,
// ora_timestamp_format(). session is the connection's own and outlives it.
void registerDictionaryFunctions(sqlite3* db, const FunctionContext& session);

} // namespace ora
