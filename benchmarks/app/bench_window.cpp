#include "BenchTable.h"
#include "FlexGrid.h"
#include "OracleTable.h"
#include "PeakMemory.h"
#include "RatioReporter.h"
#include "RecordingHost.h"
#include "RecordingWorkspace.h"
#include "Trace.h"
#include "frmQuery.h"
#include "modDatabase.h"

#include <QApplication>

using namespace Qt::StringLiterals;

// A SELECT of every row in a real query window, up to the first paint of its filled grid, beside
// the engine's own bare loop; from a plain file and from one in the server's dialect.

namespace {

constexpr double timeLimit = 1.0;
constexpr double memoryLimit = 1.8;
constexpr qint64 judgedRows = 1000000; // what the limits are about
constexpr const char* loadAndReport = "--load-and-report";
constexpr const char* loadOracleAndReport = "--load-oracle-and-report";

struct Bench {
    RecordingHost host;
    RecordingWorkspace workspace;
    TraceLog trace;
    modDatabase database{host, trace};
    frmQuery window{{host, database, workspace, {}}};

    explicit Bench(const QString& file) {
        database.Build_Connection_String(file, u"bench"_s, QString());
        if (!database.Open_Connection())
            qFatal("%s", qPrintable(trace.text()));
        constexpr QSize size(1000, 700);
        window.resize(size);
        window.show();
        QApplication::processEvents();
    }
    void runAndPaint() {
        window.Run_SELECT_Query(QString::fromUtf8(benchQuery));
        QApplication::processEvents();
        window.grab();
    }
    bool isComplete() { return window.resultGrid().Rows() == benchRows() + 1; }
};

void loadFrom(benchmark::State& state, const QString& databaseFile) {
    Bench bench(databaseFile);
    for (auto _ : state) {
        bench.runAndPaint();
        state.PauseTiming();
        if (!bench.isComplete())
            state.SkipWithError("rows are missing");
        bench.window.resultGrid().clear();
        state.ResumeTiming();
    }
}

void loadAndPaint(benchmark::State& state) {
    loadFrom(state, benchFile());
}

void loadAndPaintOracle(benchmark::State& state) {
    loadFrom(state, oracleFile());
}

// Without warm-up; the medians of runs that take turns are compared.
constexpr int runs = 5;
BENCHMARK(bareLoop)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(runs);
BENCHMARK(loadAndPaint)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(runs);
BENCHMARK(bareLoopOverStoredValues)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1)
    ->Repetitions(runs);
BENCHMARK(loadAndPaintOracle)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(runs);

int loadOnce(const QString& databaseFile) {
    Bench bench(databaseFile);
    bench.runAndPaint();
    reportPeak(bench.window.resultGrid());
    return bench.isComplete() ? 0 : 1;
}

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen"); // the same on every machine
    QApplication app(argc, argv);
    if (argc == 2 && qstrcmp(argv[1], loadAndReport) == 0)
        return loadOnce(benchFile());
    if (argc == 2 && qstrcmp(argv[1], loadOracleAndReport) == 0)
        return loadOnce(oracleFile());
    if (!runInTurns(argc, argv,
                    {{"loadAndPaint", "bareLoop", timeLimit},
                     {"loadAndPaintOracle", "bareLoopOverStoredValues", timeLimit}},
                    benchRows() == judgedRows))
        return 1;
    printMemory("loadAndPaint", argv[0], loadAndReport, memoryLimit);
    printMemory("loadAndPaintOracle", argv[0], loadOracleAndReport, memoryLimit);
    return 0;
}
