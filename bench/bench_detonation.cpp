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

bench::DeployedRun& Run(double minutes) {
    static std::map<double, std::unique_ptr<bench::DeployedRun>> runs;
    auto& run = runs[minutes];
    if (!run) {
        run = std::make_unique<bench::DeployedRun>(bench::LargestRunSetting(), minutes, 5);
    }
    return *run;
}

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
    const bench::DeployedRun& run = Run(minutes);
    shell::RecordingSink sink;
    std::int64_t peakAbove = 0;
    for (auto _ : state) {
        const std::int64_t before = bench::heapInUse;
        bench::heapPeak = before;
        const fs::path file = views::GetDetonationOfLayer(run.Layers(), 0, sink);
        peakAbove = std::max(peakAbove, bench::heapPeak - before);
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

// The same five files read front to back in 64 KiB blocks, touching every byte.
void SequentialReadOfTheSameFiles(benchmark::State& state) {
    const bench::DeployedRun& run = Run(bench::LargestRunMinutes);
    std::vector<char> block(64 * 1024);
    for (auto _ : state) {
        unsigned sum = 0;
        for (const fs::path& file : InputFiles(run)) {
            std::FILE* in = std::fopen(file.c_str(), "rb");
            for (std::size_t got; (got = std::fread(block.data(), 1, block.size(), in)) > 0;) {
                for (std::size_t i = 0; i < got; i += 64) {
                    sum += static_cast<unsigned char>(block[i]);
                }
            }
            std::fclose(in);
        }
        benchmark::DoNotOptimize(sum);
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * InputBytes(run)));
}

BENCHMARK(MapTenMinutes)->Unit(benchmark::kMillisecond);
BENCHMARK(MapLargestRun)->Unit(benchmark::kMillisecond);
BENCHMARK(SequentialReadOfTheSameFiles)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    Run(TenMinutes);
    Run(bench::LargestRunMinutes);
    bench::RatioReporter reporter(
        bench::RatioReporter::Ratios{{"MapLargestRun", "SequentialReadOfTheSameFiles"}});
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();
    return 0;
}
