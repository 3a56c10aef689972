#include "BenchTable.h"
#include "OracleTable.h"

using namespace Qt::StringLiterals;

// The server's dialect beside the engine's own loops over the same stored values.

BENCHMARK(bareLoopOverStoredValues)->Unit(benchmark::kMillisecond);

static void runStatement(benchmark::State& state, const QString& sql, qsizetype rows) {
    const auto session = openOracleTable();
    for (auto _ : state) {
        if (runToEnd(*session, sql) != rows)
            state.SkipWithError("rows are missing");
    }
}

static void fetchTypedValues(benchmark::State& state) {
    runStatement(state, u"SELECT * FROM big"_s, benchRows());
}
BENCHMARK(fetchTypedValues)->Unit(benchmark::kMillisecond);

static void bareFilter(benchmark::State& state) {
    bareScan(state, u"SELECT count(*) FROM %1 WHERE c8 = 'open'"_s.arg(storedNameOfBig()));
}
BENCHMARK(bareFilter)->Unit(benchmark::kMillisecond);

static void filter(benchmark::State& state) {
    runStatement(state, u"SELECT COUNT(*) FROM big WHERE status = 'open'"_s, 1);
}
BENCHMARK(filter)->Unit(benchmark::kMillisecond);

static void sumOfDecimals(benchmark::State& state) {
    runStatement(state, u"SELECT SUM(amount) FROM big"_s, 1);
}
BENCHMARK(sumOfDecimals)->Unit(benchmark::kMillisecond);

static void pointQuery(benchmark::State& state) {
    runStatement(state, u"SELECT name, amount FROM big WHERE id = 4711"_s, 1);
}
BENCHMARK(pointQuery)->Unit(benchmark::kMicrosecond);

static void pointQueryOfANewText(benchmark::State& state) {
    const auto session = openOracleTable();
    int id = 0;
    for (auto _ : state) {
        const QString sql = u"SELECT name, amount FROM big WHERE id = %1"_s;
        runToEnd(*session, sql.arg(id++ % benchRows()));
    }
}
BENCHMARK(pointQueryOfANewText)->Unit(benchmark::kMicrosecond);

static void connectBy(benchmark::State& state) {
    constexpr qsizetype nodes = 100000;
    runStatement(state,
                 u"SELECT id, LEVEL, label FROM tree START WITH parent IS NULL "
                 "CONNECT BY PRIOR id = parent"_s,
                 nodes);
}
BENCHMARK(connectBy)->Unit(benchmark::kMillisecond);

static void connect(benchmark::State& state) {
    for (auto _ : state)
        openOracleTable();
}
BENCHMARK(connect)->Unit(benchmark::kMicrosecond);

BENCHMARK_MAIN();
