#pragma once

#include <string_view>

namespace ora {

// What NLS_TERRITORY decides unless the session sets it on its own.
struct Territory {
    std::string_view name;
    std::string_view dateFormat;
    std::string_view timeFormat;        // behind the date in timestamps, without the zone
    std::string_view numericCharacters; // decimal mark and group mark
    std::string_view currency;
    std::string_view isoCurrency;
    std::string_view dualCurrency;
    int firstWeekday; // 0 is Sunday
};

const Territory& americanTerritory();
// In any case; null when there is no such territory.
const Territory* findTerritory(std::string_view name);

// The territory that a language brings along.
std::string_view territoryOfLanguage(std::string_view language);

} // namespace ora
