#pragma once
// One run being recorded: the vehicle's steps sampled under the setting and written, stream by
// stream as they come, into a logging file whose header is the setting. Time in the file starts
// at the first recorded step, whenever the vehicle's own clock stood then.

#include "logdata/log_header.h"
#include "rlg_container.h"
#include "vehicle/run_recorder.h"
#include "vehicle/sensor_readings.h"
#include "vehicle/vehicle_state.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace torvane::sim {

class RunCapture {
public:
    // sensors: the bike's real sensors, which make the raw words whatever the setting's
    // calibration says.
    RunCapture(const logdata::LogHeader& setting, const SensorSetup& sensors);

    void Record(const VehicleState& state);
    std::int64_t Steps() const { return steps_; }
    std::int32_t Seconds() const;
    // The logging file; empty if the writer failed. The capture is spent afterwards.
    std::vector<std::uint8_t> Finish();

private:
    std::unique_ptr<rlg::RlgWriter> writer_;
    std::unique_ptr<RunRecorder> recorder_;
    std::int64_t startMs_ = 0;
    std::int64_t steps_ = 0;
};

} // namespace torvane::sim
