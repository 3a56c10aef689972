#pragma once

#include "FunctionTable.h"

namespace ora {

// The whole table; overloads of one name stand together.
std::span<const FunctionEntry> functionRows();

} // namespace ora
