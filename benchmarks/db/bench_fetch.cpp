#include "BenchTable.h"
#include "CellStore.h"
#include "ProviderTable.h"

#include <benchmark/benchmark.h>

using namespace Qt::StringLiterals;

// Fetching every row into a cell store, beside the engine's own bare loop over the same rows.

BENCHMARK(bareLoop)->Unit(benchmark::kMillisecond);

static void fetchIntoCellStore(benchmark::State& state) {
    const auto session = openSession({{}, benchFile(), {}, {}}, providerTable());
    constexpr qsizetype block = 4096;
    for (auto _ : state) {
        const auto cursor = session->execute(QString::fromUtf8(benchQuery));
        CellStore rows(int(cursor->columns().size()));
        while (cursor->fetch(rows, block) > 0) {
        }
        state.counters["text MB"] = double(rows.textBytes()) / 1e6;
        if (rows.rows() != benchRows())
            state.SkipWithError("rows are missing");
    }
}
BENCHMARK(fetchIntoCellStore)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
