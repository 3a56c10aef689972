#pragma once

#include "Provider.h"

#include <benchmark/benchmark.h>

#include <memory>

// A database in the server's dialect with the rows of BenchTable.h in a table BIG (primary key ID)
// and a hierarchy TREE of 100,000 rows; in a file that outlives the run. Ends the process when it
// cannot be made.
std::unique_ptr<Session> openOracleTable();

// Its path, for the engine's own loop over the stored values.
QString oracleFile();

// Where BIG lies in the file.
QString storedNameOfBig();

// The engine's own loop over a statement's rows and column texts.
void bareScan(benchmark::State& state, const QString& sql);

// The yardstick: that loop over all stored values of BIG.
void bareLoopOverStoredValues(benchmark::State& state);

// Runs a statement to its end; the rows that came. Ends the process when it fails.
qsizetype runToEnd(Session& session, const QString& sql);
