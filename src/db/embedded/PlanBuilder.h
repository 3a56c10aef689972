#pragma once

#include "Plan.h"

#include <map>
#include <set>

namespace ora {

// A line of EXPLAIN QUERY PLAN with the lines below it.
struct EngineStep {
    std::string detail;
    std::vector<EngineStep> children;
};

EngineStep engineSteps(const SqliteDatabase& db, const std::string& emittedSql);

// What the emitted text calls its tables: alias to stored name, "a1" to "t17".
std::map<std::string, std::string> tableAliases(const std::string& emittedSql);

// How many rows the stored table and index have, without reading them. Estimates.
class PlanStatistics {
public:
    explicit PlanStatistics(const SqliteDatabase& db)
        : m_db(db) {}
    double rows(const std::string& sqlTable) const;
    // Rows that share one value of the index's first `keys` columns.
    double rowsPerKey(const std::string& sqlTable, const std::string& sqlIndex, int keys) const;

private:
    const SqliteDatabase& m_db;
};

// Turns the engine's lines into nodes.
class PlanBuilder {
public:
    PlanBuilder(const SqliteDatabase& db, const DatabaseCatalog& catalog,
                std::map<std::string, std::string> aliases);

    // The operations of one query block; lines that name no operation of their own are left out.
    PlanNode block(const EngineStep& step);

private:
    struct Sources { // a block's lines, sorted by what they are
        std::vector<const EngineStep*> accesses;
        std::vector<const EngineStep*> sorts;
        std::vector<const EngineStep*> subqueries;
        const EngineStep* compound = nullptr;
    };
    Sources sortLines(const EngineStep& step);
    PlanNode joined(const std::vector<const EngineStep*>& accesses);
    PlanNode access(const EngineStep& step);
    PlanNode indexAccess(const std::string& table, std::string_view detail);
    PlanNode fullScan(const std::string& table);
    PlanNode namedBlock(const std::string& name);
    PlanNode compound(const EngineStep& step);
    PlanNode recursive(const EngineStep& step);
    PlanNode multiIndex(const EngineStep& step);
    std::string storedTable(const std::string& alias) const;
    void setTable(PlanNode& node, const std::string& sqlTable) const;

    const DatabaseCatalog& m_catalog;
    PlanStatistics m_statistics;
    std::map<std::string, std::string> m_aliases;
    std::map<std::string, const EngineStep*> m_blocks; // CO-ROUTINE and MATERIALIZE by name
    std::set<std::string> m_expanding;
};

} // namespace ora
