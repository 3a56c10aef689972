#include "Binding.h"
#include "ErrorText.h"
#include "Requirements.h"
#include "RowNumberLimit.h"

#include <algorithm>

// UPDATE and DELETE.
namespace ora {

namespace {

constexpr int GroupFunctionNotAllowed = 934;
constexpr int DuplicateColumn = 957;

// The rows that WHERE chooses.
struct Choice {
    std::vector<std::string> conditions;
    std::string limit; // by ROWNUM

    std::string where() const {
        return conditions.empty() ? std::string() : " WHERE " + joinedConditions(conditions, "AND");
    }
};

Choice bindChoice(Binding& binding, Scope& scope, const ChangeTarget& target, const Expr* where) {
    Choice choice{target.conditions, {}};
    if (!where)
        return choice;
    const SequenceRegion none(binding, false);
    scope.aggregateError = GroupFunctionNotAllowed;
    scope.windowError = 1;
    std::vector<const Expr*> conjuncts;
    collectConjuncts(*where, conjuncts);
    std::vector<std::string> limits;
    for (const Expr* conjunct : conjuncts) {
        if (!namesRowNumber(conjunct)) {
            choice.conditions.push_back(bindCondition(binding, scope, *conjunct));
            continue;
        }
        const auto limit = rowNumberLimit(binding, scope, *conjunct);
        if (!limit)
            refuse("this use of ROWNUM in UPDATE and DELETE", conjunct->at.begin);
        limits.push_back(*limit);
    }
    choice.limit = leastLimit(limits);
    scope.aggregateError = 0;
    scope.windowError = 0;
    return choice;
}

// The engine has no LIMIT there: the rows are chosen by a query.
void limitByRowid(const ChangeTarget& target, Choice& choice) {
    if (choice.limit.empty())
        return;
    const std::string& rowid = target.source.rowid;
    choice.conditions = {rowid + " IN (SELECT " + rowid + " FROM " + target.from + choice.where() +
                         firstRows(choice.limit) + ')'};
    choice.limit.clear();
}

JoinChange changedColumns(const Update& update) {
    JoinChange change{JoinChange::Kind::Columns, {}};
    for (const Assignment& assignment : update.assignments)
        change.columns.insert(change.columns.end(), assignment.columns.begin(),
                              assignment.columns.end());
    return change;
}

class Updater {
public:
    Updater(Binding& binding, const Update& update)
        : m_binding(binding)
        , m_update(update)
        , m_target(bindTarget(binding, update.target, changedColumns(update)))
        , m_values(binding, *m_target.table)
        , m_scope(nullptr) {
        m_scope.sources.push_back(m_target.source);
    }

    Compiled compile() {
        m_scope.aggregateError = GroupFunctionNotAllowed;
        m_scope.windowError = 1;
        for (const Assignment& assignment : m_update.assignments)
            assign(assignment);
        Choice choice = bindChoice(m_binding, m_scope, m_target, m_update.where);
        limitByRowid(m_target, choice);
        Compiled compiled;
        compiled.action = RowAction::Update;
        compiled.target = m_target.table;
        compiled.sql.push_back(fires()                      ? throughTriggers(choice)
                               : !m_target.checks.empty()   ? checked(choice)
                               : m_reads || m_target.joined ? throughQuery(choice)
                                                            : directly(choice));
        return compiled;
    }

private:
    bool fires() const {
        const auto& triggers = m_target.table->beforeTriggers;
        return std::any_of(triggers.begin(), triggers.end(),
                           [](const ParsedTrigger& trigger) { return trigger.trigger->onUpdate; });
    }

    int column(const Name& name) {
        constexpr int VirtualColumn = 54017;
        const int column = targetColumn(m_target, name);
        if (!m_target.table->columns[static_cast<std::size_t>(column)].virtualText.empty())
            raise(VirtualColumn, name.at.begin);
        if (!m_values.values()[static_cast<std::size_t>(column)].empty())
            raise(DuplicateColumn, name.at.begin);
        constexpr int GeneratedAlways = 32796;
        if (m_target.table->columns[static_cast<std::size_t>(column)].identityAlways)
            throw OraError(GeneratedAlways, "cannot update a generated always identity column",
                           name.at.begin);
        return column;
    }

    void assign(const Assignment& assignment) {
        if (assignment.query)
            return assignQuery(assignment);
        const int target = column(assignment.columns[0]);
        m_reads = m_reads || hasSubquery(assignment.value);
        if (assignment.value->kind == ExprKind::Default)
            m_values.setDefault(target);
        else
            m_values.set(target, bindValue(m_binding, m_scope, *assignment.value));
    }

    // (a, b) = (SELECT …): each column reads its part of the query.
    void assignQuery(const Assignment& assignment) {
        m_reads = true;
        const BoundQuery query = bindQuery(m_binding, *assignment.query, &m_scope);
        requireCount(assignment.columns.size(), query.columns.size());
        for (std::size_t i = 0; i < query.columns.size(); ++i)
            m_values.set(column(assignment.columns[i]), singleRowColumn(query, i));
    }

    std::string directly(const Choice& choice) const {
        std::vector<std::string> parts;
        for (std::size_t i = 0; i < m_values.values().size(); ++i)
            if (!m_values.values()[i].empty())
                parts.push_back(m_target.table->columns[i].sqlName + '=' + m_values.values()[i]);
        return "UPDATE " + m_target.from + " SET " + joined(parts, ",") + choice.where();
    }

    // The values are computed for all rows before the first one changes.
    std::string throughQuery(const Choice& choice) const {
        std::vector<std::string> computed{m_target.source.rowid + " AS r"};
        std::vector<std::string> parts;
        for (std::size_t i = 0; i < m_values.values().size(); ++i) {
            if (m_values.values()[i].empty())
                continue;
            const std::string name = "n" + std::to_string(i);
            computed.push_back(m_values.values()[i] + " AS " + name);
            parts.push_back(m_target.table->columns[i].sqlName + "=u." + name);
        }
        return updateFrom(parts, "SELECT " + joined(computed, ",") + " FROM " + m_target.from +
                                     choice.where());
    }

    // As throughQuery, and each row as it will be meets the conditions of its view.
    std::string checked(const Choice& choice) const {
        std::vector<std::string> computed{m_target.source.rowid + " AS r"};
        std::vector<std::string> parts;
        for (std::size_t i = 0; i < m_values.values().size(); ++i) {
            const CatalogColumn& stored = m_target.table->columns[i];
            const std::string& value = m_values.values()[i];
            if (!stored.virtualText.empty())
                continue;
            computed.push_back(
                (value.empty() ? m_target.source.alias + '.' + stored.sqlName : value) + " AS " +
                stored.sqlName);
            if (!value.empty())
                parts.push_back(stored.sqlName + "=u." + stored.sqlName);
        }
        return updateFrom(parts, "SELECT * FROM (SELECT " + joined(computed, ",") + " FROM " +
                                     m_target.from + choice.where() + firstRows("-1") + ") AS " +
                                     m_target.source.alias + " WHERE " + checkedRow(m_target));
    }

    std::string updateFrom(const std::vector<std::string>& parts, const std::string& rows) const {
        const std::string& table = m_target.table->source;
        return "UPDATE " + table + " SET " + joined(parts, ",") + " FROM (" + rows +
               ") AS u WHERE " + table + ".rowid=u.r";
    }

    std::string throughTriggers(const Choice& choice) {
        std::vector<std::string> computed{m_target.source.rowid + " AS r"};
        std::vector<std::string> parts;
        std::vector<std::string> changed;
        for (std::size_t i = 0; i < m_values.values().size(); ++i) {
            const CatalogColumn& stored = m_target.table->columns[i];
            const std::string number = std::to_string(i);
            const std::string old = m_target.source.alias + '.' + stored.sqlName;
            const std::string& value = m_values.values()[i];
            const bool isVirtual = !stored.virtualText.empty();
            computed.push_back((isVirtual       ? "NULL"
                                : value.empty() ? old
                                                : value) +
                               " AS n" + number);
            computed.push_back((isVirtual ? "NULL" : old) + " AS p" + number);
            if (!isVirtual)
                parts.push_back(stored.sqlName + "=u.n" + number);
            if (!value.empty())
                changed.push_back(stored.name);
        }
        const std::string rows = "SELECT " + joined(computed, ",") + " FROM " + m_target.from +
                                 choice.where() + firstRows("-1");
        return updateFrom(parts,
                          triggerLayers(m_binding, *m_target.table, rows, {"r"}, true, changed));
    }

    Binding& m_binding;
    const Update& m_update;
    ChangeTarget m_target;
    TableValues m_values;
    Scope m_scope;
    bool m_reads = false; // a value reads tables, perhaps the one that changes
};

} // namespace

Compiled compileUpdate(Binding& binding, const Update& update) {
    return Updater(binding, update).compile();
}

Compiled compileDelete(Binding& binding, const Delete& statement) {
    const ChangeTarget target = bindTarget(binding, statement.target, {JoinChange::Kind::Rows, {}});
    Scope scope(nullptr);
    scope.sources.push_back(target.source);
    Choice choice = bindChoice(binding, scope, target, statement.where);
    limitByRowid(target, choice);
    Compiled compiled;
    compiled.action = RowAction::Delete;
    compiled.target = target.table;
    const std::string rows = target.joined ? target.table->source + " WHERE rowid IN (SELECT " +
                                                 target.source.rowid + " FROM " + target.from +
                                                 choice.where() + ')'
                                           : target.from + choice.where();
    compiled.sql.push_back("DELETE FROM " + rows);
    return compiled;
}

} // namespace ora
