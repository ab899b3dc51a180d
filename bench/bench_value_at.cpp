// ValueAt of twelve slots for one cursor move, on a 10-minute and a 4.5-hour run: the cost of a
// move must not grow with the length of the run.

#include "binding/tlm_decompressor.h"
#include "logdata/deployment.h"
#include "logdata/laps.h"
#include "logdata/values.h"
#include "ratio_reporter.h"
#include "rlg_container.h"
#include "shell/message_sink.h"
#include "vehicle/demo_setting.h"
#include "vehicle/run_file.h"

#include <benchmark/benchmark.h>

#include <filesystem>
#include <map>
#include <memory>
#include <random>

namespace {

namespace fs = std::filesystem;
using namespace torvane;

// A deployed run of the demo setting with every channel at 5 ms, as window 1, layer 0.
class DeployedRun {
public:
    explicit DeployedRun(double minutes) {
        std::random_device entropy;
        layers_.TempDir =
            fs::temp_directory_path() / ("torvane-bench-" + std::to_string(entropy()));
        fs::create_directories(layers_.TempDir);
        logdata::LogHeader setting = sim::DemoSetting();
        for (int entry = 0; entry < logdata::SampleTimeCount; ++entry) {
            setting.SetSampleTime(entry, entry == 4 || entry == 5 ? 300 : 5);
        }
        const fs::path file = layers_.TempDir / "RUN.rlg";
        rlg::WriteFileAtomically(file, sim::GenerateRunFile(setting, minutes * 60000.0, 3));
        binding::TlmDecompressor decompressor;
        shell::RecordingSink sink;
        logdata::DeployLoggingFile(layers_, 0, file, decompressor, sink);
        logdata::ReadLapFile(layers_, 0);
        laf_.SetPoints(logger::DefaultLafPoints());
    }
    ~DeployedRun() {
        std::error_code error;
        fs::remove_all(layers_.TempDir, error);
    }
    const logdata::LayerSet& Layers() const { return layers_; }
    const logger::LafTable& Laf() const { return laf_; }

private:
    logdata::LayerSet layers_;
    logger::LafTable laf_;
};

DeployedRun& Run(int minutes) {
    static std::map<int, std::unique_ptr<DeployedRun>> runs;
    auto& run = runs[minutes];
    if (!run) {
        run = std::make_unique<DeployedRun>(minutes);
    }
    return *run;
}

void CursorMove(benchmark::State& state, int minutes) {
    const DeployedRun& run = Run(minutes);
    const logdata::ValueReader reader(run.Layers(), run.Laf());
    const double measureTime = run.Layers().Layer[0].MeasureTime;
    std::mt19937_64 random(11);
    double sum = 0.0;
    for (auto _ : state) {
        // Anywhere in the run, as a jump of the cursor would go.
        const double time = static_cast<double>(random() % static_cast<std::uint64_t>(measureTime));
        for (int slot = 0; slot < logdata::SlotCount; ++slot) {
            sum += reader.ValueAt(0, slot, time, {1, 100});
        }
    }
    benchmark::DoNotOptimize(sum);
    state.SetLabel(std::to_string(minutes) + " min run");
}

void CursorMoveTenMinutes(benchmark::State& state) {
    CursorMove(state, 10);
}
void CursorMoveFourAndAHalfHours(benchmark::State& state) {
    CursorMove(state, 270);
}

BENCHMARK(CursorMoveTenMinutes)->Unit(benchmark::kNanosecond);
BENCHMARK(CursorMoveFourAndAHalfHours)->Unit(benchmark::kNanosecond);

} // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    Run(10);
    Run(270);
    bench::RatioReporter reporter(
        bench::RatioReporter::Ratios{{"CursorMoveFourAndAHalfHours", "CursorMoveTenMinutes"}});
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();
    return 0;
}
