#include "BenchTable.h"
#include "CellStore.h"
#include "ProviderTable.h"

#include <benchmark/benchmark.h>

using namespace Qt::StringLiterals;

// Fetching every row into a cell store, beside the engine's own bare loop over the same rows.

static void bareLoop(benchmark::State& state) {
    sqlite3* db = nullptr;
    sqlite3_open(benchFile().toUtf8().constData(), &db);
    for (auto _ : state) {
        sqlite3_stmt* statement = nullptr;
        sqlite3_prepare_v2(db, benchQuery, -1, &statement, nullptr);
        const int columns = sqlite3_column_count(statement);
        while (sqlite3_step(statement) == SQLITE_ROW) {
            for (int i = 0; i < columns; ++i)
                benchmark::DoNotOptimize(sqlite3_column_text(statement, i));
        }
        sqlite3_finalize(statement);
    }
    sqlite3_close(db);
}
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
