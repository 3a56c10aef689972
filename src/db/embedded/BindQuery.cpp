#include "Binding.h"
#include "ErrorText.h"
#include "RowNumberLimit.h"

#include <algorithm>

// Whole queries: WITH, set operations and what sorts and limits them.
namespace ora {

namespace {

constexpr int WrongColumnCount = 1789;
constexpr int NoSuchPlace = 1785;

std::string_view wordsOf(SetOperator op) {
    switch (op) {
    case SetOperator::UnionAll: return " UNION ALL ";
    case SetOperator::Union: return " UNION ";
    case SetOperator::Intersect: return " INTERSECT ";
    case SetOperator::Minus: return " EXCEPT ";
    default: refuse("INTERSECT ALL");
    }
}

std::string asOperand(const BoundQuery& query) {
    return query.operand ? query.sql : "SELECT * FROM (" + query.sql + ')';
}

BoundQuery bindTerm(Binding& binding, const QueryTerm& term, Scope* outer) {
    if (term.nested)
        return bindQuery(binding, *term.nested, outer);
    static const Query plain{};
    return bindBlock(binding, *term.block, plain, outer);
}

void unifyWith(BoundQuery& query, const BoundQuery& other) {
    if (query.columns.size() != other.columns.size())
        raise(WrongColumnCount);
    for (std::size_t i = 0; i < query.columns.size(); ++i) {
        query.columns[i].type = unifyColumns(query.columns[i].type, other.columns[i].type);
        query.columns[i].nullable = query.columns[i].nullable || other.columns[i].nullable;
    }
}

// The terms from the left, without what sorts them. The engine takes only so many in one chain.
BoundQuery bindTerms(Binding& binding, std::span<const QueryTerm> terms, Scope* outer) {
    constexpr std::size_t MostInOneChain = 400;
    BoundQuery query = bindTerm(binding, terms[0], outer);
    if (terms.size() == 1)
        return query;
    query.sql = asOperand(query);
    std::size_t inChain = 1;
    for (const QueryTerm& term : terms.subspan(1)) {
        const BoundQuery next = bindTerm(binding, term, outer);
        unifyWith(query, next);
        if (++inChain > MostInOneChain) {
            query.sql = "SELECT * FROM (" + query.sql + ')';
            inChain = 2;
        }
        query.sql += wordsOf(term.op);
        query.sql += asOperand(next);
    }
    query.singleRow = false;
    query.ordered = false;
    query.operand = false; // as a later operand it needs its own parentheses
    return query;
}

// The result of set operations as a table that ORDER BY can name columns of.
Scope resultScope(Binding& binding, const BoundQuery& query) {
    Scope scope(nullptr);
    Source source;
    for (std::size_t i = 0; i < query.columns.size(); ++i)
        source.columns.push_back({binding.text(query.columns[i].name), query.columns[i].type,
                                  "q.c" + std::to_string(i + 1), true, Merged::No});
    scope.sources.push_back(std::move(source));
    return scope;
}

std::string resultOrderTerm(Binding& binding, Scope& scope, const BoundQuery& query,
                            const OrderItem& item) {
    if (item.expr->kind != ExprKind::Number)
        return orderTerm(bindValue(binding, scope, *item.expr).sql, true, item);
    const std::string_view text = static_cast<const Literal*>(item.expr)->text;
    const bool whole = text.find_first_not_of("0123456789") == std::string_view::npos;
    constexpr std::size_t LongestPlace = 6;
    const std::size_t place =
        whole && text.size() <= LongestPlace ? std::stoul(std::string(text)) : 0;
    if (place < 1 || place > query.columns.size())
        raise(NoSuchPlace, item.expr->at.begin);
    return orderTerm("q.c" + std::to_string(place), true, item);
}

void sortResult(Binding& binding, const Query& query, BoundQuery& bound) {
    if (query.orderBy.empty() && !query.limit)
        return;
    if (query.limit && (query.limit->percent || query.limit->withTies))
        refuse("FETCH with PERCENT or TIES over set operations", query.at.begin);
    Scope scope = resultScope(binding, bound);
    std::vector<std::string> terms;
    for (const OrderItem& item : query.orderBy)
        terms.push_back(resultOrderTerm(binding, scope, bound, item));
    bound.sql =
        "SELECT " + columnList(bound.columns.size(), "q") + " FROM (" + bound.sql + ") AS q";
    if (!terms.empty())
        bound.sql += " ORDER BY " + joined(terms, ",");
    bound.sql += limitText(binding, query.limit);
    bound.limited = query.limit != nullptr;
    bound.ordered = !terms.empty();
    bound.operand = false;
}

BoundQuery bindBody(Binding& binding, const Query& query, Scope* outer) {
    if (query.terms.size() == 1 && query.terms[0].block)
        return bindBlock(binding, *query.terms[0].block, query, outer);
    BoundQuery bound = bindTerms(binding, query.terms, outer);
    sortResult(binding, query, bound);
    return bound;
}

// ---- WITH ----

bool namesTable(const TableRef& table, std::string_view name) {
    if (table.kind == TableKind::Join) {
        const auto& join = static_cast<const JoinTable&>(table);
        return namesTable(*join.left, name) || namesTable(*join.right, name);
    }
    if (table.kind != TableKind::Named)
        return false;
    const auto& named = static_cast<const NamedTable&>(table);
    return !named.name.schema && named.name.name.text == name;
}

bool isRecursive(const QueryTerm& term, std::string_view name) {
    return term.block &&
           std::any_of(term.block->from.begin(), term.block->from.end(),
                       [name](const TableRef* table) { return namesTable(*table, name); });
}

void renameColumns(const WithItem& item, std::vector<OutputColumn>& columns) {
    constexpr int WrongNameCount = 32038;
    if (item.columns.empty())
        return;
    if (item.columns.size() != columns.size())
        throw OraError(WrongNameCount,
                       "number of WITH clause column names does not match number of elements in "
                       "select list");
    for (std::size_t i = 0; i < columns.size(); ++i)
        columns[i].name = item.columns[i].text;
}

class WithBinder {
public:
    WithBinder(Binding& binding, Scope* outer)
        : m_binding(binding)
        , m_outer(outer) {}

    // "w1(c1,c2) AS (…)" and the name's entry.
    std::string bind(const WithItem& item) {
        const auto terms = item.query->terms;
        std::size_t anchors = 0;
        while (anchors < terms.size() && !isRecursive(terms[anchors], item.name.text))
            ++anchors;
        const bool recursive = anchors < terms.size() && anchors > 0;
        return recursive ? bindRecursive(item, anchors) : bindPlain(item);
    }

    bool recursive() const { return m_recursive; }

private:
    static std::string head(const NamedQuery& query) {
        return query.alias + '(' + columnList(query.columns.size(), {}) + ") AS (";
    }

    std::string bindPlain(const WithItem& item) {
        BoundQuery bound = bindQuery(m_binding, *item.query, m_outer);
        renameColumns(item, bound.columns);
        m_binding.namedQueries.push_back(
            {item.name.text, m_binding.freshAlias('w'), std::move(bound.columns)});
        return head(m_binding.namedQueries.back()) + bound.sql + ')';
    }

    // SEARCH needs every row's level: one more column in both branches.
    QueryTerm withLevel(const QueryTerm& term, std::string_view level, bool anchor) {
        QueryBlock* const block = m_binding.arena.make<QueryBlock>(*term.block);
        std::vector<SelectItem> items(block->items.begin(), block->items.end());
        Expr* value = m_binding.arena.make<Literal>(Expr{ExprKind::Number, {}}, "1");
        if (!anchor) {
            const std::vector<Name> path{{level, {}, true}};
            Expr* const column = m_binding.arena.make<ColumnRef>(Expr{ExprKind::Column, {}},
                                                                 m_binding.arena.list(path), false);
            value = m_binding.arena.make<Arithmetic>(Expr{ExprKind::Arithmetic, {}}, '+', column,
                                                     value);
        }
        items.push_back({value, {level, {}, true}, {}});
        block->items = m_binding.arena.list(items);
        return {term.op, block, nullptr};
    }

    std::string searchOrder(const WithItem& item, const std::vector<OutputColumn>& columns) {
        std::string order =
            " ORDER BY c" + std::to_string(columns.size()) + (item.depthFirst ? " DESC" : "");
        for (const OrderItem& by : item.searchBy) {
            const std::string_view name =
                by.expr->kind == ExprKind::Column
                    ? static_cast<const ColumnRef*>(by.expr)->parts.back().text
                    : std::string_view();
            const auto found =
                std::find_if(columns.begin(), columns.end(),
                             [name](const OutputColumn& column) { return column.name == name; });
            if (found == columns.end())
                raiseNamed(904, displayPath(name), by.expr->at.begin);
            order += ',' + orderTerm("c" + std::to_string(found - columns.begin() + 1), true, by);
        }
        return order;
    }

    std::string bindRecursive(const WithItem& item, std::size_t anchors) {
        constexpr int AliasListNeeded = 32039;
        constexpr std::string_view LevelName = "level of the search";
        if (item.columns.empty())
            raise(AliasListNeeded, item.name.at.begin);
        if (item.cycleColumn)
            refuse("the CYCLE clause", item.name.at.begin);
        m_recursive = true;
        const bool searched = static_cast<bool>(item.searchColumn);
        std::vector<QueryTerm> terms(item.query->terms.begin(), item.query->terms.end());
        if (searched)
            for (std::size_t i = 0; i < terms.size(); ++i)
                terms[i] = withLevel(terms[i], LevelName, i < anchors);
        const std::span<const QueryTerm> all(terms);
        BoundQuery anchor = bindTerms(m_binding, all.first(anchors), m_outer);
        std::vector<OutputColumn> columns = anchor.columns;
        if (searched)
            columns.pop_back();
        renameColumns(item, columns);
        if (searched)
            columns.push_back(anchor.columns.back());
        m_binding.namedQueries.push_back({item.name.text, m_binding.freshAlias('w'), columns});
        std::string sql = head(m_binding.namedQueries.back()) + asOperand(anchor);
        for (const QueryTerm& term : all.subspan(anchors)) {
            const BoundQuery next = bindTerm(m_binding, term, m_outer);
            unifyWith(anchor, next);
            sql += wordsOf(term.op);
            sql += asOperand(next);
        }
        if (!searched)
            return sql + ')';
        sql += searchOrder(item, columns) + ')';
        return sql + ',' + numberedItem(item, columns);
    }

    // The order of the search as a column of its own, in the place of the level.
    std::string numberedItem(const WithItem& item, std::vector<OutputColumn> columns) {
        const std::string searched = m_binding.namedQueries.back().alias;
        m_binding.namedQueries.pop_back();
        const std::size_t count = columns.size() - 1;
        columns.back() = {std::string(item.searchColumn.text), {SqlType::Number}};
        m_binding.namedQueries.push_back({item.name.text, m_binding.freshAlias('w'), columns});
        return head(m_binding.namedQueries.back()) + "SELECT " + columnList(count, {}) + ',' +
               numberFromInteger("row_number() OVER ()") + " FROM " + searched + ')';
    }

    Binding& m_binding;
    Scope* m_outer;
    bool m_recursive = false;
};

} // namespace

std::string columnList(std::size_t count, const std::string& alias) {
    std::string list;
    for (std::size_t i = 1; i <= count; ++i) {
        if (i > 1)
            list += ',';
        if (!alias.empty())
            list += alias + '.';
        list += 'c' + std::to_string(i);
        if (!alias.empty())
            list += " AS c" + std::to_string(i);
    }
    return list;
}

std::string firstRows(const std::string& count) {
    return count.empty() ? std::string() : " LIMIT " + count + " OFFSET 0";
}

std::string limitText(Binding& binding, const RowLimit* limit) {
    if (!limit)
        return {};
    Scope none(nullptr);
    const std::string count =
        limit->count ? rowCount(binding, none, *limit->count) : std::string("-1");
    if (!limit->offset)
        return firstRows(count);
    return " LIMIT " + count + " OFFSET " + rowCount(binding, none, *limit->offset);
}

BoundQuery bindQuery(Binding& binding, const Query& query, Scope* outer) {
    const BindDepth depth(binding);
    if (binding.subqueryError != 0)
        raise(binding.subqueryError, query.at.begin);
    if (query.with.empty())
        return bindBody(binding, query, outer);
    const std::size_t known = binding.namedQueries.size();
    WithBinder with(binding, outer);
    std::vector<std::string> items;
    for (const WithItem& item : query.with)
        items.push_back(with.bind(item));
    BoundQuery bound = bindBody(binding, query, outer);
    binding.namedQueries.erase(binding.namedQueries.begin() + static_cast<std::ptrdiff_t>(known),
                               binding.namedQueries.end());
    // The body may begin with a WITH of its own, which CONNECT BY needs.
    if (bound.sql.starts_with("WITH "))
        bound.sql = "SELECT * FROM (" + bound.sql + ')';
    bound.sql =
        (with.recursive() ? "WITH RECURSIVE " : "WITH ") + joined(items, ",") + ' ' + bound.sql;
    bound.operand = false;
    return bound;
}

BoundQuery bindRootQuery(Binding& binding, const Query& query) {
    binding.hoists = !binding.insideTrigger;
    BoundQuery bound = bindQuery(binding, query, nullptr);
    binding.hoists = false;
    if (binding.hoisted.empty())
        return bound;
    std::string items = joined(binding.hoisted, ",");
    binding.hoisted.clear();
    for (const std::string_view start : {"WITH RECURSIVE ", "WITH "}) {
        if (!bound.sql.starts_with(start))
            continue;
        bound.sql.erase(0, start.size());
        items += ',';
        break;
    }
    bound.sql = "WITH RECURSIVE " + items + ' ' + bound.sql;
    bound.operand = false;
    return bound;
}

} // namespace ora
