// The detonation map of the largest run the logger holds, made as the frame's "OpenFile" entry
// makes it from a window's layer (the map walk over Ne, TH, DETO1 and DETO2, the run distance
// from the wheel speed, the work file), against a plain sequential read of the same five stream
// files in the same run; and its peak heap on a 10-minute and a 4.5-hour run, which must be the
// same: the walk keeps one block of 100 periods a stream, whatever the length.

#include "bench_runs.h"
#include "counted_heap.h"
#include "ratio_reporter.h"
#include "views/detonation_layer.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>
#include <memory>
#include <vector>

namespace {

namespace fs = std::filesystem;
using namespace torvane;

constexpr double TenMinutes = 10.0;

// The streams the map reads.
std::vector<fs::path> InputFiles(const bench::DeployedRun& run) {
    std::vector<fs::path> files;
    for (const char* stream : {"Ne", "TH", "DETO1", "DETO2", "VFW"}) {
        files.push_back(run.Layers().StreamPath(0, stream));
    }
    return files;
}

std::uintmax_t InputBytes(const bench::DeployedRun& run) {
    std::uintmax_t total = 0;
    for (const fs::path& file : InputFiles(run)) {
        total += fs::file_size(file);
    }
    return total;
}

void Map(benchmark::State& state, double minutes) {
    const bench::DeployedRun& run = bench::LargestSettingRun(minutes);
    shell::RecordingSink sink;
    std::int64_t peakAbove = 0;
    for (auto _ : state) {
        fs::path file;
        peakAbove = std::max(peakAbove, bench::PeakHeapOf([&] {
                                 file = views::GetDetonationOfLayer(run.Layers(), 0, sink);
                             }));
        if (file.empty()) {
            state.SkipWithError("the map was not written");
        }
        std::error_code ignored;
        fs::remove(file, ignored);
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * InputBytes(run)));
    state.counters["peak_heap_KiB"] = static_cast<double>(peakAbove) / 1024.0;
    state.counters["input_MB"] = static_cast<double>(InputBytes(run)) / 1e6;
}

void MapTenMinutes(benchmark::State& state) {
    Map(state, TenMinutes);
}
void MapLargestRun(benchmark::State& state) {
    Map(state, bench::LargestRunMinutes);
}

// The same five files read front to back in 64 KiB blocks, every byte looked at once.
void SequentialReadOfTheSameFiles(benchmark::State& state) {
    const bench::DeployedRun& run = bench::LargestSettingRun(bench::LargestRunMinutes);
    const std::vector<fs::path> files = InputFiles(run);
    for (auto _ : state) {
        bench::ReadEveryByte(files);
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * InputBytes(run)));
}

BENCHMARK(MapTenMinutes)->Unit(benchmark::kMillisecond);
BENCHMARK(MapLargestRun)->Unit(benchmark::kMillisecond);
BENCHMARK(SequentialReadOfTheSameFiles)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) {
    bench::LargestSettingRun(TenMinutes);
    bench::LargestSettingRun(bench::LargestRunMinutes);
    return bench::RunBenchmarks(argc, argv, {{"MapLargestRun", "SequentialReadOfTheSameFiles"}});
}
