#include "vehicle/vehicle_model.h"

#include "vehicle/time_step.h"

#include <algorithm>

namespace torvane::sim {
namespace {

constexpr double Gravity = 9.81;
constexpr double MassKg = 245.0; // bike, fuel and rider
constexpr double DragAreaM2 = 0.30;
constexpr double AirDensity = 1.2;
constexpr double RollingCoefficient = 0.018;
// Beyond this the front lifts or the rear lets go; the surplus shows as wheelspin.
constexpr double TractionG = 1.05;
constexpr double MaxBrakeDecel = 11.8;
constexpr double CornerLateralG = 1.25;
constexpr double WheelbaseM = 1.4;
constexpr double MsToKmh = 3.6;

// On the grid: idle, one blip, then the launch.
constexpr std::int64_t LaunchAtMs = 2000;
constexpr std::int64_t BlipFromMs = 800;
constexpr std::int64_t BlipToMs = 1100;
constexpr double BlipThrottle = 0.25;
constexpr double FreeRevRpmPerThrottle = 9000.0;
constexpr double FreeRevLagS = 0.12;
constexpr double IdleWanderRpm = 20.0;
constexpr double LaunchRpm = 7000.0;
constexpr double LaunchThrottle = 0.7;
constexpr double ClutchEngageS = 1.5;
constexpr double ClutchTorqueGain = 4.0;
constexpr double LaunchGripG = 0.8;

// How fast a hand moves: opening 0..100 % in 250 ms, shutting in 100 ms; brake pressure
// builds to a full stop in about 200 ms.
constexpr double ThrottleOpenPerStep = 4.0 * StepSeconds;
constexpr double ThrottleClosePerStep = 10.0 * StepSeconds;
constexpr double BrakeRisePerStep = 60.0 * StepSeconds;
constexpr double BrakeFallPerStep = 80.0 * StepSeconds;

// Slip is a fraction of the road speed: the rear spins up under power, the front runs slow
// when the brake is near its limit. Both settle within a few tens of ms.
constexpr double RearSlipPerG = 0.012;
constexpr double RearSpinPerExcess = 0.15;
constexpr double RearSpinMax = 0.08;
constexpr double FrontSlipBase = 0.004;
constexpr double FrontSlipPerDecel = 0.0025;
constexpr double FrontLockFromDecel = 8.5;
constexpr double FrontLockSpanDecel = 1.5;
constexpr double RearSlipLagS = 0.03;
constexpr double FrontSlipLagS = 0.02;

double Resistance(double speedMs) {
    return 0.5 * AirDensity * DragAreaM2 * speedMs * speedMs +
           RollingCoefficient * MassKg * Gravity;
}

// Moves a control toward its target no faster than a hand or a brake line can.
void Approach(double& value, double target, double risePerStep, double fallPerStep) {
    value = target > value ? std::min(target, value + risePerStep)
                           : std::max(target, value - fallPerStep);
}

} // namespace

double ShiftEngineSpeed(const logdata::LogHeader& setting) {
    const int word = setting.Word(logdata::SettingWord::Shift);
    return word > 0 ? word * 50.0 : DefaultShiftRpm;
}

VehicleModel::VehicleModel(std::uint64_t seed, double shiftRpm, const Circuit& circuit)
    : circuit_(circuit)
    , noise_(DeriveSeed(seed, 1))
    , rider_(circuit_, DeriveSeed(seed, 2))
    , gearbox_(shiftRpm)
    , suspension_(DeriveSeed(seed, 3))
    , combustion_(DeriveSeed(seed, 4))
    , auxiliary_(DeriveSeed(seed, 5)) {
}

VehicleState VehicleModel::Step() {
    timeMs_ += StepMs;
    crossedLine_ = false;
    switch (phase_) {
    case Phase::Waiting:
        Wait();
        break;
    case Phase::Launch:
        Launch();
        break;
    case Phase::Riding:
        Ride();
        break;
    }
    const double lapPosition = circuit_.StartOf(segment_) + intoSegmentM_;
    suspension_.Update({accelMs2_, LateralAccel(), speedMs_, circuit_.SurfaceAt(lapPosition),
                        circuit_.SurfaceAt(lapPosition - WheelbaseM)});
    combustion_.Update(rpm_, throttle_ * 100.0);
    auxiliary_.Update(rpm_, throttle_ * 100.0, speedMs_);
    return Snapshot();
}

void VehicleModel::Wait() {
    const bool blipping = timeMs_ >= BlipFromMs && timeMs_ < BlipToMs;
    Approach(throttle_, blipping ? BlipThrottle : 0.0, ThrottleOpenPerStep, ThrottleClosePerStep);
    const double freeRpm =
        IdleRpm + throttle_ * FreeRevRpmPerThrottle + IdleWanderRpm * noise_.Normal();
    rpm_ += (freeRpm - rpm_) * (StepSeconds / FreeRevLagS);
    if (timeMs_ >= LaunchAtMs) {
        phase_ = Phase::Launch;
        launchHeldRpm_ = rpm_;
        gearbox_.SelectFirst();
    }
}

void VehicleModel::Launch() {
    Approach(throttle_, LaunchThrottle, ThrottleOpenPerStep, ThrottleClosePerStep);
    const double clutch =
        std::min(static_cast<double>(timeMs_ - LaunchAtMs) / 1000.0 / ClutchEngageS, 1.0);
    // The rider holds the engine at the launch speed on the slipping clutch; as it bites, the
    // engine is pulled down onto the rear wheel, which then carries it up again.
    launchHeldRpm_ += (LaunchRpm - launchHeldRpm_) * (StepSeconds / FreeRevLagS);
    const double wheelRpm = EngineRpmAt(speedMs_ * (1.0 + rearSlip_), 1);
    // The plates carry the full torque long before they stop slipping.
    const double bite = clutch * clutch;
    rpm_ = std::max({wheelRpm, IdleRpm, launchHeldRpm_ - (launchHeldRpm_ - wheelRpm) * bite});
    Move(std::min(ClutchTorqueGain * clutch, 1.0) * DriveForce(launchHeldRpm_, throttle_, 1),
         LaunchGripG * MassKg * Gravity);
    if (clutch >= 1.0) {
        phase_ = Phase::Riding;
    }
}

void VehicleModel::Ride() {
    const RiderCommand command = rider_.Decide(segment_, intoSegmentM_, speedMs_);
    const int gear = gearbox_.Gear();
    const double resistance = Resistance(speedMs_);
    const bool attacking = command.Acceleration >= FullAttack;
    const double wantedForce = MassKg * command.Acceleration + resistance;
    const double throttleTarget =
        attacking ? command.ThrottleCap
                  : std::min(command.ThrottleCap, ThrottleForForce(wantedForce, rpm_, gear));
    double brakeTarget = 0.0;
    if (command.Acceleration < 0.0 && throttleTarget <= 0.0) {
        // The brake makes up what the closed throttle and the wind do not.
        const double coastForce = DriveForce(rpm_, 0.0, gear) - resistance;
        brakeTarget =
            std::clamp((coastForce - MassKg * command.Acceleration) / MassKg, 0.0, MaxBrakeDecel);
    }
    Approach(throttle_, throttleTarget, ThrottleOpenPerStep, ThrottleClosePerStep);
    Approach(brakeDecel_, brakeTarget, BrakeRisePerStep, BrakeFallPerStep);

    gearbox_.Update(speedMs_ * (1.0 + rearSlip_), throttle_ > 0.3);
    const int newGear = gearbox_.Gear();
    rpm_ = std::max(EngineRpmAt(speedMs_ * (1.0 + rearSlip_), newGear), IdleRpm);
    Move(DriveForce(rpm_, gearbox_.Cutting() ? 0.0 : throttle_, newGear),
         TractionG * MassKg * Gravity);
    rpm_ = std::max(EngineRpmAt(speedMs_ * (1.0 + rearSlip_), newGear), IdleRpm);
}

void VehicleModel::Move(double driveForce, double tractionLimit) {
    const double applied = std::min(driveForce, tractionLimit);
    const double before = speedMs_;
    const double accel = (applied - Resistance(speedMs_)) / MassKg - brakeDecel_;
    speedMs_ = std::max(0.0, speedMs_ + accel * StepSeconds);
    accelMs2_ = (speedMs_ - before) / StepSeconds;
    UpdateWheels(driveForce, tractionLimit);
    Advance(speedMs_ * StepSeconds);
}

void VehicleModel::UpdateWheels(double driveDemand, double tractionLimit) {
    const double appliedG = std::clamp(driveDemand, 0.0, tractionLimit) / (MassKg * Gravity);
    const double surplus =
        driveDemand > tractionLimit ? (driveDemand - tractionLimit) / tractionLimit : 0.0;
    // Under braking the rear goes light and runs a touch slow.
    const double rearTarget = RearSlipPerG * appliedG +
                              std::min(RearSpinPerExcess * surplus, RearSpinMax) -
                              RearSlipPerG * brakeDecel_ / Gravity;
    double frontTarget = 0.0;
    if (brakeDecel_ > 0.0) {
        // The front carries nearly all of a hard stop, so the bike's deceleration says how
        // close it is to locking.
        const double nearLock =
            std::clamp((-accelMs2_ - FrontLockFromDecel) / FrontLockSpanDecel, 0.0, 1.0);
        frontTarget = -(FrontSlipBase + FrontSlipPerDecel * brakeDecel_) -
                      (nearLock > 0.0 ? nearLock * (0.03 + 0.03 * noise_.Uniform()) : 0.0);
    }
    rearSlip_ += (rearTarget - rearSlip_) * (StepSeconds / RearSlipLagS);
    frontSlip_ += (frontTarget - frontSlip_) * (StepSeconds / FrontSlipLagS);
}

void VehicleModel::Advance(double distanceM) {
    intoSegmentM_ += distanceM;
    while (intoSegmentM_ >= circuit_.Segments()[segment_].LengthM) {
        intoSegmentM_ -= circuit_.Segments()[segment_].LengthM;
        segment_ = circuit_.Next(segment_);
        if (segment_ == 0) {
            crossedLine_ = true;
            ++lapsCompleted_;
            rider_.StartLap(false);
        }
    }
}

double VehicleModel::LateralAccel() const {
    const Segment& here = circuit_.Segments()[segment_];
    if (!here.IsCorner()) {
        return 0.0;
    }
    // The corner's radius is the one its nominal speed takes at the bike's cornering grip.
    const double nominalMs = here.CornerSpeedKmh / MsToKmh;
    const double ratio = speedMs_ / nominalMs;
    return CornerLateralG * Gravity * ratio * ratio;
}

VehicleState VehicleModel::Snapshot() const {
    VehicleState state;
    state.TimeMs = timeMs_;
    state.LapPositionM = circuit_.StartOf(segment_) + intoSegmentM_;
    state.LapsCompleted = lapsCompleted_;
    state.CrossedLine = crossedLine_;
    state.SpeedKmh = speedMs_ * MsToKmh;
    state.EngineRpm = rpm_;
    state.Gear = gearbox_.Gear();
    state.ThrottlePercent = throttle_ * 100.0;
    state.BrakeDecel = brakeDecel_;
    state.LongitudinalAccel = accelMs2_;
    state.FrontWheelKmh = speedMs_ * (1.0 + frontSlip_) * MsToKmh;
    state.RearWheelKmh = speedMs_ * (1.0 + rearSlip_) * MsToKmh;
    state.BatteryVolt = auxiliary_.BatteryVolt();
    state.FrontStrokeMm = suspension_.FrontStrokeMm();
    state.RearStrokeMm = suspension_.RearStrokeMm();
    for (int i = 0; i < SensorPairs; ++i) {
        state.AirFuel[static_cast<std::size_t>(i)] = combustion_.AirFuel(i);
        state.Detonation[static_cast<std::size_t>(i)] = combustion_.Detonation(i);
    }
    for (int i = 0; i < SpareInputs; ++i) {
        state.SpareVolt[static_cast<std::size_t>(i)] = auxiliary_.SpareVolt(i);
    }
    return state;
}

} // namespace torvane::sim
