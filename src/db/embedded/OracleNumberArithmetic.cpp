#include "OracleNumber.h"

#include "OraError.h"
#include "WideDecimal.h"

namespace ora {

OracleNumber operator+(const OracleNumber& a, const OracleNumber& b) {
    ScaledNumber x, y, sum;
    if (x.read(a.data(), a.size()) && y.read(b.data(), b.size()) && ScaledNumber::add(x, y, sum))
        return OracleNumber::fromScaled(sum);
    return (WideDecimal(a) + WideDecimal(b)).toNumber();
}

OracleNumber operator-(const OracleNumber& a, const OracleNumber& b) {
    ScaledNumber x, y, sum;
    if (x.read(a.data(), a.size()) && y.read(b.data(), b.size()) &&
        ScaledNumber::add(x, y.negated(), sum))
        return OracleNumber::fromScaled(sum);
    return (WideDecimal(a) - WideDecimal(b)).toNumber();
}

OracleNumber operator*(const OracleNumber& a, const OracleNumber& b) {
    ScaledNumber x, y, product;
    if (x.read(a.data(), a.size()) && y.read(b.data(), b.size()) &&
        ScaledNumber::multiply(x, y, product))
        return OracleNumber::fromScaled(product);
    return (WideDecimal(a) * WideDecimal(b)).toNumber();
}

OracleNumber operator/(const OracleNumber& a, const OracleNumber& b) {
    if (b.isZero())
        throw OraError(1476, "divisor is equal to zero");
    return (WideDecimal(a) / WideDecimal(b)).toNumber();
}

} // namespace ora
