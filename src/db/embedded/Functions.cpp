#include "Functions.h"

#include "AsciiText.h"
#include "FunctionCall.h"

namespace ora {

void registerFunctions(sqlite3* database, FunctionContext& context) {
    registerNumberFunctions(database, context);
    registerTextFunctions(database, context);
    registerTextShapeFunctions(database, context);
    registerRegexpFunctions(database, context);
    registerDateFunctions(database, context);
    registerZoneFunctions(database, context);
    registerIntervalFunctions(database, context);
    registerConversionFunctions(database, context);
    registerTolerantConversions(database, context);
    registerColumnFunctions(database, context);
    registerValueFunctions(database, context);
    registerPackageFunctions(database, context);
    registerSessionFunctions(database, context);
    registerSumFunctions(database);
    registerStatisticsFunctions(database);
    registerListAggregates(database);
    registerOrderedAggregates(database);
    registerKeepAggregates(database);
    registerWindowFunctions(database, context);
}

std::optional<OraError> errorFrom(std::string_view message) {
    constexpr std::string_view Prefix = "ORA-";
    constexpr std::size_t CodeDigits = 5;
    constexpr std::size_t TextStart = Prefix.size() + CodeDigits + 2;
    if (!message.starts_with(Prefix) || message.size() < TextStart)
        return std::nullopt;
    int code = 0;
    for (const char c : message.substr(Prefix.size(), CodeDigits)) {
        if (!isAsciiDigit(c))
            return std::nullopt;
        code = code * 10 + (c - '0');
    }
    return OraError(code, std::string(message.substr(TextStart)));
}

} // namespace ora
