#include "Binding.h"
#include "ErrorText.h"
#include "Requirements.h"

#include <algorithm>

namespace ora {

namespace {

constexpr int DuplicateColumn = 957;
constexpr int UnstableRows = 30926;

// The joined rows are kept with all values computed; then the table is changed from them. Columns
// of the kept rows: r the row number of the target or null, u1 … the new values, du, dd, di
// whether to update, delete and insert, i1 … the values to insert.
class Merger {
public:
    Merger(Binding& binding, const Merge& merge)
        : m_binding(binding)
        , m_merge(merge)
        , m_scope(nullptr)
        , m_rows(binding.freshAlias('m'))
        , m_inserted(nullptr) {}

    Compiled compile() {
        const FromClause from = bindSource();
        m_target = bindTarget(m_binding, m_merge.target, {JoinChange::Kind::Merge, {}});
        m_scope.sources.push_back(m_target.source);
        std::vector<std::string> on = m_target.conditions;
        on.push_back(bindCondition(m_binding, m_scope, *m_merge.on));
        m_columns.push_back(m_target.source.rowid + " AS r");
        bindUpdate();
        bindInsert();
        m_compiled.sql.push_back("CREATE TEMP TABLE " + m_rows + " AS SELECT " +
                                 joined(m_columns, ",") + " FROM " + from.sql +
                                 (m_merge.inserts ? " LEFT JOIN " : " JOIN ") + m_target.from +
                                 " ON " + joinedConditions(on, "AND"));
        change();
        m_compiled.sql.push_back("DROP TABLE temp." + m_rows);
        m_compiled.action = m_merge.inserts ? RowAction::Insert : RowAction::Update;
        m_compiled.target = m_target.table;
        return std::move(m_compiled);
    }

private:
    FromClause bindSource() {
        const SequenceRegion none(m_binding, false);
        TableRef* const sources[] = {m_merge.source};
        return bindFrom(m_binding, m_scope, sources, nullptr, false);
    }

    std::string matched(const std::string& value) const {
        return "CASE WHEN " + m_target.source.rowid + " IS NOT NULL THEN " + value + " END";
    }

    std::string unmatched(const std::string& value) const {
        return "CASE WHEN " + m_target.source.rowid + " IS NULL THEN " + value + " END";
    }

    // ON may not depend on what is changed.
    void requireNotJoined(const Name& column) const {
        constexpr int ReferencedByOn = 38104;
        std::vector<const ColumnRef*> references;
        collectColumns(m_merge.on, references);
        for (const ColumnRef* reference : references) {
            const auto& parts = reference->parts;
            const bool own =
                parts.size() == 1 || parts[parts.size() - 2].text == m_target.source.label;
            if (own && parts.back().text == column.text && !namesSource(*reference))
                throw OraError(ReferencedByOn,
                               std::string(errorText(ReferencedByOn)) + ": " +
                                   displayPath(m_target.source.label, column.text),
                               column.at.begin);
        }
    }

    // A bare name that a table of the source has as well is ambiguous anyway.
    bool namesSource(const ColumnRef& reference) const {
        if (reference.parts.size() > 1)
            return false;
        for (std::size_t i = 0; i + 1 < m_scope.sources.size(); ++i)
            for (const SourceColumn& column : m_scope.sources[i].columns)
                if (column.name == reference.parts.back().text)
                    return true;
        return false;
    }

    void bindUpdate() {
        if (m_merge.assignments.empty())
            return;
        TableValues values(m_binding, *m_target.table);
        for (const Assignment& assignment : m_merge.assignments) {
            if (assignment.query)
                refuse("a query of several columns in MERGE", m_merge.at.begin);
            const int column = targetColumn(m_target, assignment.columns[0]);
            requireNotJoined(assignment.columns[0]);
            if (!values.values()[static_cast<std::size_t>(column)].empty())
                raise(DuplicateColumn, assignment.columns[0].at.begin);
            if (assignment.value->kind == ExprKind::Default)
                values.setDefault(column);
            else
                values.set(column, bindValue(m_binding, m_scope, *assignment.value));
        }
        const std::string when =
            m_merge.updateWhere ? bindCondition(m_binding, m_scope, *m_merge.updateWhere) : "1";
        m_columns.push_back(matched(when) + " AS du");
        for (std::size_t i = 0; i < values.values().size(); ++i) {
            if (values.values()[i].empty())
                continue;
            const std::string name = "u" + std::to_string(i);
            m_columns.push_back(matched(values.values()[i]) + " AS " + name);
            m_updates.push_back(m_target.table->columns[i].sqlName + '=' + m_rows + '.' + name);
        }
        bindDelete(values);
    }

    // DELETE WHERE sees the row as the update left it.
    void bindDelete(const TableValues& values) {
        if (!m_merge.deleteWhere)
            return;
        Source& target = m_scope.sources.back();
        const Source before = target;
        for (std::size_t i = 0; i < target.columns.size(); ++i) {
            const int base = m_target.baseColumns[i];
            if (base >= 0 && !values.values()[static_cast<std::size_t>(base)].empty())
                target.columns[i].sql = values.values()[static_cast<std::size_t>(base)];
        }
        m_columns.push_back(matched(bindCondition(m_binding, m_scope, *m_merge.deleteWhere)) +
                            " AS dd");
        m_scope.sources.back() = before;
    }

    std::vector<int> insertColumns() const {
        std::vector<int> columns;
        for (const Name& name : m_merge.columns)
            columns.push_back(targetColumn(m_target, name));
        if (m_merge.columns.empty())
            columns = m_target.baseColumns;
        requireCount(columns.size(), m_merge.values.size());
        return columns;
    }

    void bindInsert() {
        if (!m_merge.inserts)
            return;
        const std::vector<int> columns = insertColumns();
        m_inserted = std::make_unique<TableValues>(m_binding, *m_target.table);
        for (std::size_t i = 0; i < columns.size(); ++i) {
            const Expr& expr = *m_merge.values[i];
            if (expr.kind == ExprKind::Default) {
                m_inserted->setDefault(columns[i]);
                continue;
            }
            Value value = bindValue(m_binding, m_scope, expr);
            const std::string name = "i" + std::to_string(i);
            m_columns.push_back(unmatched(value.sql) + " AS " + name);
            value.sql = m_rows + '.' + name;
            value.literal.reset();
            value.rowid.clear();
            m_inserted->set(columns[i], value);
        }
        m_inserted->completeWithDefaults();
        if (m_merge.insertWhere)
            m_columns.push_back(unmatched(bindCondition(m_binding, m_scope, *m_merge.insertWhere)) +
                                " AS di");
    }

    void change() {
        const std::string& table = m_target.table->source;
        const std::string kept = "temp." + m_rows;
        if (!m_updates.empty()) {
            m_compiled.sql.push_back("SELECT ora_raise(" + std::to_string(UnstableRows) + ",'" +
                                     errorText(UnstableRows) + "') FROM (SELECT r FROM " + kept +
                                     " WHERE r IS NOT NULL AND du GROUP BY r HAVING count(*)>1)");
            m_compiled.sql.push_back("UPDATE " + table + " SET " + joined(m_updates, ",") +
                                     " FROM " + kept + " WHERE " + table + ".rowid=" + m_rows +
                                     ".r AND " + m_rows + ".du");
        }
        if (m_merge.deleteWhere)
            m_compiled.sql.push_back("DELETE FROM " + table + " WHERE rowid IN (SELECT r FROM " +
                                     kept + " WHERE du AND dd)");
        if (m_inserted) {
            std::string from = kept + " WHERE r IS NULL";
            if (m_merge.insertWhere)
                from += " AND di";
            m_compiled.sql.push_back("INSERT INTO " + table + m_inserted->insertText(from));
        }
    }

    Binding& m_binding;
    const Merge& m_merge;
    Scope m_scope;
    std::string m_rows;
    ChangeTarget m_target;
    std::vector<std::string> m_columns;
    std::vector<std::string> m_updates;
    std::unique_ptr<TableValues> m_inserted;
    Compiled m_compiled;
};

} // namespace

Compiled compileMerge(Binding& binding, const Merge& merge) {
    if (binding.insideTrigger)
        refuse("MERGE in a trigger", merge.at.begin);
    return Merger(binding, merge).compile();
}

} // namespace ora
