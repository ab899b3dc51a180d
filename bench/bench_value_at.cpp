// ValueAt of twelve slots for one cursor move, on a 10-minute and a 4.5-hour run: the cost of a
// move must not grow with the length of the run.

#include "bench_runs.h"
#include "logdata/values.h"
#include "ratio_reporter.h"
#include "vehicle/demo_setting.h"

#include <benchmark/benchmark.h>

#include <map>
#include <memory>
#include <random>

namespace {

using namespace torvane;

// The demo setting with every channel at 5 ms.
logdata::LogHeader FastSetting() {
    logdata::LogHeader setting = sim::DemoSetting();
    for (int entry = 0; entry < logdata::SampleTimeCount; ++entry) {
        setting.SetSampleTime(entry, entry == 4 || entry == 5 ? 300 : 5);
    }
    return setting;
}

bench::DeployedRun& Run(int minutes) {
    static std::map<int, std::unique_ptr<bench::DeployedRun>> runs;
    auto& run = runs[minutes];
    if (!run) {
        run = std::make_unique<bench::DeployedRun>(FastSetting(), minutes, 3);
    }
    return *run;
}

void CursorMove(benchmark::State& state, int minutes) {
    const bench::DeployedRun& run = Run(minutes);
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
    Run(10);
    Run(270);
    return bench::RunBenchmarks(argc, argv,
                                {{"CursorMoveFourAndAHalfHours", "CursorMoveTenMinutes"}});
}
