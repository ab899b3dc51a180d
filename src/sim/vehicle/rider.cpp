#include "vehicle/rider.h"

#include <algorithm>

namespace torvane::sim {
namespace {

constexpr double KmhToMs = 1.0 / 3.6;
// Deceleration in m/s² the rider plans a braking zone with: about 0.95 g, varying by lap.
constexpr double RacePlannedDecel = 9.3;
constexpr double RaceDecelSpread = 0.4;
constexpr double OutLapDecel = 6.5;
constexpr double OutLapPace = 0.85;
constexpr double OutLapThrottle = 0.9;
constexpr double CornerSpeedSpread = 0.02;
// How far a braking marker is missed, either way.
constexpr double BrakePointSpreadM = 6.0;
// Once the corner ahead asks for less than this, the brake comes off.
constexpr double ReleaseDecel = 0.5;
// Time the rider takes to close a gap to the corner speed while turning in.
constexpr double HoldTimeS = 0.6;
constexpr double TurnInCap = 0.45;
constexpr double ApexCap = 0.3;

} // namespace

Rider::Rider(const Circuit& circuit, std::uint64_t seed)
    : circuit_(circuit)
    , noise_(seed)
    , outlook_(circuit.Segments().size())
    , cornerSpeedMs_(circuit.Segments().size(), 0.0)
    , brakeOffsetM_(circuit.Segments().size(), 0.0) {
    const auto segments = circuit_.Segments();
    for (std::size_t from = 0; from < segments.size(); ++from) {
        Outlook& outlook = outlook_[from];
        double distance = segments[from].LengthM;
        std::size_t index = circuit_.Next(from);
        // Two laps' worth of segments is enough to find three corners if the loop has any.
        for (std::size_t seen = 0; seen < 2 * segments.size() && outlook.Count < LookAhead;
             ++seen) {
            if (segments[index].IsCorner()) {
                outlook.Corners[outlook.Count++] = CornerAhead{index, distance};
            }
            distance += segments[index].LengthM;
            index = circuit_.Next(index);
        }
    }
    StartLap(true);
}

void Rider::StartLap(bool outLap) {
    plannedDecel_ = outLap ? OutLapDecel : RacePlannedDecel + RaceDecelSpread * noise_.Symmetric();
    throttleCap_ = outLap ? OutLapThrottle : 1.0;
    const auto segments = circuit_.Segments();
    for (std::size_t i = 0; i < segments.size(); ++i) {
        const double pace = outLap ? OutLapPace : 1.0 + CornerSpeedSpread * noise_.Symmetric();
        cornerSpeedMs_[i] = segments[i].CornerSpeedKmh * KmhToMs * pace;
        brakeOffsetM_[i] = BrakePointSpreadM * noise_.Symmetric();
    }
}

double Rider::RequiredDecel(std::size_t segment, double intoSegmentM, double speedMs) const {
    double required = 0.0;
    const Outlook& outlook = outlook_[segment];
    for (std::size_t i = 0; i < outlook.Count; ++i) {
        const CornerAhead& corner = outlook.Corners[i];
        const double cornerSpeed = cornerSpeedMs_[corner.Segment];
        if (speedMs <= cornerSpeed) {
            continue;
        }
        const double distance =
            std::max(corner.DistanceM - intoSegmentM + brakeOffsetM_[corner.Segment], 0.5);
        required =
            std::max(required, (speedMs * speedMs - cornerSpeed * cornerSpeed) / (2.0 * distance));
    }
    return required;
}

RiderCommand Rider::Decide(std::size_t segment, double intoSegmentM, double speedMs) {
    const double required = RequiredDecel(segment, intoSegmentM, speedMs);
    if (!braking_ && required >= plannedDecel_) {
        braking_ = true;
    } else if (braking_ && required < ReleaseDecel) {
        braking_ = false;
    }
    if (braking_) {
        return {-required, 0.0};
    }
    const Segment& here = circuit_.Segments()[segment];
    if (!here.IsCorner()) {
        return {FullAttack, throttleCap_};
    }
    const double half = here.LengthM / 2.0;
    if (intoSegmentM < half) {
        return {(cornerSpeedMs_[segment] - speedMs) / HoldTimeS, TurnInCap};
    }
    // Past the apex the bike stands up and the throttle opens with it.
    const double exit = std::min((intoSegmentM - half) / half, 1.0);
    return {FullAttack, std::min(ApexCap + (1.0 - ApexCap) * exit, throttleCap_)};
}

} // namespace torvane::sim
