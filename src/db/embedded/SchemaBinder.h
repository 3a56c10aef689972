#pragma once

#include "Catalog.h"
#include "RowAction.h"
#include "TreeStatements.h"

#include <string>
#include <vector>

namespace ora {

// What data definition asks of the binder and the emitter. Everything throws OraError when a name
// or a type is wrong.
class SchemaBinder {
public:
    virtual ~SchemaBinder() = default;

    struct QueryColumn {
        std::string name; // empty: an expression without alias (ORA-00998 in a view)
        TypeInfo type;
        bool nullable = true;       // false where it is a column that may not be null
        bool onlyNull = false;      // nothing but NULL
        bool copiesNotNull = false; // and that was declared so, not only by a primary key
    };
    struct DescribedQuery {
        std::vector<QueryColumn> columns;
        std::string sql; // the engine's SELECT, its columns in the stored form of their types
        // The stars of its select lists, in order, and what they stand for.
        struct Star {
            Extent at;
            std::vector<std::string> columns; // without the qualifier that was written
        };
        std::vector<Star> stars;
    };
    // A view's query, or that of CREATE TABLE … AS, which may name sequences.
    virtual DescribedQuery describe(const Query& query, bool sequences) = 0;

    struct TypedSql {
        std::string sql;
        TypeInfo type;
    };
    // An expression over the table's own columns, which the SQL names without an alias ("c1"): a
    // check, an index expression, a virtual column. `table` may have no source yet.
    virtual std::string conditionSql(const Expr& condition, const Relation& table) = 0;
    // impureError: for what may change by itself, as SYSDATE does.
    virtual TypedSql valueSql(const Expr& value, const Relation& table, int impureError) = 0;

    // The value of a DEFAULT, converted to the column's type as INSERT would store it.
    virtual std::string defaultSql(const Expr& value, const CatalogColumn& column,
                                   const Relation& table) = 0;

    // Values of the type `from` as a column of the type `column.type` stores them: rounded, padded,
    // ORA-12899, 01438, 00932. sql is the engine's expression.
    virtual std::string storedSql(const std::string& sql, const TypeInfo& from,
                                  const CatalogColumn& column, const Relation& table) = 0;

    // The engine's statements of a trigger for one of its events, with the row as NEW and OLD (null
    // in what the event has not); and its WHEN condition, empty without one (the guard included).
    struct TriggerSql {
        std::string when;
        std::vector<std::string> steps;
    };
    virtual TriggerSql triggerSql(const CreateTrigger& trigger, const Relation& table,
                                  RowAction event) = 0;
};

} // namespace ora
