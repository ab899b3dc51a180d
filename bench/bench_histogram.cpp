// Both histograms (TH and Ne) of the largest run the logger holds, against a plain sequential
// read of the same two stream files in the same run; and their peak heap on a 10-minute and on
// the 4.5-hour run, which must be the same: the streams are read in fixed blocks.

#include "bench_runs.h"
#include "counted_heap.h"
#include "ratio_reporter.h"
#include "views/histogram.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>
#include <memory>
#include <vector>

namespace {

namespace fs = std::filesystem;
using namespace torvane;

constexpr double TenMinutes = 10.0;

bench::DeployedRun& Run(double minutes) {
    static std::map<double, std::unique_ptr<bench::DeployedRun>> runs;
    auto& run = runs[minutes];
    if (!run) {
        run = std::make_unique<bench::DeployedRun>(bench::LargestRunSetting(), minutes, 5);
    }
    return *run;
}

fs::path StreamOf(const bench::DeployedRun& run, logdata::Channel channel) {
    return run.Layers().StreamPath(0, logdata::StreamNames[channel]);
}

void BothHistograms(benchmark::State& state, double minutes) {
    const bench::DeployedRun& run = Run(minutes);
    const fs::path th = StreamOf(run, logdata::TH);
    const fs::path ne = StreamOf(run, logdata::Ne);
    const logdata::LogHeader& header = run.Layers().Layer[0].Header;
    const views::ThCalibration calibration{static_cast<std::int16_t>(header.ThOpen()),
                                           static_cast<std::int16_t>(header.ThClose())};
    shell::RecordingSink sink;
    std::int64_t peakAbove = 0;
    views::HistogramFigures thFigures;
    views::HistogramFigures neFigures;
    for (auto _ : state) {
        const std::int64_t before = bench::heapInUse;
        bench::heapPeak = before;
        if (!views::MakeThHistogram(th, calibration, thFigures, sink) ||
            !views::MakeNeHistogram(ne, {0, 20000}, neFigures, sink)) {
            state.SkipWithError("a histogram failed");
        }
        peakAbove = std::max(peakAbove, bench::heapPeak - before);
        benchmark::DoNotOptimize(thFigures);
        benchmark::DoNotOptimize(neFigures);
    }
    const auto bytes = static_cast<std::int64_t>(fs::file_size(th) + fs::file_size(ne));
    state.SetBytesProcessed(state.iterations() * bytes);
    state.counters["peak_heap_KiB"] = static_cast<double>(peakAbove) / 1024.0;
    state.counters["samples_M"] = static_cast<double>(thFigures.Total + neFigures.Total) / 1e6;
}

void HistogramsTenMinutes(benchmark::State& state) {
    BothHistograms(state, TenMinutes);
}
void HistogramsLargestRun(benchmark::State& state) {
    BothHistograms(state, bench::LargestRunMinutes);
}

// The same two files read front to back in 64 KiB blocks, every byte looked at once.
void SequentialReadOfTheSameFiles(benchmark::State& state) {
    const bench::DeployedRun& run = Run(bench::LargestRunMinutes);
    std::vector<unsigned char> block(64 * 1024);
    std::int64_t bytes = 0;
    for (auto _ : state) {
        unsigned sum = 0;
        bytes = 0;
        for (const auto channel : {logdata::TH, logdata::Ne}) {
            std::FILE* in = std::fopen(StreamOf(run, channel).c_str(), "rb");
            for (std::size_t got = 0; (got = std::fread(block.data(), 1, block.size(), in)) > 0;) {
                for (std::size_t i = 0; i < got; ++i) {
                    sum += block[i];
                }
                bytes += static_cast<std::int64_t>(got);
            }
            std::fclose(in);
        }
        benchmark::DoNotOptimize(sum);
    }
    state.SetBytesProcessed(state.iterations() * bytes);
}

BENCHMARK(HistogramsTenMinutes)->Unit(benchmark::kMillisecond);
BENCHMARK(HistogramsLargestRun)->Unit(benchmark::kMillisecond);
BENCHMARK(SequentialReadOfTheSameFiles)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    Run(TenMinutes);
    Run(bench::LargestRunMinutes);
    bench::RatioReporter reporter(
        bench::RatioReporter::Ratios{{"HistogramsLargestRun", "SequentialReadOfTheSameFiles"}});
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();
    return 0;
}
