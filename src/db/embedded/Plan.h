#pragma once

#include "DatabaseCatalog.h"

#include <memory>
#include <string>
#include <vector>

namespace ora {

// An execution plan: the engine's own EXPLAIN QUERY PLAN in the server's words.

struct PlanNode {
    std::string operation; // "TABLE ACCESS"
    std::string options;   // "BY INDEX ROWID"
    ObjectId object = 0;   // of the catalog; 0: none
    std::string objectName;
    std::string objectType; // "TABLE", "INDEX (UNIQUE)"
    double cost = 0;        // of the whole subtree, grows with the rows that it reads
    double cardinality = 0; // rows that come out
    std::vector<PlanNode> children;
};

// The plan of an emitted statement. root: "SELECT STATEMENT" and the like; target: the table that
// an INSERT, UPDATE, DELETE or MERGE changes, or null. Throws SqliteFailure.
PlanNode explainPlan(const SqliteDatabase& db, const DatabaseCatalog& catalog,
                     const std::string& emittedSql, const std::string& root,
                     const Relation* target);

// Writes the plan's rows into a table like PLAN_TABLE; columns that it lacks are left out. Throws
// SqliteFailure.
void storePlan(const SqliteDatabase& db, const PlanNode& plan, const Relation& planTable,
               const std::string& statementId, const std::string& owner);

} // namespace ora
