#include "Compiler.h"

#include "Binding.h"
#include "ErrorText.h"

#include <algorithm>

namespace ora {

namespace {

constexpr int SubqueryNotAllowed = 2251;

// What is nothing but NULL is text to the outside.
TypeInfo outsideType(const TypeInfo& type) {
    return type.type == SqlType::Null ? TypeInfo{SqlType::Varchar2} : type;
}

// Each row of the result is a row of its tables.
bool isPlain(const Query& query) {
    const QueryBlock* const block = query.terms.size() == 1 ? query.terms[0].block : nullptr;
    return block && !block->distinct && block->groupBy.empty() &&
           std::none_of(block->items.begin(), block->items.end(),
                        [](const SelectItem& item) { return hasAggregate(item.expr); });
}

// A time that is stored in UTC is shown in the session's zone.
void showLocalTimes(BoundQuery& query) {
    std::vector<std::string> columns;
    bool any = false;
    for (OutputColumn& column : query.columns) {
        std::string sql = 'c' + std::to_string(columns.size() + 1);
        if (column.type.type == SqlType::TimestampLocalTz) {
            any = true;
            column.type.type = SqlType::Timestamp;
            sql = call("ltz_ts", sql) + " AS " + sql;
        }
        columns.push_back(std::move(sql));
    }
    if (any)
        query.sql = "SELECT " + joined(columns, ",") + " FROM (" + query.sql + ')';
}

Compiled compileQuery(Binding& binding, const Query& query) {
    constexpr int ForUpdateNotAllowed = 1786;
    if (query.forUpdate && !isPlain(query))
        raise(ForUpdateNotAllowed, query.at.begin);
    BoundQuery bound = bindRootQuery(binding, query);
    showLocalTimes(bound);
    Compiled compiled;
    compiled.sql.push_back(std::move(bound.sql));
    for (const OutputColumn& column : bound.columns)
        compiled.columns.push_back({column.name, outsideType(column.type)});
    return compiled;
}

// The table's columns by their stored names.
Source ownColumns(Binding& binding, const Relation& table) {
    Source source;
    source.label = table.name;
    source.owner = table.owner;
    for (const CatalogColumn& column : table.columns)
        source.columns.push_back({column.name, column.type,
                                  column.virtualText.empty()
                                      ? column.sqlName
                                      : virtualColumn(binding, table, column, {}),
                                  column.nullable, Merged::No});
    return source;
}

using StarColumns = std::unordered_map<const Expr*, std::vector<std::string>>;

class CatalogBinder : public SchemaBinder {
public:
    explicit CatalogBinder(const Catalog& catalog)
        : m_catalog(catalog) {}

    DescribedQuery describe(const Query& query, bool sequences) override {
        Binding binding(m_catalog);
        binding.sequencesAllowed = sequences;
        StarColumns stars;
        binding.starColumns = &stars;
        BoundQuery bound = bindRootQuery(binding, query);
        DescribedQuery described;
        addStars(query, stars, described);
        for (const OutputColumn& column : bound.columns)
            described.columns.push_back(
                {column.named ? column.name : std::string(), outsideType(column.type),
                 column.nullable, column.type.type == SqlType::Null, column.declaredNotNull});
        described.sql = std::move(bound.sql);
        return described;
    }

    std::string conditionSql(const Expr& condition, const Relation& table) override {
        constexpr int SystemVariable = 2436;
        Binding binding(m_catalog);
        binding.impureError = SystemVariable;
        Scope scope = tableScope(binding, table);
        return bindCondition(binding, scope, condition);
    }

    TypedSql valueSql(const Expr& value, const Relation& table, int impureError) override {
        Binding binding(m_catalog);
        binding.impureError = impureError;
        binding.modelsGiven = true;
        Scope scope = tableScope(binding, table);
        Value bound = bindValue(binding, scope, value);
        return {std::move(bound.sql), outsideType(bound.type)};
    }

    std::string defaultSql(const Expr& value, const CatalogColumn& column,
                           const Relation& table) override {
        constexpr int ColumnNotAllowed = 984;
        Binding binding(m_catalog);
        binding.columnError = ColumnNotAllowed;
        binding.subqueryError = SubqueryNotAllowed;
        Scope scope(nullptr);
        forbidGroups(scope);
        return storedValue(bindValue(binding, scope, value), column, table);
    }

    std::string storedSql(const std::string& sql, const TypeInfo& from, const CatalogColumn& column,
                          const Relation& table) override {
        Value value;
        value.sql = sql;
        value.type = from;
        return storedValue(value, column, table);
    }

    TriggerSql triggerSql(const CreateTrigger& trigger, const Relation& table,
                          RowAction event) override {
        Binding binding(m_catalog);
        binding.insideTrigger = trigger.forEachRow;
        const TriggerRow row = triggerRow(trigger, table, event);
        binding.trigger = &row;
        TriggerSql sql;
        sql.when = triggerCondition(binding, trigger);
        if (trigger.raise)
            sql.steps.push_back("SELECT " + raisedError(binding, trigger, table.owner));
        else if (trigger.body)
            sql.steps = compileStatement(binding, *trigger.body).sql;
        return sql;
    }

private:
    static void forbidGroups(Scope& scope) {
        constexpr int GroupFunctionNotAllowed = 934;
        scope.aggregateError = GroupFunctionNotAllowed;
        scope.windowError = 1;
    }

    // Of the query's own select lists; the same columns may be found through the rest.
    static void addStars(const Query& query, const StarColumns& stars, DescribedQuery& described) {
        for (const QueryTerm& term : query.terms) {
            if (term.nested)
                addStars(*term.nested, stars, described);
            for (const SelectItem& item :
                 term.block ? term.block->items : std::span<SelectItem>()) {
                if (const auto star = stars.find(item.expr); star != stars.end())
                    described.stars.push_back({item.expr->at, star->second});
            }
        }
    }

    static Scope tableScope(Binding& binding, const Relation& table) {
        binding.sequencesAllowed = false;
        binding.subqueryError = SubqueryNotAllowed;
        Scope scope(nullptr);
        forbidGroups(scope);
        scope.sources.push_back(ownColumns(binding, table));
        return scope;
    }

    static TriggerRow triggerRow(const CreateTrigger& trigger, const Relation& table,
                                 RowAction event) {
        TriggerRow row{trigger.newName, trigger.oldName, &table, {}, {}};
        if (!trigger.forEachRow)
            return row;
        for (const CatalogColumn& column : table.columns) {
            if (event != RowAction::Delete)
                row.newValues.push_back("NEW." + column.sqlName);
            if (event != RowAction::Insert)
                row.oldValues.push_back("OLD." + column.sqlName);
        }
        return row;
    }

    static std::string raisedError(Binding& binding, const CreateTrigger& trigger,
                                   const std::string& owner) {
        Scope scope(nullptr);
        forbidGroups(scope);
        const TriggerRaise& raised = *trigger.raise;
        const std::string number =
            convertTo(bindValue(binding, scope, *raised.number), SqlType::Number);
        const std::string text =
            convertTo(bindValue(binding, scope, *raised.text), SqlType::Varchar2);
        return call("ora_raise_from",
                    {call("num_int", number), text,
                     textLiteral(owner + '.' + std::string(trigger.name.name.text)),
                     std::to_string(raised.line)});
    }

    static std::string triggerCondition(Binding& binding, const CreateTrigger& trigger) {
        Scope scope(nullptr);
        forbidGroups(scope);
        std::vector<std::string> conditions;
        for (const Expr* condition : {trigger.when, trigger.guard})
            if (condition)
                conditions.push_back(bindCondition(binding, scope, *condition));
        return conditions.empty() ? std::string() : joinedConditions(conditions, "AND");
    }

    const Catalog& m_catalog;
};

} // namespace

Compiled compileStatement(Binding& binding, const Statement& statement) {
    switch (statement.kind) {
    case StatementKind::Query:
        return compileQuery(binding, *static_cast<const QueryStatement&>(statement).query);
    case StatementKind::Insert:
        return compileInsert(binding, static_cast<const Insert&>(statement));
    case StatementKind::MultiInsert:
        return compileMultiInsert(binding, static_cast<const MultiInsert&>(statement));
    case StatementKind::Update:
        return compileUpdate(binding, static_cast<const Update&>(statement));
    case StatementKind::Delete:
        return compileDelete(binding, static_cast<const Delete&>(statement));
    case StatementKind::Merge: return compileMerge(binding, static_cast<const Merge&>(statement));
    default: {
        constexpr int InvalidStatement = 900;
        raise(InvalidStatement, statement.at.begin);
    }
    }
}

Compiled compile(const Catalog& catalog, const Statement& statement) {
    Binding binding(catalog);
    return compileStatement(binding, statement);
}

Compiled compileChange(const Catalog& catalog, const Statement& statement) {
    Binding binding(catalog);
    if (const Relation* const view = viewWithTriggers(binding, statement))
        return compileInstead(binding, statement, *view);
    Compiled compiled = compileStatement(binding, statement);
    addStatementTriggers(catalog, statement, compiled);
    return compiled;
}

std::unique_ptr<SchemaBinder> makeSchemaBinder(const Catalog& catalog) {
    return std::make_unique<CatalogBinder>(catalog);
}

} // namespace ora
