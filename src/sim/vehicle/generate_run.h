#pragma once
// A whole synthetic run: the vehicle model ridden for a duration and recorded under a setting.

#include "logdata/channels.h"
#include "logdata/log_header.h"
#include "vehicle/run_recorder.h"

#include <array>
#include <cstdint>
#include <vector>

namespace torvane::sim {

// The twelve streams of a run, in logdata::StreamNames order.
struct RecordedRun {
    std::array<std::vector<std::int16_t>, logdata::StreamCount> Streams;
};

// Rides floor(durationMs / 5) steps and hands every stream's words to the sink in chunks: a
// stream of interval I ends with floor(durationMs / I) words. The same setting, duration and
// seed give the same words everywhere; the rider shifts at the setting's Shift speed.
void GenerateRun(const logdata::LogHeader& setting, double durationMs, std::uint64_t seed,
                 const SampleSink& sink);

// The same run kept in memory; for tests and short demos.
RecordedRun GenerateRunInMemory(const logdata::LogHeader& setting, double durationMs,
                                std::uint64_t seed);

} // namespace torvane::sim
