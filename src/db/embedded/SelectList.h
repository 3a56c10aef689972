#pragma once

#include "Binding.h"

namespace ora {

// What a block selects and what it is sorted by.
class SelectList {
public:
    SelectList(Binding& binding, Scope& scope, const QueryBlock& block)
        : m_binding(binding)
        , m_scope(scope)
        , m_block(block) {}

    void bindItems();
    // hidden: the values to sort by become columns o1, o2 … instead.
    void bindOrder(std::span<const OrderItem> items, bool hidden);
    // A column to sort by that no item names. suffix: " NULLS LAST".
    void addHidden(std::string sql, std::string_view suffix);

    // "SELECT DISTINCT … AS c1,…"
    std::string text() const;
    const std::vector<OutputColumn>& columns() const { return m_columns; }
    // The terms of ORDER BY.
    const std::vector<std::string>& order() const { return m_order; }
    // The terms that sort the hidden columns, "q.o1 DESC".
    const std::vector<std::string>& hiddenTerms() const { return m_hiddenTerms; }

private:
    void addOutput(Value value, OutputColumn column, std::string_view alias);
    void addItem(const SelectItem& item);
    static bool qualifies(const Source& source, const Star& star);
    void noteStar(const Star& star, const Source& source, std::size_t column);
    void addStar(const Star& star);
    void addStarColumn(int source, int column);
    std::optional<std::size_t> placeOf(const Expr& expr) const;
    std::optional<std::size_t> onlyColumnNamed(std::string_view name) const;
    std::optional<std::size_t> sameAsItem(const std::string& sql) const;
    void addOrderTerm(const OrderItem& item, const Value& value, std::optional<std::size_t> place,
                      bool hidden);

    Binding& m_binding;
    Scope& m_scope;
    const QueryBlock& m_block;
    std::vector<OutputColumn> m_columns;
    std::vector<Value> m_values;
    std::vector<AliasedValue> m_aliases;
    std::vector<std::string> m_order;
    std::vector<std::string> m_hidden;
    std::vector<std::string> m_hiddenTerms;
};

} // namespace ora
