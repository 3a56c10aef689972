#pragma once

#include "OracleNumber.h"

#include <array>
#include <cstdint>

namespace ora {

// A decimal number of up to 96 digits, for the steps between two NUMBERs: sums and products of two
// are exact, quotients and series carry more digits than the result is rounded to. Results are cut,
// not rounded, after the last limb.
class WideDecimal {
public:
    static constexpr int Limbs = 12;
    static constexpr std::uint32_t Base = 100000000; // four base-100 digits

    WideDecimal() = default;
    WideDecimal(std::int64_t value);
    explicit WideDecimal(const OracleNumber& value);
    // Digits and one point, no sign, no exponent; for constants.
    static WideDecimal fromText(const char* text);
    static WideDecimal fromDouble(double value);

    // Rounded half away from zero; throws 1426.
    OracleNumber toNumber() const;
    double toDouble() const;

    bool isZero() const { return m_count == 0; }
    bool isNegative() const { return m_negative; }
    // value lies in [Base^exponent, Base^(exponent + 1))
    int exponent() const { return m_exponent; }

    WideDecimal negated() const;
    WideDecimal absolute() const;
    WideDecimal wholePart() const;
    // times 10^power
    WideDecimal scaled(int power) const;

    friend WideDecimal operator+(const WideDecimal& a, const WideDecimal& b);
    friend WideDecimal operator-(const WideDecimal& a, const WideDecimal& b);
    friend WideDecimal operator*(const WideDecimal& a, const WideDecimal& b);
    // The divisor is not zero.
    friend WideDecimal operator/(const WideDecimal& a, const WideDecimal& b);
    friend WideDecimal operator/(const WideDecimal& a, std::uint32_t divisor);

    // -1, 0, 1
    static int compare(const WideDecimal& a, const WideDecimal& b);

private:
    static int compareMagnitude(const WideDecimal& a, const WideDecimal& b);
    static WideDecimal addMagnitude(const WideDecimal& a, const WideDecimal& b);
    static WideDecimal subtractMagnitude(const WideDecimal& larger, const WideDecimal& smaller);
    void normalize();

    bool m_negative = false;
    int m_exponent = 0; // of the first limb, in powers of Base
    int m_count = 0;
    std::array<std::uint32_t, Limbs> m_limb{}; // most significant first; zeros past m_count
};

} // namespace ora
