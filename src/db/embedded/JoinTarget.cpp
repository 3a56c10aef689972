#include "Binding.h"
#include "ErrorText.h"

#include <algorithm>

// A join as the target of a change: one of its tables may change when every one of its rows stands
// in the join at most once.
namespace ora {

namespace {

constexpr int VirtualColumn = 1733;
constexpr int SeveralTables = 1776;
constexpr int NotKeyPreserved = 1779;
constexpr int NoKeyPreserved = 1752;
constexpr int NoMerge = 38106;

class JoinTarget {
public:
    JoinTarget(Binding& binding, const QueryBlock& block)
        : m_binding(binding)
        , m_block(block)
        , m_scope(nullptr) {
        for (const TableRef* table : block.from)
            addTable(*table);
        if (block.where)
            collectConjuncts(*block.where, m_conjuncts);
        m_from = bindFrom(binding, m_scope, block.from, block.where, false);
        // Joins with USING have sources of their own.
        if (m_scope.sources.size() != m_tables.size())
            raise(NotKeyPreserved, block.at.begin);
    }

    ChangeTarget of(const JoinChange& change, const Relation* view) {
        addItems();
        for (std::size_t i = 0; view && i < m_columns.size(); ++i)
            m_columns[i].name = view->columns[i].name;
        const std::size_t changed = chosenTable(change);
        ChangeTarget target;
        target.joined = true;
        target.table = m_tables[changed];
        target.from = m_from.sql;
        target.conditions = m_from.conditions;
        target.source = m_scope.sources[changed];
        target.source.columns = m_columns;
        for (const Scope::Found& found : m_found)
            target.baseColumns.push_back(found.source == static_cast<int>(changed) ? found.column
                                                                                   : -1);
        return target;
    }

private:
    std::size_t chosenTable(const JoinChange& change) const {
        if (change.kind == JoinChange::Kind::Merge)
            raise(NoMerge);
        if (change.kind == JoinChange::Kind::Rows)
            return firstKeptTable();
        const std::size_t table =
            changedTable(change.kind == JoinChange::Kind::AllColumns ? allNames() : change.columns);
        if (!keepsKeyOf(table))
            raise(NotKeyPreserved, m_block.at.begin);
        return table;
    }

    std::size_t firstKeptTable() const {
        for (std::size_t i = 0; i < m_tables.size(); ++i)
            if (keepsKeyOf(i))
                return i;
        raise(NoKeyPreserved, m_block.at.begin);
    }

    std::vector<Name> allNames() const {
        std::vector<Name> names;
        for (const SourceColumn& column : m_columns)
            names.push_back({column.name, m_block.at, true});
        return names;
    }

    void addTable(const TableRef& table) {
        if (table.kind == TableKind::Join) {
            const auto& join = static_cast<const JoinTable&>(table);
            addTable(*join.left);
            addTable(*join.right);
            if (join.on)
                collectConjuncts(*join.on, m_conjuncts);
            return;
        }
        if (table.kind != TableKind::Named)
            raise(NotKeyPreserved, m_block.at.begin);
        m_tables.push_back(m_binding.relation(static_cast<const NamedTable&>(table).name));
        if (!m_tables.back()->isStored())
            raise(NotKeyPreserved, m_block.at.begin);
    }

    Scope::Found find(const Expr& expr) const {
        if (expr.kind != ExprKind::Column)
            return {};
        const auto& parts = static_cast<const ColumnRef&>(expr).parts;
        if (parts.size() == 1)
            return m_scope.find(parts[0].text);
        return parts.size() == 2 ? m_scope.find({}, parts[0].text, parts[1].text) : Scope::Found{};
    }

    void addItems() {
        for (const SelectItem& item : m_block.items) {
            if (item.expr->kind == ExprKind::Star) {
                addStar(static_cast<const Star&>(*item.expr));
                continue;
            }
            const Value value = bindValue(m_binding, m_scope, *item.expr);
            const std::string_view name =
                item.alias ? item.alias.text
                : item.expr->kind == ExprKind::Column
                    ? static_cast<const ColumnRef&>(*item.expr).parts.back().text
                    : std::string_view();
            m_columns.push_back({name, value.type, value.sql, value.nullable, Merged::No});
            m_found.push_back(find(*item.expr));
        }
    }

    void addStar(const Star& star) {
        for (std::size_t i = 0; i < m_scope.sources.size(); ++i) {
            const Source& source = m_scope.sources[i];
            if (!star.qualifier.empty() && star.qualifier.back().text != source.label)
                continue;
            for (std::size_t j = 0; j < source.columns.size(); ++j) {
                m_columns.push_back(source.columns[j]);
                m_found.push_back({static_cast<int>(i), static_cast<int>(j)});
            }
        }
    }

    std::size_t changedTable(const std::vector<Name>& names) const {
        int changed = -1;
        for (const Name& name : names) {
            const auto column =
                std::find_if(m_columns.begin(), m_columns.end(),
                             [&](const SourceColumn& entry) { return entry.name == name.text; });
            if (column == m_columns.end())
                raiseNamed(904, displayPath(name.text), name.at.begin);
            const int source = m_found[static_cast<std::size_t>(column - m_columns.begin())].source;
            if (source < 0)
                raise(VirtualColumn, name.at.begin);
            if (changed >= 0 && changed != source)
                raise(SeveralTables, name.at.begin);
            changed = source;
        }
        return static_cast<std::size_t>(changed);
    }

    // From the rows of the changed table every other table is reached by one of its keys.
    bool keepsKeyOf(std::size_t changed) const {
        std::vector<bool> reached(m_tables.size());
        reached[changed] = true;
        for (bool grows = true; grows;) {
            grows = false;
            for (std::size_t i = 0; i < m_tables.size(); ++i) {
                if (reached[i] || !isReached(i, reached))
                    continue;
                reached[i] = true;
                grows = true;
            }
        }
        return std::all_of(reached.begin(), reached.end(), [](bool one) { return one; });
    }

    bool isReached(std::size_t table, const std::vector<bool>& reached) const {
        const auto fixed = [&](int column) {
            return std::any_of(m_conjuncts.begin(), m_conjuncts.end(), [&](const Expr* conjunct) {
                return fixes(*conjunct, {static_cast<int>(table), column}, reached);
            });
        };
        return std::any_of(m_tables[table]->keys.begin(), m_tables[table]->keys.end(),
                           [&](const std::vector<int>& key) {
                               return std::all_of(key.begin(), key.end(), fixed);
                           });
    }

    // column = one of a table that is reached, or a literal.
    bool fixes(const Expr& conjunct, const Scope::Found& column,
               const std::vector<bool>& reached) const {
        if (conjunct.kind != ExprKind::Comparison)
            return false;
        const auto& comparison = static_cast<const Comparison&>(conjunct);
        if (comparison.op != CompareOp::Equal)
            return false;
        const auto pairs = [&](const Expr& own, const Expr& other) {
            const Scope::Found found = find(own);
            if (found.source != column.source || found.column != column.column)
                return false;
            if (other.kind == ExprKind::Number || other.kind == ExprKind::Text)
                return true;
            const Scope::Found by = find(other);
            return by.source >= 0 && reached[static_cast<std::size_t>(by.source)];
        };
        return pairs(*comparison.left, *comparison.right) ||
               pairs(*comparison.right, *comparison.left);
    }

    Binding& m_binding;
    const QueryBlock& m_block;
    Scope m_scope;
    FromClause m_from;
    std::vector<RelationPtr> m_tables;
    std::vector<const Expr*> m_conjuncts;
    std::vector<SourceColumn> m_columns;
    std::vector<Scope::Found> m_found;
};

} // namespace

ChangeTarget bindJoinTarget(Binding& binding, const QueryBlock& block, const JoinChange& change,
                            const Relation* view) {
    return JoinTarget(binding, block).of(change, view);
}

} // namespace ora
