#pragma once
// Prints Google Benchmark's table and, after it, each named figure as a ratio against the
// baseline measured in the same run, so that numbers from different machines compare.

#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace torvane::bench {

class RatioReporter : public benchmark::ConsoleReporter {
public:
    // Each pair is (measured, baseline): benchmark names without their arguments' suffixes.
    using Ratios = std::vector<std::pair<std::string, std::string>>;

    explicit RatioReporter(Ratios ratios)
        : ratios_(std::move(ratios)) {}

    void ReportRuns(const std::vector<Run>& runs) override {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            if (run.run_type == Run::RT_Iteration && run.iterations > 0) {
                times_[run.run_name.function_name] = run.GetAdjustedRealTime();
                unit_[run.run_name.function_name] = benchmark::GetTimeUnitString(run.time_unit);
            }
        }
    }

    void Finalize() override {
        ConsoleReporter::Finalize();
        for (const auto& [measured, baseline] : ratios_) {
            if (times_.count(measured) == 0 || times_.count(baseline) == 0 ||
                times_[baseline] <= 0.0) {
                continue;
            }
            std::printf("ratio %s / %s = %.2f   (%.3f %s against %.3f %s)\n", measured.c_str(),
                        baseline.c_str(), times_[measured] / times_[baseline], times_[measured],
                        unit_[measured].c_str(), times_[baseline], unit_[baseline].c_str());
        }
    }

private:
    std::vector<std::pair<std::string, std::string>> ratios_;
    std::map<std::string, double> times_;
    std::map<std::string, std::string> unit_;
};

// A benchmark program's run once its shared data is made: every benchmark the command line
// selects, then the ratios of the pairs it names.
inline int RunBenchmarks(int argc, char** argv, RatioReporter::Ratios ratios) {
    benchmark::Initialize(&argc, argv);
    RatioReporter reporter(std::move(ratios));
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();
    return 0;
}

} // namespace torvane::bench
