#include "vehicle/suspension.h"

#include "vehicle/time_step.h"

#include <algorithm>
#include <cmath>

namespace torvane::sim {
namespace {

constexpr double Gravity = 9.81;
// Static sag with the rider aboard.
constexpr double FrontSagMm = 32.0;
constexpr double RearSagMm = 22.0;
// Stroke change per g of longitudinal acceleration; the fork has the longer travel and the
// softer rate, so it moves most.
constexpr double FrontDiveMmPerG = 72.0;
constexpr double FrontLiftMmPerG = 24.0;
constexpr double RearSquatMmPerG = 26.0;
constexpr double RearLiftMmPerG = 18.0;
constexpr double FrontOmega = 2.0 * 3.141592653589793 * 2.2;
constexpr double RearOmega = 2.0 * 3.141592653589793 * 2.0;
constexpr double FrontDamping = 0.65;
constexpr double RearDamping = 0.7;
// Bump height felt by the wheels, and the buzz the chassis picks up at top speed.
constexpr double BumpMm = 3.0;
constexpr double BumpMmAtSpeed = 5.0;
constexpr double BuzzMm = 0.4;
constexpr double TopSpeedMs = 85.0;

} // namespace

void Suspension::Spring::Follow(double targetMm, double omega, double damping, double travelMm) {
    const double accel = omega * omega * (targetMm - StrokeMm) - 2.0 * damping * omega * RateMmS;
    RateMmS += accel * StepSeconds;
    StrokeMm += RateMmS * StepSeconds;
    if (StrokeMm < 0.0 || StrokeMm > travelMm) {
        // Topped out or bottomed: the stop takes the motion.
        StrokeMm = std::clamp(StrokeMm, 0.0, travelMm);
        RateMmS = 0.0;
    }
}

Suspension::Suspension(std::uint64_t seed)
    : noise_(seed)
    , front_{FrontSagMm, 0.0}
    , rear_{RearSagMm, 0.0}
    , frontReading_(FrontSagMm)
    , rearReading_(RearSagMm) {
}

void Suspension::Update(const ChassisLoad& load) {
    const double longitudinalG = load.LongitudinalAccel / Gravity;
    const double lateralG = load.LateralAccel / Gravity;
    const double loadFactor = std::sqrt(1.0 + lateralG * lateralG);
    const double pace = std::min(load.SpeedMs / TopSpeedMs, 1.0);
    const double bump = BumpMm * (load.SpeedMs > 0.0 ? 1.0 : 0.0) + BumpMmAtSpeed * pace;

    const double frontPitch =
        longitudinalG < 0.0 ? -FrontDiveMmPerG * longitudinalG : -FrontLiftMmPerG * longitudinalG;
    const double rearPitch =
        longitudinalG > 0.0 ? RearSquatMmPerG * longitudinalG : RearLiftMmPerG * longitudinalG;
    front_.Follow(FrontSagMm * loadFactor + frontPitch + bump * load.FrontSurface, FrontOmega,
                  FrontDamping, FrontTravelMm);
    rear_.Follow(RearSagMm * loadFactor + rearPitch + bump * load.RearSurface, RearOmega,
                 RearDamping, RearTravelMm);

    frontReading_ =
        std::clamp(front_.StrokeMm + BuzzMm * pace * noise_.Normal(), 0.0, FrontTravelMm);
    rearReading_ = std::clamp(rear_.StrokeMm + BuzzMm * pace * noise_.Normal(), 0.0, RearTravelMm);
}

} // namespace torvane::sim
