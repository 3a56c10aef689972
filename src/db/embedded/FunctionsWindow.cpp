#include "Aggregate.h"
#include "StoredValue.h"

#include <deque>

namespace ora {

namespace {

enum class From { First, Last };
enum class NullRows { Skipped, Counted };

// The n-th value of the frame from one of its ends. Rows enter behind and leave in front.
template<From from, NullRows nulls>
class NthState {
public:
    void step(Call& call) {
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

} // namespace

void registerWindowFunctions(sqlite3* database) {
    Aggregate<NthState<From::First, NullRows::Skipped>>::registerAs(database, "nth_not_null", 2);
    Aggregate<NthState<From::Last, NullRows::Skipped>>::registerAs(database, "nth_last_not_null",
                                                                   2);
    Aggregate<NthState<From::Last, NullRows::Counted>>::registerAs(database, "nth_last", 2);
}

} // namespace ora
