#include "OracleNumber.h"

#include "OraError.h"
#include "WideDecimal.h"

namespace ora {

namespace {

constexpr int SafeDigits = 9; // base-100 digits whose product or aligned sum fits 64 bits

constexpr std::int64_t powersOfBase[] = {
    1,           100,           10000,           1000000,           100000000,
    10000000000, 1000000000000, 100000000000000, 10000000000000000, 1000000000000000000};

} // namespace

OracleNumber operator+(const OracleNumber& a, const OracleNumber& b) {
    std::int64_t x = 0, y = 0;
    int xExponent = 0, yExponent = 0, xDigits = 0, yDigits = 0;
    if (a.toScaled(x, xExponent, xDigits) && b.toScaled(y, yExponent, yDigits)) {
        const int shift = xExponent - yExponent;
        if (shift >= 0 && shift + xDigits <= SafeDigits)
            return OracleNumber::fromScaled(x * powersOfBase[shift] + y, yExponent);
        if (shift < 0 && yDigits - shift <= SafeDigits)
            return OracleNumber::fromScaled(x + y * powersOfBase[-shift], xExponent);
    }
    return (WideDecimal(a) + WideDecimal(b)).toNumber();
}

OracleNumber operator-(const OracleNumber& a, const OracleNumber& b) {
    std::int64_t x = 0, y = 0;
    int xExponent = 0, yExponent = 0, xDigits = 0, yDigits = 0;
    if (a.toScaled(x, xExponent, xDigits) && b.toScaled(y, yExponent, yDigits)) {
        const int shift = xExponent - yExponent;
        if (shift >= 0 && shift + xDigits <= SafeDigits)
            return OracleNumber::fromScaled(x * powersOfBase[shift] - y, yExponent);
        if (shift < 0 && yDigits - shift <= SafeDigits)
            return OracleNumber::fromScaled(x - y * powersOfBase[-shift], xExponent);
    }
    return (WideDecimal(a) - WideDecimal(b)).toNumber();
}

OracleNumber operator*(const OracleNumber& a, const OracleNumber& b) {
    std::int64_t x = 0, y = 0;
    int xExponent = 0, yExponent = 0, xDigits = 0, yDigits = 0;
    if (a.toScaled(x, xExponent, xDigits) && b.toScaled(y, yExponent, yDigits) &&
        xDigits + yDigits <= SafeDigits)
        return OracleNumber::fromScaled(x * y, xExponent + yExponent);
    return (WideDecimal(a) * WideDecimal(b)).toNumber();
}

OracleNumber operator/(const OracleNumber& a, const OracleNumber& b) {
    if (b.isZero())
        throw OraError(1476, "divisor is equal to zero");
    return (WideDecimal(a) / WideDecimal(b)).toNumber();
}

} // namespace ora
