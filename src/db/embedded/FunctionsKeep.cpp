#include "Aggregate.h"
#include "OraError.h"
#include "StatisticsStates.h"
#include "SumStates.h"

#include <optional>
#include <string>

namespace ora {

namespace {

// KEEP (DENSE_RANK FIRST …): the State sees only the rows whose key, the last argument, is the
// smallest so far. Windows are whole partitions, so nothing is taken away.
template<class State>
class KeepState {
public:
    void step(Call& call) {
        const std::string_view key = call.bytes(call.count() - 1);
        if (m_key && key > *m_key)
            return;
        if (!m_key || key < *m_key) {
            m_key = std::string(key);
            m_state = State();
        }
        m_state.step(call);
    }
    void inverse(Call&) { throw OraError(30484, "missing window specification for this function"); }
    void result(Call& call) const { m_state.result(call); }

private:
    std::optional<std::string> m_key;
    State m_state;
};

template<class State>
void registerKeep(sqlite3* database, const char* name) {
    Aggregate<KeepState<State>>::registerAs(database, name, 2);
}

} // namespace

void registerKeepAggregates(sqlite3* database) {
    registerKeep<SumState>(database, "keep_sum");
    registerKeep<AverageState>(database, "keep_avg");
    registerKeep<CountState>(database, "keep_count");
    registerKeep<ExtremeState<1>>(database, "keep_max");
    registerKeep<ExtremeState<-1>>(database, "keep_min");
    registerKeep<SpreadState<Spread::Variance, Basis::Plain>>(database, "keep_variance");
    registerKeep<SpreadState<Spread::Deviation, Basis::Plain>>(database, "keep_stddev");
}

} // namespace ora
