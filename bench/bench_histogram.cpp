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

fs::path StreamOf(const bench::DeployedRun& run, logdata::Channel channel) {
    return run.Layers().StreamPath(0, logdata::StreamNames[channel]);
}

void BothHistograms(benchmark::State& state, double minutes) {
    const bench::DeployedRun& run = bench::LargestSettingRun(minutes);
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
        bool made = false;
        peakAbove = std::max(peakAbove, bench::PeakHeapOf([&] {
                                 made = views::MakeThHistogram(th, calibration, thFigures, sink) &&
                                        views::MakeNeHistogram(ne, {0, 20000}, neFigures, sink);
                             }));
        if (!made) {
            state.SkipWithError("a histogram failed");
        }
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
    const bench::DeployedRun& run = bench::LargestSettingRun(bench::LargestRunMinutes);
    const std::vector<fs::path> files{StreamOf(run, logdata::TH), StreamOf(run, logdata::Ne)};
    std::int64_t bytes = 0;
    for (auto _ : state) {
        bytes = bench::ReadEveryByte(files);
    }
    state.SetBytesProcessed(state.iterations() * bytes);
}

BENCHMARK(HistogramsTenMinutes)->Unit(benchmark::kMillisecond);
BENCHMARK(HistogramsLargestRun)->Unit(benchmark::kMillisecond);
BENCHMARK(SequentialReadOfTheSameFiles)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) {
    bench::LargestSettingRun(TenMinutes);
    bench::LargestSettingRun(bench::LargestRunMinutes);
    return bench::RunBenchmarks(argc, argv,
                                {{"HistogramsLargestRun", "SequentialReadOfTheSameFiles"}});
}
