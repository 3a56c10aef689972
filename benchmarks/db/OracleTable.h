#pragma once

#include "Provider.h"

#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <memory>

// A database in the server's dialect with the rows of BenchTable.h in a table BIG (primary key ID)
// and a hierarchy TREE of 100,000 rows; in a file that outlives the run. Ends the process when it
// cannot be made.
std::unique_ptr<Session> openOracleTable();

// Its path, for the engine's own loop over the stored values.
QString oracleFile();

// Where BIG lies in the file.
QString storedNameOfBig();

// The file as the engine's own program opens it.
class BareDatabase {
public:
    explicit BareDatabase(const QString& path);
    ~BareDatabase();
    BareDatabase(const BareDatabase&) = delete;
    BareDatabase& operator=(const BareDatabase&) = delete;

    // Walks over all of a statement's rows and column texts.
    void scan(const QString& sql) const;

private:
    sqlite3* m_db = nullptr;
};

// That loop as a benchmark.
void bareScan(benchmark::State& state, const QString& sql);

// The yardstick: that loop over all stored values of BIG.
void bareLoopOverStoredValues(benchmark::State& state);

// Runs a statement to its end; the rows that came. Ends the process when it fails.
qsizetype runToEnd(Session& session, const QString& sql);
