#pragma once
// Engine and gearbox: crank torque by engine speed and throttle, six overall ratios, and the
// shift pattern of a rider with a quick-shifter.

namespace torvane::sim {

inline constexpr int GearCount = 6;
inline constexpr double IdleRpm = 1300.0;
inline constexpr double LimiterRpm = 14000.0;
inline constexpr double DefaultShiftRpm = 12500.0;
inline constexpr double RearCircumferenceM = 1.90;

// Crank torque in N·m at a throttle opening of 0..1. A closed throttle drags; at the limiter
// the ignition cuts and only the drag is left.
double EngineTorque(double rpm, double throttle);
// Engine revolutions per rear-wheel revolution in gear 1..6 (primary, gearbox and chain).
double OverallRatio(int gear);
// Engine speed when the rear wheel turns at a surface speed, clutch engaged.
double EngineRpmAt(double rearWheelMs, int gear);
// Force at the rear contact patch.
double DriveForce(double rpm, double throttle, int gear);
// The opening that makes a drive force, within 0..1.
double ThrottleForForce(double force, double rpm, int gear);

class Gearbox {
public:
    // Shift speeds outside 4000..13800 r/min are brought inside: above, the limiter would cut
    // before the shift; below, the bike could not pull the next gear.
    explicit Gearbox(double shiftRpm);

    int Gear() const { return gear_; }
    // True during the ignition cut of an upshift.
    bool Cutting() const { return cutSteps_ > 0; }

    void SelectFirst() { gear_ = 1; }
    // One 5 ms step: up at the shift speed on the gas, down whenever the lower gear stays
    // below the downshift speed, never two shifts within the selector's travel time.
    void Update(double rearWheelMs, bool onThrottle);

private:
    double shiftRpm_;
    double downshiftRpm_;
    int gear_ = 0;
    int cutSteps_ = 0;
    int settleSteps_ = 0;
};

} // namespace torvane::sim
