#pragma once
// Turns a stream of vehicle states into the twelve streams a logger records under a setting:
// each of Ne..VM4 samples at its interval (sample k is the state at k × interval; the
// detonation streams count the knocks of the whole interval), and LAP holds one word per 300 ms
// (0, or the 5 ms tick, counted back from the step's end, at which the timing line was crossed).
// Samples are handed on in chunks, so a run of any length needs only these buffers.

#include "logdata/channels.h"
#include "logdata/log_header.h"
#include "vehicle/sensor_readings.h"
#include "vehicle/vehicle_state.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <vector>

namespace torvane::sim {

// Receives finished samples of stream 0..11 (logdata::StreamNames order), in time order per
// stream; the span is only valid during the call.
using SampleSink = std::function<void(int stream, std::span<const std::int16_t> samples)>;

class RunRecorder {
public:
    static constexpr std::size_t DefaultChunkWords = 4096;

    // An interval that is not one the logger knows (5, 10, 25, 50, 100, 300) records nothing;
    // LAP records when the setting's LapWord is non-zero.
    RunRecorder(const logdata::LogHeader& setting, SampleSink sink,
                std::size_t chunkWords = DefaultChunkWords);

    // Takes the states in order, one per 5 ms step, the first ending at 5 ms.
    void Record(const VehicleState& state);
    // Hands on what is still buffered. Later states are recorded after it as usual.
    void Flush();

private:
    void Push(int stream, std::int16_t word);
    void Deliver(int stream);
    std::int16_t SampleOf(int stream, const RawReadings& raw) const;

    SampleSink sink_;
    SensorReadings sensors_;
    std::size_t chunkWords_;
    std::array<int, logdata::StreamCount> intervals_{};
    std::array<std::vector<std::int16_t>, logdata::StreamCount> buffers_;
    std::array<int, SensorPairs> knocks_{};
    std::int16_t lapWord_ = 0;
};

} // namespace torvane::sim
