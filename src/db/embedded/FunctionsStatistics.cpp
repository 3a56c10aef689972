#include "Aggregate.h"
#include "NumberMath.h"
#include "StatisticsStates.h"

namespace ora {

namespace {

void accumulate(DecimalSum& sum, const OracleNumber& value, int sign) {
    if (sign > 0)
        sum.add(value.bytes());
    else
        sum.subtract(value.bytes());
}

// Rounded squares can fall a hair short of the squared mean.
WideDecimal notNegative(const WideDecimal& value) {
    return value.isNegative() ? WideDecimal() : value;
}

} // namespace

void Moments::add(const OracleNumber& x, int sign) {
    m_count += sign;
    accumulate(m_sum, x, sign);
    accumulate(m_squares, x * x, sign);
}

WideDecimal Moments::squares() const {
    const WideDecimal sum(m_sum.number());
    return notNegative(WideDecimal(m_squares.number()) - sum * sum / WideDecimal(m_count));
}

void spreadResult(Call& call, const Moments& moments, Spread spread, Basis basis) {
    const std::int64_t count = moments.count();
    if (count == 0 || (count == 1 && basis == Basis::Sample))
        return call.resultNull();
    if (count == 1)
        return call.result(OracleNumber());
    const WideDecimal divisor(basis == Basis::Population ? count : count - 1);
    const OracleNumber variance = (moments.squares() / divisor).toNumber();
    call.result(spread == Spread::Variance ? variance : math::squareRoot(variance));
}

void PairMoments::add(Call& call, int sign) {
    if (call.isNull(0) || call.isNull(1))
        return;
    const OracleNumber y = call.number(0);
    const OracleNumber x = call.number(1);
    m_count += sign;
    accumulate(m_x, x, sign);
    accumulate(m_y, y, sign);
    accumulate(m_xx, x * x, sign);
    accumulate(m_yy, y * y, sign);
    accumulate(m_xy, x * y, sign);
}

WideDecimal PairMoments::centred(const DecimalSum& products, const DecimalSum& a,
                                 const DecimalSum& b) const {
    const WideDecimal mean =
        WideDecimal(a.number()) * WideDecimal(b.number()) / WideDecimal(m_count);
    return WideDecimal(products.number()) - mean;
}

namespace {

using Result = std::optional<OracleNumber>;

Result covariancePopulation(const PairMoments& m) {
    if (m.count() == 0)
        return std::nullopt;
    return (m.sxy() / WideDecimal(m.count())).toNumber();
}

Result covarianceSample(const PairMoments& m) {
    if (m.count() < 2)
        return std::nullopt;
    return (m.sxy() / WideDecimal(m.count() - 1)).toNumber();
}

Result correlation(const PairMoments& m) {
    if (m.count() < 2)
        return std::nullopt;
    const OracleNumber product = (notNegative(m.sxx()) * notNegative(m.syy())).toNumber();
    if (product.isZero())
        return std::nullopt;
    return m.sxy().toNumber() / math::squareRoot(product);
}

Result slope(const PairMoments& m) {
    if (m.count() == 0 || m.sxx().isZero())
        return std::nullopt;
    return (m.sxy() / m.sxx()).toNumber();
}

Result intercept(const PairMoments& m) {
    if (m.count() == 0 || m.sxx().isZero())
        return std::nullopt;
    return ((m.sumY() - m.sxy() / m.sxx() * m.sumX()) / WideDecimal(m.count())).toNumber();
}

Result determination(const PairMoments& m) {
    if (m.count() == 0 || m.sxx().isZero())
        return std::nullopt;
    if (m.syy().isZero())
        return OracleNumber(1);
    return (m.sxy() * m.sxy() / (m.sxx() * m.syy())).toNumber();
}

Result averageX(const PairMoments& m) {
    if (m.count() == 0)
        return std::nullopt;
    return (m.sumX() / WideDecimal(m.count())).toNumber();
}

Result averageY(const PairMoments& m) {
    if (m.count() == 0)
        return std::nullopt;
    return (m.sumY() / WideDecimal(m.count())).toNumber();
}

Result pairCount(const PairMoments& m) {
    return OracleNumber(m.count());
}

Result squaresX(const PairMoments& m) {
    return m.count() == 0 ? Result() : m.sxx().toNumber();
}

Result squaresY(const PairMoments& m) {
    return m.count() == 0 ? Result() : m.syy().toNumber();
}

Result products(const PairMoments& m) {
    return m.count() == 0 ? Result() : m.sxy().toNumber();
}

template<PairFormula formula>
void registerPair(sqlite3* database, const char* name) {
    registerAggregate<PairState<formula>>(database, name, 2);
}

template<Spread spread, Basis basis>
void registerSpread(sqlite3* database, const char* name) {
    registerAggregate<SpreadState<spread, basis>>(database, name, 1);
}

} // namespace

void registerStatisticsFunctions(sqlite3* database) {
    registerSpread<Spread::Variance, Basis::Plain>(database, "ora_variance");
    registerSpread<Spread::Variance, Basis::Sample>(database, "ora_var_samp");
    registerSpread<Spread::Variance, Basis::Population>(database, "ora_var_pop");
    registerSpread<Spread::Deviation, Basis::Plain>(database, "ora_stddev");
    registerSpread<Spread::Deviation, Basis::Sample>(database, "ora_stddev_samp");
    registerSpread<Spread::Deviation, Basis::Population>(database, "ora_stddev_pop");
    registerPair<covariancePopulation>(database, "ora_covar_pop");
    registerPair<covarianceSample>(database, "ora_covar_samp");
    registerPair<correlation>(database, "ora_corr");
    registerPair<slope>(database, "ora_regr_slope");
    registerPair<intercept>(database, "ora_regr_intercept");
    registerPair<determination>(database, "ora_regr_r2");
    registerPair<averageX>(database, "ora_regr_avgx");
    registerPair<averageY>(database, "ora_regr_avgy");
    registerPair<pairCount>(database, "ora_regr_count");
    registerPair<squaresX>(database, "ora_regr_sxx");
    registerPair<squaresY>(database, "ora_regr_syy");
    registerPair<products>(database, "ora_regr_sxy");
}

} // namespace ora
