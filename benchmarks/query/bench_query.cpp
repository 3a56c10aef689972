#include "BenchTable.h"
#include "RatioReporter.h"
#include "RecordingHost.h"
#include "RecordingWindow.h"
#include "Trace.h"
#include "clsQueryRunner.h"
#include "modDatabase.h"

#include <QDir>
#include <QFile>
#include <QProcess>

using namespace Qt::StringLiterals;

// A SELECT of every row, as the runner does it, beside the engine's own bare loop; and the console
// program's file output beside the engine's own program.

namespace {

constexpr double gridLimit = 1.0;
constexpr double memoryLimit = 1.8;
constexpr double fileLimit = 0.65;

constexpr qint64 judgedRows = 1000000; // what the limits are about

constexpr const char* loadAndReport = "--load-and-report";

void bareLoop(benchmark::State& state) {
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

// Everything that a query window needs for a run.
struct Bench {
    RecordingHost host;
    RecordingWindow window{host.log};
    TraceLog trace;
    modDatabase database{host, trace};
    clsQueryRunner runner{window, host, database};

    Bench() {
        database.Build_Connection_String(benchFile(), u"bench"_s, QString());
        if (!database.Open_Connection())
            qFatal("%s", qPrintable(trace.text()));
    }
    void run() { runner.Run_SELECT_Query(QString::fromUtf8(benchQuery)); }
    bool isComplete() { return window.resultGridData.Rows() == benchRows() + 1; }
};

void loadGrid(benchmark::State& state) {
    Bench bench;
    for (auto _ : state) {
        bench.run();
        state.PauseTiming();
        if (!bench.isComplete())
            state.SkipWithError("rows are missing");
        bench.window.resultGridData.clear();
        state.ResumeTiming();
    }
}

void run(benchmark::State& state, const QString& program, const QStringList& arguments,
         const QString& output) {
    for (auto _ : state) {
        QProcess process;
        process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        if (!arguments.contains(output))
            process.setStandardOutputFile(output);
        process.start(program, arguments);
        process.waitForFinished(-1);
        state.PauseTiming();
        if (process.exitCode() != 0 || QFile(output).size() < benchRows())
            state.SkipWithError("no output");
        QFile::remove(output);
        state.ResumeTiming();
    }
}

void consoleFile(benchmark::State& state) {
    const QString script = QDir::temp().filePath(u"quillmate-bench.sql"_s);
    QFile file(script);
    if (!file.open(QIODevice::WriteOnly) || file.write(benchQuery) < 0)
        return state.SkipWithError("no script");
    file.close();
    const QString output = QDir::temp().filePath(u"quillmate-bench-console.csv"_s);
    run(state, QStringLiteral(QUILLMATE_CONSOLE),
        {u"bench|none|"_s + benchFile(), script, u"--quiet"_s, u"--output"_s, u"file"_s, output},
        output);
}

void sqliteFile(benchmark::State& state) {
    run(state, u"sqlite3"_s, {u"-csv"_s, u"-header"_s, benchFile(), QLatin1String(benchQuery)},
        QDir::temp().filePath(u"quillmate-bench-sqlite.csv"_s));
}

// Without warm-up; the medians of runs that take turns are compared.
constexpr int runs = 5;
BENCHMARK(bareLoop)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(runs);
BENCHMARK(loadGrid)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(runs);
BENCHMARK(sqliteFile)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(runs);
BENCHMARK(consoleFile)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(runs);

const std::vector<RatioLimit> limits{{"loadGrid", "bareLoop", gridLimit},
                                     {"consoleFile", "sqliteFile", fileLimit}};

// The process's peak so far; 0 where the platform does not say.
qint64 peakBytes() {
    QFile status(u"/proc/self/status"_s);
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray& line : status.readAll().split('\n')) {
        if (line.startsWith("VmHWM:"))
            return line.sliced(6).chopped(2).trimmed().toLongLong() * 1024;
    }
    return 0;
}

// Peak and text bytes on standard output, for the process that measures this one.
int loadOnce() {
    Bench bench;
    bench.run();
    qint64 textBytes = 0;
    const GridData& grid = bench.window.resultGridData;
    for (qsizetype row = 1; row < grid.Rows(); ++row)
        grid.visitRow(row, 1, grid.Cols() - 1,
                      [&](int, QByteArrayView text) { textBytes += text.size(); });
    std::printf("%lld %lld\n", peakBytes(), textBytes);
    return bench.isComplete() ? 0 : 1;
}

void printMemory(const char* self) {
    QProcess process;
    process.start(QString::fromLocal8Bit(self), {QLatin1String(loadAndReport)});
    process.waitForFinished(-1);
    const QList<QByteArray> figures = process.readAllStandardOutput().simplified().split(' ');
    if (process.exitCode() != 0 || figures.size() != 2 || figures[0] == "0")
        return void(std::printf("peak memory: not measured\n"));
    const double peak = figures[0].toDouble();
    std::printf("loadGrid: peak memory %.0f MB, cell texts %.0f MB\n", peak / 1e6,
                figures[1].toDouble() / 1e6);
    printRatio("loadGrid: peak memory / cell texts", peak / figures[1].toDouble(), memoryLimit,
               benchRows() == judgedRows);
}

} // namespace

int main(int argc, char** argv) {
    if (argc == 2 && qstrcmp(argv[1], loadAndReport) == 0)
        return loadOnce();
    std::vector<char*> arguments(argv, argv + argc);
    char takeTurns[] = "--benchmark_enable_random_interleaving=true";
    arguments.insert(arguments.begin() + 1, takeTurns);
    int count = int(arguments.size());
    benchmark::Initialize(&count, arguments.data());
    if (benchmark::ReportUnrecognizedArguments(count, arguments.data()))
        return 1;
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    reporter.printRatios(limits, benchRows() == judgedRows);
    printMemory(argv[0]);
    return 0;
}
