#include "Binding.h"
#include "ErrorText.h"
#include "RowNumberLimit.h"
#include "SelectList.h"

#include <algorithm>
#include <optional>
#include <set>

// One SELECT … FROM … with the ORDER BY of its query.
namespace ora {

namespace {

constexpr int GroupFunctionNotAllowed = 934;
constexpr int NotSingleGroup = 937;
constexpr int NotGrouped = 979;

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
        , m_scope(outer)
        , m_list(binding, m_scope, task.block) {}

    BoundQuery bind() {
        m_scope.countsRows = namesRowNumberSomewhere();
        const bool hierarchical = m_block.connectBy != nullptr;
        FromClause clause = bindFrom(m_binding, m_scope, m_block.from, m_block.where, hierarchical);
        m_from = std::move(clause.sql);
        m_conditions = std::move(clause.conditions);
        if (hierarchical)
            bindHierarchy(clause);
        countRows(clause);
        for (const Expr* column : m_block.locked)
            bindValue(m_binding, m_scope, *column); // for its errors
        bindGroupKeys();
        m_scope.ungrouped.clear();
        m_scope.nested = nestsAggregates();
        bindItems();
        bindHaving();
        m_list.bindOrder(m_task.orderBy, m_task.hiddenOrder);
        if (m_task.orderBy.empty() && m_task.hiddenOrder)
            addDefaultOrder();
        checkGrouping();
        return assemble();
    }

    // The terms to sort the hidden columns by, after bind().
    const std::vector<std::string>& hiddenTerms() const { return m_list.hiddenTerms(); }

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
                keys.insert(bindKey(*expr));
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

    std::size_t bindKey(const Expr& expr) {
        const Value value = bindValue(m_binding, m_scope, expr);
        requireComparable(value.type.type);
        return keyOf(value.sql);
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

    // Only where one row of the statement's own query makes one row of the result.
    bool maySequence() const {
        return (&m_block == m_binding.sequenceBlock || m_binding.trigger) && !m_block.distinct &&
               m_block.groupBy.empty() && !m_block.having && m_task.orderBy.empty();
    }

    void bindItems() {
        SequenceRow row;
        for (const SelectItem& item : m_block.items)
            collectSequences(item.expr, row.references);
        const SequenceRegion region(m_binding, maySequence(), &row);
        m_list.bindItems();
    }

    bool nestsAggregates() const {
        constexpr int NestedWithoutGroup = 978;
        const bool nests =
            std::any_of(m_block.items.begin(), m_block.items.end(),
                        [](const SelectItem& item) { return hasNestedAggregate(item.expr); });
        if (nests && !groups())
            raise(NestedWithoutGroup, m_block.at.begin);
        return nests;
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
            m_list.addHidden(total != totalsFirst ? "1" : "0", "");
            m_list.addHidden(total ? "NULL" : m_keyOrder[key], " NULLS LAST");
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

    // The engine takes HAVING alone only where the list has a group function.
    bool listAggregates() const {
        return std::any_of(m_block.items.begin(), m_block.items.end(),
                           [](const SelectItem& item) { return hasAggregate(item.expr); });
    }

    BoundQuery assemble() {
        spreadUses(m_scope);
        const std::string from = fromText();
        std::string tail = " FROM " + from + whereText(m_conditions) + groupByText();
        if (!m_having.empty() && !groups() && !listAggregates())
            tail = " FROM (SELECT count(*)," + m_having + " AS h" + tail + ") WHERE h";
        else if (!m_having.empty())
            tail += " HAVING " + m_having;
        if (m_scope.nested)
            tail = " FROM " + nestedFrom(tail);
        const bool ordered = !m_list.order().empty();
        if (ordered)
            tail += " ORDER BY " + joined(m_list.order(), ",");
        tail += firstRows(m_limit);
        m_query.columns = m_list.columns();
        m_query.sql = m_list.text() + tail;
        if (m_hierarchy)
            m_query.sql = "WITH RECURSIVE " + m_hierarchy->withItems() + ' ' + m_query.sql;
        m_query.singleRow = isSingleRow();
        m_query.ordered = ordered;
        m_query.limited = !m_limit.empty();
        m_query.operand = !ordered && m_limit.empty() && !m_hierarchy;
        return std::move(m_query);
    }

    Binding& m_binding;
    const BlockTask& m_task;
    const QueryBlock& m_block;
    Scope m_scope;
    SelectList m_list;
    std::optional<Hierarchy> m_hierarchy;
    std::vector<StagePlan> m_plans; // by stage
    std::string m_from;
    std::vector<std::string> m_conditions; // above all stages so far
    std::string m_limit;
    std::unordered_map<std::string, std::size_t> m_keys;
    std::vector<std::string> m_keyOrder;
    std::vector<std::size_t> m_keptKeys;
    std::string m_having;
    BoundQuery m_query;
};

// Several grouping sets are as many SELECTs. terms: what sorts them.
BoundQuery bindSets(Binding& binding, BlockTask task, Scope* outer,
                    std::vector<std::string>& terms) {
    std::vector<std::string> selects;
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
    query.sql = joined(selects, " UNION ALL ");
    return query;
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
    const bool byPlace = limitsByPlace(query.limit);
    task.hiddenOrder = byPlace || sets.size() > 1;
    std::vector<std::string> terms;
    BoundQuery bound;
    if (sets.size() > 1) {
        bound = bindSets(binding, task, outer, terms);
    } else {
        BlockBinder binder(binding, task, outer);
        bound = binder.bind();
        terms = binder.hiddenTerms();
    }
    if (byPlace)
        limitByPlace(binding, bound, *query.limit, terms);
    else if (sets.size() > 1)
        sortRows(bound, terms);
    if (!byPlace)
        limitRows(binding, bound, query.limit);
    return bound;
}

} // namespace ora
