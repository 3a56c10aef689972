#include "SessionSettings.h"

#include "AsciiText.h"
#include "DateFormat.h"
#include "NamedRow.h"
#include "SessionParameterNames.h"
#include "SortOrder.h"
#include "Territory.h"

namespace ora {

namespace {

[[noreturn]] void throwNoData() {
    throw OraError(12705, "Cannot access NLS data files or invalid environment specified");
}

const Territory& requiredTerritory(std::string_view name) {
    const Territory* const territory = findTerritory(name);
    if (!territory)
        throwNoData();
    return *territory;
}

void setDateLanguage(FunctionContext& session, std::string_view value) {
    const DateLanguage* const language = findDateLanguage(value);
    if (!language)
        throwNoData();
    session.dates.language = language;
}

void setNumericCharacters(FunctionContext& session, std::string_view value) {
    if (!session.symbols.setMarks(value))
        throwNoData();
    session.dates.radix = value[0];
}

void setTerritory(FunctionContext& session, std::string_view value) {
    const Territory& territory = requiredTerritory(value);
    session.territory = session.isoCurrency = territory.name;
    session.dateFormat = territory.dateFormat;
    session.timestampFormat =
        std::string(territory.dateFormat) + ' ' + std::string(territory.timeFormat);
    session.timestampTzFormat = session.timestampFormat + " TZR";
    session.symbols.currency = territory.currency;
    session.symbols.isoCurrency = territory.isoCurrency;
    session.symbols.dualCurrency = territory.dualCurrency;
    session.dates.firstWeekday = territory.firstWeekday;
    setNumericCharacters(session, territory.numericCharacters);
}

void setSort(FunctionContext& session, std::string_view value) {
    const auto order = SortOrder::find(value);
    if (!order)
        throwNoData();
    session.sort = order->name();
}

void setLanguage(FunctionContext& session, std::string_view value) {
    setDateLanguage(session, value);
    session.language = upperAscii(trimmedAscii(value));
    setSort(session, session.dates.language->sort);
}

void setIsoCurrency(FunctionContext& session, std::string_view value) {
    const Territory& territory = requiredTerritory(value);
    session.isoCurrency = territory.name;
    session.symbols.isoCurrency = territory.isoCurrency;
}

void setTimeZone(FunctionContext& session, std::string_view value) {
    const std::string upper = upperAscii(value);
    if (upper == "LOCAL")
        session.zone = systemZone();
    else if (upper == "DBTIMEZONE")
        session.zone = TimeZone();
    else
        session.zone = TimeZone::parse(value);
}

// The model is read now, so that a wrong one is told at once.
template<std::string FunctionContext::*Field>
void setFormat(FunctionContext& session, std::string_view value) {
    (void)DateFormat::parse(value);
    session.*Field = value;
}

std::string requiredWord(std::string_view value, std::span<const std::string_view> known) {
    const std::string word = upperAscii(trimmedAscii(value));
    if (!isOneOf(word, known))
        throwNoData();
    return word;
}

void setComparison(FunctionContext& session, std::string_view value) {
    constexpr std::string_view words[] = {"BINARY", "LINGUISTIC", "ANSI"};
    session.comparison = requiredWord(value, words);
}

void setLengthSemantics(FunctionContext& session, std::string_view value) {
    constexpr std::string_view words[] = {"BYTE", "CHAR"};
    session.lengthSemantics = requiredWord(value, words);
}

template<std::string NumberSymbols::*Field>
void setSymbol(FunctionContext& session, std::string_view value) {
    session.symbols.*Field = value;
}

template<std::string FunctionContext::*Field>
std::string field(const FunctionContext& session) {
    return session.*Field;
}

using Context = const FunctionContext&;

struct Setting {
    std::string_view name;
    void (*apply)(FunctionContext&, std::string_view); // null: it changes nothing
    std::string (*value)(Context);                     // null: no NLS parameter
};

constexpr Setting settings[] = {
    {"NLS_LANGUAGE", setLanguage, field<&FunctionContext::language>},
    {"NLS_TERRITORY", setTerritory, field<&FunctionContext::territory>},
    {"NLS_CURRENCY", setSymbol<&NumberSymbols::currency>,
     [](Context session) { return session.symbols.currency; }},
    {"NLS_ISO_CURRENCY", setIsoCurrency, field<&FunctionContext::isoCurrency>},
    {"NLS_DUAL_CURRENCY", setSymbol<&NumberSymbols::dualCurrency>,
     [](Context session) { return session.symbols.dualCurrency; }},
    {"NLS_NUMERIC_CHARACTERS", setNumericCharacters,
     [](Context session) { return session.symbols.decimal + session.symbols.group; }},
    {"NLS_CALENDAR", nullptr, [](Context) { return std::string("GREGORIAN"); }},
    {"NLS_DATE_FORMAT", setFormat<&FunctionContext::dateFormat>,
     field<&FunctionContext::dateFormat>},
    {"NLS_DATE_LANGUAGE", setDateLanguage,
     [](Context session) { return std::string(session.dates.language->name); }},
    {"NLS_SORT", setSort, field<&FunctionContext::sort>},
    {"NLS_COMP", setComparison, field<&FunctionContext::comparison>},
    {"NLS_TIME_FORMAT", nullptr, [](Context) { return std::string("HH.MI.SSXFF AM"); }},
    {"NLS_TIMESTAMP_FORMAT", setFormat<&FunctionContext::timestampFormat>,
     field<&FunctionContext::timestampFormat>},
    {"NLS_TIME_TZ_FORMAT", nullptr, [](Context) { return std::string("HH.MI.SSXFF AM TZR"); }},
    {"NLS_TIMESTAMP_TZ_FORMAT", setFormat<&FunctionContext::timestampTzFormat>,
     field<&FunctionContext::timestampTzFormat>},
    {"NLS_LENGTH_SEMANTICS", setLengthSemantics, field<&FunctionContext::lengthSemantics>},
    {"NLS_NCHAR_CONV_EXCP", nullptr, [](Context) { return std::string("FALSE"); }},
    {"TIME_ZONE", setTimeZone, nullptr},
};

const Setting* findSetting(std::string_view name) {
    return findNamed(settings, upperAscii(name));
}

} // namespace

void applySetting(FunctionContext& session, std::string_view name, std::string_view value) {
    const Setting* const setting = findSetting(name);
    if (!setting)
        return requireSessionParameter(name);
    if (setting->apply)
        setting->apply(session, value);
}

std::optional<std::string> nlsSetting(const FunctionContext& session, std::string_view name) {
    const Setting* const setting = findSetting(name);
    if (!setting || !setting->value)
        return std::nullopt;
    return setting->value(session);
}

} // namespace ora
