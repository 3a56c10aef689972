#include "BenchTable.h"
#include "PeakMemory.h"
#include "PostgresServer.h"
#include "ProgramRun.h"
#include "RatioReporter.h"
#include "RecordingHost.h"
#include "RecordingWindow.h"
#include "TestDataSources.h"
#include "Trace.h"
#include "clsQueryRunner.h"
#include "modDatabase.h"

#include <QCoreApplication>
#include <QDir>

#include <memory>

using namespace Qt::StringLiterals;

// A SELECT of every row through ODBC from a PostgreSQL on loopback: the console program's file
// output beside the server's own client and the ODBC manager's, and the memory of a loaded grid.

namespace {

constexpr double clientLimit = 1.4;
constexpr double managerLimit = 0.5;
constexpr double memoryLimit = 1.8;

constexpr qint64 judgedRows = 1000000; // what the limits are about
constexpr const char* loadAndReport = "--load-and-report";
constexpr const char* query = "SELECT * FROM big";

std::unique_ptr<PostgresServer> server;

void fillServer() {
    const QByteArray rows = QByteArray::number(benchRows());
    server->sql("CREATE TABLE big AS SELECT i::int8 AS id, ('C' || i % 9973)::varchar(12) AS code,"
                " ('Name of customer ' || i)::varchar(40) AS name,"
                " (i * 7 % 100000 / 100.0)::numeric(10,2) AS price, (i % 1000)::int4 AS quantity,"
                " timestamp '2020-01-01' + i * interval '61 seconds' AS created,"
                " ('City ' || i % 500)::varchar(20) AS city,"
                " ('A note of some length about row ' || i)::varchar(60) AS note"
                " FROM generate_series(1, " +
                rows +
                ") AS i;\n"
                "GRANT SELECT ON big TO scott;\nANALYZE big;\n");
}

QString outputFile() {
    return QDir::temp().filePath(u"quillmate-bench-odbc.csv"_s);
}

void consoleFile(benchmark::State& state) {
    runProgram(
        state, QStringLiteral(QUILLMATE_CONSOLE),
        {u"scott|tiger|BENCH"_s, u"-"_s, u"--quiet"_s, u"--output"_s, u"file"_s, outputFile()},
        outputFile(), query);
}

void psqlCsv(benchmark::State& state) {
    runProgram(state, u"psql"_s,
               {u"-X"_s, u"--csv"_s, u"-h"_s, u"127.0.0.1"_s, u"-p"_s,
                QString::number(server->port()), u"-U"_s, u"postgres"_s, u"-d"_s, u"orcl"_s,
                u"-c"_s, QString::fromLatin1(query)},
               outputFile());
}

void isqlFile(benchmark::State& state) {
    runProgram(state, u"isql"_s, {u"BENCH"_s, u"scott"_s, u"tiger"_s, u"-b"_s, u"-d,"_s},
               outputFile(), QByteArray(query) + '\n');
}

// Without warm-up; the medians of runs that take turns are compared.
constexpr int runs = 5;
BENCHMARK(psqlCsv)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(runs);
BENCHMARK(isqlFile)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(runs);
BENCHMARK(consoleFile)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(runs);

const std::vector<RatioLimit> limits{{"consoleFile", "psqlCsv", clientLimit},
                                     {"consoleFile", "isqlFile", managerLimit}};

// In the process that is measured; its data source comes from the environment.
int loadOnce() {
    RecordingHost host;
    RecordingWindow window{host.log};
    TraceLog trace;
    modDatabase database{host, trace};
    database.Build_Connection_String(u"BENCH"_s, u"scott"_s, u"tiger"_s);
    if (!database.Open_Connection())
        return 1;
    clsQueryRunner runner{window, host, database};
    runner.Run_SELECT_Query(QString::fromLatin1(query));
    reportPeak(window.resultGridData);
    return window.resultGridData.Rows() == benchRows() + 1 ? 0 : 1;
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv); // the locale, which the driver's texts follow
    if (argc == 2 && qstrcmp(argv[1], loadAndReport) == 0)
        return loadOnce();
    server = std::make_unique<PostgresServer>();
    if (const QString missing = server->missing(); !missing.isEmpty()) {
        std::printf("not run: %s\n", qPrintable(missing));
        return 0;
    }
    server->start();
    fillServer();
    TestDataSources sources;
    sources.add(server->dataSource(u"BENCH"_s, server->port()));
    const bool ran = runInTurns(argc, argv, limits, benchRows() == judgedRows);
    if (ran)
        printMemory("loadGrid", argv[0], loadAndReport, memoryLimit);
    server.reset();
    return ran ? 0 : 1;
}
