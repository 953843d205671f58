#pragma once

/// @file
/// The table at the end of a benchmark: each measure beside what is demanded (gate) and what is aimed at (target).

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

namespace bench {

struct Measure
{
    std::string what;
    double value = 0;
    double gate = 0;
    double target = 0;
    bool higherIsBetter = false;
    const char* unit = "";
};

/// Prints the table. True if every measure keeps its gate.
inline bool printMeasures(const std::vector<Measure>& measures)
{
    bool passed = true;
    std::printf("%-48s %12s %8s %8s\n", "measure", "value", "gate", "target");
    for (const Measure& measure : measures) {
        const auto holds = [&](double limit) {
            return measure.higherIsBetter ? measure.value >= limit : measure.value <= limit;
        };
        const char* const verdict = !holds(measure.gate) ? "FAIL" : holds(measure.target) ? "pass, target met" : "pass";
        std::printf("%-48s %9.2f %-3s %7.4g %7.4g  %s\n", measure.what.c_str(), measure.value, measure.unit,
                    measure.gate, measure.target, verdict);
        passed = passed && holds(measure.gate);
    }
    return passed;
}

}  // namespace bench
