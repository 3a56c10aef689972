#include "Binding.h"
#include "Compiler.h"
#include "ErrorText.h"
#include "Requirements.h"
#include "TriggerEvents.h"

#include <algorithm>
#include <iterator>
#include <utility>

// Triggers that the engine has none of: for a whole statement, and in place of a view's change.
namespace ora {

namespace {

constexpr const char* InsteadView = "instead_view";

bool fires(const CreateTrigger& trigger, RowAction action) {
    return trigger.*triggerEvent(action).on;
}

std::vector<Name> namesOf(std::span<const Assignment> assignments) {
    std::vector<Name> names;
    for (const Assignment& assignment : assignments)
        names.insert(names.end(), assignment.columns.begin(), assignment.columns.end());
    return names;
}

// What the statement does to its table's rows.
struct Event {
    RowAction action;
    std::vector<Name> changed; // by UPDATE
};

std::vector<Event> eventsOf(const Statement& statement) {
    switch (statement.kind) {
    case StatementKind::Update:
        return {{RowAction::Update, namesOf(static_cast<const Update&>(statement).assignments)}};
    case StatementKind::Delete: return {{RowAction::Delete, {}}};
    case StatementKind::Merge: break;
    default: return {{RowAction::Insert, {}}};
    }
    const auto& merge = static_cast<const Merge&>(statement);
    std::vector<Event> events;
    if (merge.inserts)
        events.push_back({RowAction::Insert, {}});
    if (!merge.assignments.empty())
        events.push_back({RowAction::Update, namesOf(merge.assignments)});
    if (merge.deleteWhere)
        events.push_back({RowAction::Delete, {}});
    return events;
}

bool fires(const CreateTrigger& trigger, const Event& event) {
    if (!fires(trigger, event.action))
        return false;
    if (event.action != RowAction::Update || trigger.updateColumns.empty())
        return true;
    return std::any_of(event.changed.begin(), event.changed.end(), [&](const Name& changed) {
        return std::any_of(trigger.updateColumns.begin(), trigger.updateColumns.end(),
                           [&](const Name& name) { return name.text == changed.text; });
    });
}

// The steps of the triggers, and of those that their statements set off.
class StatementTriggers {
public:
    StatementTriggers(const Catalog& catalog, int depth)
        : m_catalog(catalog)
        , m_depth(depth) {}

    void add(const Statement& statement, Compiled& compiled) const {
        constexpr int MostDepth = 50;
        constexpr int TooManyLevels = 36;
        if (!compiled.target || compiled.target->statementTriggers.empty())
            return;
        if (m_depth > MostDepth)
            throw OraError(TooManyLevels, "maximum number of recursive SQL levels (50) exceeded");
        std::vector<std::string> before;
        std::vector<std::string> after;
        for (const Event& event : eventsOf(statement))
            for (const ParsedTrigger& one : compiled.target->statementTriggers)
                if (fires(*one.trigger, event))
                    append(one.trigger->timing == TriggerTiming::Before ? before : after,
                           steps(*one.trigger, *compiled.target, event.action));
        append(before, std::move(compiled.sql));
        append(before, std::move(after));
        compiled.sql = std::move(before);
    }

private:
    static void append(std::vector<std::string>& list, std::vector<std::string> more) {
        list.insert(list.end(), std::make_move_iterator(more.begin()),
                    std::make_move_iterator(more.end()));
    }

    std::vector<std::string> steps(const CreateTrigger& trigger, const Relation& table,
                                   RowAction action) const {
        if (trigger.body) {
            Compiled body = compile(m_catalog, *trigger.body);
            StatementTriggers(m_catalog, m_depth + 1).add(*trigger.body, body);
            return std::move(body.sql);
        }
        SchemaBinder::TriggerSql sql =
            makeSchemaBinder(m_catalog)->triggerSql(trigger, table, action);
        if (!sql.when.empty())
            for (std::string& step : sql.steps)
                step += " WHERE " + sql.when;
        return std::move(sql.steps);
    }

    const Catalog& m_catalog;
    int m_depth;
};

const Target* targetOf(const Statement& statement) {
    switch (statement.kind) {
    case StatementKind::Insert: return &static_cast<const Insert&>(statement).target;
    case StatementKind::Update: return &static_cast<const Update&>(statement).target;
    case StatementKind::Delete: return &static_cast<const Delete&>(statement).target;
    case StatementKind::Merge: return &static_cast<const Merge&>(statement).target;
    default: return nullptr;
    }
}

// The change is one of an engine's view that lives as long as the statement, and whose triggers are
// the ones of the server's view.
class InsteadChange {
public:
    InsteadChange(Binding& binding, const Relation& view, RowAction action)
        : m_binding(binding)
        , m_view(view)
        , m_action(action)
        , m_scope(nullptr) {
        m_rows->kind = Relation::Kind::Table;
        m_rows->owner = view.owner;
        m_rows->name = view.name;
        m_rows->source = InsteadView;
        m_rows->columns = view.columns;
        for (std::size_t i = 0; i < m_rows->columns.size(); ++i)
            m_rows->columns[i].sqlName = "c" + std::to_string(i + 1);
    }

    Compiled compile(const Statement& statement) {
        Compiled compiled;
        compiled.action = m_action;
        const Tree& tree = m_binding.keep(parseQueryText(m_view.viewText));
        compiled.sql.push_back("CREATE TEMP VIEW " + std::string(InsteadView) + " AS " +
                               bindQuery(m_binding, *tree.query, nullptr).sql);
        for (const ParsedTrigger& one : m_view.insteadTriggers)
            if (fires(*one.trigger, m_action))
                addTrigger(*one.trigger, compiled.sql);
        compiled.sql.push_back(change(statement));
        compiled.sql.push_back("DROP VIEW " + std::string(InsteadView));
        return compiled;
    }

private:
    void addTrigger(const CreateTrigger& trigger, std::vector<std::string>& sql) const {
        const SchemaBinder::TriggerSql text =
            makeSchemaBinder(m_binding.catalog)->triggerSql(trigger, *m_rows, m_action);
        if (text.steps.empty())
            sql.push_back(triggerSql(sql.size(), text.when, "SELECT 1"));
        else
            sql.push_back(triggerSql(sql.size(), text.when, joined(text.steps, ";")));
    }

    std::string triggerSql(std::size_t number, const std::string& when,
                           const std::string& body) const {
        return "CREATE TEMP TRIGGER instead_" + std::to_string(number) + " INSTEAD OF " +
               triggerEvent(m_action).word + " ON " + InsteadView + " FOR EACH ROW" +
               (when.empty() ? "" : " WHEN " + when) + " BEGIN " + body + "; END";
    }

    std::string change(const Statement& statement) {
        if (m_action == RowAction::Insert)
            return insertText(static_cast<const Insert&>(statement));
        const Target& target = *targetOf(statement);
        // The engine knows no alias of a view that it changes.
        std::string from;
        const bool inside = std::exchange(m_binding.insideTrigger, true);
        m_scope.sources.push_back(relationSource(m_binding, m_rows, target.alias.text, from));
        m_binding.insideTrigger = inside;
        if (m_action == RowAction::Delete)
            return "DELETE FROM " + from + whereText(static_cast<const Delete&>(statement).where);
        const auto& update = static_cast<const Update&>(statement);
        std::vector<std::string> parts;
        for (const Assignment& assignment : update.assignments)
            addAssignment(assignment, parts);
        return "UPDATE " + from + " SET " + joined(parts, ",") + whereText(update.where);
    }

    std::string whereText(const Expr* where) {
        return where ? " WHERE " + bindCondition(m_binding, m_scope, *where) : std::string();
    }

    Value valueOf(const Expr& expr) {
        return expr.kind == ExprKind::Default ? nullValue() : bindValue(m_binding, m_scope, expr);
    }

    void addPart(const Name& name, const Value& value, std::vector<std::string>& parts) const {
        const CatalogColumn& column = requireColumn(*m_rows, name);
        parts.push_back(column.sqlName + '=' + storedValue(value, column, *m_rows));
    }

    void addAssignment(const Assignment& assignment, std::vector<std::string>& parts) {
        if (!assignment.query)
            return addPart(assignment.columns[0], valueOf(*assignment.value), parts);
        const BoundQuery query = bindQuery(m_binding, *assignment.query, &m_scope);
        requireCount(assignment.columns.size(), query.columns.size());
        for (std::size_t i = 0; i < query.columns.size(); ++i)
            addPart(assignment.columns[i], singleRowColumn(query, i), parts);
    }

    std::string insertText(const Insert& insert) {
        std::vector<const CatalogColumn*> columns;
        for (const Name& name : insert.columns)
            columns.push_back(&requireColumn(*m_rows, name));
        if (insert.columns.empty())
            for (const CatalogColumn& column : m_rows->columns)
                columns.push_back(&column);
        std::string from;
        const std::vector<Value> values = insertedValues(insert, from);
        requireCount(columns.size(), values.size());
        std::vector<std::string> names;
        std::vector<std::string> parts;
        for (std::size_t i = 0; i < columns.size(); ++i) {
            names.push_back(columns[i]->sqlName);
            parts.push_back(storedValue(values[i], *columns[i], *m_rows));
        }
        return "INSERT INTO " + m_rows->source + " (" + joined(names, ",") + ") SELECT " +
               joined(parts, ",") + from;
    }

    std::vector<Value> insertedValues(const Insert& insert, std::string& from) {
        std::vector<Value> values;
        if (!insert.query) {
            for (const Expr* value : insert.values)
                values.push_back(valueOf(*value));
            return values;
        }
        const BoundQuery query = bindRootQuery(m_binding, *insert.query);
        from = " FROM (" + query.sql + ") AS q";
        for (std::size_t i = 0; i < query.columns.size(); ++i) {
            Value& value = values.emplace_back();
            value.sql = "q.c" + std::to_string(i + 1);
            value.type = query.columns[i].type;
        }
        return values;
    }

    Binding& m_binding;
    const Relation& m_view;
    RowAction m_action;
    std::shared_ptr<Relation> m_rows = std::make_shared<Relation>(); // the engine's view
    Scope m_scope;
};

} // namespace

const Relation* viewWithTriggers(Binding& binding, const Statement& statement) {
    constexpr int NoMerge = 38106;
    const Target* const target = targetOf(statement);
    if (!target || target->query)
        return nullptr;
    const RelationPtr view = binding.relation(target->name);
    if (view->insteadTriggers.empty())
        return nullptr;
    if (statement.kind == StatementKind::Merge)
        raise(NoMerge);
    const RowAction action = eventsOf(statement)[0].action;
    const bool any =
        std::any_of(view->insteadTriggers.begin(), view->insteadTriggers.end(),
                    [&](const ParsedTrigger& one) { return fires(*one.trigger, action); });
    return any ? view.get() : nullptr;
}

Compiled compileInstead(Binding& binding, const Statement& statement, const Relation& view) {
    return InsteadChange(binding, view, eventsOf(statement)[0].action).compile(statement);
}

void addStatementTriggers(const Catalog& catalog, const Statement& statement, Compiled& compiled) {
    StatementTriggers(catalog, 0).add(statement, compiled);
}

} // namespace ora
