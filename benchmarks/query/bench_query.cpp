#include "BenchTable.h"
#include "OracleTable.h"
#include "PeakMemory.h"
#include "ProgramRun.h"
#include "RatioReporter.h"
#include "RecordingHost.h"
#include "RecordingWindow.h"
#include "Trace.h"
#include "clsQueryRunner.h"
#include "modDatabase.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>

using namespace Qt::StringLiterals;

// A SELECT of every row, as the runner does it, beside the engine's own bare loop; and the console
// program's file output beside the engine's own program. Both from a plain file and from one in the
// server's dialect, which holds the same rows; there the bare loop reads the stored values, and the
// engine's own program writes the plain file's.

namespace {

constexpr double gridLimit = 1.0;
constexpr double memoryLimit = 1.8;
constexpr double fileLimit = 0.65;

constexpr qint64 judgedRows = 1000000; // what the limits are about

constexpr const char* loadAndReport = "--load-and-report";
constexpr const char* loadOracleAndReport = "--load-oracle-and-report";
constexpr const char* loadOracleAndTime = "--load-oracle-and-time";
constexpr const char* bareLoopAndTime = "--bare-loop-and-time";

// Everything that a query window needs for a run.
struct Bench {
    RecordingHost host;
    RecordingWindow window{host.log};
    TraceLog trace;
    modDatabase database{host, trace};
    clsQueryRunner runner{window, host, database};

    explicit Bench(const QString& file) {
        database.Build_Connection_String(file, u"bench"_s, QString());
        if (!database.Open_Connection())
            qFatal("%s", qPrintable(trace.text()));
    }
    void run() { runner.Run_SELECT_Query(QString::fromUtf8(benchQuery)); }
    bool isComplete() { return window.resultGridData.Rows() == benchRows() + 1; }
};

void loadFrom(benchmark::State& state, const QString& databaseFile) {
    Bench bench(databaseFile);
    for (auto _ : state) {
        bench.run();
        state.PauseTiming();
        if (!bench.isComplete())
            state.SkipWithError("rows are missing");
        bench.window.resultGridData.clear();
        state.ResumeTiming();
    }
}

void loadGrid(benchmark::State& state) {
    loadFrom(state, benchFile());
}

void loadOracleGrid(benchmark::State& state) {
    loadFrom(state, oracleFile());
}

void writeFrom(benchmark::State& state, const QString& databaseFile) {
    const QString script = QDir::temp().filePath(u"quillmate-bench.sql"_s);
    QFile file(script);
    if (!file.open(QIODevice::WriteOnly) || file.write(benchQuery) < 0)
        return state.SkipWithError("no script");
    file.close();
    const QString output = QDir::temp().filePath(u"quillmate-bench-console.csv"_s);
    runProgram(
        state, QStringLiteral(QUILLMATE_CONSOLE),
        {u"bench|none|"_s + databaseFile, script, u"--quiet"_s, u"--output"_s, u"file"_s, output},
        output);
}

void consoleFile(benchmark::State& state) {
    writeFrom(state, benchFile());
}

void consoleOracleFile(benchmark::State& state) {
    writeFrom(state, oracleFile());
}

void sqliteFile(benchmark::State& state) {
    runProgram(state, u"sqlite3"_s,
               {u"-csv"_s, u"-header"_s, benchFile(), QLatin1String(benchQuery)},
               QDir::temp().filePath(u"quillmate-bench-sqlite.csv"_s));
}

// Without warm-up; the medians of runs that take turns are compared.
constexpr int runs = 5;
constexpr int firstRuns = 9;
BENCHMARK(bareLoop)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(runs);
BENCHMARK(loadGrid)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(runs);
BENCHMARK(sqliteFile)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(runs);
BENCHMARK(consoleFile)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(runs);
BENCHMARK(bareLoopOverStoredValues)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1)
    ->Repetitions(runs);
BENCHMARK(loadOracleGrid)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(runs);
BENCHMARK(consoleOracleFile)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(runs);

const std::vector<RatioLimit> limits{{"loadGrid", "bareLoop", gridLimit},
                                     {"consoleFile", "sqliteFile", fileLimit},
                                     {"loadOracleGrid", "bareLoopOverStoredValues", gridLimit},
                                     {"consoleOracleFile", "sqliteFile", fileLimit}};

int loadOnce(const QString& databaseFile) {
    Bench bench(databaseFile);
    bench.run();
    reportPeak(bench.window.resultGridData);
    return bench.isComplete() ? 0 : 1;
}

template<typename Work>
int timeOnce(Work&& work) {
    QElapsedTimer timer;
    timer.start();
    work();
    std::printf("%lld\n", timer.nsecsElapsed());
    return 0;
}

int timeFirstLoad() {
    Bench bench(oracleFile());
    return timeOnce([&] { bench.run(); });
}

int timeFirstBareLoop() {
    const QString sql = u"SELECT * FROM "_s + storedNameOfBig();
    const BareDatabase db(oracleFile());
    return timeOnce([&] { db.scan(sql); });
}

qint64 nanosecondsOf(const QString& program, const char* argument) {
    QProcess process;
    process.start(program, {QLatin1String(argument)});
    process.waitForFinished(-1);
    return process.exitCode() == 0 ? process.readAllStandardOutput().toLongLong() : 0;
}

// A process's first run has no page that an earlier one left behind. Load and bare loop take turns,
// each in a process of its own.
void printFirstRun(const QString& self) {
    std::vector<double> ratios;
    for (int i = 0; i < firstRuns; ++i) {
        const qint64 bare = nanosecondsOf(self, bareLoopAndTime);
        const qint64 load = nanosecondsOf(self, loadOracleAndTime);
        if (bare == 0 || load == 0)
            return void(std::printf("first run: not measured\n"));
        ratios.push_back(double(load) / double(bare));
    }
    std::sort(ratios.begin(), ratios.end());
    printRatio("loadOracleGrid / bareLoopOverStoredValues, first run of a process",
               ratios[ratios.size() / 2], gridLimit, benchRows() == judgedRows);
}

} // namespace

int main(int argc, char** argv) {
    if (argc == 2 && qstrcmp(argv[1], loadAndReport) == 0)
        return loadOnce(benchFile());
    if (argc == 2 && qstrcmp(argv[1], loadOracleAndReport) == 0)
        return loadOnce(oracleFile());
    if (argc == 2 && qstrcmp(argv[1], loadOracleAndTime) == 0)
        return timeFirstLoad();
    if (argc == 2 && qstrcmp(argv[1], bareLoopAndTime) == 0)
        return timeFirstBareLoop();
    if (!runInTurns(argc, argv, limits, benchRows() == judgedRows))
        return 1;
    printFirstRun(QString::fromLocal8Bit(argv[0]));
    printMemory("loadGrid", argv[0], loadAndReport, memoryLimit);
    printMemory("loadOracleGrid", argv[0], loadOracleAndReport, memoryLimit);
    return 0;
}
