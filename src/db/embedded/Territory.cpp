#include "Territory.h"

#include "AsciiText.h"
#include "NamedRow.h"

namespace ora {

namespace {

constexpr int Sunday = 0;
constexpr int Monday = 1;
constexpr std::string_view hours24 = "HH24:MI:SSXFF";

constexpr Territory territories[] = {
    {"AMERICA", "DD-MON-RR", "HH.MI.SSXFF AM", ".,", "$", "USD", "$", Sunday},
    {"UNITED KINGDOM", "DD-MON-RR", "HH24.MI.SSXFF", ".,", "£", "GBP", "€", Monday},
    {"GERMANY", "DD.MM.RR", hours24, ",.", "€", "EUR", "€", Monday},
    {"AUSTRIA", "DD.MM.RR", hours24, ",.", "€", "EUR", "€", Monday},
    {"SWITZERLAND", "DD.MM.RR", hours24, ".'", "SFr.", "CHF", "SF", Monday},
    {"FRANCE", "DD/MM/RR", hours24, ", ", "€", "EUR", "€", Monday},
    {"BELGIUM", "DD/MM/RR", hours24, ",.", "€", "EUR", "€", Monday},
    {"SPAIN", "DD/MM/RR", hours24, ",.", "€", "EUR", "€", Monday},
    {"ITALY", "DD-MON-RR", hours24, ",.", "€", "EUR", "€", Monday},
    {"PORTUGAL", "RR.MM.DD", hours24, ",.", "€", "EUR", "€", Monday},
    {"THE NETHERLANDS", "DD-MM-RR", hours24, ",.", "€", "EUR", "€", Monday},
    {"DENMARK", "RR-MM-DD", hours24, ",.", "kr", "DKK", "€", Monday},
    {"SWEDEN", "RRRR-MM-DD", hours24, ",.", "Kr", "SEK", "€", Monday},
    {"BRAZIL", "DD/MM/RR", hours24, ",.", "R$", "BRL", "Cr$", Sunday},
    {"CANADA", "RR-MM-DD", "HH.MI.SSXFF AM", ".,", "$", "CAD", "$", Sunday},
    {"INDIA", "DD-MM-RR", "HH12:MI:SSXFF AM", ".,", "Rs", "INR", "Rs", Sunday},
    {"AUSTRALIA", "DD/MON/RR", "HH12:MI:SSXFF AM", ".,", "$", "AUD", "$", Sunday},
};

struct Home {
    std::string_view name; // of the language
    std::string_view territory;
};
constexpr Home homes[] = {
    {"AMERICAN", "AMERICA"},    {"ENGLISH", "UNITED KINGDOM"},
    {"FRENCH", "FRANCE"},       {"CANADIAN FRENCH", "CANADA"},
    {"GERMAN", "GERMANY"},      {"SPANISH", "SPAIN"},
    {"ITALIAN", "ITALY"},       {"DUTCH", "THE NETHERLANDS"},
    {"PORTUGUESE", "PORTUGAL"}, {"BRAZILIAN PORTUGUESE", "BRAZIL"},
    {"SWEDISH", "SWEDEN"},      {"DANISH", "DENMARK"},
};

} // namespace

const Territory& americanTerritory() {
    return territories[0];
}

const Territory* findTerritory(std::string_view name) {
    return findNamed(territories, upperAscii(trimmedAscii(name)));
}

std::string_view territoryOfLanguage(std::string_view language) {
    const Home* const home = findNamed(homes, language);
    return home ? home->territory : americanTerritory().name;
}

} // namespace ora
