#pragma once

#include "BenchTable.h"

#include <QFile>
#include <QProcess>

// Times a whole program that writes the benchmark table's rows to the output file, which its
// arguments name or which takes its standard output.
inline void runProgram(benchmark::State& state, const QString& program,
                       const QStringList& arguments, const QString& output,
                       const QByteArray& input = {}) {
    for (auto _ : state) {
        QProcess process;
        process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        if (!arguments.contains(output))
            process.setStandardOutputFile(output);
        process.start(program, arguments);
        process.write(input);
        process.closeWriteChannel();
        process.waitForFinished(-1);
        state.PauseTiming();
        if (process.exitCode() != 0 || QFile(output).size() < benchRows())
            state.SkipWithError("no output");
        QFile::remove(output);
        state.ResumeTiming();
    }
}
