#include "FunctionCall.h"

#include "NumberMath.h"
#include "OraError.h"

#include <algorithm>

#include <cmath>
#include <limits>

namespace ora {

namespace {

// The operators run once a row and more, so they have their own entry without the general
// dispatch, and small values stay in a register from the stored bytes to the result's.

using Shortcut = bool (*)(const ScaledNumber&, const ScaledNumber&, ScaledNumber&);

bool readStored(sqlite3_value* value, ScaledNumber& number) {
    const auto* bytes = static_cast<const std::uint8_t*>(sqlite3_value_blob(value));
    return number.read(bytes, static_cast<std::size_t>(sqlite3_value_bytes(value)));
}

bool areStored(sqlite3_value** values) {
    return sqlite3_value_type(values[0]) == SQLITE_BLOB &&
           sqlite3_value_type(values[1]) == SQLITE_BLOB;
}

// False when the long way has to be taken.
template<Shortcut shortcut>
bool resultByShortcut(sqlite3_context* context, sqlite3_value** values) {
    ScaledNumber a, b, result;
    if (!areStored(values) || !readStored(values[0], a) || !readStored(values[1], b) ||
        !shortcut(a, b, result))
        return false;
    std::uint8_t bytes[ScaledNumber::MostBytes];
    const std::size_t size = result.write(bytes);
    if (size > 0)
        sqlite3_result_blob(context, bytes, static_cast<int>(size), SQLITE_TRANSIENT);
    return size > 0;
}

bool noShortcut(const ScaledNumber&, const ScaledNumber&, ScaledNumber&) {
    return false;
}

bool shortSubtract(const ScaledNumber& a, const ScaledNumber& b, ScaledNumber& result) {
    return ScaledNumber::add(a, b.negated(), result);
}

template<Shortcut shortcut, OracleNumber (*Operation)(const OracleNumber&, const OracleNumber&)>
void binaryOperator(sqlite3_context* context, int count, sqlite3_value** values) {
    if (resultByShortcut<shortcut>(context, values))
        return;
    guarded(context, [&] {
        Call call(context, count, values);
        if (call.anyNull())
            return call.resultNull();
        call.result(Operation(call.number(0), call.number(1)));
    });
}

OracleNumber add(const OracleNumber& a, const OracleNumber& b) {
    return a + b;
}

OracleNumber subtract(const OracleNumber& a, const OracleNumber& b) {
    return a - b;
}

OracleNumber multiply(const OracleNumber& a, const OracleNumber& b) {
    return a * b;
}

OracleNumber divide(const OracleNumber& a, const OracleNumber& b) {
    return a / b;
}

struct OperatorRow {
    const char* name;
    void (*function)(sqlite3_context*, int, sqlite3_value**);
};

constexpr OperatorRow operators[] = {{"num_add", binaryOperator<ScaledNumber::add, add>},
                                     {"num_sub", binaryOperator<shortSubtract, subtract>},
                                     {"num_mul", binaryOperator<ScaledNumber::multiply, multiply>},
                                     {"num_div", binaryOperator<noShortcut, divide>}};

template<OracleNumber (*Function)(const OracleNumber&)>
void unary(Call& call) {
    call.result(Function(call.number(0)));
}

template<OracleNumber (*Function)(const OracleNumber&, const OracleNumber&)>
void binary(Call& call) {
    call.result(Function(call.number(0), call.number(1)));
}

int places(Call& call) {
    constexpr std::int64_t Most = 200;
    return static_cast<int>(std::clamp(call.integer(1, 0), -Most, Most));
}

void bitAnd(Call& call) {
    const auto a = call.number(0).truncated(0).exactInteger();
    const auto b = call.number(1).truncated(0).exactInteger();
    if (!a || !b)
        throw OraError(1426, "numeric overflow");
    call.result(OracleNumber(*a & *b));
}

void widthBucket(Call& call) {
    const OracleNumber value = call.number(0);
    const OracleNumber low = call.number(1);
    const OracleNumber high = call.number(2);
    const OracleNumber buckets = call.number(3).truncated(0);
    if (buckets.sign() <= 0)
        throw OraError(30494, "The argument [4] of WIDTH_BUCKET function is NULL or invalid.");
    if (low == high)
        throw OraError(30492, "One of the arguments of WIDTH_BUCKET function is NULL or invalid.");
    const bool rising = low < high;
    if (rising ? value < low : value > low)
        return call.result(OracleNumber());
    if (rising ? value >= high : value <= high)
        return call.result(buckets + OracleNumber(1));
    const OracleNumber share = (value - low) * buckets / (high - low);
    call.result(share.floor() + OracleNumber(1));
}

void nanvl(Call& call) {
    call.result(call.real(std::isnan(call.real(0)) ? 1 : 0));
}

template<double (*Operation)(double, double)>
void doubleOperator(Call& call) {
    call.result(Operation(call.real(0), call.real(1)));
}

// A place or distance among rows.
template<int Least>
void integerFrom(Call& call) {
    const std::int64_t value = call.integer(0);
    if (value < Least)
        throw OraError(1428, "argument '" + call.number(0).text() + "' is out of range");
    call.resultInteger(value);
}

double addDoubles(double a, double b) {
    return a + b;
}

double subtractDoubles(double a, double b) {
    return a - b;
}

double multiplyDoubles(double a, double b) {
    return a * b;
}

double divideDoubles(double a, double b) {
    return a / b;
}

constexpr ScalarRow rows[] = {
    {"num_neg", 1, [](Call& c) { c.result(c.number(0).negated()); }},
    {"num_from_int", 1, [](Call& c) { c.result(OracleNumber(sqlite3_value_int64(c.value(0)))); }},
    {"num_from_real", 1, [](Call& c) { c.result(OracleNumber::fromDouble(c.real(0))); }},
    {"num_int", 1, [](Call& c) { c.resultInteger(c.integer(0)); }},
    {"num_distance", 1, integerFrom<0>},
    {"num_place", 1, integerFrom<1>},
    {"double_add", 2, doubleOperator<addDoubles>},
    {"double_sub", 2, doubleOperator<subtractDoubles>},
    {"double_mul", 2, doubleOperator<multiplyDoubles>},
    {"double_div", 2, doubleOperator<divideDoubles>},
    {"double_neg", 1, [](Call& c) { c.result(-c.real(0)); }},

    {"ora_abs", 1, [](Call& c) { c.result(c.number(0).absolute()); }},
    {"ora_sign", 1, [](Call& c) { c.result(OracleNumber(c.number(0).sign())); }},
    {"ora_ceil", 1, [](Call& c) { c.result(c.number(0).ceiling()); }},
    {"ora_floor", 1, [](Call& c) { c.result(c.number(0).floor()); }},
    {"ora_round", -1, [](Call& c) { c.result(c.number(0).rounded(places(c))); }},
    {"ora_trunc", -1, [](Call& c) { c.result(c.number(0).truncated(places(c))); }},
    {"ora_mod", 2, binary<math::modulo>},
    {"ora_remainder", 2, binary<math::remainder>},
    {"ora_power", 2, binary<math::power>},
    {"ora_sqrt", 1, unary<math::squareRoot>},
    {"ora_exp", 1, unary<math::exp>},
    {"ora_ln", 1, unary<math::ln>},
    {"ora_log", 2, binary<math::log>},
    {"ora_sin", 1, unary<math::sin>},
    {"ora_cos", 1, unary<math::cos>},
    {"ora_tan", 1, unary<math::tan>},
    {"ora_asin", 1, unary<math::asin>},
    {"ora_acos", 1, unary<math::acos>},
    {"ora_atan", 1, unary<math::atan>},
    {"ora_atan2", 2, binary<math::atan2>},
    {"ora_sinh", 1, unary<math::sinh>},
    {"ora_cosh", 1, unary<math::cosh>},
    {"ora_tanh", 1, unary<math::tanh>},
    {"ora_bitand", 2, bitAnd},
    {"ora_width_bucket", 4, widthBucket},
    {"ora_nanvl", 2, nanvl},
    {"ora_is_nan", 1, [](Call& c) { c.resultCondition(std::isnan(c.real(0))); }},
    {"ora_is_infinite", 1, [](Call& c) { c.resultCondition(std::isinf(c.real(0))); }},
    {"ora_nan", 0, [](Call& c) { c.result(std::numeric_limits<double>::quiet_NaN()); }},
    {"ora_infinity", 0, [](Call& c) { c.result(std::numeric_limits<double>::infinity()); }},
};

} // namespace

void registerNumberFunctions(sqlite3* database, FunctionContext& context) {
    for (const OperatorRow& row : operators)
        sqlite3_create_function_v2(database, row.name, 2,
                                   SQLITE_UTF8 | SQLITE_INNOCUOUS | SQLITE_DETERMINISTIC, nullptr,
                                   row.function, nullptr, nullptr, nullptr);
    registerScalars(database, rows, context);
}

} // namespace ora
