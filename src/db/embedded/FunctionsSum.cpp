#include "Aggregate.h"
#include "SumStates.h"

namespace ora {

void registerSumFunctions(sqlite3* database) {
    registerAggregate<SumState>(database, "num_sum", 1);
    registerAggregate<AverageState>(database, "num_avg", 1);
    Aggregate<DistinctState<CountState>>::registerAs(database, "count_distinct", 1);
    Aggregate<DistinctState<SumState>>::registerAs(database, "num_sum_distinct", 1);
    Aggregate<DistinctState<AverageState>>::registerAs(database, "num_avg_distinct", 1);
}

} // namespace ora
