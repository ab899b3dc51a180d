#pragma once
// What the exhaust and the knock sensors see: the air/fuel ratio of two sensors (rich at full
// load, lean on the overrun, lagging the throttle), and knock, rare and only at high load.

#include "vehicle/noise.h"

#include <array>
#include <cstdint>

namespace torvane::sim {

inline constexpr int SensorPairs = 2;

class Combustion {
public:
    explicit Combustion(std::uint64_t seed);

    // One 5 ms step.
    void Update(double rpm, double throttlePercent);

    // Air/fuel ratio read by sensor 0 or 1.
    double AirFuel(int sensor) const { return reading_[static_cast<std::size_t>(sensor)]; }
    // Knock events counted by sensor 0 or 1 in this step.
    int Detonation(int sensor) const { return knocks_[static_cast<std::size_t>(sensor)]; }

private:
    NoiseSource noise_;
    std::array<double, SensorPairs> mixture_{};
    std::array<double, SensorPairs> reading_{};
    std::array<int, SensorPairs> knocks_{};
};

} // namespace torvane::sim
