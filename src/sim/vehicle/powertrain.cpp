#include "vehicle/powertrain.h"

#include <algorithm>
#include <array>

namespace torvane::sim {
namespace {

struct TorquePoint {
    double Rpm;
    double Nm;
};

// A litre four: flat from 9000, peak power near 12500 r/min (about 185 PS at the crank).
constexpr std::array<TorquePoint, 11> FullLoadCurve{{{0.0, 30.0},
                                                     {1000.0, 40.0},
                                                     {3000.0, 62.0},
                                                     {5000.0, 80.0},
                                                     {7000.0, 95.0},
                                                     {9000.0, 108.0},
                                                     {10500.0, 112.0},
                                                     {12000.0, 108.0},
                                                     {13000.0, 100.0},
                                                     {14000.0, 88.0},
                                                     {15000.0, 60.0}}};

constexpr std::array<double, GearCount> Ratios{11.0, 8.6, 7.1, 6.1, 5.4, 4.9};
constexpr double DrivelineEfficiency = 0.9;
constexpr double RearRadiusM = RearCircumferenceM / (2.0 * 3.141592653589793);
constexpr int CutSteps = 6;     // 30 ms of ignition cut per upshift
constexpr int SettleSteps = 20; // the selector drum needs 100 ms before the next shift

double FullLoadTorque(double rpm) {
    if (rpm <= FullLoadCurve.front().Rpm) {
        return FullLoadCurve.front().Nm;
    }
    for (std::size_t i = 1; i < FullLoadCurve.size(); ++i) {
        if (rpm <= FullLoadCurve[i].Rpm) {
            const TorquePoint& low = FullLoadCurve[i - 1];
            const TorquePoint& high = FullLoadCurve[i];
            return low.Nm + (high.Nm - low.Nm) * (rpm - low.Rpm) / (high.Rpm - low.Rpm);
        }
    }
    return FullLoadCurve.back().Nm;
}

double DragTorque(double rpm) {
    return 8.0 + 1.4 * rpm / 1000.0;
}

double ForcePerNm(int gear) {
    return OverallRatio(gear) * DrivelineEfficiency / RearRadiusM;
}

} // namespace

double EngineTorque(double rpm, double throttle) {
    const double drag = DragTorque(rpm);
    if (rpm >= LimiterRpm) {
        return -drag;
    }
    return throttle * FullLoadTorque(rpm) - (1.0 - throttle) * drag;
}

double OverallRatio(int gear) {
    return gear < 1 ? 0.0 : Ratios[static_cast<std::size_t>(std::min(gear, GearCount) - 1)];
}

double EngineRpmAt(double rearWheelMs, int gear) {
    return rearWheelMs / RearCircumferenceM * 60.0 * OverallRatio(gear);
}

double DriveForce(double rpm, double throttle, int gear) {
    return EngineTorque(rpm, throttle) * ForcePerNm(gear);
}

double ThrottleForForce(double force, double rpm, int gear) {
    if (gear < 1 || rpm >= LimiterRpm) {
        return 0.0;
    }
    // Torque is linear in the opening, from -drag closed to the full-load curve open.
    const double drag = DragTorque(rpm);
    const double wanted = force / ForcePerNm(gear);
    return std::clamp((wanted + drag) / (FullLoadTorque(rpm) + drag), 0.0, 1.0);
}

Gearbox::Gearbox(double shiftRpm)
    : shiftRpm_(std::clamp(shiftRpm, 4000.0, LimiterRpm - 200.0))
    // Below the shift speed, so the gear an upshift leaves never looks worth going back to.
    , downshiftRpm_(0.92 * shiftRpm_) {
}

void Gearbox::Update(double rearWheelMs, bool onThrottle) {
    if (cutSteps_ > 0) {
        --cutSteps_;
    }
    if (gear_ == 0) {
        return;
    }
    if (settleSteps_ > 0) {
        --settleSteps_;
        return;
    }
    if (gear_ < GearCount && onThrottle && EngineRpmAt(rearWheelMs, gear_) >= shiftRpm_) {
        ++gear_;
        cutSteps_ = CutSteps;
        settleSteps_ = SettleSteps;
    } else if (gear_ > 1 && EngineRpmAt(rearWheelMs, gear_ - 1) < downshiftRpm_) {
        --gear_;
        settleSteps_ = SettleSteps;
    }
}

} // namespace torvane::sim
