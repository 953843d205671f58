#pragma once

/// @file
/// Google Benchmark as a stopwatch: it times passes by their names and keeps the least time of each.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <functional>
#include <limits>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace bench {

/// The least nanoseconds of processor time per pass, by the benchmark's name, and the output of the passes themselves.
class LeastTimes : public benchmark::ConsoleReporter
{
public:
    LeastTimes() : ConsoleReporter(OO_None) {}

    bool ReportContext(const Context&) override { return true; }
    void ReportRuns(const std::vector<Run>& runs) override
    {
        for (const Run& run : runs) {
            if (run.run_type != Run::RT_Iteration)
                continue;
            double& least =
                times_.try_emplace(run.run_name.function_name, std::numeric_limits<double>::max()).first->second;
            least = std::min(least, run.cpu_accumulated_time * 1e9 / static_cast<double>(run.iterations));
        }
    }

    double of(const std::string& name) const { return times_.at(name); }
    bool has(const std::string& name) const { return times_.contains(name); }

private:
    std::map<std::string, double> times_;
};

/// Times `pass` under that name, `repetitions` times: each time for at least `seconds`, or one pass if that is 0.
inline void time(const std::string& name, std::function<void()> pass, int repetitions, double seconds)
{
    auto* const run = benchmark::RegisterBenchmark(name.c_str(), [pass = std::move(pass)](benchmark::State& state) {
        for ([[maybe_unused]] auto _ : state)
            pass();
    });
    run->Repetitions(repetitions)->Unit(benchmark::kNanosecond);
    if (seconds == 0)
        run->Iterations(1);
    else
        run->MinTime(seconds);
}

}  // namespace bench
