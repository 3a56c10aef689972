#include "Binding.h"
#include "ErrorText.h"
#include "RowNumberLimit.h"

#include <algorithm>
#include <optional>
#include <set>

// One SELECT … FROM … with the ORDER BY of its query.
namespace ora {

namespace {

constexpr int GroupFunctionNotAllowed = 934;
constexpr int NotSingleGroup = 937;
constexpr int NotGrouped = 979;
constexpr int InvalidIdentifier = 904;

template<class Node>
const Node& as(const Expr& expr) {
    return static_cast<const Node&>(expr);
}

using GroupingSets = std::vector<std::vector<const Expr*>>;

// What a stage's SELECT is made of, besides the stage's own columns.
struct StagePlan {
    std::vector<std::string> conditions;
    std::string limit;
};

struct BlockTask {
    const QueryBlock& block;
    std::span<const OrderItem> orderBy;
    std::span<const OrderItem> siblings;
    const GroupingSets& sets;
    std::size_t set;  // which of them this SELECT computes
    bool hiddenOrder; // ORDER BY's values become columns o1, o2 … instead
    bool limited;     // FETCH FIRST follows
};

class BlockBinder {
public:
    BlockBinder(Binding& binding, const BlockTask& task, Scope* outer)
        : m_binding(binding)
        , m_task(task)
        , m_block(task.block)
        , m_scope(outer) {}

    BoundQuery bind() {
        m_scope.countsRows = namesRowNumberSomewhere();
        const bool hierarchical = m_block.connectBy != nullptr;
        FromClause clause = bindFrom(m_binding, m_scope, m_block.from, m_block.where, hierarchical);
        m_from = std::move(clause.sql);
        m_conditions = std::move(clause.conditions);
        if (hierarchical)
            bindHierarchy(clause);
        countRows(clause);
        bindGroupKeys();
        m_scope.ungrouped.clear();
        bindItems();
        bindHaving();
        bindOrder();
        checkGrouping();
        return assemble();
    }

    // The terms to sort the hidden columns by, after bind().
    const std::vector<std::string>& hiddenTerms() const { return m_hiddenTerms; }

private:
    // ---- ROWNUM ----

    bool selectNamesRowNumber() const {
        return std::any_of(m_block.items.begin(), m_block.items.end(),
                           [](const SelectItem& item) { return namesRowNumber(item.expr); });
    }

    bool orderNamesRowNumber() const {
        return std::any_of(m_task.orderBy.begin(), m_task.orderBy.end(),
                           [](const OrderItem& item) { return namesRowNumber(item.expr); });
    }

    bool namesRowNumberSomewhere() const {
        return namesRowNumber(m_block.where) || selectNamesRowNumber() || orderNamesRowNumber() ||
               namesRowNumber(m_block.having) || groupsByRowNumber();
    }

    bool groupsByRowNumber() const {
        for (const auto& set : m_task.sets)
            for (const Expr* expr : set)
                if (namesRowNumber(expr))
                    return true;
        return false;
    }

    // Whether rows can be counted while the block gives them out, without a stage.
    bool countsAsItGoes() const {
        const bool selects =
            std::any_of(m_block.items.begin(), m_block.items.end(), [](const SelectItem& item) {
                return hasAggregate(item.expr) || hasWindow(item.expr);
            });
        return m_task.orderBy.empty() && m_block.groupBy.empty() && !m_block.having &&
               !m_block.distinct && !selects && !m_task.limited;
    }

    void countRows(const FromClause& clause) {
        if (!m_scope.countsRows)
            return;
        std::vector<std::string> limits;
        std::vector<const Expr*> others;
        for (const Expr* condition : clause.rowNumbers) {
            const auto limit = rowNumberLimit(m_binding, m_scope, *condition);
            if (limit)
                limits.push_back(*limit);
            else
                others.push_back(condition);
        }
        m_limit = leastLimit(limits);
        if (others.empty() && countsAsItGoes())
            return;
        addStage('r');
        m_plans.back().limit = std::move(m_limit);
        m_limit.clear();
        m_scope.rowNumbers = m_scope.stages.size();
        for (const Expr* condition : others)
            m_conditions.push_back(bindCondition(m_binding, m_scope, *condition));
    }

    // ---- stages ----

    // Everything so far goes into a subquery.
    void addStage(char kind) {
        m_scope.stages.emplace_back(m_binding.freshAlias(kind));
        m_plans.resize(m_scope.stages.size());
        m_plans.back().conditions = std::move(m_conditions);
        m_conditions.clear();
        m_scope.level = m_scope.stages.size();
    }

    bool needsLeaves() const {
        const auto names = [](const Expr* expr) {
            return namesColumn(expr, "CONNECT_BY_ISLEAF") ||
                   namesColumn(expr, "CONNECT_BY_ISCYCLE");
        };
        return names(m_block.where) || names(m_block.having) ||
               std::any_of(m_block.items.begin(), m_block.items.end(),
                           [&](const SelectItem& item) { return names(item.expr); }) ||
               std::any_of(m_task.orderBy.begin(), m_task.orderBy.end(),
                           [&](const OrderItem& item) { return names(item.expr); });
    }

    void bindHierarchy(const FromClause& clause) {
        m_hierarchy.emplace(m_binding, m_scope, m_block);
        m_hierarchy->start(std::move(m_from), std::move(m_conditions), m_task.siblings);
        m_conditions.clear();
        m_plans.resize(m_scope.stages.size());
        if (needsLeaves()) {
            addStage('l');
            m_scope.leafStage = m_scope.stages.size();
        }
        for (const Expr* condition : clause.postponed)
            m_conditions.push_back(bindWhere(*condition));
    }

    std::string bindWhere(const Expr& condition) {
        m_scope.aggregateError = GroupFunctionNotAllowed;
        m_scope.windowError = 1;
        std::string sql = bindCondition(m_binding, m_scope, condition);
        m_scope.aggregateError = 0;
        m_scope.windowError = 0;
        return sql;
    }

    // ---- grouping ----

    bool groups() const { return !m_block.groupBy.empty(); }

    void bindGroupKeys() {
        m_scope.ungrouped.clear(); // columns of WHERE need no group
        if (!groups())
            return;
        m_scope.aggregateError = GroupFunctionNotAllowed;
        m_scope.windowError = 1;
        std::vector<std::set<std::size_t>> keysOfSets;
        for (const auto& set : m_task.sets) {
            auto& keys = keysOfSets.emplace_back();
            for (const Expr* expr : set)
                keys.insert(keyOf(bindValue(m_binding, m_scope, *expr).sql));
        }
        const auto current = keysOfSets.begin() + static_cast<std::ptrdiff_t>(m_task.set);
        m_keptKeys.assign(current->begin(), current->end());
        m_scope.groupId = static_cast<int>(std::count(keysOfSets.begin(), current, *current));
        m_scope.aggregateError = 0;
        m_scope.windowError = 0;
        m_scope.groupKeys = std::move(m_keys);
        m_scope.nulledKeys.assign(m_keyOrder.size(), true);
        for (const std::size_t key : m_keptKeys)
            m_scope.nulledKeys[key] = false;
    }

    std::size_t keyOf(const std::string& sql) {
        const auto [key, added] = m_keys.emplace(sql, m_keyOrder.size());
        if (added)
            m_keyOrder.push_back(sql);
        return key->second;
    }

    std::string groupByText() const {
        if (!groups())
            return {};
        std::vector<std::string> keys;
        for (const std::size_t key : m_keptKeys)
            keys.push_back(m_keyOrder[key]);
        return " GROUP BY " + (keys.empty() ? "NULL" : joined(keys, ","));
    }

    // ---- select list ----

    void bindItems() {
        m_scope.nested =
            std::any_of(m_block.items.begin(), m_block.items.end(),
                        [](const SelectItem& item) { return hasNestedAggregate(item.expr); });
        constexpr int NestedWithoutGroup = 978;
        if (m_scope.nested && !groups())
            raise(NestedWithoutGroup, m_block.at.begin);
        for (const SelectItem& item : m_block.items) {
            if (item.expr->kind == ExprKind::Star)
                addStar(as<Star>(*item.expr));
            else
                addItem(item);
        }
    }

    void addOutput(Value value, OutputColumn column, std::string_view alias) {
        constexpr std::size_t MostColumns = 2000; // the engine's
        constexpr int TooManyColumns = 1792;
        if (m_query.columns.size() == MostColumns)
            raise(TooManyColumns, m_block.at.begin);
        column.type = value.type;
        column.nullable = value.nullable || !value.column;
        column.declaredNotNull = value.declaredNotNull && !column.nullable;
        m_query.columns.push_back(std::move(column));
        m_aliases.push_back({alias, value});
        m_values.push_back(std::move(value));
    }

    void addItem(const SelectItem& item) {
        Value value = bindValue(m_binding, m_scope, *item.expr);
        OutputColumn column;
        if (item.alias) {
            column.name = item.alias.text;
        } else if (item.expr->kind == ExprKind::Column) {
            column.name = as<ColumnRef>(*item.expr).parts.back().text;
        } else {
            column.name = item.heading;
            column.named = false;
        }
        addOutput(std::move(value), std::move(column), item.alias.text);
    }

    bool qualifies(const Source& source, const Star& star) const {
        const auto& parts = star.qualifier;
        if (parts.empty())
            return true;
        return !source.common && source.label == parts.back().text &&
               (parts.size() < 2 || source.owner == parts[parts.size() - 2].text);
    }

    void noteStar(const Star& star, const Source& source, std::size_t column) {
        if (!m_binding.starColumns)
            return;
        const bool alone = source.common || !star.qualifier.empty() || m_scope.sources.size() == 1;
        (*m_binding.starColumns)[&star].push_back(
            alone ? displayPath(source.columns[column].name)
                  : displayPath(source.label, source.columns[column].name));
    }

    void addStar(const Star& star) {
        bool found = false;
        for (std::size_t i = 0; i < m_scope.sources.size(); ++i) {
            const Source& source = m_scope.sources[i];
            if (!qualifies(source, star))
                continue;
            found = true;
            const bool all = !star.qualifier.empty();
            for (std::size_t j = 0; j < source.columns.size(); ++j) {
                const SourceColumn& column = source.columns[j];
                if (column.invisible || (!all && column.merged != Merged::No))
                    continue;
                noteStar(star, source, j);
                addStarColumn(static_cast<int>(i), static_cast<int>(j));
            }
        }
        if (!found)
            raiseNamed(InvalidIdentifier, displayPath(star.qualifier.back().text), star.at.begin);
    }

    void addStarColumn(int source, int column) {
        const Source& from = m_scope.sources[static_cast<std::size_t>(source)];
        const std::string_view name = from.columns[static_cast<std::size_t>(column)].name;
        constexpr int AmbiguousColumn = 918;
        if (std::count_if(from.columns.begin(), from.columns.end(),
                          [name](const SourceColumn& one) { return one.name == name; }) > 1)
            raise(AmbiguousColumn);
        Value value = m_scope.columnValue({source, column});
        const auto key = m_scope.groupKeys.find(value.sql);
        if (key == m_scope.groupKeys.end())
            m_scope.ungrouped.push_back(displayPath(name));
        else if (m_scope.nulledKeys[key->second])
            value.sql = "NULL";
        addOutput(std::move(value), {std::string(name), {}}, {});
    }

    void bindHaving() {
        if (!m_block.having)
            return;
        m_scope.windowError = 1;
        const bool nested = m_scope.nested;
        m_scope.nested = false;
        const std::size_t ungrouped = m_scope.ungrouped.size();
        m_having = bindCondition(m_binding, m_scope, *m_block.having);
        if (m_scope.ungrouped.size() > ungrouped)
            raise(NotGrouped, m_block.having->at.begin);
        m_scope.nested = nested;
        m_scope.windowError = 0;
        m_scope.aggregates = true;
    }

    // ---- order ----

    // The number of the select item that an ORDER BY item names by its place or its alias.
    std::optional<std::size_t> placeOf(const Expr& expr) const {
        constexpr int NoSuchPlace = 1785;
        if (expr.kind == ExprKind::Number) {
            const std::string_view text = as<Literal>(expr).text;
            const bool whole = text.find_first_not_of("0123456789") == std::string_view::npos;
            if (!whole)
                return std::nullopt;
            constexpr std::size_t LongestPlace = 6;
            const std::size_t place =
                text.size() > LongestPlace ? 0 : std::stoul(std::string(text));
            if (place < 1 || place > m_values.size())
                raise(NoSuchPlace, expr.at.begin);
            return place - 1;
        }
        if (expr.kind != ExprKind::Column || as<ColumnRef>(expr).parts.size() != 1)
            return std::nullopt;
        for (std::size_t i = 0; i < m_aliases.size(); ++i)
            if (!m_aliases[i].name.empty() &&
                m_aliases[i].name == as<ColumnRef>(expr).parts[0].text)
                return i;
        return std::nullopt;
    }

    std::optional<std::size_t> sameAsItem(const std::string& sql) const {
        for (std::size_t i = 0; i < m_values.size(); ++i)
            if (m_values[i].sql == sql)
                return i;
        return std::nullopt;
    }

    void bindOrder() {
        constexpr int NotSelected = 1791;
        m_scope.aliases = &m_aliases;
        for (const OrderItem& item : m_task.orderBy) {
            std::optional<std::size_t> place = placeOf(*item.expr);
            Value value = place ? m_values[*place] : bindValue(m_binding, m_scope, *item.expr);
            if (!place)
                place = sameAsItem(value.sql);
            if (m_block.distinct && !place && item.expr->kind != ExprKind::Number)
                raise(NotSelected, item.expr->at.begin);
            addOrderTerm(item, value, place);
        }
        m_scope.aliases = nullptr;
        if (m_task.orderBy.empty() && m_task.hiddenOrder)
            addDefaultOrder();
    }

    void addOrderTerm(const OrderItem& item, const Value& value, std::optional<std::size_t> place) {
        if (m_task.hiddenOrder) {
            m_hidden.push_back(value.sql);
            m_hiddenTerms.push_back(orderTerm("q.o" + std::to_string(m_hidden.size()), true, item));
            return;
        }
        m_order.push_back(
            orderTerm(place ? std::to_string(*place + 1) : value.sql, value.nullable, item));
    }

    // The server sorts what it totals: each key's total comes behind the rows of ROLLUP, and before
    // those of CUBE.
    void addDefaultOrder() {
        if (m_task.sets.size() < 2)
            return;
        const GroupKind kind = m_block.groupBy.back().kind;
        if (kind == GroupKind::Sets)
            return;
        const bool totalsFirst = kind == GroupKind::Cube;
        for (std::size_t key = 0; key < m_keyOrder.size(); ++key) {
            const bool total = m_scope.nulledKeys[key];
            m_hidden.push_back(total != totalsFirst ? "1" : "0");
            m_hiddenTerms.push_back("q.o" + std::to_string(m_hidden.size()));
            m_hidden.push_back(total ? "NULL" : m_keyOrder[key]);
            m_hiddenTerms.push_back("q.o" + std::to_string(m_hidden.size()) + " NULLS LAST");
        }
    }

    void checkGrouping() const {
        if (m_scope.nested && !m_scope.ungrouped.empty())
            raise(NotSingleGroup);
        const bool grouped = groups() || m_scope.aggregates;
        if (grouped && !m_scope.ungrouped.empty())
            raise(groups() ? NotGrouped : NotSingleGroup, m_block.at.begin);
    }

    // ---- SQL ----

    static std::string whereText(const std::vector<std::string>& conditions) {
        return conditions.empty() ? std::string() : " WHERE " + joinedConditions(conditions, "AND");
    }

    // The stages above the hierarchy, or all, as subqueries inside each other.
    std::string fromText() {
        std::string from = m_hierarchy ? m_hierarchy->alias() : m_from;
        for (std::size_t stage = m_hierarchy ? m_scope.hierarchy : 0; stage < m_scope.stages.size();
             ++stage) {
            const StagePlan& plan = m_plans[stage];
            from = "(SELECT " + stageColumns(m_scope, stage) + " FROM " + from +
                   whereText(plan.conditions) + firstRows(plan.limit) + ") AS " +
                   m_scope.stages[stage].alias();
        }
        return from;
    }

    std::string selectText() const {
        std::string sql = m_block.distinct ? "SELECT DISTINCT " : "SELECT ";
        for (std::size_t i = 0; i < m_values.size(); ++i)
            sql += (i > 0 ? "," : "") + m_values[i].sql + " AS c" + std::to_string(i + 1);
        for (std::size_t i = 0; i < m_hidden.size(); ++i)
            sql += "," + m_hidden[i] + " AS o" + std::to_string(i + 1);
        return sql;
    }

    // The inner SELECT of nested group functions.
    std::string nestedFrom(const std::string& tail) const {
        std::string sql = "(SELECT ";
        for (std::size_t i = 0; i < m_scope.nestedValues.size(); ++i)
            sql += (i > 0 ? "," : "") + m_scope.nestedValues[i] + " AS c" + std::to_string(i + 1);
        return sql + tail + ") AS g";
    }

    bool isSingleRow() const {
        if (m_scope.nested || m_limit == "1")
            return true;
        if (groups())
            return false;
        const bool dual = m_block.from.size() == 1 && m_block.from[0]->kind == TableKind::Named &&
                          !m_hierarchy &&
                          static_cast<const NamedTable&>(*m_block.from[0]).name.name.text == "DUAL";
        return m_scope.aggregates || dual;
    }

    BoundQuery assemble() {
        spreadUses(m_scope);
        const std::string from = fromText();
        std::string tail = " FROM " + from + whereText(m_conditions) + groupByText();
        if (!m_having.empty())
            tail += " HAVING " + m_having;
        if (m_scope.nested)
            tail = " FROM " + nestedFrom(tail);
        if (!m_order.empty())
            tail += " ORDER BY " + joined(m_order, ",");
        tail += firstRows(m_limit);
        m_query.sql = selectText() + tail;
        if (m_hierarchy)
            m_query.sql = "WITH RECURSIVE " + m_hierarchy->withItems() + ' ' + m_query.sql;
        m_query.singleRow = isSingleRow();
        m_query.ordered = !m_order.empty();
        m_query.limited = !m_limit.empty();
        m_query.operand = m_order.empty() && m_limit.empty() && !m_hierarchy;
        return std::move(m_query);
    }

    Binding& m_binding;
    const BlockTask& m_task;
    const QueryBlock& m_block;
    Scope m_scope;
    std::optional<Hierarchy> m_hierarchy;
    std::vector<StagePlan> m_plans; // by stage
    std::string m_from;
    std::vector<std::string> m_conditions; // above all stages so far
    std::string m_limit;
    std::unordered_map<std::string, std::size_t> m_keys;
    std::vector<std::string> m_keyOrder;
    std::vector<std::size_t> m_keptKeys;
    std::vector<Value> m_values;
    std::vector<AliasedValue> m_aliases;
    std::string m_having;
    std::vector<std::string> m_order;
    std::vector<std::string> m_hidden;
    std::vector<std::string> m_hiddenTerms;
    BoundQuery m_query;
};

// Several grouping sets are as many SELECTs.
BoundQuery bindSets(Binding& binding, BlockTask task, Scope* outer) {
    task.hiddenOrder = true;
    std::vector<std::string> selects;
    std::vector<std::string> terms;
    BoundQuery query;
    for (std::size_t set = 0; set < task.sets.size(); ++set) {
        task.set = set;
        BlockBinder binder(binding, task, outer);
        BoundQuery one = binder.bind();
        selects.push_back(one.operand ? one.sql : "SELECT * FROM (" + one.sql + ')');
        if (set == 0)
            query.columns = one.columns;
        for (std::size_t i = 0; i < query.columns.size(); ++i) {
            query.columns[i].type = unifyColumns(query.columns[i].type, one.columns[i].type);
            query.columns[i].nullable = true;
        }
        terms = binder.hiddenTerms();
    }
    query.sql = "SELECT " + columnList(query.columns.size(), "q") + " FROM (" +
                joined(selects, " UNION ALL ") + ") AS q";
    if (!terms.empty())
        query.sql += " ORDER BY " + joined(terms, ",");
    query.ordered = !terms.empty();
    query.operand = terms.empty();
    return query;
}

// FETCH … WITH TIES and PERCENT need every row's place and the number of rows.
std::string limitedByPlace(Binding& binding, const BoundQuery& query, const RowLimit& limit,
                           const std::vector<std::string>& terms) {
    Scope none(nullptr);
    const std::string order = terms.empty() ? std::string() : "ORDER BY " + joined(terms, ",");
    const std::string offset = limit.offset ? rowCount(binding, none, *limit.offset) : "0";
    std::string most;
    if (limit.percent)
        most = "num_int(ora_ceil(num_div(num_mul(num_from_int(q.n)," +
               convertTo(bindValue(binding, none, *limit.count), SqlType::Number) + ")," +
               numberLiteral("100") + ")))";
    else
        most = rowCount(binding, none, *limit.count);
    const std::string place = limit.withTies ? "q.ties" : "q.place";
    return "SELECT " + columnList(query.columns.size(), "q") +
           " FROM (SELECT q.*,row_number() OVER (" + order + ") AS place,rank() OVER (" + order +
           ") AS ties,count(*) OVER () AS n FROM (" + query.sql + ") AS q) AS q WHERE q.place>" +
           offset + " AND " + place + "<=" + offset + "+" + most + " ORDER BY q.place";
}

} // namespace

BoundQuery bindBlock(Binding& binding, const QueryBlock& block, const Query& query, Scope* outer) {
    const BindDepth depth(binding);
    const GroupingSets sets = groupingSets(block.groupBy);
    const std::span<const OrderItem> items = query.orderBy;
    BlockTask task{block, items, {}, sets, 0, false, query.limit != nullptr};
    constexpr int NoSiblings = 30929;
    if (query.siblings && !block.connectBy)
        throw OraError(NoSiblings, "ORDER SIBLINGS BY clause not allowed here", block.at.begin);
    if (query.siblings)
        std::swap(task.orderBy, task.siblings);
    const bool byPlace = query.limit && (query.limit->percent || query.limit->withTies);
    BoundQuery bound;
    if (sets.size() > 1) {
        bound = bindSets(binding, task, outer);
        if (byPlace)
            refuse("FETCH with PERCENT or TIES over several grouping sets", block.at.begin);
    } else {
        task.hiddenOrder = byPlace;
        BlockBinder binder(binding, task, outer);
        bound = binder.bind();
        if (byPlace) {
            bound.sql = limitedByPlace(binding, bound, *query.limit, binder.hiddenTerms());
            bound.operand = false;
            return bound;
        }
    }
    const std::string limit = limitText(binding, query.limit);
    if (!limit.empty()) {
        bound.sql += limit;
        bound.limited = true;
        bound.operand = false;
        bound.singleRow = bound.singleRow || limit == firstRows("1");
    }
    return bound;
}

} // namespace ora
