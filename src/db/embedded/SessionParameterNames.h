#pragma once

#include <string_view>

namespace ora {

// A name, in any case, that ALTER SESSION SET takes and that changes nothing here. Throws 2248 for
// what is no parameter and 2096 for one of the whole server. Source: the parameters that the
// server's reference calls modifiable by ALTER SESSION.
void requireSessionParameter(std::string_view name);

} // namespace ora
