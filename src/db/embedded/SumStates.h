#pragma once

#include "DecimalSum.h"
#include "FunctionCall.h"
#include "SortKey.h"
#include "StoredValue.h"

#include <string>
#include <unordered_map>

namespace ora {

// States of the aggregates over one argument, for Aggregate and for KEEP.

struct SumState {
    DecimalSum sum;
    std::int64_t count = 0;

    void step(Call& call) {
        if (call.isNull(0))
            return;
        add(call, 1);
    }
    void inverse(Call& call) {
        if (!call.isNull(0))
            add(call, -1);
    }
    void result(Call& call) const {
        if (count == 0)
            return call.resultNull();
        call.result(sum.number());
    }

private:
    void add(Call& call, int sign) {
        const bool isStored = sqlite3_value_type(call.value(0)) == SQLITE_BLOB;
        const OracleNumber converted = isStored ? OracleNumber() : call.number(0);
        const std::string_view bytes = isStored ? call.bytes(0) : converted.bytes();
        if (sign > 0)
            sum.add(bytes);
        else
            sum.subtract(bytes);
        count += sign;
    }
};

struct AverageState : SumState {
    void result(Call& call) const {
        if (count == 0)
            return call.resultNull();
        call.result(sum.number() / OracleNumber(count));
    }
};

struct CountState {
    std::int64_t count = 0;

    void step(Call& call) { count += call.isNull(0) ? 0 : 1; }
    void inverse(Call& call) { count -= call.isNull(0) ? 0 : 1; }
    void result(Call& call) const { call.result(OracleNumber(count)); }
};

// Each value once, whatever the inner state makes of it.
template<class State>
class DistinctState {
public:
    void step(Call& call) {
        if (!call.isNull(0) && ++m_counts[keyOf(call)] == 1)
            m_state.step(call);
    }
    void inverse(Call& call) {
        if (call.isNull(0))
            return;
        const auto known = m_counts.find(keyOf(call));
        if (known == m_counts.end() || --known->second > 0)
            return;
        m_counts.erase(known);
        m_state.inverse(call);
    }
    void result(Call& call) const { m_state.result(call); }

private:
    static std::string keyOf(Call& call) {
        std::string key;
        appendSortKey(key, call.value(0), false, false);
        return key;
    }

    std::unordered_map<std::string, std::int64_t> m_counts;
    State m_state;
};

// sign 1 for the greatest, -1 for the least; only where nothing is ever taken away.
template<int sign>
struct ExtremeState {
    StoredValue best;

    void step(Call& call) {
        if (call.isNull(0))
            return;
        if (!best || sign * compareValues(call.value(0), best.get()) > 0)
            best = StoredValue(call.value(0));
    }
    void result(Call& call) const {
        if (best)
            call.resultValue(best.get());
    }
};

} // namespace ora
