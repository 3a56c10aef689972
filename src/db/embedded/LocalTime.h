#pragma once

#include "OracleDate.h"

namespace ora {

// Now, by this machine's clock and time zone, to the microsecond.
OracleDate localNow();

} // namespace ora
