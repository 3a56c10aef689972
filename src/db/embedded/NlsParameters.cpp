#include "NlsParameters.h"

#include "AsciiText.h"
#include "OraError.h"
#include "Territory.h"

namespace ora {

void throwNlsParameters() {
    throw OraError(12702, "invalid NLS parameter string used in SQL function");
}

std::pair<std::string, std::string> takeNlsParameter(std::string_view& text) {
    const auto equals = text.find('=');
    if (equals == std::string_view::npos)
        throwNlsParameters();
    std::string name = upperAscii(trimmedAscii(text.substr(0, equals)));
    std::string_view rest = trimmedAscii(text.substr(equals + 1));
    const bool quoted = rest.starts_with('\'');
    if (quoted)
        rest.remove_prefix(1);
    const auto end = quoted ? rest.find('\'') : rest.find(" NLS_");
    if (quoted && end == std::string_view::npos)
        throwNlsParameters();
    std::string value(rest.substr(0, end));
    text = end == std::string_view::npos ? std::string_view() : trimmedAscii(rest.substr(end + 1));
    return {std::move(name), std::move(value)};
}

bool NumberSymbols::setMarks(std::string_view marks) {
    if (marks.size() != 2 || marks[0] == marks[1])
        return false;
    decimal = marks.substr(0, 1);
    group = marks.substr(1, 1);
    return true;
}

NumberSymbols NumberSymbols::withParameters(std::string_view parameters) const {
    NumberSymbols symbols = *this;
    for (parameters = trimmedAscii(parameters); !parameters.empty();) {
        const auto [name, value] = takeNlsParameter(parameters);
        if (name == "NLS_NUMERIC_CHARACTERS") {
            if (!symbols.setMarks(value))
                throwNlsParameters();
        } else if (name == "NLS_CURRENCY") {
            symbols.currency = value;
        } else if (name == "NLS_DUAL_CURRENCY") {
            symbols.dualCurrency = value;
        } else if (name == "NLS_ISO_CURRENCY") {
            if (const Territory* const territory = findTerritory(value))
                symbols.isoCurrency = territory->isoCurrency;
        } else {
            throwNlsParameters();
        }
    }
    return symbols;
}

DateLocale withDateParameters(DateLocale locale, std::string_view parameters) {
    for (parameters = trimmedAscii(parameters); !parameters.empty();) {
        const auto [name, value] = takeNlsParameter(parameters);
        const DateLanguage* const language = findDateLanguage(value);
        if (name == "NLS_DATE_LANGUAGE" && language)
            locale.language = language;
        else if (name != "NLS_CALENDAR" && name != "NLS_NUMERIC_CHARACTERS")
            throwNlsParameters();
    }
    return locale;
}

} // namespace ora
