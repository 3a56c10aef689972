#pragma once

#include "BenchTable.h"
#include "GridData.h"
#include "RatioReporter.h"

#include <QFile>
#include <QProcess>

// The peak memory of a whole process that loads the benchmark table into a grid, beside the bytes
// of its cell texts. The process is a second one of the same program, so that nothing else counts.

// The process's peak so far; 0 where the platform does not say.
inline qint64 peakBytes() {
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray& line : status.readAll().split('\n')) {
        if (line.startsWith("VmHWM:"))
            return line.sliced(6).chopped(2).trimmed().toLongLong() * 1024;
    }
    return 0;
}

// In the process that is measured: peak and text bytes on standard output.
inline void reportPeak(const GridData& grid) {
    qint64 textBytes = 0;
    const qint64 peak = peakBytes();
    for (qsizetype row = 1; row < grid.Rows(); ++row)
        grid.visitRow(row, 1, grid.Cols() - 1,
                      [&](int, QByteArrayView text) { textBytes += text.size(); });
    std::printf("%lld %lld\n", peak, textBytes);
}

// Runs the program with the argument that makes it report, and prints the ratio. The limit is about
// a full table.
inline void printMemory(const char* name, const char* self, const char* argument, double limit) {
    constexpr qint64 fullTable = 1000000;
    QProcess process;
    process.start(QString::fromLocal8Bit(self), {QLatin1String(argument)});
    process.waitForFinished(-1);
    const QList<QByteArray> figures = process.readAllStandardOutput().simplified().split(' ');
    if (process.exitCode() != 0 || figures.size() != 2 || figures[0] == "0")
        return void(std::printf("peak memory: not measured\n"));
    const double peak = figures[0].toDouble();
    std::printf("%s: peak memory %.0f MB, cell texts %.0f MB\n", name, peak / 1e6,
                figures[1].toDouble() / 1e6);
    const std::string what = std::string(name) + ": peak memory / cell texts";
    printRatio(what.c_str(), peak / figures[1].toDouble(), limit, benchRows() == fullTable);
}
