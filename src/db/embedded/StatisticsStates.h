#pragma once

#include "DecimalSum.h"
#include "FunctionCall.h"
#include "WideDecimal.h"

#include <optional>

namespace ora {

// Count, sum and sum of squares; what variance and deviation are made of.
class Moments {
public:
    void step(Call& call) {
        if (!call.isNull(0))
            add(call.number(0), 1);
    }
    void inverse(Call& call) {
        if (!call.isNull(0))
            add(call.number(0), -1);
    }

    std::int64_t count() const { return m_count; }
    // Sum of the squared distances from the mean.
    WideDecimal squares() const;

private:
    void add(const OracleNumber& x, int sign);

    std::int64_t m_count = 0;
    DecimalSum m_sum;
    DecimalSum m_squares;
};

enum class Spread { Variance, Deviation };
// Of one row the population's and the plain forms are 0, the sample's NULL.
enum class Basis { Plain, Sample, Population };

template<Spread spread, Basis basis>
struct SpreadState : Moments {
    void result(Call& call) const { spreadResult(call, *this, spread, basis); }
};

void spreadResult(Call& call, const Moments& moments, Spread spread, Basis basis);

// Two columns; the server's argument order: y first.
class PairMoments {
public:
    void step(Call& call) { add(call, 1); }
    void inverse(Call& call) { add(call, -1); }

    std::int64_t count() const { return m_count; }
    WideDecimal sumX() const { return WideDecimal(m_x.number()); }
    WideDecimal sumY() const { return WideDecimal(m_y.number()); }
    // Sums of products of the distances from the means.
    WideDecimal sxx() const { return centred(m_xx, m_x, m_x); }
    WideDecimal syy() const { return centred(m_yy, m_y, m_y); }
    WideDecimal sxy() const { return centred(m_xy, m_x, m_y); }

private:
    void add(Call& call, int sign);
    WideDecimal centred(const DecimalSum& products, const DecimalSum& a, const DecimalSum& b) const;

    std::int64_t m_count = 0;
    DecimalSum m_x, m_y, m_xx, m_yy, m_xy;
};

// nullopt is NULL.
using PairFormula = std::optional<OracleNumber> (*)(const PairMoments&);

template<PairFormula formula>
struct PairState : PairMoments {
    void result(Call& call) const {
        if (const auto value = formula(*this))
            call.result(*value);
    }
};

} // namespace ora
