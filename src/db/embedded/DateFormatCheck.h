#pragma once

#include "DateFormat.h"

#include <span>

namespace ora {

// Whether a model can read a date: throws 1820 for elements that only print, 1810 for one that
// stands twice, 1812 to 1818 for two that say the same thing.
void checkInputModel(std::span<const DateFormat::Item> items);

} // namespace ora
