#pragma once

#include <QString>

#include <benchmark/benchmark.h>
#include <sqlite3.h>

// The table that the database benchmarks read: as many rows as QUILLMATE_BENCH_ROWS says (1,000,000
// when it says nothing) of 8 columns of mixed types, in a file that outlives the run.

qint64 benchRows();

// The file's path; it is made when it is missing. Ends the process when it cannot be made.
QString benchFile();

inline constexpr const char* benchQuery = "SELECT * FROM big";

// The yardstick: the engine's own bare loop over every row and its column texts.
void bareLoop(benchmark::State& state);
