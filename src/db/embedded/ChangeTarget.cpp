#include "Binding.h"
#include "ErrorText.h"
#include "Requirements.h"

#include <algorithm>

namespace ora {

namespace {

constexpr int InvalidIdentifier = 904;
constexpr int NotLegalOnView = 1732;
constexpr int VirtualColumn = 1733;
constexpr int NotKeyPreserved = 1779;

ChangeTarget bindRelation(Binding& binding, const ObjectName& name, std::string_view alias,
                          const JoinChange& change);

// The view is nothing but a choice of rows and columns.
void requireRows(const Query& query) {
    const bool single = query.terms.size() == 1 && query.terms[0].block && query.with.empty();
    if (!single)
        raise(NotLegalOnView, query.at.begin);
    const QueryBlock& block = *query.terms[0].block;
    const bool aggregates =
        std::any_of(block.items.begin(), block.items.end(), [](const SelectItem& item) {
            return hasAggregate(item.expr) || hasWindow(item.expr) || namesRowNumber(item.expr);
        });
    if (block.distinct || !block.groupBy.empty() || block.having || block.connectBy || aggregates)
        raise(NotLegalOnView, query.at.begin);
}

const NamedTable& onlyTable(const QueryBlock& block) {
    if (block.from.size() != 1 || block.from[0]->kind != TableKind::Named)
        raise(NotKeyPreserved, block.at.begin);
    return static_cast<const NamedTable&>(*block.from[0]);
}

// The view's columns over the columns of what it is made of.
class ViewColumns {
public:
    ViewColumns(Binding& binding, ChangeTarget inner)
        : m_binding(binding)
        , m_inner(std::move(inner))
        , m_scope(nullptr) {
        m_scope.sources.push_back(m_inner.source);
    }

    ChangeTarget over(const QueryBlock& block) {
        ChangeTarget target = m_inner;
        target.source.columns.clear();
        target.baseColumns.clear();
        for (const SelectItem& item : block.items) {
            if (item.expr->kind == ExprKind::Star)
                addAll(target);
            else
                addItem(item, target);
        }
        if (block.where)
            target.conditions.push_back(bindCondition(m_binding, m_scope, *block.where));
        return target;
    }

private:
    void addAll(ChangeTarget& target) const {
        const auto& columns = m_inner.source.columns;
        target.source.columns.insert(target.source.columns.end(), columns.begin(), columns.end());
        target.baseColumns.insert(target.baseColumns.end(), m_inner.baseColumns.begin(),
                                  m_inner.baseColumns.end());
    }

    void addItem(const SelectItem& item, ChangeTarget& target) {
        const Value value = bindValue(m_binding, m_scope, *item.expr);
        SourceColumn column{item.alias.text, value.type, value.sql, value.nullable, Merged::No};
        int base = -1;
        if (item.expr->kind == ExprKind::Column) {
            const Name& name = static_cast<const ColumnRef&>(*item.expr).parts.back();
            if (column.name.empty())
                column.name = name.text;
            const Scope::Found found = m_scope.find(name.text);
            if (found.source == 0)
                base = m_inner.baseColumns[static_cast<std::size_t>(found.column)];
        }
        target.source.columns.push_back(column);
        target.baseColumns.push_back(base);
    }

    Binding& m_binding;
    ChangeTarget m_inner;
    Scope m_scope;
};

bool isJoin(const QueryBlock& block) {
    return block.from.size() > 1 ||
           (block.from.size() == 1 && block.from[0]->kind == TableKind::Join);
}

ChangeTarget bindView(Binding& binding, const Query& query, const JoinChange& change,
                      const Relation* view) {
    const BindDepth depth(binding);
    requireRows(query);
    const QueryBlock& block = *query.terms[0].block;
    if (isJoin(block) && change.kind != JoinChange::Kind::None)
        return bindJoinTarget(binding, block, change, view);
    const NamedTable& table = onlyTable(block);
    // What is changed below has other names there.
    ChangeTarget inner = bindRelation(binding, table.name, table.alias.text, {});
    return ViewColumns(binding, std::move(inner)).over(*query.terms[0].block);
}

ChangeTarget bindStored(Binding& binding, const RelationPtr& table, std::string_view alias) {
    if (table->readOnly)
        failReadOnly(table->owner, table->name);
    ChangeTarget target;
    target.table = table;
    target.source = relationSource(binding, table, alias, target.from);
    for (std::size_t i = 0; i < table->columns.size(); ++i)
        target.baseColumns.push_back(static_cast<int>(i));
    return target;
}

bool isAboutNames(const OraError& error) {
    constexpr int NoSuchTable = 942;
    constexpr int SynonymInvalid = 980;
    return error.code() == NoSuchTable || error.code() == InvalidIdentifier ||
           error.code() == SynonymInvalid;
}

ChangeTarget bindViewTarget(Binding& binding, const Relation& view, const JoinChange& change) {
    for (const Name& name : change.columns)
        requireColumn(view, name);
    const Tree& tree = binding.keep(parseQueryText(view.viewText));
    try {
        return bindView(binding, *tree.query, change, &view);
    } catch (const OraError& error) {
        if (isAboutNames(error))
            raiseInvalidView(view, error);
        throw;
    }
}

ChangeTarget bindRelation(Binding& binding, const ObjectName& name, std::string_view alias,
                          const JoinChange& change) {
    constexpr int InsufficientPrivileges = 1031;
    constexpr int ReadOnlyView = 42399;
    const RelationPtr relation = binding.relation(name);
    if (relation->isStored())
        return bindStored(binding, relation, alias);
    if (relation->kind == Relation::Kind::Dictionary)
        raise(InsufficientPrivileges, name.name.at.begin);
    if (relation->readOnly)
        throw OraError(ReadOnlyView, "cannot perform a DML operation on a read-only view",
                       name.name.at.begin);
    ChangeTarget target = bindViewTarget(binding, *relation, change);
    for (std::size_t i = 0; i < target.source.columns.size() && i < relation->columns.size(); ++i)
        target.source.columns[i].name = relation->columns[i].name;
    if (relation->checkOption && target.joined && change.kind != JoinChange::Kind::Rows)
        raise(VirtualColumn, name.name.at.begin);
    if (relation->checkOption)
        target.checks = target.conditions;
    target.source.label = alias.empty() ? std::string_view(relation->name) : alias;
    target.source.owner = alias.empty() ? std::string_view(relation->owner) : std::string_view();
    return target;
}

} // namespace

ChangeTarget bindTarget(Binding& binding, const Target& target, const JoinChange& change) {
    if (!target.query)
        return bindRelation(binding, target.name, target.alias.text, change);
    ChangeTarget bound = bindView(binding, *target.query, change, nullptr);
    if (target.checkOption)
        bound.checks = bound.conditions;
    bound.source.label = target.alias.text;
    bound.source.owner = {};
    return bound;
}

int targetColumn(const ChangeTarget& target, const Name& name) {
    const auto& columns = target.source.columns;
    const auto found = std::find_if(columns.begin(), columns.end(),
                                    [&](const SourceColumn& one) { return one.name == name.text; });
    if (found == columns.end())
        raiseNamed(InvalidIdentifier, displayPath(name.text), name.at.begin);
    const int base = target.baseColumns[static_cast<std::size_t>(found - columns.begin())];
    if (base < 0)
        raise(VirtualColumn, name.at.begin);
    return base;
}

} // namespace ora
