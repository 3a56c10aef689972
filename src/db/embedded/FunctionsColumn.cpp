#include "FunctionCall.h"

#include "OraError.h"
#include "Utf8.h"

#include <algorithm>
#include <cmath>

namespace ora {

namespace {

// Values on their way into a column or through CAST: fitted to its declared type.

std::int64_t nativeInteger(Call& call, std::size_t index) {
    return sqlite3_value_int64(call.value(index));
}

void numberFit(Call& call) {
    call.result(call.number(0).fitted(static_cast<int>(nativeInteger(call, 1)),
                                      static_cast<int>(nativeInteger(call, 2))));
}

// A FLOAT counts its digits in bits.
void numberFloat(Call& call) {
    constexpr double DecimalsPerBit = 0.30103;
    constexpr int Ten = 10;
    const OracleNumber number = call.number(0);
    const OracleNumber::Digits parts = number.digits();
    if (parts.count == 0)
        return call.result(number);
    const auto digits =
        static_cast<int>(std::ceil(static_cast<double>(nativeInteger(call, 1)) * DecimalsPerBit));
    const int leading = 2 * parts.exponent + (parts.digit[0] >= Ten ? 1 : 0);
    call.result(number.rounded(digits - 1 - leading));
}

std::string blankPadded(std::string_view text, std::int64_t missing) {
    std::string result(text);
    if (missing > 0)
        result.append(static_cast<std::size_t>(missing), ' ');
    return result;
}

void textFit(Call& call) {
    const std::string_view text = call.text(0);
    const std::int64_t most = nativeInteger(call, 1);
    const bool inBytes = call.text(2) == "B";
    const auto actual = static_cast<std::int64_t>(inBytes ? text.size() : utf8::length(text));
    if (actual > most)
        throw OraError(12899, "value too large for column " + std::string(call.text(4)) +
                                  " (actual: " + std::to_string(actual) +
                                  ", maximum: " + std::to_string(most) + ")");
    const bool padded = nativeInteger(call, 3) != 0;
    call.resultText(padded ? blankPadded(text, most - actual) : std::string(text));
}

void textCast(Call& call) {
    const std::string_view text = call.text(0);
    const auto most = static_cast<std::size_t>(std::max<std::int64_t>(nativeInteger(call, 1), 1));
    const std::string_view cut = text.substr(0, utf8::offsetOf(text, most));
    if (nativeInteger(call, 2) == 0)
        return call.resultText(cut);
    const auto missing = static_cast<std::int64_t>(most - utf8::length(cut));
    call.resultText(blankPadded(cut, missing));
}

// Other values are not cut where they do not fit.
void valueCast(Call& call) {
    if (static_cast<std::int64_t>(utf8::length(call.text(0))) > nativeInteger(call, 1))
        throw OraError(25137, "Data value out of range");
    textCast(call);
}

constexpr ScalarRow rows[] = {
    {"num_fit", 3, numberFit},  {"num_float", 2, numberFloat}, {"text_fit", 5, textFit},
    {"text_cast", 3, textCast}, {"value_cast", 3, valueCast},
};

} // namespace

void registerColumnFunctions(sqlite3* database, FunctionContext& context) {
    registerScalars(database, rows, context);
}

} // namespace ora
