#include "vehicle/run_recorder.h"

#include "vehicle/time_step.h"

#include <algorithm>
#include <utility>

namespace torvane::sim {
namespace {

using logdata::LapSlot;
using logdata::LapStepMs;

bool IsDetonationStream(int stream) {
    return stream == logdata::DETO1 || stream == logdata::DETO2;
}

// LAP word of a crossing at `timeMs` (a multiple of 5): step n = ceil(time / 300) holds it, as
// 1 + the number of 5 ms ticks from the crossing to the step's end.
std::int16_t LapWordAt(std::int64_t timeMs) {
    const std::int64_t step = (timeMs + LapStepMs - 1) / LapStepMs;
    return static_cast<std::int16_t>((step * LapStepMs - timeMs) / StepMs + 1);
}

} // namespace

RunRecorder::RunRecorder(const logdata::LogHeader& setting, SampleSink sink, std::size_t chunkWords)
    : sink_(std::move(sink))
    , sensors_(SensorSetupOf(setting))
    , chunkWords_(std::max<std::size_t>(chunkWords, 1)) {
    for (int stream = 0; stream < logdata::SampleTimeCount; ++stream) {
        const int interval = setting.SampleTime(stream);
        intervals_[static_cast<std::size_t>(stream)] =
            logdata::IsSamplingInterval(interval) ? interval : 0;
    }
    intervals_[LapSlot] = setting.LapWord() != 0 ? LapStepMs : 0;
    for (std::size_t stream = 0; stream < buffers_.size(); ++stream) {
        if (intervals_[stream] > 0) {
            buffers_[stream].reserve(chunkWords_);
        }
    }
}

void RunRecorder::Record(const VehicleState& state) {
    const RawReadings raw = sensors_.Read(state);
    for (std::size_t i = 0; i < knocks_.size(); ++i) {
        knocks_[i] += raw.Deto[i];
    }
    if (state.CrossedLine) {
        lapWord_ = LapWordAt(state.TimeMs);
    }
    for (int stream = 0; stream < logdata::StreamCount; ++stream) {
        const int interval = intervals_[static_cast<std::size_t>(stream)];
        if (interval > 0 && state.TimeMs % interval == 0) {
            Push(stream, SampleOf(stream, raw));
        }
    }
    // Knocks count per interval of their own stream; a stream that records nothing keeps none.
    for (std::size_t i = 0; i < knocks_.size(); ++i) {
        const int interval = intervals_[logdata::DETO1 + i];
        if (interval == 0 || state.TimeMs % interval == 0) {
            knocks_[i] = 0;
        }
    }
    if (state.TimeMs % LapStepMs == 0) {
        lapWord_ = 0;
    }
}

std::int16_t RunRecorder::SampleOf(int stream, const RawReadings& raw) const {
    switch (stream) {
    case logdata::Ne:
        return raw.Ne;
    case logdata::TH:
        return raw.Th;
    case logdata::VFW:
        return raw.Vfw;
    case logdata::VRW:
        return raw.Vrw;
    case logdata::VB:
        return raw.Vb;
    case LapSlot:
        return lapWord_;
    default:
        if (IsDetonationStream(stream)) {
            return static_cast<std::int16_t>(
                std::min(knocks_[static_cast<std::size_t>(stream - logdata::DETO1)], 32767));
        }
        return raw.Vm[static_cast<std::size_t>(stream - logdata::VM1)];
    }
}

void RunRecorder::Push(int stream, std::int16_t word) {
    auto& buffer = buffers_[static_cast<std::size_t>(stream)];
    buffer.push_back(word);
    if (buffer.size() >= chunkWords_) {
        Deliver(stream);
    }
}

void RunRecorder::Deliver(int stream) {
    auto& buffer = buffers_[static_cast<std::size_t>(stream)];
    if (!buffer.empty() && sink_) {
        sink_(stream, buffer);
    }
    buffer.clear();
}

void RunRecorder::Flush() {
    for (int stream = 0; stream < logdata::StreamCount; ++stream) {
        Deliver(stream);
    }
}

} // namespace torvane::sim
