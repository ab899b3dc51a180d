// Downloading the largest file the virtual logger holds through the real libtlm and socket:
// with the link rate off, against the raw throughput of a local socket moving the same bytes in
// the same blocks in the same run; and at the default rate (about a USB link's payload rate),
// as overhead over the ideal transfer time.

#include "ratio_reporter.h"
#include "support/simulator_process.h"
#include "tlm.h"

#include <benchmark/benchmark.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <random>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

namespace fs = std::filesystem;
using torvane::testing::SimulatorProcess;

constexpr double DefaultRateBytesPerSecond = 1'000'000.0;
constexpr std::size_t BlockBytes = 32 * 1024;

fs::path BenchFolder() {
    static const fs::path folder = [] {
        std::random_device entropy;
        auto path = fs::temp_directory_path() / ("torvane-bench-" + std::to_string(entropy()));
        fs::create_directories(path);
        return path;
    }();
    return folder;
}

// A logger on its own socket holding one file; minutes beyond its memory are cut to fit.
struct Logger {
    std::unique_ptr<SimulatorProcess> Process;
    TlmDownloadEntry Entry{};

    Logger(const std::string& name, const std::vector<std::string>& options) {
        const auto socket = BenchFolder() / (name + ".sock");
        Process = std::make_unique<SimulatorProcess>(TORVANE_LOGGER_SIM, socket, options);
        ::setenv("TORVANE_LOGGER", Process->Endpoint().c_str(), 1);
        TlmStatus status{};
        for (int tries = 0; tries < 200; ++tries) {
            if (TLM_Open(&status) == TLM_OK && GetStatus(&status) == TLM_OK &&
                status.bytState == TLM_STATE_IDLE && GetTheNumberofFiles(&status) > 0 &&
                GetTheDownloadList(&status, 1, &Entry) == TLM_OK) {
                TLM_Close(&status);
                return;
            }
            TLM_Close(&status);
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
        }
        std::fprintf(stderr, "the virtual logger did not come up\n");
        std::exit(1);
    }

    // One whole download through libtlm, as the program does it; the bytes that arrived.
    std::int64_t Download() {
        ::setenv("TORVANE_LOGGER", Process->Endpoint().c_str(), 1);
        const auto target = (BenchFolder() / "download.rlg").string();
        TlmStatus status{};
        TlmTransferBlock block{};
        std::int64_t bytes = 0;
        if (TLM_Open(&status) != TLM_OK ||
            GetTheLogFile_start(&status, &Entry, target.c_str(), &block) != TLM_OK) {
            TLM_Close(&status);
            return -1;
        }
        std::int32_t result = 0;
        while (result == 0) {
            result = GetTheLogFile_reading(&status, &block);
            bytes += block.lngSize;
        }
        GetTheLogFile_end(&status, &block);
        TLM_Close(&status);
        return result > 0 ? bytes : -1;
    }
};

Logger& Unlimited() {
    static Logger logger("unlimited",
                         {"--idle", "--files", "1", "--minutes", "1440", "--rate", "0"});
    return logger;
}

Logger& DefaultRate() {
    static Logger logger("paced", {"--idle", "--files", "1", "--minutes", "60"});
    return logger;
}

void DownloadLargestFileUnlimited(benchmark::State& state) {
    Logger& logger = Unlimited();
    for (auto _ : state) {
        if (logger.Download() != logger.Entry.lngSize) {
            state.SkipWithError("download failed");
            return;
        }
    }
    state.SetBytesProcessed(state.iterations() * logger.Entry.lngSize);
    state.counters["MB"] = logger.Entry.lngSize / 1e6;
}

// The same bytes in the same blocks through a local stream socket, from one thread to another.
void RawSocketBaseline(benchmark::State& state) {
    const auto total = static_cast<std::size_t>(Unlimited().Entry.lngSize);
    std::vector<char> block(BlockBytes, 'x');
    for (auto _ : state) {
        int ends[2];
        ::socketpair(AF_UNIX, SOCK_STREAM, 0, ends);
        std::thread sender([&] {
            for (std::size_t sent = 0; sent < total;) {
                const auto n = ::write(ends[0], block.data(), std::min(BlockBytes, total - sent));
                if (n <= 0) {
                    break;
                }
                sent += static_cast<std::size_t>(n);
            }
            ::close(ends[0]);
        });
        std::vector<char> in(BlockBytes);
        std::size_t received = 0;
        for (ssize_t n; (n = ::read(ends[1], in.data(), in.size())) > 0;) {
            received += static_cast<std::size_t>(n);
        }
        sender.join();
        ::close(ends[1]);
        benchmark::DoNotOptimize(received);
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(total));
}

void DownloadAtTheDefaultRate(benchmark::State& state) {
    Logger& logger = DefaultRate();
    const double ideal = logger.Entry.lngSize / DefaultRateBytesPerSecond;
    double spent = 0.0;
    for (auto _ : state) {
        const auto start = std::chrono::steady_clock::now();
        if (logger.Download() != logger.Entry.lngSize) {
            state.SkipWithError("download failed");
            return;
        }
        spent += std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    }
    const double mean = spent / static_cast<double>(state.iterations());
    state.counters["ideal_s"] = ideal;
    state.counters["overhead_%"] = (mean - ideal) / ideal * 100.0;
}

BENCHMARK(RawSocketBaseline)->Unit(benchmark::kMillisecond)->MinTime(1.0);
BENCHMARK(DownloadLargestFileUnlimited)->Unit(benchmark::kMillisecond)->MinTime(2.0);
BENCHMARK(DownloadAtTheDefaultRate)->Unit(benchmark::kMillisecond)->Iterations(3);

} // namespace

int main(int argc, char** argv) {
    torvane::bench::RunBenchmarks(argc, argv,
                                  {{"DownloadLargestFileUnlimited", "RawSocketBaseline"}});
    std::error_code ignored;
    fs::remove_all(BenchFolder(), ignored);
    return 0;
}
