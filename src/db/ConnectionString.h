#pragma once

#include "Provider.h"

// Reads "Key=value;Key=value": keys ignore case and the blanks around them, the first of equals
// wins. Values are taken as they stand, without quoting, so a value that holds ";" ends there.
DataSource parseConnectionString(const QString& text);
