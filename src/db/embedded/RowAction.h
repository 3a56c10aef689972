#pragma once

namespace ora {

// What a statement does to a row, or what a trigger fires on.
enum class RowAction { Insert, Update, Delete };

} // namespace ora
