#include "Binding.h"
#include "ErrorText.h"
#include "OuterJoins.h"

#include <algorithm>
#include <bit>

// FROM and the joins that WHERE makes.
namespace ora {

namespace {

constexpr int InvalidIdentifier = 904;

template<class Node>
const Node& as(const TableRef& table) {
    return static_cast<const Node&>(table);
}

// How many inline views stand inside each other at most, counted from the innermost one outwards.
class NestingHeight {
public:
    explicit NestingHeight(Binding& binding)
        : m_binding(binding)
        , m_beside(binding.nestedQueries) {
        binding.nestedQueries = 0;
    }
    ~NestingHeight() { m_binding.nestedQueries = std::max(m_beside, m_binding.nestedQueries); }
    NestingHeight(const NestingHeight&) = delete;
    NestingHeight& operator=(const NestingHeight&) = delete;

private:
    Binding& m_binding;
    int m_beside;
};

struct Sources {
    std::size_t first;
    std::size_t count;
};

class FromBinder {
public:
    FromBinder(Binding& binding, Scope& scope)
        : m_binding(binding)
        , m_scope(scope) {}

    // Adds the table's sources to the scope; its SQL.
    std::string bindTable(const TableRef& table) {
        const BindDepth depth(m_binding);
        switch (table.kind) {
        case TableKind::Named: return bindNamed(as<NamedTable>(table));
        case TableKind::Derived:
            if (as<DerivedTable>(table).lateral)
                return bindLateral(*as<DerivedTable>(table).query, table.alias.text);
            return bindDerived(*as<DerivedTable>(table).query, table.alias.text);
        case TableKind::Join: return bindJoin(as<JoinTable>(table));
        case TableKind::Pivot:
            return bindDerived(*pivotAsQuery(m_binding, m_scope, as<PivotTable>(table)),
                               table.alias.text);
        case TableKind::Unpivot: break;
        }
        return bindDerived(*unpivotAsQuery(m_binding, m_scope, as<UnpivotTable>(table)),
                           table.alias.text);
    }

private:
    std::string bindNamed(const NamedTable& table) {
        if (!table.name.schema)
            if (const NamedQuery* const query = m_binding.namedQuery(table.name.name.text))
                return bindNamedQuery(*query, table);
        const RelationPtr relation = m_binding.relation(table.name);
        std::string sql;
        if (relation->kind == Relation::Kind::View)
            return bindView(*relation, table.alias.text);
        m_scope.sources.push_back(relationSource(m_binding, relation, table.alias.text, sql));
        if (table.sample)
            sql = sampled(*relation, *table.sample);
        return sql;
    }

    // Each row by chance.
    std::string sampled(const Relation& relation, const Expr& percent) {
        constexpr int NoSample = 1446;
        if (!relation.isStored())
            raise(NoSample, percent.at.begin);
        Scope none(nullptr);
        const std::string wanted = convertTo(bindValue(m_binding, none, percent), SqlType::Number);
        return "(SELECT rowid AS rowid,* FROM " + relation.source +
               " WHERE abs(random()%1000000)<num_double(" + wanted + ")*10000) AS " +
               m_scope.sources.back().alias;
    }

    std::string bindNamedQuery(const NamedQuery& query, const NamedTable& table) {
        const std::string alias = m_binding.freshAlias('s');
        m_scope.sources.push_back(querySource(query.columns, alias));
        Source& source = m_scope.sources.back();
        source.label = table.alias ? table.alias.text : query.name;
        if (query.derived)
            for (SourceColumn& column : query.derived(alias))
                source.columns.push_back(std::move(column));
        return query.alias + " AS " + alias;
    }

    Source querySource(const std::vector<OutputColumn>& columns, const std::string& alias) {
        Source source;
        source.alias = alias;
        for (std::size_t i = 0; i < columns.size(); ++i)
            source.columns.push_back({m_binding.text(columns[i].name), columns[i].type,
                                      alias + ".c" + std::to_string(i + 1), columns[i].nullable,
                                      Merged::No, columns[i].invisible,
                                      columns[i].declaredNotNull});
        return source;
    }

    std::string bindDerived(const Query& query, std::string_view label) {
        const NestingHeight height(m_binding);
        const BoundQuery bound = bindQuery(m_binding, query, m_scope.outer);
        const std::string alias = m_binding.freshAlias('s');
        m_scope.sources.push_back(querySource(bound.columns, alias));
        m_scope.sources.back().label = label;
        // Without a limit the engine may drop the order that ROWNUM counts by.
        const bool keeps = bound.ordered && !bound.limited && m_scope.countsRows;
        return placed(bound.sql + (keeps ? firstRows("-1") : std::string())) + " AS " + alias;
    }

    std::string bindLateral(const Query& query, std::string_view label) {
        const LateralRows rows = bindLateralRows(m_binding, m_scope, query);
        const std::string alias = m_binding.freshAlias('s');
        m_scope.sources.push_back(querySource(rows.columns, alias));
        m_scope.sources.back().label = label;
        return rows.sql + " AS " + alias;
    }

    // A view sees nothing of the statement that names it.
    BoundQuery bindViewQuery(const Relation& view) {
        std::vector<NamedQuery> hidden;
        hidden.swap(m_binding.namedQueries);
        const Tree& tree = m_binding.keep(parseQueryText(view.viewText));
        BoundQuery bound;
        try {
            bound = bindQuery(m_binding, *tree.query, nullptr);
        } catch (const OraError& error) {
            raiseInvalidView(view, error);
        }
        m_binding.namedQueries.swap(hidden);
        return bound;
    }

    std::string bindView(const Relation& view, std::string_view label) {
        const NestingHeight height(m_binding);
        const BoundQuery bound = bindViewQuery(view);
        const std::string alias = m_binding.freshAlias('s');
        Source source = querySource(bound.columns, alias);
        for (std::size_t i = 0; i < source.columns.size() && i < view.columns.size(); ++i)
            source.columns[i].name = view.columns[i].name;
        source.label = label.empty() ? std::string_view(view.name) : label;
        if (label.empty())
            source.owner = view.owner;
        m_scope.sources.push_back(std::move(source));
        return placed(bound.sql) + " AS " + alias;
    }

    // The engine's parser takes only so many queries inside each other: every few levels one moves
    // into the WITH of the whole statement, where it can, because nothing in it looks outwards.
    std::string placed(const std::string& sql) {
        constexpr int MostNested = 3;
        const bool movable = m_binding.hoists && !m_scope.outer && m_binding.namedQueries.empty();
        if (++m_binding.nestedQueries < MostNested || !movable)
            return '(' + sql + ')';
        m_binding.nestedQueries = 0;
        const std::string name = m_binding.freshAlias('d');
        m_binding.hoisted.push_back(name + " AS (" + sql + ')');
        return name;
    }

    std::string bindJoin(const JoinTable& join) {
        const std::size_t first = m_scope.sources.size();
        const std::string left = bindTable(*join.left);
        const std::size_t middle = m_scope.sources.size();
        std::string right = bindTable(*join.right);
        if (join.right->kind == TableKind::Join)
            right = '(' + right + ')';
        const Sources leftSources{first, middle - first};
        const Sources rightSources{middle, m_scope.sources.size() - middle};
        const PartKeys parts = !join.left->partition.empty() ? bindParts(*join.left, leftSources)
                                                             : bindParts(*join.right, rightSources);
        const std::string condition = joinCondition(join, leftSources, rightSources);
        weakenNulls(join.join, leftSources, rightSources);
        if (!parts.sql.empty()) {
            const bool first = !join.left->partition.empty();
            const std::string whole = join.left->kind == TableKind::Join ? '(' + left + ')' : left;
            return parts.sql + " CROSS JOIN " + (first ? right : whole) + " LEFT JOIN " +
                   (first ? whole : right) + " ON " +
                   joinedConditions({parts.condition, condition}, "AND");
        }
        return left + wordsOf(join.join) + right +
               (condition.empty() ? std::string() : " ON " + condition);
    }

    // The values that an outer join is made for, each as if it were the only one.
    struct PartKeys {
        std::string sql;
        std::string condition; // with the table that has them
    };

    // The keys stand for the table's own columns from here on.
    PartKeys bindParts(const TableRef& table, Sources sources) {
        if (table.partition.empty())
            return {};
        Scope apart(m_scope.outer);
        const std::string from = FromBinder(m_binding, apart).bindTable(table);
        Scope within(m_scope.outer);
        const auto first = m_scope.sources.begin() + static_cast<std::ptrdiff_t>(sources.first);
        within.sources.assign(first, first + static_cast<std::ptrdiff_t>(sources.count));
        const std::string alias = m_binding.freshAlias('p');
        std::vector<std::string> keys;
        std::vector<std::string> values;
        std::vector<std::string> conditions;
        for (const Expr* expr : table.partition) {
            values.push_back(bindValue(m_binding, apart, *expr).sql);
            const std::string name = "k" + std::to_string(values.size());
            keys.push_back(values.back() + " AS " + name);
            const std::string own = bindValue(m_binding, within, *expr).sql;
            conditions.push_back(own + " IS " + alias + '.' + name);
            standFor(sources, own, alias + '.' + name);
        }
        return {"(SELECT " + joined(keys, ",") + " FROM " + from + " GROUP BY " +
                    joined(values, ",") + ") AS " + alias,
                joinedConditions(conditions, "AND")};
    }

    void standFor(Sources sources, const std::string& own, const std::string& key) {
        for (std::size_t i = sources.first; i < sources.first + sources.count; ++i)
            for (SourceColumn& column : m_scope.sources[i].columns)
                if (column.sql == own)
                    column.sql = key;
    }

    // Columns of the side that a row may lack can be null.
    void weakenNulls(JoinKind kind, Sources left, Sources right) {
        if (kind == JoinKind::Left || kind == JoinKind::Full)
            weaken(right);
        if (kind == JoinKind::Right || kind == JoinKind::Full)
            weaken(left);
    }

    void weaken(Sources sources) {
        for (std::size_t i = sources.first; i < sources.first + sources.count; ++i)
            for (SourceColumn& column : m_scope.sources[i].columns)
                column.nullable = true;
    }

    static std::string wordsOf(JoinKind kind) {
        switch (kind) {
        case JoinKind::Left: return " LEFT JOIN ";
        case JoinKind::Right: return " RIGHT JOIN ";
        case JoinKind::Full: return " FULL JOIN ";
        case JoinKind::Cross: return " CROSS JOIN ";
        default: return " JOIN ";
        }
    }

    std::string joinCondition(const JoinTable& join, Sources left, Sources right) {
        if (join.natural)
            return mergeColumns(join, commonNames(left, right), left, right, Merged::ByNatural);
        if (join.columns.empty())
            return join.on ? onCondition(*join.on) : std::string();
        std::vector<std::string_view> names;
        for (const Name& name : join.columns)
            names.push_back(name.text);
        return mergeColumns(join, names, left, right, Merged::ByUsing);
    }

    std::string onCondition(const Expr& condition) {
        constexpr int GroupFunctionNotAllowed = 934;
        constexpr int MixedOuterJoins = 25156;
        const int aggregateError = m_scope.aggregateError;
        m_scope.aggregateError = GroupFunctionNotAllowed;
        m_scope.marked = 0;
        const std::string sql = bindCondition(m_binding, m_scope, condition);
        if (m_scope.marked != 0)
            raise(MixedOuterJoins, condition.at.begin);
        m_scope.aggregateError = aggregateError;
        return sql;
    }

    std::vector<std::string_view> commonNames(Sources left, Sources right) const {
        std::vector<std::string_view> names;
        for (std::size_t i = left.first; i < left.first + left.count; ++i)
            for (const SourceColumn& column : m_scope.sources[i].columns)
                if (column.merged == Merged::No && findIn(right, column.name))
                    names.push_back(column.name);
        return names;
    }

    SourceColumn* findIn(Sources sources, std::string_view name) const {
        for (std::size_t i = sources.first; i < sources.first + sources.count; ++i)
            for (SourceColumn& column : m_scope.sources[i].columns)
                if (column.merged == Merged::No && column.name == name)
                    return &column;
        return nullptr;
    }

    // The columns that both sides have become one, before all others.
    std::string mergeColumns(const JoinTable& join, const std::vector<std::string_view>& names,
                             Sources left, Sources right, Merged how) {
        Source common;
        common.common = true;
        std::vector<std::string> conditions;
        for (const std::string_view name : names) {
            SourceColumn* const leftColumn = findIn(left, name);
            SourceColumn* const rightColumn = findIn(right, name);
            if (!leftColumn || !rightColumn)
                raiseNamed(InvalidIdentifier, displayPath(name));
            conditions.push_back(equal(*leftColumn, *rightColumn));
            common.columns.push_back(mergedColumn(join.join, *leftColumn, *rightColumn));
            leftColumn->merged = how;
            rightColumn->merged = how;
        }
        if (!common.columns.empty())
            m_scope.sources.insert(
                m_scope.sources.begin() + static_cast<std::ptrdiff_t>(left.first), common);
        return conditions.empty() ? std::string() : joinedConditions(conditions, "AND");
    }

    static Value valueOf(const SourceColumn& column) {
        Value value;
        value.sql = column.sql;
        value.type = column.type;
        return value;
    }

    std::string equal(const SourceColumn& left, const SourceColumn& right) const {
        const Operands sides = comparable(m_binding, valueOf(left), valueOf(right));
        return sides.left + '=' + sides.right;
    }

    static SourceColumn mergedColumn(JoinKind kind, const SourceColumn& left,
                                     const SourceColumn& right) {
        SourceColumn column = kind == JoinKind::Right ? right : left;
        if (kind == JoinKind::Full) {
            column.sql = "ifnull(" + left.sql + ',' + right.sql + ')';
            column.nullable = left.nullable || right.nullable;
        }
        return column;
    }

    Binding& m_binding;
    Scope& m_scope;
};

// Binds WHERE part by part and sorts the parts.
class WhereBinder {
public:
    WhereBinder(Binding& binding, Scope& scope, FromClause& clause)
        : m_binding(binding)
        , m_scope(scope)
        , m_clause(clause) {}

    std::vector<OuterCondition> run(const Expr& where, bool hierarchical) {
        std::vector<const Expr*> conjuncts;
        collectConjuncts(where, conjuncts);
        for (const Expr* conjunct : conjuncts)
            add(*conjunct, hierarchical);
        return std::move(m_outer);
    }

private:
    void add(const Expr& conjunct, bool hierarchical) {
        if (namesRowNumber(&conjunct)) {
            m_clause.rowNumbers.push_back(&conjunct);
            return;
        }
        // What follows CONNECT BY is not bound here: it may name LEVEL and the like.
        if (hierarchical && (m_scope.sources.size() == 1 || namesHierarchy(conjunct))) {
            m_clause.postponed.push_back(&conjunct);
            return;
        }
        m_scope.named = 0;
        m_scope.marked = 0;
        const std::string sql = bindCondition(m_binding, m_scope, conjunct);
        if (m_scope.marked != 0)
            addOuter(conjunct, sql);
        else if (hierarchical && std::popcount(m_scope.named) < 2)
            m_clause.postponed.push_back(&conjunct);
        else
            m_clause.conditions.push_back(sql);
    }

    static bool namesHierarchy(const Expr& conjunct) {
        return hasPrior(&conjunct) || namesPseudoColumn(&conjunct);
    }

    void addOuter(const Expr& conjunct, const std::string& sql) {
        constexpr int OneOuterTable = 1468;
        constexpr int NotInOr = 1719;
        if (std::popcount(m_scope.marked) > 1)
            raise(OneOuterTable, conjunct.at.begin);
        if (conjunct.kind == ExprKind::List)
            raise(NotInOr, conjunct.at.begin);
        m_outer.push_back({sql, static_cast<std::size_t>(std::countr_zero(m_scope.marked)),
                           m_scope.named & ~m_scope.marked});
    }

    Binding& m_binding;
    Scope& m_scope;
    FromClause& m_clause;
    std::vector<OuterCondition> m_outer;
};

bool needsParentheses(const TableRef& table) {
    if (table.kind != TableKind::Join)
        return false;
    const auto& join = as<JoinTable>(table);
    return join.join == JoinKind::Right || join.join == JoinKind::Full ||
           !join.right->partition.empty() || needsParentheses(*join.left);
}

} // namespace

Source relationSource(Binding& binding, const RelationPtr& relation, std::string_view alias,
                      std::string& sql) {
    Source source;
    const bool own = !binding.insideTrigger || !relation->isStored();
    source.alias = own ? binding.freshAlias('s') : relation->source;
    source.label = alias.empty() ? std::string_view(relation->name) : alias;
    if (alias.empty())
        source.owner = relation->owner;
    if (relation->isStored())
        source.rowid = source.alias + ".rowid";
    source.columns.reserve(relation->columns.size());
    for (const CatalogColumn& column : relation->columns) {
        std::string columnSql = source.alias + '.' + column.sqlName;
        if (!column.virtualText.empty())
            columnSql = virtualColumn(binding, *relation, column, source.alias);
        source.columns.push_back({column.name, column.type, std::move(columnSql), column.nullable,
                                  Merged::No, column.invisible, column.copiesNotNull});
    }
    sql = own ? relation->source + " AS " + source.alias : relation->source;
    return source;
}

std::string virtualColumn(Binding& binding, const Relation& relation, const CatalogColumn& column,
                          const std::string& alias) {
    Scope scope(nullptr);
    Source source;
    source.label = relation.name;
    for (const CatalogColumn& stored : relation.columns)
        if (stored.virtualText.empty())
            source.columns.push_back({stored.name, stored.type,
                                      alias.empty() ? stored.sqlName : alias + '.' + stored.sqlName,
                                      stored.nullable, Merged::No, false});
    scope.sources.push_back(std::move(source));
    const Tree& tree = binding.keep(parseValueText(column.virtualText));
    return convertTo(bindValue(binding, scope, *tree.expr), column.type.type);
}

FromClause bindFrom(Binding& binding, Scope& scope, std::span<TableRef* const> tables,
                    const Expr* where, bool hierarchical) {
    constexpr int GroupFunctionNotAllowed = 934;
    constexpr std::size_t MostTables = 60;
    FromClause clause;
    FromBinder from(binding, scope);
    std::vector<std::string> texts;
    for (const TableRef* table : tables) {
        const std::string sql = from.bindTable(*table);
        texts.push_back(!texts.empty() && needsParentheses(*table) ? '(' + sql + ')' : sql);
    }
    std::vector<OuterCondition> outer;
    if (where) {
        scope.aggregateError = GroupFunctionNotAllowed;
        scope.windowError = 1;
        outer = WhereBinder(binding, scope, clause).run(*where, hierarchical);
        scope.aggregateError = 0;
        scope.windowError = 0;
    }
    for (std::string& condition : takeUnjoined(outer))
        clause.conditions.push_back(std::move(condition));
    if (outer.empty()) {
        clause.sql = joined(texts, ",");
        return clause;
    }
    constexpr int MixedOuterJoins = 25156;
    if (scope.sources.size() != texts.size() || texts.size() > MostTables)
        raise(MixedOuterJoins);
    for (const OuterCondition& condition : outer)
        for (SourceColumn& column : scope.sources[condition.table].columns)
            column.nullable = true;
    clause.sql = OuterJoins(std::move(texts), std::move(outer)).from();
    return clause;
}

} // namespace ora
