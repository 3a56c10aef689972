#include "OuterJoins.h"

#include "Binding.h"

#include <algorithm>

namespace ora {

std::vector<std::string> takeUnjoined(std::vector<OuterCondition>& conditions) {
    std::uint64_t joined = 0;
    for (const OuterCondition& condition : conditions)
        if (condition.others != 0)
            joined |= std::uint64_t(1) << condition.table;
    std::vector<std::string> taken;
    std::erase_if(conditions, [&](OuterCondition& condition) {
        const bool alone = ((joined >> condition.table) & 1) == 0;
        if (alone)
            taken.push_back(std::move(condition.sql));
        return alone;
    });
    return taken;
}

std::string OuterJoins::from() {
    std::vector<bool> marked(m_tables.size());
    for (const OuterCondition& condition : m_conditions)
        marked[condition.table] = true;
    std::string sql;
    for (std::size_t i = 0; i < m_tables.size(); ++i)
        if (!marked[i])
            place(i, sql, sql.empty() ? "" : ",");
    for (std::size_t left = m_conditions.empty() ? 0 : m_tables.size(); left > 0; --left)
        placeNext(marked, sql);
    return sql;
}

void OuterJoins::place(std::size_t table, std::string& sql, std::string_view before) {
    sql += before;
    sql += m_tables[table];
    m_placed |= std::uint64_t(1) << table;
}

bool OuterJoins::isPlaced(std::size_t table) const {
    return (m_placed >> table) & 1;
}

void OuterJoins::placeNext(const std::vector<bool>& marked, std::string& sql) {
    constexpr int OuterJoinedToEachOther = 1416;
    bool waiting = false;
    for (std::size_t i = 0; i < m_tables.size(); ++i) {
        if (!marked[i] || isPlaced(i))
            continue;
        waiting = true;
        if (!ready(i))
            continue;
        place(i, sql, sql.empty() ? "" : " LEFT JOIN ");
        sql += " ON " + joinedConditions(conditionsOf(i), "AND");
        return;
    }
    if (waiting)
        throw OraError(OuterJoinedToEachOther, "two tables cannot be outer-joined to each other");
}

bool OuterJoins::ready(std::size_t table) const {
    return m_placed != 0 && std::all_of(m_conditions.begin(), m_conditions.end(),
                                        [&](const OuterCondition& condition) {
                                            return condition.table != table ||
                                                   (condition.others & ~m_placed) == 0;
                                        });
}

std::vector<std::string> OuterJoins::conditionsOf(std::size_t table) const {
    std::vector<std::string> conditions;
    for (const OuterCondition& condition : m_conditions)
        if (condition.table == table)
            conditions.push_back(condition.sql);
    return conditions;
}

} // namespace ora
