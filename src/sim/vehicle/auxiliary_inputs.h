#pragma once
// The supply voltage and the four spare analogue inputs as they read when no suspension or
// air/fuel sensor is wired to them.

#include "vehicle/noise.h"

#include <array>
#include <cstdint>

namespace torvane::sim {

inline constexpr int SpareInputs = 4;

class AuxiliaryInputs {
public:
    explicit AuxiliaryInputs(std::uint64_t seed);

    // One 5 ms step.
    void Update(double rpm, double throttlePercent, double speedMs);

    double BatteryVolt() const { return battery_; }
    // Spare input 0..3: a coolant sender warming up, a 2.5 V reference, an oil-pressure
    // sender, an air-box pressure sender that rises with speed.
    double SpareVolt(int input) const { return spare_[static_cast<std::size_t>(input)]; }

private:
    NoiseSource noise_;
    double battery_ = 0.0;
    double coolant_ = 0.0;
    double oilPressure_ = 0.0;
    std::array<double, SpareInputs> spare_{};
};

} // namespace torvane::sim
