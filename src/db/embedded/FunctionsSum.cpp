#include "Aggregate.h"
#include "SumStates.h"

namespace ora {

void registerSumFunctions(sqlite3* database) {
    Aggregate<SumState>::registerAs(database, "num_sum", 1);
    Aggregate<AverageState>::registerAs(database, "num_avg", 1);
}

} // namespace ora
