// The CSV export of every item of the largest run, against writing the same number of bytes
// with plain sequential writes in the same run; and the export's peak heap on a 10-minute and a
// 4.5-hour run, which must be the same: each column keeps one pair of samples and a read
// buffer, whatever the length.

#include "bench_runs.h"
#include "counted_heap.h"
#include "load/save_file.h"
#include "logdata/csv_export.h"
#include "ratio_reporter.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>
#include <memory>
#include <vector>

namespace {

namespace fs = std::filesystem;
using namespace torvane;

constexpr double TenMinutes = 10.0;

// Every item of the run, as the save dialog's "all items" asks.
std::vector<int> AllItems(const bench::DeployedRun& run) {
    return load::CsvItems(run.Layers().Layer[0], {}, true);
}

std::map<double, std::uintmax_t> csvBytes;

void Export(benchmark::State& state, double minutes) {
    const bench::DeployedRun& run = bench::LargestSettingRun(minutes);
    const std::vector<int> items = AllItems(run);
    const fs::path out = run.Folder() / "RUN.csv";
    shell::RecordingSink sink;
    std::int64_t peakAbove = 0;
    for (auto _ : state) {
        bool written = false;
        peakAbove = std::max(peakAbove, bench::PeakHeapOf([&] {
                                 written = logdata::WriteCsv(out, run.Layers(), items, std::nullopt,
                                                             run.Laf(), sink);
                             }));
        if (!written) {
            state.SkipWithError("the export failed");
        }
    }
    csvBytes[minutes] = fs::file_size(out);
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * csvBytes[minutes]));
    state.counters["peak_heap_KiB"] = static_cast<double>(peakAbove) / 1024.0;
    state.counters["csv_MB"] = static_cast<double>(csvBytes[minutes]) / 1e6;
    state.SetLabel(std::to_string(items.size()) + " items");
}

void ExportTenMinutes(benchmark::State& state) {
    Export(state, TenMinutes);
}
void ExportLargestRun(benchmark::State& state) {
    Export(state, bench::LargestRunMinutes);
}

// As many bytes as the largest run's CSV file, written in 64 KiB blocks to the same folder.
void SequentialWriteOfTheSameBytes(benchmark::State& state) {
    const bench::DeployedRun& run = bench::LargestSettingRun(bench::LargestRunMinutes);
    const std::uintmax_t total = csvBytes[bench::LargestRunMinutes];
    if (total == 0) {
        state.SkipWithError("ExportLargestRun gives the number of bytes: run it first");
        return;
    }
    for (auto _ : state) {
        bench::WriteBytes(run.Folder() / "PLAIN.csv", static_cast<std::int64_t>(total));
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * total));
}

BENCHMARK(ExportTenMinutes)->Unit(benchmark::kMillisecond);
BENCHMARK(ExportLargestRun)->Unit(benchmark::kMillisecond);
BENCHMARK(SequentialWriteOfTheSameBytes)->Unit(benchmark::kMillisecond)->MinTime(2.0);

} // namespace

int main(int argc, char** argv) {
    bench::LargestSettingRun(TenMinutes);
    bench::LargestSettingRun(bench::LargestRunMinutes);
    return bench::RunBenchmarks(argc, argv,
                                {{"ExportLargestRun", "SequentialWriteOfTheSameBytes"}});
}
