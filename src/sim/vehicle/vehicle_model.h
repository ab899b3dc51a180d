#pragma once
// A motorcycle lapping a circuit, stepped at the logger's 5 ms tick. It sits at the timing line
// with the engine idling, launches, rides a steady out-lap and then laps at race pace. Everything
// random comes from the seed: the same seed and shift speed give the same run on every platform.

#include "logdata/log_header.h"
#include "vehicle/auxiliary_inputs.h"
#include "vehicle/circuit.h"
#include "vehicle/combustion.h"
#include "vehicle/noise.h"
#include "vehicle/powertrain.h"
#include "vehicle/rider.h"
#include "vehicle/suspension.h"
#include "vehicle/vehicle_state.h"

#include <cstdint>

namespace torvane::sim {

// The engine speed to shift up at: the setting's Shift word × 50 r/min, or DefaultShiftRpm
// when the word is not set.
double ShiftEngineSpeed(const logdata::LogHeader& setting);

class VehicleModel {
public:
    explicit VehicleModel(std::uint64_t seed, double shiftRpm = DefaultShiftRpm,
                          const Circuit& circuit = DefaultCircuit());

    // Advances 5 ms; the first step ends at 5 ms.
    VehicleState Step();

    const Circuit& Track() const { return circuit_; }

private:
    enum class Phase { Waiting, Launch, Riding };

    void Wait();
    void Launch();
    void Ride();
    // Applies the longitudinal forces for one step and moves the bike along the track.
    void Move(double driveForce, double tractionLimit);
    void Advance(double distanceM);
    void UpdateWheels(double driveDemand, double tractionLimit);
    double LateralAccel() const;
    VehicleState Snapshot() const;

    Circuit circuit_;
    NoiseSource noise_;
    Rider rider_;
    Gearbox gearbox_;
    Suspension suspension_;
    Combustion combustion_;
    AuxiliaryInputs auxiliary_;

    Phase phase_ = Phase::Waiting;
    std::int64_t timeMs_ = 0;
    std::size_t segment_ = 0;
    double intoSegmentM_ = 0.0;
    int lapsCompleted_ = 0;
    bool crossedLine_ = false;

    double speedMs_ = 0.0;
    double accelMs2_ = 0.0;
    double rpm_ = IdleRpm;
    double launchHeldRpm_ = IdleRpm;
    double throttle_ = 0.0;   // 0..1
    double brakeDecel_ = 0.0; // m/s²
    double frontSlip_ = 0.0;
    double rearSlip_ = 0.0;
};

} // namespace torvane::sim
