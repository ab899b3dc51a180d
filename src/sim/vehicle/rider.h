#pragma once
// The rider: where to brake, how fast to take each corner, when to open the throttle. Every lap
// is ridden a little differently, drawn from the seed.

#include "vehicle/circuit.h"
#include "vehicle/noise.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace torvane::sim {

struct RiderCommand {
    // Longitudinal acceleration wanted in m/s²; FullAttack asks for all the bike gives.
    double Acceleration = 0.0;
    // How far the rider dares to open the throttle here (0..1): less while leaned over.
    double ThrottleCap = 1.0;
};

inline constexpr double FullAttack = 1.0e9;

class Rider {
public:
    Rider(const Circuit& circuit, std::uint64_t seed);

    // Draws the coming lap's braking effort, braking points and corner speeds. An out-lap on
    // cold tyres is ridden well off the pace.
    void StartLap(bool outLap);

    RiderCommand Decide(std::size_t segment, double intoSegmentM, double speedMs);

    bool Braking() const { return braking_; }
    // The corner speed of this lap, m/s; 0 for a straight.
    double CornerSpeed(std::size_t segment) const { return cornerSpeedMs_[segment]; }

private:
    // Corners seen from the start of a segment: a short straight between two corners means the
    // braking for the second may begin before the first is left.
    static constexpr std::size_t LookAhead = 3;
    struct CornerAhead {
        std::size_t Segment = 0;
        double DistanceM = 0.0;
    };
    struct Outlook {
        std::array<CornerAhead, LookAhead> Corners{};
        std::size_t Count = 0;
    };

    double RequiredDecel(std::size_t segment, double intoSegmentM, double speedMs) const;

    Circuit circuit_;
    NoiseSource noise_;
    std::vector<Outlook> outlook_;
    std::vector<double> cornerSpeedMs_;
    std::vector<double> brakeOffsetM_;
    double plannedDecel_ = 0.0;
    double throttleCap_ = 1.0;
    bool braking_ = false;
};

} // namespace torvane::sim
