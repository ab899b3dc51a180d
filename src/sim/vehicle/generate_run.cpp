#include "vehicle/generate_run.h"

#include "vehicle/time_step.h"
#include "vehicle/vehicle_model.h"

#include <cmath>

namespace torvane::sim {
namespace {

// A week at 5 ms; beyond it a duration is a mistake, not a run.
constexpr double LongestRunMs = 7.0 * 24.0 * 3600.0 * 1000.0;

std::int64_t StepCount(double durationMs) {
    if (!(durationMs >= static_cast<double>(StepMs))) {
        return 0;
    }
    return static_cast<std::int64_t>(std::floor(std::min(durationMs, LongestRunMs) / StepMs));
}

} // namespace

void GenerateRun(const logdata::LogHeader& setting, double durationMs, std::uint64_t seed,
                 const SampleSink& sink) {
    VehicleModel model(seed, ShiftEngineSpeed(setting));
    RunRecorder recorder(setting, sink);
    const std::int64_t steps = StepCount(durationMs);
    for (std::int64_t step = 0; step < steps; ++step) {
        recorder.Record(model.Step());
    }
    recorder.Flush();
}

RecordedRun GenerateRunInMemory(const logdata::LogHeader& setting, double durationMs,
                                std::uint64_t seed) {
    RecordedRun run;
    GenerateRun(setting, durationMs, seed, [&run](int stream, std::span<const std::int16_t> words) {
        auto& target = run.Streams[static_cast<std::size_t>(stream)];
        target.insert(target.end(), words.begin(), words.end());
    });
    return run;
}

} // namespace torvane::sim
