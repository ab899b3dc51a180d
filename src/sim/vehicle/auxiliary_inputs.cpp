#include "vehicle/auxiliary_inputs.h"

#include "vehicle/powertrain.h"
#include "vehicle/time_step.h"

#include <algorithm>

namespace torvane::sim {
namespace {

constexpr double RestingVolt = 12.8;
// The regulator holds about 14.1 V once the alternator turns fast enough.
constexpr double ChargeGainVolt = 1.3;
constexpr double ChargeFromRpm = 1500.0;
constexpr double ChargeSpanRpm = 2500.0;
// Pumps, injectors and coils at full song pull the supply down a little.
constexpr double LoadSagVolt = 0.35;
constexpr double RippleVolt = 0.04;

// The coolant sender is an NTC: its voltage falls as the engine warms over a few minutes.
constexpr double ColdCoolantVolt = 3.4;
constexpr double HotCoolantVolt = 1.45;
constexpr double WarmUpS = 240.0;
constexpr double ReferenceVolt = 2.5;
constexpr double OilIdleVolt = 0.6;
constexpr double OilSpanVolt = 3.2;
constexpr double OilLagS = 0.3;
constexpr double AirBoxVolt = 1.2;
constexpr double AirBoxRamVolt = 0.9;
constexpr double TopSpeedMs = 85.0;
constexpr double SenderNoiseVolt = 0.005;

} // namespace

AuxiliaryInputs::AuxiliaryInputs(std::uint64_t seed)
    : noise_(seed)
    , battery_(RestingVolt)
    , coolant_(ColdCoolantVolt)
    , oilPressure_(OilIdleVolt) {
    Update(IdleRpm, 0.0, 0.0);
}

void AuxiliaryInputs::Update(double rpm, double throttlePercent, double speedMs) {
    const double charge = std::clamp((rpm - ChargeFromRpm) / ChargeSpanRpm, 0.0, 1.0);
    const double load = throttlePercent / 100.0 * std::min(rpm / LimiterRpm, 1.0);
    battery_ =
        RestingVolt + ChargeGainVolt * charge - LoadSagVolt * load + RippleVolt * noise_.Normal();

    coolant_ += (HotCoolantVolt - coolant_) * (StepSeconds / WarmUpS);
    const double oilTarget = OilIdleVolt + OilSpanVolt * std::min(rpm / 12000.0, 1.0);
    oilPressure_ += (oilTarget - oilPressure_) * (StepSeconds / OilLagS);
    const double ram = speedMs / TopSpeedMs;

    spare_[0] = coolant_;
    spare_[1] = ReferenceVolt;
    spare_[2] = oilPressure_;
    spare_[3] = AirBoxVolt + AirBoxRamVolt * ram * ram;
    for (double& volt : spare_) {
        volt += SenderNoiseVolt * noise_.Normal();
    }
}

} // namespace torvane::sim
