#include "logger/logger_inputs.h"

#include "shell/rounding.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace torvane::sim {
namespace {

constexpr double TenBitFull = 1023.0;
// The live battery word is a 10-bit reading of 0.28 V + 25 V full scale.
constexpr double BatteryOffsetVolt = 0.28;
constexpr double BatteryFullScaleVolt = 25.0;
constexpr std::int32_t WordMax = std::numeric_limits<std::int16_t>::max();

std::int16_t Word(double value) {
    if (std::isnan(value)) {
        return 0;
    }
    return static_cast<std::int16_t>(
        std::clamp(shell::RoundHalfEven(value), 0.0, static_cast<double>(WordMax)));
}

std::int16_t Count(std::int32_t count) {
    return static_cast<std::int16_t>(std::min(count, WordMax));
}

} // namespace

SensorSetup FittedSensors(const logdata::LogHeader& setting) {
    SensorSetup sensors;
    sensors.SusMode = setting.SusMode();
    sensors.LafMode = setting.LafMode();
    return sensors;
}

int ThrottlePercent(int reading, const logdata::LogHeader& setting) {
    const int close = setting.ThClose();
    const int open = setting.ThOpen();
    if (open <= close) {
        return 0;
    }
    const double percent = std::floor((reading - close) * 100.0 / (open - close));
    return static_cast<int>(std::clamp(percent, 0.0, 100.0));
}

VehicleState AsMeasured(VehicleState state, const logdata::LogHeader& setting) {
    using logdata::SettingWord;
    static const logdata::LogHeader fitted = logdata::FreshSetting();
    const auto wheelRatio = [&](SettingWord pulses, SettingWord cm) {
        const int setPulses = setting.Word(pulses);
        return setPulses < 1 ? 0.0
                             : static_cast<double>(fitted.Word(pulses)) / setPulses *
                                   setting.Word(cm) / fitted.Word(cm);
    };
    state.FrontWheelKmh *= wheelRatio(SettingWord::PulseF, SettingWord::CmF);
    state.RearWheelKmh *= wheelRatio(SettingWord::PulseR, SettingWord::CmR);
    constexpr std::array<double, 3> crankPulses{1.0, 2.0, 0.5};
    const int engine = setting.Word(SettingWord::Engine);
    if (engine >= 0 && engine < static_cast<int>(crankPulses.size())) {
        state.EngineRpm /= crankPulses[static_cast<std::size_t>(engine)];
    }
    return state;
}

void SignalAccumulator::Observe(const VehicleState& state) {
    last_ = state;
    deto1_ = std::min(deto1_ + state.Detonation[0], WordMax);
    deto2_ = std::min(deto2_ + state.Detonation[1], WordMax);
    if (state.CrossedLine) {
        laps_ = std::min(laps_ + 1, WordMax);
    }
}

TlmSignalCondition SignalAccumulator::Take(const SensorSetup& sensors) {
    const RawReadings raw = SensorReadings(sensors).Read(last_);
    TlmSignalCondition signal{};
    signal.intNe = Word(last_.EngineRpm);
    signal.intVfw = Word(last_.FrontWheelKmh);
    signal.intVrw = Word(last_.RearWheelKmh);
    signal.intTh = raw.ThReading;
    signal.intVb =
        Word((last_.BatteryVolt - BatteryOffsetVolt) / BatteryFullScaleVolt * TenBitFull);
    for (std::size_t i = 0; i < raw.Vm.size(); ++i) {
        signal.intVm[i] = raw.Vm[i];
    }
    signal.intDeto1 = Count(deto1_);
    signal.intDeto2 = Count(deto2_);
    signal.intLap = Count(laps_);
    deto1_ = deto2_ = laps_ = 0;
    return signal;
}

} // namespace torvane::sim
