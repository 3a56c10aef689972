#include "Aggregate.h"
#include "SumStates.h"

namespace ora {

void registerSumFunctions(sqlite3* database) {
    Aggregate<SumState>::registerAs(database, "num_sum", 1);
    Aggregate<AverageState>::registerAs(database, "num_avg", 1);
    Aggregate<DistinctState<CountState>>::registerAs(database, "count_distinct", 1);
    Aggregate<DistinctState<SumState>>::registerAs(database, "num_sum_distinct", 1);
    Aggregate<DistinctState<AverageState>>::registerAs(database, "num_avg_distinct", 1);
}

} // namespace ora
