#include "FunctionCall.h"

#include "NamedRow.h"
#include "OraError.h"

// Conversions whose failure is a value: DEFAULT … ON CONVERSION ERROR and VALIDATE_CONVERSION. Both
// take the name of the conversion that they try as their last argument.
namespace ora {

namespace {

using Body = void (*)(Call&);

Body bodyNamed(std::string_view name) {
    for (const auto rows : {conversionRows(), intervalRows()})
        if (const ScalarRow* const row = findNamed(rows, name))
            return row->body;
    throw OraError(43918, "This argument must be a literal");
}

Body bodyOf(Call& call) {
    const std::size_t last = call.count() - 1;
    return *call.cached<Body>(last, [&] { return bodyNamed(call.text(last)); });
}

// (arguments …, default, conversion)
void convertOr(Call& call) {
    constexpr std::size_t Extra = 2;
    if (call.isNull(0))
        return call.resultNull();
    const Body body = bodyOf(call);
    Call conversion = call.without(Extra);
    try {
        body(conversion);
    } catch (const OraError&) {
        call.resultValue(call.value(call.count() - Extra));
    }
}

// (arguments …, conversion): 1 or 0
void converts(Call& call) {
    const Body body = bodyOf(call);
    Call conversion = call.without(1);
    bool valid = true;
    try {
        if (!call.isNull(0))
            body(conversion);
    } catch (const OraError&) {
        valid = false;
    }
    call.result(OracleNumber(valid ? 1 : 0));
}

constexpr ScalarRow rows[] = {
    {"convert_or", -1, convertOr, Nulls::Handled},
    {"converts", -1, converts, Nulls::Handled},
};

} // namespace

void registerTolerantConversions(sqlite3* database, FunctionContext& context) {
    registerScalars(database, rows, context);
}

} // namespace ora
