// The formula Ne*TH/100+sqrt(VFW) over the largest run: time steps a second, against reading its
// three input streams sequentially and writing as many result bytes in the same run; and the
// calculation's peak heap on a 10-minute and a 4.5-hour run, which must be the same: each input
// keeps one read block, the result one write buffer, whatever the length.

#include "bench_runs.h"
#include "calc/formula_calculation.h"
#include "calc/formula_items.h"
#include "counted_heap.h"
#include "ratio_reporter.h"

#include <benchmark/benchmark.h>

#include <array>
#include <cstdio>
#include <map>
#include <memory>
#include <optional>
#include <vector>

namespace {

namespace fs = std::filesystem;
using namespace torvane;

constexpr double TenMinutes = 10.0;
constexpr const char* BenchFormula = "Ne*TH/100+sqrt(VFW)";
constexpr std::array<const char*, 3> InputStreams{"Ne", "TH", "VFW"};

std::vector<calc::FormulaToken> Postfix(const bench::DeployedRun& run) {
    std::vector<calc::FormulaToken> postfix;
    std::optional<shell::RunTimeError> failure;
    calc::ConvertToPostfix(BenchFormula,
                           calc::OfferedNames(calc::OfferedKinds(run.Layers().Layer[0])), postfix,
                           failure);
    return postfix;
}

std::map<double, std::int64_t> entries;

void Formula(benchmark::State& state, double minutes) {
    const bench::DeployedRun& run = bench::LargestSettingRun(minutes);
    const std::vector<calc::FormulaToken> postfix = Postfix(run);
    if (postfix.empty()) {
        state.SkipWithError("the formula was refused");
        return;
    }
    shell::RecordingSink sink;
    std::int64_t peakAbove = 0;
    for (auto _ : state) {
        calc::FormulaOutcome outcome;
        peakAbove = std::max(peakAbove, bench::PeakHeapOf([&] {
                                 outcome = calc::CalculateFormula(
                                     postfix, {&run.Layers(), 0, &run.Laf()}, "Pw", 2, sink);
                             }));
        if (outcome.Result != calc::FormulaResult::Success) {
            state.SkipWithError("the calculation failed");
            return;
        }
        entries[minutes] = outcome.Entries;
    }
    state.SetItemsProcessed(state.iterations() * entries[minutes]);
    state.counters["peak_heap_KiB"] = static_cast<double>(peakAbove) / 1024.0;
    state.counters["steps"] = static_cast<double>(entries[minutes]);
}

void FormulaTenMinutes(benchmark::State& state) {
    Formula(state, TenMinutes);
}
void FormulaLargestRun(benchmark::State& state) {
    Formula(state, bench::LargestRunMinutes);
}

// The formula's three input streams read from start to end, and as many bytes as its result
// written, in 64 KiB blocks, in the same folder.
void SequentialReadAndWriteOfTheSameBytes(benchmark::State& state) {
    const bench::DeployedRun& run = bench::LargestSettingRun(bench::LargestRunMinutes);
    const std::int64_t total = entries[bench::LargestRunMinutes] * 4;
    if (total == 0) {
        state.SkipWithError("FormulaLargestRun gives the number of bytes: run it first");
        return;
    }
    std::vector<fs::path> inputs;
    for (const char* stream : InputStreams) {
        inputs.push_back(run.Layers().StreamPath(0, stream));
    }
    for (auto _ : state) {
        bench::ReadEveryByte(inputs);
        bench::WriteBytes(run.Folder() / "PLAIN.tmp", total);
    }
    state.SetItemsProcessed(state.iterations() * entries[bench::LargestRunMinutes]);
}

BENCHMARK(FormulaTenMinutes)->Unit(benchmark::kMillisecond);
BENCHMARK(FormulaLargestRun)->Unit(benchmark::kMillisecond);
BENCHMARK(SequentialReadAndWriteOfTheSameBytes)->Unit(benchmark::kMillisecond)->MinTime(2.0);

} // namespace

int main(int argc, char** argv) {
    bench::LargestSettingRun(TenMinutes);
    bench::LargestSettingRun(bench::LargestRunMinutes);
    return bench::RunBenchmarks(argc, argv,
                                {{"FormulaLargestRun", "SequentialReadAndWriteOfTheSameBytes"}});
}
