#pragma once

#include "Binding.h"

#include <optional>

namespace ora {

// A condition on ROWNUM alone as the engine's LIMIT: how many rows come before the first one that
// fails, for no later one can pass. Nothing for conditions that cannot be told this way.
std::optional<std::string> rowNumberLimit(Binding& binding, Scope& scope, const Expr& condition);

// The least of several limits.
std::string leastLimit(const std::vector<std::string>& limits);

// A count of rows as the engine's integer, never below 0.
std::string rowCount(Binding& binding, Scope& scope, const Expr& count);

} // namespace ora
