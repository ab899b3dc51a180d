#include "vehicle/combustion.h"

#include "vehicle/time_step.h"

#include <algorithm>

namespace torvane::sim {
namespace {

constexpr double IdleAf = 13.9;
constexpr double CruiseAf = 14.4;
constexpr double FullLoadAf = 12.6;
// Fuel is cut on a closed throttle above this speed and the sensor reads lean.
constexpr double OverrunRpm = 3000.0;
constexpr double OverrunAf = 16.8;
// The enrichment comes in between these openings.
constexpr double EnrichFromPercent = 35.0;
constexpr double EnrichToPercent = 90.0;
constexpr double SensorLagS = 0.08;
constexpr double SensorNoiseAf = 0.06;
// The second cylinder pair runs a shade leaner.
constexpr std::array<double, SensorPairs> PairOffsetAf{0.0, 0.15};

constexpr double KnockRpm = 10500.0;
constexpr double KnockThrottlePercent = 90.0;
// Per 5 ms step, at the knock threshold; rises with engine speed. At 300 ms a word most
// intervals count nothing.
constexpr std::array<double, SensorPairs> KnockChance{0.0008, 0.0006};

double TargetAf(double rpm, double throttlePercent) {
    if (throttlePercent < 2.0) {
        return rpm > OverrunRpm ? OverrunAf : IdleAf;
    }
    const double enrich = std::clamp(
        (throttlePercent - EnrichFromPercent) / (EnrichToPercent - EnrichFromPercent), 0.0, 1.0);
    return CruiseAf + (FullLoadAf - CruiseAf) * enrich;
}

} // namespace

Combustion::Combustion(std::uint64_t seed)
    : noise_(seed) {
    mixture_.fill(IdleAf);
    reading_.fill(IdleAf);
}

void Combustion::Update(double rpm, double throttlePercent) {
    const double target = TargetAf(rpm, throttlePercent);
    const bool highLoad = rpm >= KnockRpm && throttlePercent >= KnockThrottlePercent;
    const double knockScale = 0.5 + (rpm - KnockRpm) / 3000.0;
    for (std::size_t i = 0; i < SensorPairs; ++i) {
        mixture_[i] += (target + PairOffsetAf[i] - mixture_[i]) * (StepSeconds / SensorLagS);
        reading_[i] = mixture_[i] + SensorNoiseAf * noise_.Normal();
        knocks_[i] = 0;
        if (highLoad && noise_.Chance(KnockChance[i] * knockScale)) {
            knocks_[i] = noise_.Chance(0.25) ? 2 : 1;
        }
    }
}

} // namespace torvane::sim
