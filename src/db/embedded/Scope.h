#pragma once

#include "Catalog.h"
#include "Tree.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

// What names mean inside one query block, and where their values stand in the emitted SQL.
namespace ora {

// An expression of the engine with its static type.
struct Value {
    std::string sql;
    TypeInfo type;
    bool nullable = true;
    bool column = false;                // a stored column as it is
    bool declaredNotNull = false;       // and NOT NULL stands in its definition
    std::string rowid;                  // the engine's row number behind a ROWID
    std::optional<std::string> literal; // the text of a text literal
};

enum class Merged : std::uint8_t { No, ByUsing, ByNatural };

struct SourceColumn {
    std::string_view name;
    TypeInfo type;
    std::string sql; // before any stage: "s1.c3"
    bool nullable = true;
    Merged merged = Merged::No; // stands behind the common column of a join; no longer named alone
    bool invisible = false;     // not part of *
    bool declaredNotNull = false; // not only by a key
};

struct Source {
    std::string_view label; // the alias, or the table's own name
    std::string_view owner; // empty with an alias
    std::vector<SourceColumn> columns;
    std::string rowid;   // "s1.rowid"; empty where rows have none
    std::string alias;   // "s1"; empty for the common columns of a join
    bool common = false; // the common columns of a join, which no label names
};

// A subquery that the block's tables were put into, so that something can be computed before the
// rest of the block: CONNECT BY, ROWNUM. Knows which of its columns the rest needs.
class Stage {
public:
    explicit Stage(std::string alias)
        : m_alias(std::move(alias)) {}

    const std::string& alias() const { return m_alias; }

    static constexpr int Rowid = -1;
    std::string use(int source, int column);
    bool uses(int source, int column) const;
    void useAllOf(const Stage& upper);

    struct Extra {
        std::string name;
        std::string root;  // what the stage's SELECT computes
        std::string child; // the same in the recursive branch of a hierarchy
    };
    // A column that is none of a table; found again by its name.
    std::string extra(const Extra& extra);
    std::string nextExtraName() const { return "x" + std::to_string(extras.size() + 1); }

    struct Column {
        int source;
        int column;
    };
    std::vector<Column> columns; // in the order of their first use
    std::vector<Extra> extras;

    static std::string columnName(int source, int column);

private:
    std::string m_alias;
};

// Values that a query takes from another one that it does not stand in.
class OuterValues {
public:
    // "?n" for the value, the same for the same one.
    std::string parameter(const std::string& sql);
    const std::vector<std::string>& values() const { return m_values; }

private:
    std::vector<std::string> m_values;
};

struct AliasedValue {
    std::string_view name;
    Value value;
};

class Scope {
public:
    explicit Scope(Scope* outerScope)
        : outer(outerScope) {}

    struct Found {
        int source = -1;
        int column = -1;
    };

    // A column of this block alone; throws 918 when several sources have it, 25154 and 25155 for a
    // qualified common column. Not found: source is -1.
    Found find(std::string_view name) const;
    Found find(std::string_view owner, std::string_view label, std::string_view name) const;
    // The source of that label, -1 when there is none.
    int findSource(std::string_view owner, std::string_view label) const;

    // Where the column stands at the current level; notes that it is used.
    std::string columnSql(int source, int column);
    Value columnValue(const Found& found);
    Value rowidValue(int source);
    // A stage's own column, handed through the stages above it.
    std::string extraSql(std::size_t stage, const Stage::Extra& extra);

    Scope* outer;
    std::vector<Source> sources;

    // A copy's columns are those of the block it was made of, as parameters.
    Scope* original = nullptr;
    OuterValues* outerValues = nullptr;
    std::vector<Stage> stages;
    std::size_t level = 0; // stages that lie below what is being bound

    // Sources that were named, and named with (+), since the caller cleared them; bit n is source
    // n.
    std::uint64_t named = 0;
    std::uint64_t marked = 0;

    // Grouping. Keys by their SQL; nulled ones are totalled in the grouping set at hand.
    std::unordered_map<std::string, std::size_t> groupKeys;
    std::vector<bool> nulledKeys;
    int groupId = 0;                    // how often the grouping set at hand stood before
    std::vector<std::string> ungrouped; // columns named outside group functions and keys
    int insideAggregate = 0;
    bool aggregates = false;
    bool windows = false;
    bool nested = false;                   // group functions of group functions
    std::vector<std::string> nestedValues; // what the inner SELECT hands to the outer functions

    int aggregateError = 0; // the number for a group function in this clause, 0 where allowed
    int windowError = 0;

    const std::vector<AliasedValue>* aliases = nullptr; // the select list, for ORDER BY

    // CONNECT BY: the stage of the hierarchy, counted from 1.
    std::size_t hierarchy = 0;
    bool insideConnectBy = false;
    std::vector<const Expr*> priors; // PRIOR's operands in CONNECT BY
    bool noCycle = false;
    std::string loopKey;   // what tells a row from its ancestors; empty: loops are not looked for
    std::string cycleTest; // whether a row of the hierarchy has a child among its ancestors
    std::size_t leafStage = 0;  // the stage that knows leaves and cycles, counted from 1
    std::size_t rowNumbers = 0; // the stage that counts rows, counted from 1
    bool countsRows = false;    // ROWNUM counts what the block itself gives out
};

} // namespace ora
