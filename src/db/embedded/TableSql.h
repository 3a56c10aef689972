#pragma once

#include "CatalogStore.h"
#include "Definitions.h"

#include <string>

namespace ora {

// How tables and indexes are stored: the engine's CREATE statements, made from the definitions.
// Columns have no declared type, so that every value stays as it is. Keys are unique indexes of
// their own; checks, foreign keys and NOT NULL stand in the table.

// store: for the parents of foreign keys. Throws SqliteFailure.
std::string createTableSql(const TableDefinition& table, const CatalogStore& store);
std::string createIndexSql(const IndexDefinition& index, const TableDefinition& table);

// The table and its indexes, when the catalog has them already: the tables of a session.
void createStoredTable(const SqliteDatabase& db, const CatalogStore& store,
                       const TableDefinition& table);

// A query that gives a row when the stored rows break the constraint.
std::string violationSql(const TableDefinition& table, const ConstraintDefinition& constraint,
                         const CatalogStore& store);

// The numbers of the columns that an expression over the table alone uses, each once, in order.
std::vector<int> columnsIn(const std::string& expressionSql);

// The name of a check or foreign key in the stored table: "k17".
std::string sqlName(const ConstraintDefinition& constraint);

// Replaces the stored table's text in place: for what changes no row (constraints, new columns at
// the end, defaults). Must run in a transaction. Throws SqliteFailure.
void replaceTableSql(const SqliteDatabase& db, const TableDefinition& table,
                     const CatalogStore& store);

} // namespace ora
