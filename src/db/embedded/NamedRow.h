#pragma once

#include <algorithm>
#include <iterator>
#include <memory>
#include <span>
#include <string_view>
#include <type_traits>

namespace ora {

// The row of a table whose `name` is the one given, as it stands there; null when none is.
template<typename Rows>
constexpr auto* findNamed(const Rows& rows, std::string_view name) {
    const auto row = std::find_if(std::begin(rows), std::end(rows), [name](const auto& one) {
        return std::string_view(one.name) == name;
    });
    using Row = std::remove_reference_t<decltype(*row)>;
    return row == std::end(rows) ? static_cast<Row*>(nullptr) : std::addressof(*row);
}

constexpr bool isOneOf(std::string_view name, std::span<const std::string_view> names) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

} // namespace ora
