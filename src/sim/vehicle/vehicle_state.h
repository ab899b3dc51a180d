#pragma once
// The bike at the end of one 5 ms step, in engineering units: what the sensors would measure,
// before any logger turns it into words.

#include "vehicle/auxiliary_inputs.h"
#include "vehicle/combustion.h"

#include <array>
#include <cstdint>

namespace torvane::sim {

struct VehicleState {
    std::int64_t TimeMs = 0;
    // Metres from the timing line, and laps completed (timing-line crossings so far).
    double LapPositionM = 0.0;
    int LapsCompleted = 0;
    // The timing line was crossed during this step; a logger marks it at TimeMs.
    bool CrossedLine = false;

    double SpeedKmh = 0.0;
    double EngineRpm = 0.0;
    int Gear = 0; // 0 is neutral
    double ThrottlePercent = 0.0;
    // Deceleration the brakes make, and the bike's net acceleration, in m/s².
    double BrakeDecel = 0.0;
    double LongitudinalAccel = 0.0;
    double FrontWheelKmh = 0.0;
    double RearWheelKmh = 0.0;

    double BatteryVolt = 0.0;
    double FrontStrokeMm = 0.0;
    double RearStrokeMm = 0.0;
    std::array<double, SensorPairs> AirFuel{};
    // Knock events in this step.
    std::array<int, SensorPairs> Detonation{};
    // What the spare analogue inputs read when nothing else is wired to them.
    std::array<double, SpareInputs> SpareVolt{};
};

} // namespace torvane::sim
