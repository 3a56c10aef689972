#include "Definitions.h"

#include <algorithm>

namespace ora {

namespace {

template<typename Range, typename Matches>
auto* findIn(Range& range, Matches matches) {
    const auto found = std::find_if(range.begin(), range.end(), matches);
    return found == range.end() ? nullptr : &*found;
}

} // namespace

ColumnDefinition* TableDefinition::column(const std::string& columnName) {
    return findIn(columns, [&](const auto& column) { return column.name == columnName; });
}

const ColumnDefinition* TableDefinition::column(const std::string& columnName) const {
    return findIn(columns, [&](const auto& column) { return column.name == columnName; });
}

const ColumnDefinition* TableDefinition::columnNumbered(int number) const {
    return findIn(columns, [&](const auto& column) { return column.number == number; });
}

ConstraintDefinition* TableDefinition::constraint(const std::string& constraintName) {
    return findIn(constraints, [&](const auto& entry) { return entry.name == constraintName; });
}

const ConstraintDefinition* TableDefinition::primaryKey() const {
    return findIn(constraints, [](const auto& entry) {
        return entry.kind == ConstraintDefinition::Kind::PrimaryKey;
    });
}

} // namespace ora
