#include "NumberMath.h"

#include "OraError.h"
#include "WideDecimal.h"

#include <algorithm>
#include <cmath>

namespace ora::math {

namespace {

using W = WideDecimal;

constexpr int MostPower = 130;   // decimal exponents past this overflow or vanish
constexpr int SeriesFloor = -12; // limbs below one: terms beyond do not count
constexpr int LimbDigits = 8;

[[noreturn]] void throwRange(const OracleNumber& argument) {
    throw OraError(1428, "argument '" + argument.text() + "' is out of range");
}

[[noreturn]] void throwOverflow() {
    throw OraError(1426, "numeric overflow");
}

const W& pi() {
    static const W value =
        W::fromText("3.1415926535897932384626433832795028841971693993751058209749445"
                    "9230781640628620899862803482534211706798");
    return value;
}

const W& half() {
    static const W value = W(1) / 2U;
    return value;
}

bool negligible(const W& term, const W& sum) {
    return term.isZero() || term.exponent() < sum.exponent() + SeriesFloor;
}

// Newton's rule from the double's estimate; each round doubles the digits.
W wideRoot(const W& x) {
    if (x.isZero())
        return x;
    constexpr int Rounds = 4;
    const int shift = x.exponent() / 2 * 2; // limbs, so that the rest fits a double
    const W near = x.scaled(-shift * LimbDigits);
    W root = W::fromDouble(std::sqrt(near.toDouble()));
    for (int i = 0; i < Rounds; ++i)
        root = (root + near / root) / 2U;
    return root.scaled(shift / 2 * LimbDigits);
}

// e^x for a small x: its series at x / 2^halvings, then squared as often.
W smallExp(const W& x) {
    constexpr int Halvings = 8;
    const W r = x / (1U << Halvings);
    W sum(1);
    W term(1);
    for (std::uint32_t i = 1; !negligible(term, sum); ++i) {
        term = term * r / i;
        sum = sum + term;
    }
    for (int i = 0; i < Halvings; ++i)
        sum = sum * sum;
    return sum;
}

const W& ln10() {
    static const W value = [] {
        // 2 atanh(9 / 11)
        const W ratio = W(9) / 11U;
        const W square = ratio * ratio;
        W power = ratio;
        W sum = ratio;
        for (std::uint32_t i = 3; !negligible(power, sum); i += 2) {
            power = power * square;
            sum = sum + power / i;
        }
        return sum + sum;
    }();
    return value;
}

bool isBeyond(const W& x, int limit) {
    return W::compare(x.absolute(), W(limit)) > 0;
}

// Throws for a result past 10^MostPower, returns zero below its reciprocal.
W wideExp(const W& x) {
    constexpr int MostArgument = 310; // ln(10^130) and some
    if (isBeyond(x, MostArgument)) {
        if (!x.isNegative())
            throwOverflow();
        return W();
    }
    const W quotient = x / ln10();
    const W nearest = (x.isNegative() ? quotient - half() : quotient + half()).wholePart();
    const int tens = static_cast<int>(std::lround(nearest.toDouble()));
    return smallExp(x - nearest * ln10()).scaled(tens);
}

// Halley's rule on e^y = x; each round triples the digits.
W wideLn(const W& x) {
    constexpr int Rounds = 2;
    const int limbs = x.exponent();
    const W near = x.scaled(-limbs * LimbDigits);
    W y = W::fromDouble(std::log(near.toDouble()));
    for (int i = 0; i < Rounds; ++i) {
        const W e = wideExp(y);
        const W step = (near - e) / (near + e);
        y = y + step + step;
    }
    return y + ln10() * W(limbs * LimbDigits);
}

W wholePower(W base, std::int64_t exponent) {
    const bool inverse = exponent < 0;
    auto rest = static_cast<std::uint64_t>(inverse ? -exponent : exponent);
    W result(1);
    constexpr int MostLimbs = 2 * MostPower / LimbDigits;
    for (; rest != 0; rest >>= 1) {
        if ((rest & 1) != 0)
            result = result * base;
        if (std::abs(result.exponent()) > MostLimbs ||
            (rest > 1 && std::abs(base.exponent()) > MostLimbs)) {
            const bool large = result.exponent() + (rest > 1 ? base.exponent() : 0) > 0;
            if (large != inverse)
                throwOverflow();
            return W();
        }
        base = base * base;
    }
    return inverse ? W(1) / result : result;
}

} // namespace

OracleNumber squareRoot(const OracleNumber& x) {
    if (x.isNegative())
        throwRange(x);
    return wideRoot(W(x)).toNumber();
}

OracleNumber power(const OracleNumber& base, const OracleNumber& exponent) {
    if (base.isZero()) {
        if (exponent.isNegative())
            throwRange(base);
        return OracleNumber(exponent.isZero() ? 1 : 0);
    }
    constexpr std::int64_t MostSquarings = 1'000'000'000;
    const auto whole = exponent.exactInteger();
    if (whole && std::abs(*whole) <= MostSquarings)
        return wholePower(W(base), *whole).toNumber();
    if (base.isNegative())
        throwRange(base);
    return wideExp(W(exponent) * wideLn(W(base))).toNumber();
}

OracleNumber exp(const OracleNumber& x) {
    return wideExp(W(x)).toNumber();
}

OracleNumber ln(const OracleNumber& x) {
    if (x.sign() <= 0)
        throwRange(x);
    return wideLn(W(x)).toNumber();
}

OracleNumber log(const OracleNumber& base, const OracleNumber& x) {
    if (base.sign() <= 0 || base == OracleNumber(1))
        throwRange(base);
    if (x.sign() <= 0)
        throwRange(x);
    return (wideLn(W(x)) / wideLn(W(base))).toNumber();
}

namespace {

struct SineCosine {
    W sine;
    W cosine;
};

W alternating(W term, const W& square, std::uint32_t factor) {
    W sum = term;
    while (!negligible(term, sum)) {
        term = (term * square / (factor * (factor + 1))).negated();
        sum = sum + term;
        factor += 2;
    }
    return sum;
}

// Reduced to the nearest multiple of pi / 2, then both series.
SineCosine sineCosine(const W& x) {
    const W quarter = pi() / 2U;
    const W quotient = x / quarter;
    const W turns = (x.isNegative() ? quotient - half() : quotient + half()).wholePart();
    const W rest = x - turns * quarter;
    const W square = rest * rest;
    const W sine = rest.isZero() ? rest : alternating(rest, square, 2);
    const W cosine = alternating(W(1), square, 1);
    const W fourth = (turns / 4U).wholePart();
    const int phase = static_cast<int>((turns - fourth * W(4)).toDouble());
    switch ((phase + 4) % 4) {
    case 0: return {sine, cosine};
    case 1: return {cosine, sine.negated()};
    case 2: return {sine.negated(), cosine.negated()};
    default: return {cosine.negated(), sine};
    }
}

// Halves the angle three times before the series.
W wideAtan(W x) {
    constexpr int Halvings = 3;
    for (int i = 0; i < Halvings; ++i)
        x = x / (W(1) + wideRoot(W(1) + x * x));
    const W square = x * x;
    W power = x;
    W sum = x;
    for (std::uint32_t i = 3; !negligible(power, sum); i += 2) {
        power = (power * square).negated();
        sum = sum + power / i;
    }
    return sum * W(1 << Halvings);
}

W wideAsin(const W& x) {
    const W rest = W(1) - x * x;
    if (rest.isZero())
        return x * (pi() / 2U);
    return wideAtan(x / wideRoot(rest));
}

void checkUnit(const OracleNumber& x) {
    if (x.absolute() > OracleNumber(1))
        throwRange(x);
}

} // namespace

namespace {

// Where the argument's own last digit is a whole turn and more, no result means anything.
SineCosine checkedSineCosine(const OracleNumber& x) {
    constexpr int MostDigits = 40;
    if (x.digits().exponent >= MostDigits / 2)
        throwRange(x);
    return sineCosine(W(x));
}

} // namespace

OracleNumber sin(const OracleNumber& x) {
    return checkedSineCosine(x).sine.toNumber();
}

OracleNumber cos(const OracleNumber& x) {
    return checkedSineCosine(x).cosine.toNumber();
}

OracleNumber tan(const OracleNumber& x) {
    const SineCosine both = checkedSineCosine(x);
    if (both.cosine.isZero())
        throwOverflow();
    return (both.sine / both.cosine).toNumber();
}

OracleNumber asin(const OracleNumber& x) {
    checkUnit(x);
    return wideAsin(W(x)).toNumber();
}

OracleNumber acos(const OracleNumber& x) {
    checkUnit(x);
    return (pi() / 2U - wideAsin(W(x))).toNumber();
}

OracleNumber atan(const OracleNumber& x) {
    return wideAtan(W(x)).toNumber();
}

OracleNumber atan2(const OracleNumber& y, const OracleNumber& x) {
    if (x.isZero()) {
        if (y.isZero())
            throwRange(x);
        const W quarter = pi() / 2U;
        return (y.isNegative() ? quarter.negated() : quarter).toNumber();
    }
    const W angle = wideAtan(W(y) / W(x));
    if (!x.isNegative())
        return angle.toNumber();
    return (y.isNegative() ? angle - pi() : angle + pi()).toNumber();
}

OracleNumber sinh(const OracleNumber& x) {
    return ((wideExp(W(x)) - wideExp(W(x).negated())) / 2U).toNumber();
}

OracleNumber cosh(const OracleNumber& x) {
    return ((wideExp(W(x)) + wideExp(W(x).negated())) / 2U).toNumber();
}

OracleNumber tanh(const OracleNumber& x) {
    constexpr int Settled = 60; // from here on all digits are 9
    if (isBeyond(W(x), Settled))
        return OracleNumber(x.sign());
    const W up = wideExp(W(x));
    const W down = wideExp(W(x).negated());
    return ((up - down) / (up + down)).toNumber();
}

namespace {

// The rest of a truncated division, taken off in steps so that a quotient of any length is exact
// while dividend and divisor are within 96 digits of each other.
W wideModulo(W rest, const W& divisor) {
    constexpr int ExactLimbs = 5;
    while (W::compare(rest.absolute(), divisor.absolute()) >= 0) {
        const W quotient = rest / divisor;
        const int drop = std::max(0, quotient.exponent() - ExactLimbs + 1) * LimbDigits;
        const W times = quotient.scaled(-drop).wholePart().scaled(drop);
        const W next = rest - times * divisor;
        if (W::compare(next.absolute(), rest.absolute()) >= 0)
            break;
        rest = next;
    }
    return rest;
}

} // namespace

OracleNumber modulo(const OracleNumber& a, const OracleNumber& b) {
    if (b.isZero())
        return a;
    constexpr std::int64_t Least = INT64_MIN;
    const auto x = a.exactInteger();
    const auto y = b.exactInteger();
    if (x && y && *x != Least)
        return OracleNumber(*x % *y);
    return wideModulo(W(a), W(b)).toNumber();
}

OracleNumber remainder(const OracleNumber& a, const OracleNumber& b) {
    if (b.isZero())
        throwRange(b);
    const W divisor = W(b).absolute();
    // Modulo twice the divisor also tells whether the whole quotient is odd.
    W rest = wideModulo(W(a), divisor + divisor);
    const bool negative = rest.isNegative();
    rest = rest.absolute();
    const W halfDivisor = divisor / 2U;
    if (W::compare(rest, divisor + halfDivisor) >= 0)
        rest = rest - (divisor + divisor);
    else if (W::compare(rest, halfDivisor) > 0)
        rest = rest - divisor;
    return (negative ? rest.negated() : rest).toNumber();
}

} // namespace ora::math
