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

bench::DeployedRun& Run(double minutes) {
    static std::map<double, std::unique_ptr<bench::DeployedRun>> runs;
    auto& run = runs[minutes];
    if (!run) {
        run = std::make_unique<bench::DeployedRun>(bench::LargestRunSetting(), minutes, 5);
    }
    return *run;
}

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
    const bench::DeployedRun& run = Run(minutes);
    const std::vector<calc::FormulaToken> postfix = Postfix(run);
    if (postfix.empty()) {
        state.SkipWithError("the formula was refused");
        return;
    }
    shell::RecordingSink sink;
    std::int64_t peakAbove = 0;
    for (auto _ : state) {
        const std::int64_t before = bench::heapInUse;
        bench::heapPeak = before;
        const calc::FormulaOutcome outcome =
            calc::CalculateFormula(postfix, {&run.Layers(), 0, &run.Laf()}, "Pw", 2, sink);
        if (outcome.Result != calc::FormulaResult::Success) {
            state.SkipWithError("the calculation failed");
            return;
        }
        entries[minutes] = outcome.Entries;
        peakAbove = std::max(peakAbove, bench::heapPeak - before);
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
    const bench::DeployedRun& run = Run(bench::LargestRunMinutes);
    const std::int64_t total = entries[bench::LargestRunMinutes] * 4;
    if (total == 0) {
        state.SkipWithError("FormulaLargestRun gives the number of bytes: run it first");
        return;
    }
    std::vector<char> block(64 * 1024, '0');
    for (auto _ : state) {
        for (const char* stream : InputStreams) {
            std::FILE* in = std::fopen(run.Layers().StreamPath(0, stream).c_str(), "rb");
            while (in != nullptr && std::fread(block.data(), 1, block.size(), in) > 0) {
            }
            if (in != nullptr) {
                std::fclose(in);
            }
        }
        std::FILE* out = std::fopen((run.Folder() / "PLAIN.tmp").c_str(), "wb");
        for (std::int64_t left = total; left > 0;) {
            const auto chunk = static_cast<std::size_t>(
                std::min<std::int64_t>(left, static_cast<std::int64_t>(block.size())));
            std::fwrite(block.data(), 1, chunk, out);
            left -= static_cast<std::int64_t>(chunk);
        }
        std::fclose(out);
    }
    state.SetItemsProcessed(state.iterations() * entries[bench::LargestRunMinutes]);
}

BENCHMARK(FormulaTenMinutes)->Unit(benchmark::kMillisecond);
BENCHMARK(FormulaLargestRun)->Unit(benchmark::kMillisecond);
BENCHMARK(SequentialReadAndWriteOfTheSameBytes)->Unit(benchmark::kMillisecond)->MinTime(2.0);

} // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    Run(TenMinutes);
    Run(bench::LargestRunMinutes);
    bench::RatioReporter reporter(bench::RatioReporter::Ratios{
        {"FormulaLargestRun", "SequentialReadAndWriteOfTheSameBytes"}});
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();
    return 0;
}
