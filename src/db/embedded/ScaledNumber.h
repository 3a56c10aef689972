#pragma once

#include <cstddef>
#include <cstdint>

namespace ora {

// A NUMBER of at most nine base-100 digits as mantissa x 100^exponent: the short way through
// arithmetic, for values that fit 64 bits. Reads and writes stored bytes (see OracleNumber).
struct ScaledNumber {
    static constexpr int MostDigits = 9; // below 10^18; two such can be added
    static constexpr int MostBytes = 12;
    static constexpr int Base = 100;
    static constexpr int PositiveBias = 193; // of the exponent byte
    static constexpr int NegativeBias = 62;  // 255 - PositiveBias
    static constexpr int PositiveDigit = 1;
    static constexpr int NegativeDigit = 101;
    static constexpr std::uint8_t Zero = 128;
    static constexpr std::uint8_t NegativeEnd = 102;
    static constexpr int MinExponent = -65; // of a first digit
    static constexpr int MaxExponent = 62;

    std::int64_t mantissa = 0;
    int exponent = 0; // of the last digit
    int digits = 0;

    // False when there are more digits.
    bool read(const std::uint8_t* bytes, std::size_t size);
    // The bytes used; 0 when the number is too large. Too small a number is zero.
    std::size_t write(std::uint8_t* out) const;

    // False when the result might not fit; digits of the result is not set.
    static bool add(const ScaledNumber& a, const ScaledNumber& b, ScaledNumber& sum);
    static bool multiply(const ScaledNumber& a, const ScaledNumber& b, ScaledNumber& product);
    ScaledNumber negated() const { return {-mantissa, exponent, digits}; }
};

inline bool ScaledNumber::read(const std::uint8_t* bytes, std::size_t size) {
    if (size == 0 || bytes[0] == Zero) {
        // Zero, or a positive number so small that its exponent byte is zero's.
        *this = {};
        return size <= 1;
    }
    if (bytes[0] > Zero) {
        if (size > MostDigits + 1)
            return false;
        std::int64_t value = 0;
        for (std::size_t i = 1; i < size; ++i)
            value = value * Base + (bytes[i] - PositiveDigit);
        digits = static_cast<int>(size) - 1;
        mantissa = value;
        exponent = bytes[0] - PositiveBias - digits + 1;
        return true;
    }
    if (size > 1 && bytes[size - 1] == NegativeEnd)
        --size;
    if (size > MostDigits + 1)
        return false;
    std::int64_t value = 0;
    for (std::size_t i = 1; i < size; ++i)
        value = value * Base + (NegativeDigit - bytes[i]);
    digits = static_cast<int>(size) - 1;
    mantissa = -value;
    exponent = NegativeBias - bytes[0] - digits + 1;
    return true;
}

inline std::size_t ScaledNumber::write(std::uint8_t* out) const {
    if (mantissa == 0) {
        out[0] = Zero;
        return 1;
    }
    const bool negative = mantissa < 0;
    auto rest = static_cast<std::uint64_t>(negative ? -mantissa : mantissa);
    int lowest = exponent;
    while (rest % Base == 0) {
        rest /= Base;
        ++lowest;
    }
    constexpr int Room = 10; // digits of a 64-bit integer
    std::uint8_t digit[Room];
    int first = Room;
    while (rest != 0) {
        const std::uint64_t next = rest / Base;
        digit[--first] = static_cast<std::uint8_t>(rest - next * Base);
        rest = next;
    }
    const int top = lowest + Room - first - 1;
    if (top < MinExponent) {
        out[0] = Zero;
        return 1;
    }
    if (top > MaxExponent)
        return 0;
    std::uint8_t* at = out;
    *at++ = static_cast<std::uint8_t>(negative ? NegativeBias - top : PositiveBias + top);
    if (!negative) {
        for (int i = first; i < Room; ++i)
            *at++ = static_cast<std::uint8_t>(digit[i] + PositiveDigit);
        return static_cast<std::size_t>(at - out);
    }
    for (int i = first; i < Room; ++i)
        *at++ = static_cast<std::uint8_t>(NegativeDigit - digit[i]);
    *at++ = NegativeEnd;
    return static_cast<std::size_t>(at - out);
}

inline bool ScaledNumber::add(const ScaledNumber& a, const ScaledNumber& b, ScaledNumber& sum) {
    constexpr std::int64_t powers[] = {
        1,           100,           10000,           1000000,           100000000,
        10000000000, 1000000000000, 100000000000000, 10000000000000000, 1000000000000000000};
    const int shift = a.exponent - b.exponent;
    if (shift >= 0) {
        if (shift + a.digits > MostDigits)
            return false;
        sum.mantissa = a.mantissa * powers[shift] + b.mantissa;
        sum.exponent = b.exponent;
        return true;
    }
    if (b.digits - shift > MostDigits)
        return false;
    sum.mantissa = a.mantissa + b.mantissa * powers[-shift];
    sum.exponent = a.exponent;
    return true;
}

inline bool ScaledNumber::multiply(const ScaledNumber& a, const ScaledNumber& b,
                                   ScaledNumber& product) {
    if (a.digits + b.digits > MostDigits)
        return false;
    product.mantissa = a.mantissa * b.mantissa;
    product.exponent = a.exponent + b.exponent;
    return true;
}

} // namespace ora
