#include "logger/run_capture.h"

#include "vehicle/run_file.h"
#include "vehicle/time_step.h"

namespace torvane::sim {
namespace {

// The recorder takes its converters from the setting's calibration words; the raw words must
// come from the real sensors instead, so it is given a copy that holds their true points.
logdata::LogHeader RecorderView(logdata::LogHeader setting, const SensorSetup& sensors) {
    using logdata::SettingWord;
    setting.SetWord(SettingWord::ThClose, static_cast<std::int16_t>(sensors.ThClose));
    setting.SetWord(SettingWord::ThOpen, static_cast<std::int16_t>(sensors.ThOpen));
    setting.SetWord(SettingWord::FrZero, static_cast<std::int16_t>(sensors.FrSusZero));
    setting.SetWord(SettingWord::RrZero, static_cast<std::int16_t>(sensors.RrSusZero));
    return setting;
}

} // namespace

RunCapture::RunCapture(const logdata::LogHeader& setting, const SensorSetup& sensors)
    : writer_(std::make_unique<rlg::RlgWriter>(setting.ToBytes(), LoggingFileStreams())) {
    recorder_ = std::make_unique<RunRecorder>(
        RecorderView(setting, sensors),
        [writer = writer_.get()](int stream, std::span<const std::int16_t> samples) {
            writer->Append(static_cast<std::size_t>(stream), samples);
        });
}

void RunCapture::Record(const VehicleState& state) {
    if (steps_ == 0) {
        startMs_ = state.TimeMs - StepMs;
    }
    // The recorder samples at whole multiples of each interval from its own time 0.
    VehicleState rebased = state;
    rebased.TimeMs -= startMs_;
    recorder_->Record(rebased);
    ++steps_;
}

std::int32_t RunCapture::Seconds() const {
    return static_cast<std::int32_t>(steps_ * StepMs / 1000);
}

std::vector<std::uint8_t> RunCapture::Finish() {
    recorder_->Flush();
    return writer_->Finish();
}

} // namespace torvane::sim
