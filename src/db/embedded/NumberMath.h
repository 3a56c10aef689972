#pragma once

#include "OracleNumber.h"

// Functions of NUMBERs. All are computed with about 90 digits and rounded once, so their results
// are right to the last digit a NUMBER holds. Sine, cosine and tangent take arguments below 1E40.
//
// An argument outside a function's domain throws 1428 ("argument '-1' is out of range"), a result
// that is too large 1426.
namespace ora::math {

OracleNumber squareRoot(const OracleNumber& x);
OracleNumber power(const OracleNumber& base, const OracleNumber& exponent);
OracleNumber exp(const OracleNumber& x);
OracleNumber ln(const OracleNumber& x);
OracleNumber log(const OracleNumber& base, const OracleNumber& x);

OracleNumber sin(const OracleNumber& x);
OracleNumber cos(const OracleNumber& x);
OracleNumber tan(const OracleNumber& x);
OracleNumber asin(const OracleNumber& x);
OracleNumber acos(const OracleNumber& x);
OracleNumber atan(const OracleNumber& x);
OracleNumber atan2(const OracleNumber& y, const OracleNumber& x);
OracleNumber sinh(const OracleNumber& x);
OracleNumber cosh(const OracleNumber& x);
OracleNumber tanh(const OracleNumber& x);

// The sign of the dividend; MOD(a, 0) is a.
OracleNumber modulo(const OracleNumber& a, const OracleNumber& b);
// a - b x (a / b rounded to the nearest whole number, halves to even); REMAINDER(a, 0) throws 1428.
OracleNumber remainder(const OracleNumber& a, const OracleNumber& b);

} // namespace ora::math
