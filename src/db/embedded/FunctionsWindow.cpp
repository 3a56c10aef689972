#include "Aggregate.h"
#include "SumStates.h"

#include <deque>

namespace ora {

namespace {

enum class From { First, Last };
enum class NullRows { Skipped, Counted };

// The n-th value of the frame from one of its ends, the first without an n. Rows enter behind and
// leave in front.
template<From from, NullRows nulls>
class NthState {
public:
    void step(Call& call) {
        if (call.count() > 1)
            m_nth = sqlite3_value_int64(call.value(1));
        if (counts(call))
            m_values.emplace_back(call.value(0));
    }
    void inverse(Call& call) {
        if (counts(call) && !m_values.empty())
            m_values.pop_front();
    }
    void result(Call& call) const {
        const auto size = static_cast<std::int64_t>(m_values.size());
        if (m_nth < 1 || m_nth > size)
            return call.resultNull();
        const std::int64_t index = from == From::First ? m_nth - 1 : size - m_nth;
        call.resultValue(m_values[static_cast<std::size_t>(index)].get());
    }

private:
    static bool counts(const Call& call) { return nulls == NullRows::Counted || !call.isNull(0); }

    std::deque<StoredValue> m_values;
    std::int64_t m_nth = 1;
};

// COUNT as the engine's own: a native integer, of rows where it has no argument.
struct RowCountState {
    std::int64_t count = 0;

    static bool counts(const Call& call) { return call.count() == 0 || !call.isNull(0); }
    void step(Call& call) { count += counts(call) ? 1 : 0; }
    void inverse(Call& call) { count -= counts(call) ? 1 : 0; }
    void result(Call& call) const { call.resultInteger(count); }
};

// sign 1 for the greatest, -1 for the least, where the oldest value leaves first: no value is kept
// that one behind it surpasses.
template<int sign>
class MovingExtremeState {
public:
    void step(Call& call) {
        ++m_entered;
        if (call.isNull(0))
            return;
        while (!m_candidates.empty() &&
               sign * compareValues(call.value(0), m_candidates.back().value.get()) > 0)
            m_candidates.pop_back();
        m_candidates.push_back({StoredValue(call.value(0)), m_entered});
    }
    void inverse(Call&) {
        ++m_left;
        if (!m_candidates.empty() && m_candidates.front().place == m_left)
            m_candidates.pop_front();
    }
    void result(Call& call) const {
        if (m_candidates.empty())
            return call.resultNull();
        call.resultValue(m_candidates.front().value.get());
    }

private:
    struct Candidate {
        StoredValue value;
        std::int64_t place;
    };

    std::deque<Candidate> m_candidates;
    std::int64_t m_entered = 0;
    std::int64_t m_left = 0;
};

// What the engine has itself gets a form with a frame of its own.
template<class State>
void registerFramed(sqlite3* database, const char* name, int arguments) {
    Aggregate<FramedState<State>>::registerAs(database, name, arguments + FrameRows::Bounds);
}

[[noreturn]] void raiseOutOfRange(const OracleNumber& distance) {
    throw OraError(1428, "argument '" + distance.text() + "' is out of range");
}

constexpr ScalarRow rows[] = {
    {"num_reach", 1,
     [](Call& c) {
         if (c.number(0).sign() < 0)
             raiseOutOfRange(c.number(0));
         c.result(c.number(0));
     }},
    {"ds_reach", 1,
     [](Call& c) {
         const OracleNumber seconds = c.daySecond(0).toSeconds();
         if (seconds.sign() < 0)
             raiseOutOfRange(seconds / OracleNumber(OracleDate::SecondsPerDay));
         c.result(c.daySecond(0));
     }},
    {"ym_reach", 1,
     [](Call& c) {
         const std::int64_t months = c.yearMonth(0).months;
         if (months < 0)
             raiseOutOfRange(OracleNumber(months));
         c.result(static_cast<double>(months));
     }},
};

} // namespace

void registerWindowFunctions(sqlite3* database, FunctionContext& context) {
    registerScalars(database, rows, context);
    registerAggregate<NthState<From::First, NullRows::Skipped>>(database, "nth_not_null", 2);
    registerAggregate<NthState<From::Last, NullRows::Skipped>>(database, "nth_last_not_null", 2);
    registerAggregate<NthState<From::Last, NullRows::Counted>>(database, "nth_last", 2);
    registerFramed<NthState<From::First, NullRows::Counted>>(database, "nth_value_frame", 2);
    registerFramed<NthState<From::First, NullRows::Counted>>(database, "first_value_frame", 1);
    registerFramed<NthState<From::Last, NullRows::Counted>>(database, "last_value_frame", 1);
    registerFramed<RowCountState>(database, "count_frame", 0);
    registerFramed<RowCountState>(database, "count_frame", 1);
    registerFramed<MovingExtremeState<1>>(database, "max_frame", 1);
    registerFramed<MovingExtremeState<-1>>(database, "min_frame", 1);
}

} // namespace ora
