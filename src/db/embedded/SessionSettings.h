#pragma once

#include "Functions.h"

#include <optional>
#include <string>
#include <string_view>

namespace ora {

// ALTER SESSION SET name = value, where it changes what statements mean; other parameters are left
// alone. Throws 2248 for what is none, 2096 for one of the whole server, 12705, 1882 and the like
// for a value that the server refuses.
void applySetting(FunctionContext& session, std::string_view name, std::string_view value);

// The value of an NLS parameter, whose name may be in any case; absent when there is none of that
// name.
std::optional<std::string> nlsSetting(const FunctionContext& session, std::string_view name);

} // namespace ora
