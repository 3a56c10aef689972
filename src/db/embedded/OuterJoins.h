#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace ora {

// A condition of WHERE that names a table with (+).
struct OuterCondition {
    std::string sql;
    std::size_t table;    // the marked one
    std::uint64_t others; // the rest
};

// Takes the conditions of tables that are joined to none: (+) means nothing there.
std::vector<std::string> takeUnjoined(std::vector<OuterCondition>& conditions);

// Orders the tables so that each marked one comes after those that its conditions name.
class OuterJoins {
public:
    OuterJoins(std::vector<std::string> tables, std::vector<OuterCondition> conditions)
        : m_tables(std::move(tables))
        , m_conditions(std::move(conditions)) {}

    // The tables as the engine joins them. Throws 1416.
    std::string from();

private:
    void place(std::size_t table, std::string& sql, std::string_view before);
    bool isPlaced(std::size_t table) const;
    void placeNext(const std::vector<bool>& marked, std::string& sql);
    bool ready(std::size_t table) const;
    std::vector<std::string> conditionsOf(std::size_t table) const;

    std::vector<std::string> m_tables;
    std::vector<OuterCondition> m_conditions;
    std::uint64_t m_placed = 0;
};

} // namespace ora
