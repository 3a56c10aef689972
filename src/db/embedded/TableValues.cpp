#include "Binding.h"
#include "ErrorText.h"

#include <algorithm>

namespace ora {

namespace {

std::string newName(std::size_t column) {
    return "n" + std::to_string(column);
}

std::string oldName(std::size_t column) {
    return "p" + std::to_string(column);
}

bool fires(const ParsedTrigger& trigger, bool update, const std::vector<std::string>& changed) {
    if (!update)
        return trigger.trigger->onInsert;
    if (!trigger.trigger->onUpdate)
        return false;
    const auto columns = trigger.trigger->updateColumns;
    return columns.empty() || std::any_of(columns.begin(), columns.end(), [&](const Name& name) {
               return std::find(changed.begin(), changed.end(), name.text) != changed.end();
           });
}

std::string defaultValue(Binding& binding, const Relation& table, const CatalogColumn& column) {
    if (column.defaultText.empty())
        return "NULL";
    const Tree& tree = binding.keep(parseValueText(column.defaultText));
    Scope none(nullptr);
    return storedValue(bindValue(binding, none, *tree.expr), column, table);
}

// One SELECT for each :NEW value that is set.
class LayerMaker {
public:
    LayerMaker(Binding& binding, const Relation& table, std::vector<std::string> kept, bool update)
        : m_binding(binding)
        , m_table(table)
        , m_kept(std::move(kept))
        , m_update(update) {}

    std::string over(std::string rows, const ParsedTrigger& trigger) {
        for (const TriggerAssignment& assignment : trigger.trigger->assignments)
            rows = layer(rows, *trigger.trigger, assignment);
        return rows;
    }

private:
    std::string layer(const std::string& rows, const CreateTrigger& trigger,
                      const TriggerAssignment& assignment) {
        const std::string alias = m_binding.freshAlias('n');
        TriggerRow row{trigger.newName, trigger.oldName, &m_table, {}, {}};
        for (std::size_t i = 0; i < m_table.columns.size(); ++i) {
            row.newValues.push_back(alias + '.' + newName(i));
            if (m_update)
                row.oldValues.push_back(alias + '.' + oldName(i));
        }
        const TriggerRow* const outer = m_binding.trigger;
        m_binding.trigger = &row;
        const std::string sql =
            "SELECT " + columns(alias, trigger, assignment) + " FROM (" + rows + ") AS " + alias;
        m_binding.trigger = outer;
        return sql + firstRows("-1"); // or values would be computed more than once
    }

    std::string columns(const std::string& alias, const CreateTrigger& trigger,
                        const TriggerAssignment& assignment) {
        std::vector<std::string> parts;
        bool found = false;
        for (std::size_t i = 0; i < m_table.columns.size(); ++i) {
            const CatalogColumn& column = m_table.columns[i];
            std::string value = alias + '.' + newName(i);
            if (column.name == assignment.column.text) {
                value = assigned(value, trigger, assignment, column);
                found = true;
            }
            parts.push_back(value + " AS " + newName(i));
            if (m_update)
                parts.push_back(alias + '.' + oldName(i) + " AS " + oldName(i));
        }
        constexpr int BadBind = 4076;
        if (!found)
            throw OraError(BadBind, "invalid NEW or OLD specification");
        for (const std::string& kept : m_kept)
            parts.push_back(alias + '.' + kept + " AS " + kept);
        return joined(parts, ",");
    }

    std::string assigned(const std::string& before, const CreateTrigger& trigger,
                         const TriggerAssignment& assignment, const CatalogColumn& column) {
        Scope none(nullptr);
        const std::string value =
            storedValue(bindValue(m_binding, none, *assignment.value), column, m_table);
        std::vector<std::string> conditions;
        for (const Expr* condition : {trigger.when, trigger.guard})
            if (condition)
                conditions.push_back(bindCondition(m_binding, none, *condition));
        if (conditions.empty())
            return value;
        return "CASE WHEN " + joinedConditions(conditions, "AND") + " THEN " + value + " ELSE " +
               before + " END";
    }

    Binding& m_binding;
    const Relation& m_table;
    std::vector<std::string> m_kept;
    bool m_update;
};

} // namespace

std::string triggerLayers(Binding& binding, const Relation& table, std::string rows,
                          const std::vector<std::string>& kept, bool update,
                          const std::vector<std::string>& changed) {
    LayerMaker maker(binding, table, kept, update);
    for (const ParsedTrigger& trigger : table.beforeTriggers)
        if (fires(trigger, update, changed))
            rows = maker.over(std::move(rows), trigger);
    return rows;
}

void TableValues::set(int column, const Value& value) {
    const CatalogColumn& target = m_table.columns[static_cast<std::size_t>(column)];
    std::string sql = storedValue(value, target, m_table);
    if (target.defaultOnNull && !target.defaultText.empty())
        sql = "ifnull(" + sql + ',' + defaultValue(m_binding, m_table, target) + ')';
    m_values[static_cast<std::size_t>(column)] = std::move(sql);
}

void TableValues::setDefault(int column) {
    if (!m_table.columns[static_cast<std::size_t>(column)].virtualText.empty())
        return;
    m_values[static_cast<std::size_t>(column)] =
        defaultValue(m_binding, m_table, m_table.columns[static_cast<std::size_t>(column)]);
}

void TableValues::completeWithDefaults() {
    for (std::size_t i = 0; i < m_values.size(); ++i)
        if (m_values[i].empty() && !m_table.columns[i].defaultText.empty())
            setDefault(static_cast<int>(i));
}

bool TableValues::hasInsertTriggers() const {
    return std::any_of(m_table.beforeTriggers.begin(), m_table.beforeTriggers.end(),
                       [](const ParsedTrigger& trigger) { return fires(trigger, false, {}); });
}

std::vector<std::string> TableValues::columnNames() const {
    std::vector<std::string> names;
    for (std::size_t i = 0; i < m_values.size(); ++i)
        if (!m_values[i].empty())
            names.push_back(m_table.columns[i].sqlName);
    return names;
}

TableValues::Rows TableValues::rowsOfTriggers(const std::string& from) const {
    Rows rows;
    std::vector<std::string> given;
    std::vector<std::string> results;
    for (std::size_t i = 0; i < m_values.size(); ++i) {
        given.push_back((m_values[i].empty() ? "NULL" : m_values[i]) + " AS " + newName(i));
        if (!m_table.columns[i].virtualText.empty())
            continue;
        rows.columns.push_back(m_table.columns[i].sqlName);
        results.push_back("n." + newName(i) + " AS " + m_table.columns[i].sqlName);
    }
    const std::string source =
        "SELECT " + joined(given, ",") + (from.empty() ? "" : " FROM " + from) + firstRows("-1");
    rows.select = "SELECT " + joined(results, ",") + " FROM (" +
                  triggerLayers(m_binding, m_table, source, {}, false, {}) + ") AS n";
    return rows;
}

TableValues::Rows TableValues::insertedRows(const std::string& from) const {
    if (hasInsertTriggers())
        return rowsOfTriggers(from);
    Rows rows;
    rows.columns = columnNames();
    std::vector<std::string> values;
    for (std::size_t i = 0; i < m_values.size(); ++i)
        if (!m_values[i].empty())
            values.push_back(m_values[i] + " AS " + m_table.columns[i].sqlName);
    rows.select = "SELECT " + joined(values, ",") + (from.empty() ? "" : " FROM " + from);
    return rows;
}

std::string TableValues::insertText(const std::string& from) const {
    if (from.empty() && !hasInsertTriggers()) {
        std::vector<std::string> values;
        for (const std::string& value : m_values)
            if (!value.empty())
                values.push_back(value);
        return '(' + joined(columnNames(), ",") + ") VALUES (" + joined(values, ",") + ')';
    }
    const Rows rows = insertedRows(from);
    return '(' + joined(rows.columns, ",") + ") " + rows.select;
}

std::string TableValues::insertText(const std::string& from, const ChangeTarget& target) const {
    if (target.checks.empty())
        return insertText(from);
    const Rows rows = insertedRows(from);
    std::vector<std::string> columns = rows.columns;
    for (const CatalogColumn& column : m_table.columns)
        if (std::find(rows.columns.begin(), rows.columns.end(), column.sqlName) ==
                rows.columns.end() &&
            column.virtualText.empty())
            columns.push_back("NULL AS " + column.sqlName);
    const std::string& alias = target.source.alias;
    return '(' + joined(rows.columns, ",") + ") SELECT " + joined(rows.columns, ",") +
           " FROM (SELECT " + joined(columns, ",") + " FROM (" + rows.select + firstRows("-1") +
           ")) AS " + alias + " WHERE " + checkedRow(target);
}

std::string checkedRow(const ChangeTarget& target) {
    constexpr int CheckOptionViolated = 1402;
    return "CASE WHEN " + joinedConditions(target.checks, "AND") + " THEN 1 ELSE ora_raise(" +
           std::to_string(CheckOptionViolated) + ",'" + errorText(CheckOptionViolated) + "') END";
}

} // namespace ora
