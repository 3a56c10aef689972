#include "Binding.h"
#include "ErrorText.h"
#include "LateralTable.h"

#include <deque>

namespace ora {

namespace {

// The blocks around as the query sees them that is run on its own: their columns are parameters.
class OuterBlocks {
public:
    explicit OuterBlocks(Scope& innermost) {
        for (Scope* block = &innermost; block; block = block->outer) {
            Scope& copy = m_copies.emplace_back(nullptr);
            copy.sources = block->sources;
            copy.original = block;
            copy.outerValues = &m_values;
        }
        for (std::size_t i = 1; i < m_copies.size(); ++i)
            m_copies[i - 1].outer = &m_copies[i];
    }

    Scope& innermost() { return m_copies.front(); }
    const std::vector<std::string>& values() const { return m_values.values(); }

private:
    std::deque<Scope> m_copies;
    OuterValues m_values;
};

// The query runs on its own and brings the queries of WITH along that it may name.
std::string withNamedQueries(const Binding& binding, const std::string& sql) {
    std::vector<std::string> items;
    for (const NamedQuery& query : binding.namedQueries)
        if (!query.item.empty())
            items.push_back(query.item);
    if (items.empty())
        return sql;
    return "WITH RECURSIVE " + joined(items, ",") + " SELECT * FROM (" + sql + ')';
}

} // namespace

LateralRows bindLateralRows(Binding& binding, Scope& scope, const Query& query) {
    OuterBlocks blocks(scope);
    const bool hoists = binding.hoists;
    binding.hoists = false;
    BoundQuery bound = bindQuery(binding, query, &blocks.innermost());
    binding.hoists = hoists;
    if (bound.columns.size() > LateralTable::MostColumns)
        refuse("more columns than " + std::to_string(LateralTable::MostColumns) +
               " of a lateral inline view");
    if (blocks.values().size() > LateralTable::MostParameters)
        refuse("more outer columns than " + std::to_string(LateralTable::MostParameters) +
               " in a lateral inline view");
    for (OutputColumn& column : bound.columns)
        column.nullable = true;
    std::vector<std::string> arguments{textLiteral(withNamedQueries(binding, bound.sql))};
    arguments.insert(arguments.end(), blocks.values().begin(), blocks.values().end());
    return {call(LateralTable::Name, arguments), std::move(bound.columns)};
}

} // namespace ora
