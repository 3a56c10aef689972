#include "WideDecimal.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <cstring>

namespace ora {

namespace {

constexpr int PairsPerLimb = 4;
constexpr int DigitsPerLimb = 8;
constexpr std::uint32_t PairBase = 100;
constexpr std::array<std::uint32_t, PairsPerLimb> pairWeight = {1000000, 10000, 100, 1};

int floorDivide(int value, int divisor) {
    return value >= 0 ? value / divisor : -((divisor - 1 - value) / divisor);
}

} // namespace

WideDecimal::WideDecimal(std::int64_t value)
    : m_negative(value < 0) {
    std::uint64_t rest =
        value < 0 ? ~static_cast<std::uint64_t>(value) + 1 : static_cast<std::uint64_t>(value);
    constexpr int MostLimbs = 3; // of a 64-bit integer
    m_count = MostLimbs;
    m_exponent = MostLimbs - 1;
    for (int i = MostLimbs - 1; i >= 0; --i) {
        m_limb[i] = static_cast<std::uint32_t>(rest % Base);
        rest /= Base;
    }
    normalize();
}

WideDecimal::WideDecimal(const OracleNumber& value) {
    const OracleNumber::Digits number = value.digits();
    m_negative = number.negative;
    m_exponent = floorDivide(number.exponent, PairsPerLimb);
    int pair = PairsPerLimb * (m_exponent + 1) - 1 - number.exponent; // place in the first limb
    for (int i = 0; i < number.count; ++i, ++pair)
        m_limb[pair / PairsPerLimb] += number.digit[i] * pairWeight[pair % PairsPerLimb];
    m_count = (pair + PairsPerLimb - 1) / PairsPerLimb;
    normalize();
}

WideDecimal WideDecimal::fromText(const char* text) {
    WideDecimal result;
    int decimals = 0;
    bool afterPoint = false;
    for (; *text != '\0'; ++text) {
        if (*text == '.') {
            afterPoint = true;
            continue;
        }
        result = result.scaled(1) + WideDecimal(*text - '0');
        decimals += afterPoint ? 1 : 0;
    }
    return result.scaled(-decimals);
}

WideDecimal WideDecimal::fromDouble(double value) {
    int exponent = 0;
    const double fraction = std::frexp(value, &exponent);
    constexpr int MantissaBits = 53;
    const WideDecimal mantissa(static_cast<std::int64_t>(std::ldexp(fraction, MantissaBits)));
    exponent -= MantissaBits;
    WideDecimal power(1);
    for (int i = 0; i < std::abs(exponent); ++i)
        power = exponent > 0 ? power + power : power / 2U;
    return mantissa * power;
}

void WideDecimal::normalize() {
    int zeros = 0;
    while (zeros < m_count && m_limb[zeros] == 0)
        ++zeros;
    if (zeros > 0) {
        std::copy(m_limb.begin() + zeros, m_limb.begin() + m_count, m_limb.begin());
        std::fill(m_limb.begin() + (m_count - zeros), m_limb.begin() + m_count, 0);
        m_count -= zeros;
        m_exponent -= zeros;
    }
    while (m_count > 0 && m_limb[m_count - 1] == 0)
        --m_count;
    if (m_count == 0) {
        m_negative = false;
        m_exponent = 0;
    }
}

OracleNumber WideDecimal::toNumber() const {
    OracleNumber::Digits number;
    number.negative = m_negative;
    number.exponent = PairsPerLimb * m_exponent + PairsPerLimb - 1;
    const int room = static_cast<int>(number.digit.size());
    bool started = false;
    for (int i = 0; i < m_count * PairsPerLimb && number.count < room; ++i) {
        const auto pair = static_cast<std::uint8_t>(m_limb[i / PairsPerLimb] /
                                                    pairWeight[i % PairsPerLimb] % PairBase);
        started = started || pair != 0;
        if (started)
            number.digit[number.count++] = pair;
        else
            --number.exponent;
    }
    return OracleNumber::fromDigits(number);
}

double WideDecimal::toDouble() const {
    double value = 0;
    constexpr int Enough = 4;
    for (int i = 0; i < std::min(m_count, Enough); ++i)
        value += m_limb[i] * std::pow(static_cast<double>(Base), m_exponent - i);
    return m_negative ? -value : value;
}

WideDecimal WideDecimal::negated() const {
    WideDecimal result = *this;
    result.m_negative = !m_negative && !isZero();
    return result;
}

WideDecimal WideDecimal::absolute() const {
    WideDecimal result = *this;
    result.m_negative = false;
    return result;
}

WideDecimal WideDecimal::wholePart() const {
    WideDecimal result = *this;
    const int keep = std::clamp(m_exponent + 1, 0, m_count);
    std::fill(result.m_limb.begin() + keep, result.m_limb.begin() + m_count, 0);
    result.m_count = keep;
    result.normalize();
    return result;
}

WideDecimal WideDecimal::scaled(int power) const {
    const int limbs = floorDivide(power, DigitsPerLimb);
    std::uint32_t factor = 1;
    for (int i = limbs * DigitsPerLimb; i < power; ++i)
        factor *= 10;
    WideDecimal result = factor == 1 ? *this : *this * WideDecimal(factor);
    if (!result.isZero())
        result.m_exponent += limbs;
    return result;
}

int WideDecimal::compareMagnitude(const WideDecimal& a, const WideDecimal& b) {
    if (a.isZero() || b.isZero())
        return (a.isZero() ? 0 : 1) - (b.isZero() ? 0 : 1);
    if (a.m_exponent != b.m_exponent)
        return a.m_exponent < b.m_exponent ? -1 : 1;
    for (int i = 0; i < Limbs; ++i) {
        if (a.m_limb[i] != b.m_limb[i])
            return a.m_limb[i] < b.m_limb[i] ? -1 : 1;
    }
    return 0;
}

int WideDecimal::compare(const WideDecimal& a, const WideDecimal& b) {
    if (a.m_negative != b.m_negative)
        return a.m_negative ? -1 : 1;
    const int magnitude = compareMagnitude(a, b);
    return a.m_negative ? -magnitude : magnitude;
}

// Both run over one limb more than a result holds, so that a borrow or a carry keeps all digits
// that matter; what lies below is cut.
WideDecimal WideDecimal::addMagnitude(const WideDecimal& a, const WideDecimal& b) {
    const WideDecimal& high = a.m_exponent >= b.m_exponent ? a : b;
    const WideDecimal& low = a.m_exponent >= b.m_exponent ? b : a;
    const int shift = high.m_exponent - low.m_exponent;
    std::array<std::uint32_t, Limbs + 1> sum{};
    std::uint32_t carry = 0;
    for (int i = Limbs - 1; i >= 0; --i) {
        const std::uint32_t other = i >= shift ? low.m_limb[i - shift] : 0;
        std::uint32_t digit = high.m_limb[i] + other + carry;
        carry = digit >= Base ? 1 : 0;
        sum[i + 1] = digit - carry * Base;
    }
    sum[0] = carry;
    WideDecimal result;
    result.m_count = Limbs;
    result.m_exponent = high.m_exponent + static_cast<int>(carry);
    std::copy_n(sum.begin() + (carry ? 0 : 1), Limbs, result.m_limb.begin());
    result.normalize();
    return result;
}

WideDecimal WideDecimal::subtractMagnitude(const WideDecimal& larger, const WideDecimal& smaller) {
    const int shift = larger.m_exponent - smaller.m_exponent;
    WideDecimal result;
    result.m_count = Limbs;
    result.m_exponent = larger.m_exponent;
    std::int64_t borrow = 0;
    for (int i = Limbs - 1; i >= 0; --i) {
        const std::int64_t other = i >= shift ? smaller.m_limb[i - shift] : 0;
        std::int64_t digit = static_cast<std::int64_t>(larger.m_limb[i]) - other - borrow;
        borrow = digit < 0 ? 1 : 0;
        result.m_limb[i] = static_cast<std::uint32_t>(digit + borrow * Base);
    }
    result.normalize();
    return result;
}

WideDecimal operator+(const WideDecimal& a, const WideDecimal& b) {
    if (a.isZero())
        return b;
    if (b.isZero())
        return a;
    WideDecimal result;
    if (a.m_negative == b.m_negative) {
        result = WideDecimal::addMagnitude(a, b);
        result.m_negative = a.m_negative;
        return result;
    }
    const int order = WideDecimal::compareMagnitude(a, b);
    if (order == 0)
        return result;
    const WideDecimal& larger = order > 0 ? a : b;
    result = WideDecimal::subtractMagnitude(larger, order > 0 ? b : a);
    result.m_negative = larger.m_negative && !result.isZero();
    return result;
}

WideDecimal operator-(const WideDecimal& a, const WideDecimal& b) {
    return a + b.negated();
}

WideDecimal operator*(const WideDecimal& a, const WideDecimal& b) {
    WideDecimal result;
    if (a.isZero() || b.isZero())
        return result;
    std::array<std::uint64_t, 2 * WideDecimal::Limbs> column{};
    for (int i = 0; i < a.m_count; ++i) {
        for (int j = 0; j < b.m_count; ++j)
            column[i + j + 1] += static_cast<std::uint64_t>(a.m_limb[i]) * b.m_limb[j];
    }
    for (int i = a.m_count + b.m_count - 1; i > 0; --i) {
        column[i - 1] += column[i] / WideDecimal::Base;
        column[i] %= WideDecimal::Base;
    }
    const int first = column[0] == 0 ? 1 : 0;
    result.m_negative = a.m_negative != b.m_negative;
    result.m_exponent = a.m_exponent + b.m_exponent + 1 - first;
    result.m_count = std::min(WideDecimal::Limbs, a.m_count + b.m_count - first);
    for (int i = 0; i < result.m_count; ++i)
        result.m_limb[i] = static_cast<std::uint32_t>(column[i + first]);
    result.normalize();
    return result;
}

WideDecimal operator/(const WideDecimal& a, std::uint32_t divisor) {
    WideDecimal result;
    result.m_negative = a.m_negative;
    result.m_exponent = a.m_exponent;
    result.m_count = WideDecimal::Limbs;
    std::uint64_t rest = 0;
    int out = 0;
    // A first quotient limb of zero would cost a limb of precision.
    for (int i = 0; out < WideDecimal::Limbs; ++i) {
        rest = rest * WideDecimal::Base + (i < a.m_count ? a.m_limb[i] : 0);
        const auto quotient = static_cast<std::uint32_t>(rest / divisor);
        rest %= divisor;
        if (out == 0 && quotient == 0) {
            if (i >= a.m_count)
                break;
            --result.m_exponent;
            continue;
        }
        result.m_limb[out++] = quotient;
        if (rest == 0 && i + 1 >= a.m_count)
            break;
    }
    result.normalize();
    return result;
}

namespace {

// Division by several limbs. The rest keeps one limb before the dividend's first, so that the
// window under the divisor always has room for its leading limb.
class LongDivision {
public:
    using Limbs = std::array<std::uint32_t, WideDecimal::Limbs>;

    LongDivision(const Limbs& dividend, const Limbs& divisor, int divisorCount)
        : m_divisor(divisor)
        , m_count(divisorCount)
        , m_lead((divisor[0] * Radix + divisor[1]) * Radix + (divisorCount > 2 ? divisor[2] : 0)) {
        std::copy(dividend.begin(), dividend.end(), m_rest.begin() + 1);
    }

    // The quotient limb at this place. The estimate is off by at most one either way.
    std::uint32_t quotientAt(int at) {
        const auto* window = &m_rest[at];
        const double head =
            ((window[0] * Radix + window[1]) * Radix + window[2]) * Radix + window[3];
        auto quotient = static_cast<std::int64_t>(head / m_lead);
        subtract(at, quotient);
        for (; m_rest[at] < 0; --quotient)
            subtract(at, -1);
        for (; reaches(at); ++quotient)
            subtract(at, 1);
        return static_cast<std::uint32_t>(quotient);
    }

private:
    static constexpr double Radix = WideDecimal::Base;
    static constexpr std::int64_t Base = WideDecimal::Base;

    void subtract(int at, std::int64_t times) {
        std::int64_t carry = 0;
        for (int j = m_count - 1; j >= 0; --j) {
            const std::int64_t value = m_rest[at + 1 + j] - times * m_divisor[j] + carry;
            carry = value / Base;
            std::int64_t digit = value % Base;
            if (digit < 0) {
                digit += Base;
                --carry;
            }
            m_rest[at + 1 + j] = digit;
        }
        m_rest[at] += carry;
    }

    bool reaches(int at) const {
        if (m_rest[at] > 0)
            return true;
        for (int j = 0; j < m_count; ++j) {
            if (m_rest[at + 1 + j] != m_divisor[j])
                return m_rest[at + 1 + j] > m_divisor[j];
        }
        return true;
    }

    std::array<std::int64_t, 2 * WideDecimal::Limbs + 4> m_rest{};
    const Limbs& m_divisor;
    int m_count;
    double m_lead;
};

} // namespace

WideDecimal operator/(const WideDecimal& a, const WideDecimal& b) {
    WideDecimal result;
    if (b.m_count == 1) {
        result = a / b.m_limb[0];
        result.m_exponent -= result.isZero() ? 0 : b.m_exponent;
        result.m_negative = !result.isZero() && a.m_negative != b.m_negative;
        return result;
    }
    LongDivision division(a.m_limb, b.m_limb, b.m_count);
    int out = 0;
    for (int at = 0; out < WideDecimal::Limbs && at <= WideDecimal::Limbs; ++at) {
        const std::uint32_t quotient = division.quotientAt(at);
        if (out == 0 && quotient == 0)
            continue;
        if (out == 0)
            result.m_exponent = a.m_exponent - b.m_exponent - at;
        result.m_limb[out++] = quotient;
    }
    result.m_count = out;
    result.m_negative = a.m_negative != b.m_negative;
    result.normalize();
    return result;
}

} // namespace ora
