#include "SelectList.h"

#include "ErrorText.h"

#include <algorithm>

namespace ora {

namespace {

constexpr int InvalidIdentifier = 904;

template<class Node>
const Node& as(const Expr& expr) {
    return static_cast<const Node&>(expr);
}

} // namespace

void SelectList::bindItems() {
    m_scope.nested =
        std::any_of(m_block.items.begin(), m_block.items.end(),
                    [](const SelectItem& item) { return hasNestedAggregate(item.expr); });
    constexpr int NestedWithoutGroup = 978;
    if (m_scope.nested && m_block.groupBy.empty())
        raise(NestedWithoutGroup, m_block.at.begin);
    for (const SelectItem& item : m_block.items) {
        if (item.expr->kind == ExprKind::Star)
            addStar(as<Star>(*item.expr));
        else
            addItem(item);
    }
}

void SelectList::addOutput(Value value, OutputColumn column, std::string_view alias) {
    constexpr std::size_t MostColumns = 2000; // the engine's
    constexpr int TooManyColumns = 1792;
    if (m_columns.size() == MostColumns)
        raise(TooManyColumns, m_block.at.begin);
    if (m_block.distinct)
        requireComparable(value.type.type);
    column.type = value.type;
    column.nullable = value.nullable || !value.column;
    column.declaredNotNull = value.declaredNotNull && !column.nullable;
    m_columns.push_back(std::move(column));
    m_aliases.push_back({alias, value});
    m_values.push_back(std::move(value));
}

void SelectList::addItem(const SelectItem& item) {
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

bool SelectList::qualifies(const Source& source, const Star& star) {
    const auto& parts = star.qualifier;
    if (parts.empty())
        return true;
    return !source.common && source.label == parts.back().text &&
           (parts.size() < 2 || source.owner == parts[parts.size() - 2].text);
}

void SelectList::noteStar(const Star& star, const Source& source, std::size_t column) {
    if (!m_binding.starColumns)
        return;
    const bool alone = source.common || !star.qualifier.empty() || m_scope.sources.size() == 1;
    (*m_binding.starColumns)[&star].push_back(
        alone ? displayPath(source.columns[column].name)
              : displayPath(source.label, source.columns[column].name));
}

void SelectList::addStar(const Star& star) {
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

void SelectList::addStarColumn(int source, int column) {
    const Source& from = m_scope.sources[static_cast<std::size_t>(source)];
    const std::string_view name = from.columns[static_cast<std::size_t>(column)].name;
    constexpr int AmbiguousColumn = 918;
    const bool derived = from.rowid.empty(); // a stored table has each name once
    if (derived && std::count_if(from.columns.begin(), from.columns.end(),
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

// The number of the select item that an ORDER BY item names by its place or its alias.
std::optional<std::size_t> SelectList::placeOf(const Expr& expr) const {
    constexpr int NoSuchPlace = 1785;
    if (expr.kind == ExprKind::Number) {
        const std::string_view text = as<Literal>(expr).text;
        const bool whole = text.find_first_not_of("0123456789") == std::string_view::npos;
        if (!whole)
            return std::nullopt;
        constexpr std::size_t LongestPlace = 6;
        const std::size_t place = text.size() > LongestPlace ? 0 : std::stoul(std::string(text));
        if (place < 1 || place > m_values.size())
            raise(NoSuchPlace, expr.at.begin);
        return place - 1;
    }
    if (expr.kind != ExprKind::Column || as<ColumnRef>(expr).parts.size() != 1)
        return std::nullopt;
    const std::string_view name = as<ColumnRef>(expr).parts[0].text;
    for (std::size_t i = 0; i < m_aliases.size(); ++i)
        if (!m_aliases[i].name.empty() && m_aliases[i].name == name)
            return i;
    return onlyColumnNamed(name);
}

// A name that several tables have is still clear where one of them is selected.
std::optional<std::size_t> SelectList::onlyColumnNamed(std::string_view name) const {
    std::optional<std::size_t> place;
    for (std::size_t i = 0; i < m_columns.size(); ++i) {
        if (!m_columns[i].named || m_columns[i].name != name)
            continue;
        if (place)
            return std::nullopt;
        place = i;
    }
    return place;
}

std::optional<std::size_t> SelectList::sameAsItem(const std::string& sql) const {
    for (std::size_t i = 0; i < m_values.size(); ++i)
        if (m_values[i].sql == sql)
            return i;
    return std::nullopt;
}

void SelectList::bindOrder(std::span<const OrderItem> items, bool hidden) {
    constexpr int NotSelected = 1791;
    m_scope.aliases = &m_aliases;
    for (const OrderItem& item : items) {
        std::optional<std::size_t> place = placeOf(*item.expr);
        Value value = place ? m_values[*place] : bindValue(m_binding, m_scope, *item.expr);
        requireComparable(value.type.type);
        if (!place)
            place = sameAsItem(value.sql);
        if (m_block.distinct && !place && item.expr->kind != ExprKind::Number)
            raise(NotSelected, item.expr->at.begin);
        addOrderTerm(item, value, place, hidden);
    }
    m_scope.aliases = nullptr;
}

void SelectList::addOrderTerm(const OrderItem& item, const Value& value,
                              std::optional<std::size_t> place, bool hidden) {
    const std::string sorted = sortedBy(m_binding, value);
    if (hidden) {
        m_hidden.push_back(sorted);
        m_hiddenTerms.push_back(orderTerm("q.o" + std::to_string(m_hidden.size()), true, item));
        return;
    }
    const bool byPlace = place && sorted == value.sql;
    m_order.push_back(
        orderTerm(byPlace ? std::to_string(*place + 1) : sorted, value.nullable, item));
}

std::string SelectList::text() const {
    std::string sql = m_block.distinct ? "SELECT DISTINCT " : "SELECT ";
    for (std::size_t i = 0; i < m_values.size(); ++i)
        sql += (i > 0 ? "," : "") + m_values[i].sql + " AS c" + std::to_string(i + 1);
    for (std::size_t i = 0; i < m_hidden.size(); ++i)
        sql += "," + m_hidden[i] + " AS o" + std::to_string(i + 1);
    return sql;
}

void SelectList::addHidden(std::string sql, std::string_view suffix) {
    m_hidden.push_back(std::move(sql));
    m_hiddenTerms.push_back("q.o" + std::to_string(m_hidden.size()) + std::string(suffix));
}

} // namespace ora
