#pragma once

#include "ScaledNumber.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace ora {

// The server's NUMBER: decimal, 20 base-100 digits (39 or 40 decimal ones), 1E-130 to below 1E126.
//
// The value is kept as it is stored: an exponent byte and the digits, so that memcmp of two values'
// bytes is their order and equal values have equal bytes. Zero is 80 (hexadecimal); a positive
// number is 193 + base-100 exponent, then each digit + 1; a negative one has the complemented
// exponent, digits as 101 - digit, and 102 at the end when there is room. No trailing zero digits.
//
// Arithmetic rounds half away from zero to 20 base-100 digits; throws OraError 1426 (numeric
// overflow) and 1476 (divisor is equal to zero); a result nearer to zero than 1E-130 is zero.
class OracleNumber {
public:
    static constexpr int MaxDigits = 20; // base 100
    static constexpr int MaxBytes = MaxDigits + 1;
    static constexpr int MaxTextSize = 180; // of cell text, its sign and point included
    static constexpr int MinExponent = ScaledNumber::MinExponent; // base 100, of the first digit
    static constexpr int MaxExponent = ScaledNumber::MaxExponent;

    OracleNumber() { m_bytes[0] = ZeroByte; }
    OracleNumber(std::int64_t value);

    // A stored value. Bytes that no NUMBER has (a damaged file) give some number, never a crash.
    static OracleNumber fromBytes(const void* bytes, std::size_t size);
    // The fewest digits that give the double back. Throws 1426 for infinities and NaN.
    static OracleNumber fromDouble(double value);
    // Digits with an optional sign, point and exponent, blanks around it; nullopt when the text is
    // anything else. Throws 1426 when it is too large.
    static std::optional<OracleNumber> parse(std::string_view text);

    const std::uint8_t* data() const { return m_bytes.data(); }
    std::size_t size() const { return m_size; }
    std::string_view bytes() const {
        return {reinterpret_cast<const char*>(m_bytes.data()), m_size};
    }

    bool isZero() const { return m_bytes[0] == ZeroByte && m_size == 1; }
    bool isNegative() const { return m_bytes[0] < ZeroByte; }
    bool isInteger() const;
    int sign() const { return isZero() ? 0 : isNegative() ? -1 : 1; }

    // Cut towards zero; what does not fit becomes the nearest 64-bit integer.
    std::int64_t toInteger() const;
    // Nullopt unless it is a whole number that fits.
    std::optional<std::int64_t> exactInteger() const;
    double toDouble() const;

    // Plain digits without exponent, "0.5", "-1200". `out` has MaxTextSize bytes; returns the
    // length, writes no terminator.
    std::size_t writeCell(char* out) const;
    std::string cellText() const;
    // As the server converts to text: ".5", and 35 digits with an exponent, "1.0…0E+40", where the
    // plain form needs more than 40 characters.
    std::string text() const;

    OracleNumber negated() const;
    OracleNumber absolute() const { return isNegative() ? negated() : *this; }

    // places: decimal digits after the point, negative for before it.
    OracleNumber rounded(int places) const;
    OracleNumber truncated(int places) const;
    OracleNumber ceiling() const;
    OracleNumber floor() const;

    // A value for a NUMBER(precision, scale) column: rounded to the scale; throws 1438 when it then
    // has more than precision - scale digits before the point. precision 0: any.
    OracleNumber fitted(int precision, int scale) const;

    friend bool operator==(const OracleNumber& a, const OracleNumber& b) {
        return a.bytes() == b.bytes();
    }
    friend bool operator<(const OracleNumber& a, const OracleNumber& b) {
        return a.bytes() < b.bytes();
    }
    friend bool operator>(const OracleNumber& a, const OracleNumber& b) { return b < a; }
    friend bool operator<=(const OracleNumber& a, const OracleNumber& b) { return !(b < a); }
    friend bool operator>=(const OracleNumber& a, const OracleNumber& b) { return !(a < b); }

    friend OracleNumber operator+(const OracleNumber& a, const OracleNumber& b);
    friend OracleNumber operator-(const OracleNumber& a, const OracleNumber& b);
    friend OracleNumber operator*(const OracleNumber& a, const OracleNumber& b);
    friend OracleNumber operator/(const OracleNumber& a, const OracleNumber& b);
    OracleNumber operator-() const { return negated(); }

    // The base-100 digits, most significant first, none for zero; the first has weight
    // 100^exponent.
    struct Digits {
        bool negative = false;
        int exponent = 0;
        int count = 0;
        std::array<std::uint8_t, MaxDigits + 1> digit; // one more for rounding
    };
    Digits digits() const;
    // Rounds to MaxDigits, strips zeros at both ends.
    static OracleNumber fromDigits(Digits digits);

private:
    static constexpr std::uint8_t ZeroByte = ScaledNumber::Zero;

    static OracleNumber fromScaled(const ScaledNumber& number);

    std::array<std::uint8_t, MaxBytes> m_bytes;
    std::uint8_t m_size = 1;
};

} // namespace ora
