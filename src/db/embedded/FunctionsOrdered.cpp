#include "Aggregate.h"
#include "OraError.h"
#include "SortKey.h"
#include "StoredValue.h"

#include <algorithm>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace ora {

namespace {

// Aggregates that need their values in an order. Over a window the sorting is done once and kept
// until a row comes or goes.

// Values in their order.
class SortedValues {
public:
    void add(sqlite3_value* value) {
        m_values.emplace_back(value);
        m_sorted = false;
    }
    void remove(sqlite3_value* value) {
        const auto found =
            std::find_if(m_values.begin(), m_values.end(), [&](const StoredValue& kept) {
                return compareValues(kept.get(), value) == 0;
            });
        if (found != m_values.end())
            m_values.erase(found);
    }
    std::size_t size() const { return m_values.size(); }
    sqlite3_value* at(std::size_t index) {
        if (!m_sorted) {
            std::sort(m_values.begin(), m_values.end(),
                      [](const StoredValue& a, const StoredValue& b) {
                          return compareValues(a.get(), b.get()) < 0;
                      });
            m_sorted = true;
        }
        return m_values[index].get();
    }

private:
    std::vector<StoredValue> m_values;
    bool m_sorted = true;
};

struct NumberPoint {
    static void result(Call& call, sqlite3_value* low, sqlite3_value* high,
                       const OracleNumber& share) {
        sqlite3_value* both[] = {low, high};
        const Call values(nullptr, 2, both);
        const OracleNumber first = values.number(0);
        call.result(first + (values.number(1) - first) * share);
    }
};

struct DatePoint {
    static void result(Call& call, sqlite3_value* low, sqlite3_value* high,
                       const OracleNumber& share) {
        sqlite3_value* both[] = {low, high};
        const Call values(nullptr, 2, both);
        const OracleDate first = values.date(0);
        call.result(first.plusDays((values.date(1) - first) * share));
    }
};

// PERCENTILE_CONT(x, fraction, descending) and, with x alone, MEDIAN.
template<class Point>
class ContinuousState {
public:
    void step(Call& call) {
        if (call.isNull(0))
            return;
        if (call.count() > 1)
            m_fraction = call.number(1);
        if (call.count() > 2 && sqlite3_value_int(call.value(2)) != 0)
            m_descending = true;
        checkFraction(m_fraction);
        m_values.add(call.value(0));
    }
    void inverse(Call& call) {
        if (!call.isNull(0))
            m_values.remove(call.value(0));
    }
    void result(Call& call) {
        if (m_values.size() == 0)
            return call.resultNull();
        const OracleNumber last(static_cast<std::int64_t>(m_values.size()) - 1);
        const OracleNumber fraction = m_descending ? OracleNumber(1) - m_fraction : m_fraction;
        const OracleNumber row = fraction * last;
        const OracleNumber below = row.floor();
        const auto low = static_cast<std::size_t>(below.toInteger());
        const std::size_t high = std::min(low + 1, m_values.size() - 1);
        Point::result(call, m_values.at(low), m_values.at(high), row - below);
    }

    static void checkFraction(const OracleNumber& fraction) {
        if (fraction.isNegative() || fraction > OracleNumber(1))
            throw OraError(1428, "argument '" + fraction.text() + "' is out of range");
    }

private:
    SortedValues m_values;
    OracleNumber m_fraction = OracleNumber(1) / OracleNumber(2);
    bool m_descending = false;
};

// PERCENTILE_DISC(x, fraction, descending): a value that is there, of any type.
class DiscreteState {
public:
    void step(Call& call) {
        if (call.isNull(0))
            return;
        m_fraction = call.number(1);
        m_descending = call.count() > 2 && sqlite3_value_int(call.value(2)) != 0;
        ContinuousState<NumberPoint>::checkFraction(m_fraction);
        m_values.add(call.value(0));
    }
    void inverse(Call& call) {
        if (!call.isNull(0))
            m_values.remove(call.value(0));
    }
    void result(Call& call) {
        const auto size = static_cast<std::int64_t>(m_values.size());
        if (size == 0)
            return call.resultNull();
        const std::int64_t wanted = (m_fraction * OracleNumber(size)).ceiling().toInteger();
        const std::int64_t place = std::max<std::int64_t>(wanted, 1) - 1;
        call.resultValue(
            m_values.at(static_cast<std::size_t>(m_descending ? size - 1 - place : place)));
    }

private:
    SortedValues m_values;
    OracleNumber m_fraction;
    bool m_descending = false;
};

// Counts of a group's rows before, at and after the row that the arguments describe.
class WithinState {
public:
    void step(Call& call) {
        const std::string_view row = call.bytes(0);
        const std::string_view asked = call.bytes(1);
        ++m_rows;
        if (row < asked) {
            ++m_before;
            m_keysBefore.emplace(row);
        } else if (row == asked) {
            ++m_peers;
        }
    }
    void inverse(Call&) { throw OraError(30484, "missing window specification for this function"); }

    std::int64_t rank() const { return m_before + 1; }
    std::int64_t denseRank() const { return static_cast<std::int64_t>(m_keysBefore.size()) + 1; }
    OracleNumber percentRank() const {
        return m_rows == 0 ? OracleNumber() : OracleNumber(m_before) / OracleNumber(m_rows);
    }
    OracleNumber cumulative() const {
        return OracleNumber(m_before + m_peers + 1) / OracleNumber(m_rows + 1);
    }

private:
    std::int64_t m_rows = 0;
    std::int64_t m_before = 0;
    std::int64_t m_peers = 0;
    std::set<std::string, std::less<>> m_keysBefore;
};

struct RankState : WithinState {
    void result(Call& call) const { call.result(OracleNumber(rank())); }
};

struct DenseRankState : WithinState {
    void result(Call& call) const { call.result(OracleNumber(denseRank())); }
};

struct PercentRankState : WithinState {
    void result(Call& call) const { call.result(percentRank()); }
};

struct CumeDistState : WithinState {
    void result(Call& call) const { call.result(cumulative()); }
};

// The most frequent value; the least of several.
class ModeState {
public:
    void step(Call& call) {
        if (call.isNull(0))
            return;
        auto& entry = m_counts[std::string(call.bytes(0))];
        if (!entry.value)
            entry.value = StoredValue(call.value(0));
        ++entry.count;
    }
    void inverse(Call& call) {
        const auto found = m_counts.find(std::string(call.bytes(0)));
        if (found != m_counts.end() && --found->second.count == 0)
            m_counts.erase(found);
    }
    void result(Call& call) const {
        const Entry* best = nullptr;
        for (const auto& [bytes, entry] : m_counts) {
            if (!best || entry.count > best->count)
                best = &entry;
        }
        if (best)
            call.resultValue(best->value.get());
    }

private:
    struct Entry {
        StoredValue value;
        std::int64_t count = 0;
    };
    std::map<std::string, Entry> m_counts;
};

} // namespace

void registerOrderedAggregates(sqlite3* database) {
    registerAggregate<ContinuousState<NumberPoint>>(database, "ora_median", 1);
    registerAggregate<ContinuousState<DatePoint>>(database, "ora_median_date", 1);
    Aggregate<ContinuousState<NumberPoint>>::registerAs(database, "ora_percentile_cont", 3);
    Aggregate<ContinuousState<DatePoint>>::registerAs(database, "ora_percentile_cont_date", 3);
    Aggregate<DiscreteState>::registerAs(database, "ora_percentile_disc", 3);
    Aggregate<RankState>::registerAs(database, "ora_rank_within", 2);
    Aggregate<DenseRankState>::registerAs(database, "ora_dense_rank_within", 2);
    Aggregate<PercentRankState>::registerAs(database, "ora_percent_rank_within", 2);
    Aggregate<CumeDistState>::registerAs(database, "ora_cume_dist_within", 2);
    Aggregate<ModeState>::registerAs(database, "ora_stats_mode", 1);
}

} // namespace ora
