// Deploying the largest run that the logger's memory holds, against writing the same deployed
// bytes with plain sequential writes in the same run.

#include "bench_runs.h"
#include "logdata/channels.h"
#include "ratio_reporter.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <random>

namespace {

namespace fs = std::filesystem;
using torvane::bench::LargestRunMinutes;
using torvane::bench::LargestRunSetting;
using torvane::logdata::LogHeader;

struct Fixture {
    fs::path Folder;
    fs::path LogFile;
    std::vector<std::uintmax_t> StreamSizes;

    Fixture() {
        std::random_device entropy;
        Folder = fs::temp_directory_path() / ("torvane-bench-" + std::to_string(entropy()));
        fs::create_directories(Folder / "out");
        LogFile = Folder / "LARGEST.rlg";
        const LogHeader setting = LargestRunSetting();
        torvane::rlg::WriteFileAtomically(
            LogFile, torvane::sim::GenerateRunFile(setting, LargestRunMinutes * 60000.0, 1));
        torvane::rlg::HeaderBytes header{};
        torvane::rlg::DeployStats stats;
        torvane::rlg::Deploy(LogFile, Folder / "out", 10, header, stats);
        for (const auto& name : torvane::logdata::StreamNames) {
            StreamSizes.push_back(
                fs::file_size(Folder / "out" / torvane::rlg::StreamFileName(name, 10)));
        }
        std::printf("largest run: %.1f minutes, %.1f MB logging file, %.1f MB deployed\n",
                    LargestRunMinutes, static_cast<double>(fs::file_size(LogFile)) / 1e6,
                    static_cast<double>(DeployedBytes()) / 1e6);
    }
    ~Fixture() {
        std::error_code error;
        fs::remove_all(Folder, error);
    }
    std::uintmax_t DeployedBytes() const {
        std::uintmax_t total = 0;
        for (auto size : StreamSizes) {
            total += size;
        }
        return total;
    }
};

Fixture& Shared() {
    static Fixture fixture;
    return fixture;
}

void DeployLargestRun(benchmark::State& state) {
    Fixture& fixture = Shared();
    for (auto _ : state) {
        torvane::rlg::HeaderBytes header{};
        torvane::rlg::DeployStats stats;
        const int result =
            torvane::rlg::Deploy(fixture.LogFile, fixture.Folder / "out", 10, header, stats);
        if (result != 0) {
            state.SkipWithError("deployment failed");
        }
        benchmark::DoNotOptimize(stats);
    }
    state.SetBytesProcessed(
        static_cast<std::int64_t>(state.iterations() * fixture.DeployedBytes()));
}

// The same files, the same bytes, written with plain sequential writes of 64 KiB.
void SequentialWriteBaseline(benchmark::State& state) {
    Fixture& fixture = Shared();
    std::vector<char> block(64 * 1024, 'x');
    for (auto _ : state) {
        for (std::size_t i = 0; i < fixture.StreamSizes.size(); ++i) {
            std::ofstream out(fixture.Folder / "out" / ("plain-" + std::to_string(i) + ".tmp"),
                              std::ios::binary | std::ios::trunc);
            for (std::uintmax_t left = fixture.StreamSizes[i]; left > 0;) {
                const auto chunk =
                    static_cast<std::streamsize>(std::min<std::uintmax_t>(left, block.size()));
                out.write(block.data(), chunk);
                left -= static_cast<std::uintmax_t>(chunk);
            }
        }
    }
    state.SetBytesProcessed(
        static_cast<std::int64_t>(state.iterations() * fixture.DeployedBytes()));
}

BENCHMARK(SequentialWriteBaseline)->Unit(benchmark::kMillisecond)->MinTime(2.0);
BENCHMARK(DeployLargestRun)->Unit(benchmark::kMillisecond)->MinTime(2.0);

} // namespace

int main(int argc, char** argv) {
    Shared();
    return torvane::bench::RunBenchmarks(argc, argv,
                                         {{"DeployLargestRun", "SequentialWriteBaseline"}});
}
