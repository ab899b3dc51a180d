#pragma once
// Fork and shock: strokes in mm from fully extended. Load transfer pitches the bike (the fork
// dives under braking while the shock extends; the shock squats under power), cornering load
// compresses both, and the track's bumps shake them.

#include "vehicle/noise.h"

#include <cstdint>

namespace torvane::sim {

inline constexpr double FrontTravelMm = 120.0;
inline constexpr double RearTravelMm = 80.0;

struct ChassisLoad {
    double LongitudinalAccel = 0.0; // m/s², positive when speeding up
    double LateralAccel = 0.0;      // m/s²
    double SpeedMs = 0.0;
    double FrontSurface = 0.0; // track height under each wheel, -1..1
    double RearSurface = 0.0;
};

class Suspension {
public:
    explicit Suspension(std::uint64_t seed);

    // One 5 ms step.
    void Update(const ChassisLoad& load);

    double FrontStrokeMm() const { return frontReading_; }
    double RearStrokeMm() const { return rearReading_; }

private:
    // A damped spring chasing the stroke that the load asks for.
    struct Spring {
        double StrokeMm = 0.0;
        double RateMmS = 0.0;
        void Follow(double targetMm, double omega, double damping, double travelMm);
    };

    NoiseSource noise_;
    Spring front_;
    Spring rear_;
    double frontReading_ = 0.0;
    double rearReading_ = 0.0;
};

} // namespace torvane::sim
