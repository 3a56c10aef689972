#include "OracleNumber.h"

#include "OraError.h"

#include <algorithm>
#include <cstring>
#include <limits>

namespace ora {

namespace {

constexpr int PositiveBias = ScaledNumber::PositiveBias;
constexpr int NegativeBias = ScaledNumber::NegativeBias;
constexpr int PositiveDigit = ScaledNumber::PositiveDigit;
constexpr int NegativeDigit = ScaledNumber::NegativeDigit;
constexpr std::uint8_t NegativeEnd = ScaledNumber::NegativeEnd;
constexpr int Base = ScaledNumber::Base;

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
        *this = fromScaled({value / Base, 1}) + fromScaled({value % Base, 0});
        return;
    }
    *this = fromScaled({value, 0});
}

OracleNumber OracleNumber::fromBytes(const void* bytes, std::size_t size) {
    OracleNumber number;
    const auto* in = static_cast<const std::uint8_t*>(bytes);
    // A first digit of 1 to 99 is stored as 2 to 100 under either sign; without one it is zero.
    if (size < 2 || in[1] < 2 || in[1] > Base)
        return number;
    number.m_size = static_cast<std::uint8_t>(std::min<std::size_t>(size, MaxBytes));
    std::memcpy(number.m_bytes.data(), in, number.m_size);
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
            result.digit[i - 1] = clampedDigit(NegativeDigit - m_bytes[i]);
    } else {
        result.exponent = m_bytes[0] - PositiveBias;
        for (int i = 1; i < end; ++i)
            result.digit[i - 1] = clampedDigit(m_bytes[i] - PositiveDigit);
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
            *out++ = static_cast<std::uint8_t>(NegativeDigit - number.digit[i]);
        if (number.count < MaxDigits)
            *out++ = NegativeEnd;
    } else {
        *out++ = static_cast<std::uint8_t>(PositiveBias + number.exponent);
        for (int i = 0; i < number.count; ++i)
            *out++ = static_cast<std::uint8_t>(number.digit[i] + PositiveDigit);
    }
    result.m_size = static_cast<std::uint8_t>(out - result.m_bytes.data());
    return result;
}

OracleNumber OracleNumber::fromScaled(const ScaledNumber& number) {
    OracleNumber result;
    static_assert(ScaledNumber::MostBytes <= MaxBytes);
    result.m_size = static_cast<std::uint8_t>(number.write(result.m_bytes.data()));
    if (result.m_size == 0)
        throwOverflow();
    return result;
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
