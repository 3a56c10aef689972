#include "Functions.h"
#include "OracleNumber.h"
#include "RatioReporter.h"

#include <sqlite3.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

// NUMBERs beside SQLite's own numbers: an expression and a sum over a table, and texts of cells.

namespace {

constexpr int FullRows = 300000;
constexpr int DecodedNumbers = 1000000;

int rowCount() {
    const char* rows = std::getenv("QUILLMATE_BENCH_ROWS");
    return rows ? std::min(std::atoi(rows), FullRows) : FullRows;
}

struct Closer {
    void operator()(sqlite3* database) const { sqlite3_close(database); }
};

// Table t: r and i as NUMBER, rn and ni as SQLite's integers.
class Table {
public:
    Table() {
        sqlite3* database = nullptr;
        sqlite3_open(":memory:", &database);
        m_database.reset(database);
        ora::registerFunctions(database, m_context);
        execute("CREATE TABLE t(r, i, rn INTEGER, ni INTEGER)");
        execute("WITH RECURSIVE c(n) AS (SELECT 1 UNION ALL SELECT n + 1 FROM c WHERE n < " +
                std::to_string(rowCount()) +
                ") INSERT INTO t SELECT num_from_int(n), num_from_int(n * 7919 % 10007), n, "
                "n * 7919 % 10007 FROM c");
    }

    // Steps through all rows; how many there were.
    int run(const char* sql) {
        sqlite3_stmt* statement = nullptr;
        if (sqlite3_prepare_v2(m_database.get(), sql, -1, &statement, nullptr) != SQLITE_OK)
            return -1;
        int count = 0;
        while (sqlite3_step(statement) == SQLITE_ROW)
            count += sqlite3_column_type(statement, 0) != SQLITE_NULL;
        sqlite3_finalize(statement);
        return count;
    }

private:
    void execute(const std::string& sql) {
        sqlite3_exec(m_database.get(), sql.c_str(), nullptr, nullptr, nullptr);
    }

    ora::FunctionContext m_context;
    std::unique_ptr<sqlite3, Closer> m_database;
};

Table& table() {
    static Table instance;
    return instance;
}

void runQuery(benchmark::State& state, const char* sql) {
    for (auto _ : state) {
        if (table().run(sql) <= 0)
            state.SkipWithError("the query failed");
    }
}

void expressionOfIntegers(benchmark::State& state) {
    runQuery(state, "SELECT rn * 12 + ni FROM t");
}
BENCHMARK(expressionOfIntegers)->Unit(benchmark::kMillisecond);

void expressionOfNumbers(benchmark::State& state) {
    runQuery(state, "SELECT num_add(num_mul(r, x'C10D'), i) FROM t");
}
BENCHMARK(expressionOfNumbers)->Unit(benchmark::kMillisecond);

void sumOfIntegers(benchmark::State& state) {
    runQuery(state, "SELECT sum(ni) FROM t");
}
BENCHMARK(sumOfIntegers)->Unit(benchmark::kMillisecond);

void sumOfNumbers(benchmark::State& state) {
    runQuery(state, "SELECT num_sum(i) FROM t");
}
BENCHMARK(sumOfNumbers)->Unit(benchmark::kMillisecond);

void divisionOfNumbers(benchmark::State& state) {
    runQuery(state, "SELECT num_div(r, i) FROM t WHERE ni > 0");
}
BENCHMARK(divisionOfNumbers)->Unit(benchmark::kMillisecond);

void millionCellTexts(benchmark::State& state) {
    std::vector<ora::OracleNumber> numbers;
    numbers.reserve(DecodedNumbers);
    for (int i = 0; i < DecodedNumbers; ++i)
        numbers.push_back(ora::OracleNumber(std::int64_t{i} * 7919) / ora::OracleNumber(100));
    for (auto _ : state) {
        char text[ora::OracleNumber::MaxTextSize];
        std::size_t size = 0;
        for (const ora::OracleNumber& number : numbers)
            size += number.writeCell(text);
        benchmark::DoNotOptimize(size);
    }
}
BENCHMARK(millionCellTexts)->Unit(benchmark::kMillisecond);

constexpr double ExpressionLimit = 2.0;
constexpr double SumLimit = 4.0;

} // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    reporter.printRatios({{"expressionOfNumbers", "expressionOfIntegers", ExpressionLimit},
                          {"sumOfNumbers", "sumOfIntegers", SumLimit}},
                         rowCount() == FullRows);
    return 0;
}
