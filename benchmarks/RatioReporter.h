#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <map>
#include <string>
#include <vector>

// What a benchmark may cost at most beside its yardstick in the same run.
struct RatioLimit {
    const char* benchmark;
    const char* yardstick;
    double limit;
};

// judged: the run was of the size that the limit is about.
inline void printRatio(const char* what, double ratio, double limit, bool judged) {
    std::printf("%s: %.2f (at most %.2f%s)%s\n", what, ratio, limit, judged ? "" : " in a full run",
                judged && ratio > limit ? " *** too much" : "");
}

// The usual console report, which also keeps the wall-clock times, so that ratios can be printed
// behind it. Of a benchmark that runs several repetitions the median is shown and compared.
class RatioReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override {
        std::vector<Run> shown;
        for (const Run& run : runs) {
            const bool measured = run.run_type == Run::RT_Iteration && !run.error_occurred;
            if (measured)
                m_times[run.run_name.function_name].push_back(run.GetAdjustedRealTime());
            if (!measured || run.repetitions <= 1)
                shown.push_back(run);
        }
        std::erase_if(shown, [](const Run& run) {
            return run.run_type == Run::RT_Aggregate && run.aggregate_name != "median";
        });
        ConsoleReporter::ReportRuns(shown);
    }

    void printRatios(const std::vector<RatioLimit>& limits, bool judged) const {
        for (const auto& [name, yardstick, limit] : limits) {
            if (!m_times.contains(name) || !m_times.contains(yardstick))
                continue; // filtered out
            std::string what(name);
            what.append(" / ").append(yardstick);
            printRatio(what.c_str(), median(name) / median(yardstick), limit, judged);
        }
    }

private:
    double median(const std::string& name) const {
        std::vector<double> times = m_times.at(name);
        std::sort(times.begin(), times.end());
        return times[times.size() / 2];
    }
    std::map<std::string, std::vector<double>> m_times;
};

// Runs the benchmarks with their repetitions in turn, so that a busy moment hits yardstick and work
// alike, and prints the ratios behind the report. False, after a message, for a bad command line.
inline bool runInTurns(int argc, char** argv, const std::vector<RatioLimit>& limits, bool judged) {
    std::vector<char*> arguments(argv, argv + argc);
    char takeTurns[] = "--benchmark_enable_random_interleaving=true";
    arguments.insert(arguments.begin() + 1, takeTurns);
    int count = int(arguments.size());
    benchmark::Initialize(&count, arguments.data());
    if (benchmark::ReportUnrecognizedArguments(count, arguments.data()))
        return false;
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    reporter.printRatios(limits, judged);
    return true;
}
