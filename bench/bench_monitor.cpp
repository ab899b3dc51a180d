// The real-time monitor's poll through core, the real libtlm and a local socket to a real
// virtual logger: one request, its answer and the conversion of every value, 10,000 times, as
// median and 99th percentile against the 25 ms period, beside a bare status exchange of the same
// link measured in the same run. Then the share of one core that the monitor window takes while
// it is open and polling, on the offscreen platform.

#include "binding/tlm_driver.h"
#include "logger/driver_calls.h"
#include "logger/monitor.h"
#include "logger/monitor_window.h"
#include "ratio_reporter.h"
#include "shell/message_sink.h"
#include "support/simulator_process.h"

#include <QApplication>
#include <QEventLoop>
#include <QTimer>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <memory>
#include <random>
#include <thread>
#include <vector>

namespace {

namespace fs = std::filesystem;
using torvane::testing::SimulatorProcess;
using Clock = std::chrono::steady_clock;

constexpr int Polls = 10'000;
constexpr double PeriodUs = 25'000.0;

struct Logger {
    fs::path Folder;
    std::unique_ptr<SimulatorProcess> Process;

    Logger() {
        std::random_device entropy;
        Folder = fs::temp_directory_path() / ("torvane-bench-" + std::to_string(entropy()));
        fs::create_directories(Folder);
        Process = std::make_unique<SimulatorProcess>(TORVANE_LOGGER_SIM, Folder / "logger.sock");
        ::setenv("TORVANE_LOGGER", Process->Endpoint().c_str(), 1);
        torvane::binding::TlmDriver driver;
        for (int tries = 0; tries < 200; ++tries) {
            TlmStatus status{};
            const bool ready = driver.Open(status) == TLM_OK &&
                               driver.GetStatus(status) == TLM_OK &&
                               status.bytState == TLM_STATE_ACQUIRING;
            driver.Close(status);
            if (ready) {
                return;
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
        }
        std::fprintf(stderr, "the virtual logger did not come up\n");
        std::exit(1);
    }
    ~Logger() {
        Process.reset();
        std::error_code ignored;
        fs::remove_all(Folder, ignored);
    }
};

Logger& TheLogger() {
    static Logger logger;
    return logger;
}

void ReportPercentiles(benchmark::State& state, std::vector<double>& samplesUs) {
    if (samplesUs.empty()) {
        return;
    }
    std::sort(samplesUs.begin(), samplesUs.end());
    const double median = samplesUs[samplesUs.size() / 2];
    const double p99 = samplesUs[samplesUs.size() * 99 / 100];
    state.counters["median_us"] = median;
    state.counters["p99_us"] = p99;
    state.counters["p99_of_period_%"] = p99 / PeriodUs * 100.0;
}

void StatusExchange(benchmark::State& state) {
    TheLogger();
    torvane::binding::TlmDriver driver;
    TlmStatus status{};
    driver.Open(status);
    std::vector<double> samples;
    samples.reserve(Polls);
    for (auto _ : state) {
        const auto start = Clock::now();
        benchmark::DoNotOptimize(driver.GetStatus(status));
        samples.push_back(std::chrono::duration<double, std::micro>(Clock::now() - start).count());
    }
    driver.Close(status);
    ReportPercentiles(state, samples);
}

void MonitorPoll(benchmark::State& state) {
    TheLogger();
    torvane::binding::TlmDriver driver;
    torvane::shell::RecordingSink sink;
    torvane::logger::LoggerLink link(driver, sink);
    torvane::logger::LafTable laf;
    laf.SetPoints(torvane::logger::DefaultLafPoints());
    torvane::logger::Monitor monitor(link, laf);
    if (!monitor.Open()) {
        state.SkipWithError("the monitor did not open");
        return;
    }
    std::vector<double> samples;
    samples.reserve(Polls);
    for (auto _ : state) {
        const auto start = Clock::now();
        monitor.Tick();
        samples.push_back(std::chrono::duration<double, std::micro>(Clock::now() - start).count());
    }
    if (monitor.State() != torvane::logger::MonitorState::Polling || !sink.Messages.empty()) {
        state.SkipWithError("a poll failed");
    }
    ReportPercentiles(state, samples);
}

double ProcessCpuSeconds() {
    timespec now{};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / 1e9;
}

// The window as the desktop shows it, polling on its own timer; the logger's work is in its own
// process, so this process's CPU time is the window's and its link's.
void MonitorWindowCpuShare(benchmark::State& state) {
    TheLogger();
    torvane::binding::TlmDriver driver;
    torvane::shell::RecordingSink sink;
    torvane::logger::LafTable laf;
    laf.SetPoints(torvane::logger::DefaultLafPoints());
    constexpr int OpenMs = 10'000;
    for (auto _ : state) {
        torvane::app::MonitorWindow window(driver, sink, laf);
        if (!window.Open()) {
            state.SkipWithError("the monitor did not open");
            return;
        }
        window.show();
        const double cpuBefore = ProcessCpuSeconds();
        const auto wallBefore = Clock::now();
        const auto readingsBefore = window.Model().Readings();
        QEventLoop loop;
        QTimer::singleShot(OpenMs, &loop, &QEventLoop::quit);
        loop.exec();
        const double cpu = ProcessCpuSeconds() - cpuBefore;
        const double wall = std::chrono::duration<double>(Clock::now() - wallBefore).count();
        state.counters["core_%"] = cpu / wall * 100.0;
        state.counters["readings_per_s"] =
            static_cast<double>(window.Model().Readings() - readingsBefore) / wall;
    }
}

BENCHMARK(StatusExchange)->Unit(benchmark::kMicrosecond)->Iterations(Polls);
BENCHMARK(MonitorPoll)->Unit(benchmark::kMicrosecond)->Iterations(Polls);
BENCHMARK(MonitorWindowCpuShare)->Unit(benchmark::kMillisecond)->Iterations(1)->UseRealTime();

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    return torvane::bench::RunBenchmarks(argc, argv, {{"MonitorPoll", "StatusExchange"}});
}
