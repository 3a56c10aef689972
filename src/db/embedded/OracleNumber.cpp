#include "OracleNumber.h"

#include "OraError.h"

#include <algorithm>
#include <cstring>
#include <limits>

namespace ora {

namespace {

constexpr int ExponentBias = 193; // of positive numbers
constexpr int NegativeBias = 62;  // 255 - ExponentBias
constexpr int PositiveDigitBias = 1;
constexpr int NegativeDigitBias = 101;
constexpr std::uint8_t NegativeEnd = 102;
constexpr int Base = 100;

std::uint8_t clampedDigit(int digit) {
    return static_cast<std::uint8_t>(std::clamp(digit, 0, Base - 1));
}

[[noreturn]] void throwOverflow() {
    throw OraError(1426, "numeric overflow");
}

} // namespace

OracleNumber::OracleNumber(std::int64_t value) {
    m_bytes[0] = ZeroByte;
    // The most negative integer has no positive counterpart; it takes the long way.
    if (value == std::numeric_limits<std::int64_t>::min()) {
        *this = fromScaled(value / Base, 1) + fromScaled(value % Base, 0);
        return;
    }
    *this = fromScaled(value, 0);
}

OracleNumber OracleNumber::fromBytes(const void* bytes, std::size_t size) {
    OracleNumber number;
    if (size == 0)
        return number;
    number.m_size = static_cast<std::uint8_t>(std::min<std::size_t>(size, MaxBytes));
    std::memcpy(number.m_bytes.data(), bytes, number.m_size);
    return number;
}

OracleNumber::Digits OracleNumber::digits() const {
    Digits result;
    result.negative = isNegative();
    if (isZero())
        return result;
    int end = m_size;
    if (result.negative) {
        result.exponent = NegativeBias - m_bytes[0];
        if (end > 1 && m_bytes[end - 1] == NegativeEnd)
            --end;
        for (int i = 1; i < end; ++i)
            result.digit[i - 1] = clampedDigit(NegativeDigitBias - m_bytes[i]);
    } else {
        result.exponent = m_bytes[0] - ExponentBias;
        for (int i = 1; i < end; ++i)
            result.digit[i - 1] = clampedDigit(m_bytes[i] - PositiveDigitBias);
    }
    result.count = end - 1;
    return result;
}

namespace {

// Adds one to the last of `count` digits; a carry out of the first one makes the number 1 with the
// next exponent.
void incrementLast(OracleNumber::Digits& number) {
    int at = number.count - 1;
    while (at >= 0 && number.digit[at] == Base - 1)
        number.digit[at--] = 0;
    if (at >= 0) {
        ++number.digit[at];
        return;
    }
    number.digit[0] = 1;
    number.count = 1;
    ++number.exponent;
}

void stripLeadingZeros(OracleNumber::Digits& number) {
    int zeros = 0;
    while (zeros < number.count && number.digit[zeros] == 0)
        ++zeros;
    if (zeros == 0)
        return;
    std::copy(number.digit.begin() + zeros, number.digit.begin() + number.count,
              number.digit.begin());
    number.count -= zeros;
    number.exponent -= zeros;
}

} // namespace

OracleNumber OracleNumber::fromDigits(Digits number) {
    stripLeadingZeros(number);
    if (number.count > MaxDigits) {
        const bool up = number.digit[MaxDigits] >= Base / 2;
        number.count = MaxDigits;
        if (up)
            incrementLast(number);
    }
    while (number.count > 0 && number.digit[number.count - 1] == 0)
        --number.count;
    OracleNumber result;
    if (number.count == 0 || number.exponent < MinExponent)
        return result;
    if (number.exponent > MaxExponent)
        throwOverflow();
    std::uint8_t* out = result.m_bytes.data();
    if (number.negative) {
        *out++ = static_cast<std::uint8_t>(NegativeBias - number.exponent);
        for (int i = 0; i < number.count; ++i)
            *out++ = static_cast<std::uint8_t>(NegativeDigitBias - number.digit[i]);
        if (number.count < MaxDigits)
            *out++ = NegativeEnd;
    } else {
        *out++ = static_cast<std::uint8_t>(ExponentBias + number.exponent);
        for (int i = 0; i < number.count; ++i)
            *out++ = static_cast<std::uint8_t>(number.digit[i] + PositiveDigitBias);
    }
    result.m_size = static_cast<std::uint8_t>(out - result.m_bytes.data());
    return result;
}

// mantissa x 100^exponent, the fast way of all small results.
OracleNumber OracleNumber::fromScaled(std::int64_t mantissa, int exponent) {
    OracleNumber result;
    if (mantissa == 0)
        return result;
    const bool negative = mantissa < 0;
    auto rest = static_cast<std::uint64_t>(negative ? -mantissa : mantissa);
    constexpr int MostDigits = 10; // of a 64-bit integer
    std::uint8_t digit[MostDigits];
    int first = MostDigits;
    while (rest != 0) {
        const std::uint64_t next = rest / Base;
        digit[--first] = static_cast<std::uint8_t>(rest - next * Base);
        rest = next;
    }
    int end = MostDigits;
    const int firstExponent = exponent + end - first - 1;
    while (digit[end - 1] == 0)
        --end;
    if (firstExponent < MinExponent)
        return result;
    if (firstExponent > MaxExponent)
        throwOverflow();
    std::uint8_t* out = result.m_bytes.data();
    if (negative) {
        *out++ = static_cast<std::uint8_t>(NegativeBias - firstExponent);
        for (int i = first; i < end; ++i)
            *out++ = static_cast<std::uint8_t>(NegativeDigitBias - digit[i]);
        *out++ = NegativeEnd;
    } else {
        *out++ = static_cast<std::uint8_t>(ExponentBias + firstExponent);
        for (int i = first; i < end; ++i)
            *out++ = static_cast<std::uint8_t>(digit[i] + PositiveDigitBias);
    }
    result.m_size = static_cast<std::uint8_t>(out - result.m_bytes.data());
    return result;
}

// False when there are more digits than a 64-bit integer surely holds.
bool OracleNumber::toScaled(std::int64_t& mantissa, int& exponent, int& digitCount) const {
    constexpr int SafeBytes = 10; // exponent and nine digits, below 10^18
    if (isZero()) {
        mantissa = 0;
        exponent = 0;
        digitCount = 0;
        return true;
    }
    if (!isNegative()) {
        if (m_size > SafeBytes)
            return false;
        std::int64_t value = 0;
        for (int i = 1; i < m_size; ++i)
            value = value * Base + (m_bytes[i] - PositiveDigitBias);
        mantissa = value;
        digitCount = m_size - 1;
        exponent = m_bytes[0] - ExponentBias - digitCount + 1;
        return true;
    }
    const bool ended = m_size > 1 && m_bytes[m_size - 1] == NegativeEnd;
    const int end = ended ? m_size - 1 : m_size;
    if (end > SafeBytes)
        return false;
    std::int64_t value = 0;
    for (int i = 1; i < end; ++i)
        value = value * Base + (NegativeDigitBias - m_bytes[i]);
    mantissa = -value;
    digitCount = end - 1;
    exponent = NegativeBias - m_bytes[0] - digitCount + 1;
    return true;
}

bool OracleNumber::isInteger() const {
    const Digits number = digits();
    return number.exponent - number.count + 1 >= 0;
}

std::int64_t OracleNumber::toInteger() const {
    const OracleNumber whole = truncated(0);
    if (const auto exact = whole.exactInteger())
        return *exact;
    return isNegative() ? std::numeric_limits<std::int64_t>::min()
                        : std::numeric_limits<std::int64_t>::max();
}

std::optional<std::int64_t> OracleNumber::exactInteger() const {
    const Digits number = digits();
    if (number.exponent - number.count + 1 < 0)
        return std::nullopt;
    constexpr int MostExponent = 9; // ten base-100 digits
    if (number.exponent > MostExponent)
        return std::nullopt;
    constexpr std::int64_t Limit = std::numeric_limits<std::int64_t>::min();
    std::int64_t value = 0; // built negative, which reaches one further
    for (int i = 0; i <= number.exponent && number.count > 0; ++i) {
        const int digit = i < number.count ? number.digit[i] : 0;
        if (value < Limit / Base || value * Base < Limit + digit)
            return std::nullopt;
        value = value * Base - digit;
    }
    if (number.negative)
        return value;
    if (value == Limit)
        return std::nullopt;
    return -value;
}

OracleNumber OracleNumber::negated() const {
    Digits number = digits();
    number.negative = !number.negative;
    return fromDigits(number);
}

namespace {

enum class Cut { HalfUp, Down };

int floorHalf(int value) {
    return value >= 0 ? value / 2 : -((1 - value) / 2);
}

// Cuts after `places` decimals. An odd number of places ends in the middle of a base-100 digit.
OracleNumber cutAt(OracleNumber::Digits number, int places, Cut cut) {
    const bool middle = (places & 1) != 0;
    const int keep = number.exponent + 1 + floorHalf(middle ? places + 1 : places);
    if (number.count == 0 || keep > number.count)
        return OracleNumber::fromDigits(number);
    if (keep < 0)
        return OracleNumber();
    if (keep == 0 && middle)
        return OracleNumber();
    constexpr int Tens = 10;
    bool up = false;
    int last = keep - 1;
    if (middle) {
        const int ones = number.digit[last] % Tens;
        number.digit[last] = static_cast<std::uint8_t>(number.digit[last] - ones);
        up = ones >= Tens / 2;
    } else {
        up = keep < number.count && number.digit[keep] >= Base / 2;
    }
    number.count = keep;
    if (cut == Cut::Down || !up)
        return OracleNumber::fromDigits(number);
    if (keep == 0) { // 0.5 and more rounds to one of the place before its first digit
        number.digit[0] = 1;
        number.count = 1;
        ++number.exponent;
        return OracleNumber::fromDigits(number);
    }
    if (middle && number.digit[last] < Base - Tens) {
        number.digit[last] = static_cast<std::uint8_t>(number.digit[last] + Tens);
        return OracleNumber::fromDigits(number);
    }
    if (middle)
        number.digit[last] = Base - 1; // the carry below makes it 0 and goes on
    incrementLast(number);
    return OracleNumber::fromDigits(number);
}

constexpr int MostPlaces = 200; // beyond any digit that a NUMBER has

} // namespace

OracleNumber OracleNumber::rounded(int places) const {
    return cutAt(digits(), std::clamp(places, -MostPlaces, MostPlaces), Cut::HalfUp);
}

OracleNumber OracleNumber::truncated(int places) const {
    return cutAt(digits(), std::clamp(places, -MostPlaces, MostPlaces), Cut::Down);
}

OracleNumber OracleNumber::floor() const {
    const OracleNumber whole = truncated(0);
    return isNegative() && whole != *this ? whole - OracleNumber(1) : whole;
}

OracleNumber OracleNumber::ceiling() const {
    const OracleNumber whole = truncated(0);
    return !isNegative() && whole != *this ? whole + OracleNumber(1) : whole;
}

OracleNumber OracleNumber::fitted(int precision, int scale) const {
    const OracleNumber value = rounded(scale);
    if (precision <= 0 || value.isZero())
        return value;
    const Digits number = value.digits();
    constexpr int Tens = 10;
    const int wholeDigits = 2 * number.exponent + (number.digit[0] >= Tens ? 2 : 1);
    if (wholeDigits > precision - scale)
        throw OraError(1438, "value larger than specified precision allowed for this column");
    return value;
}

} // namespace ora
