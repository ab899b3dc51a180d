#pragma once
// The logger's own inputs: the bike's sensors as they really are (whatever the setting believes
// about them), the throttle opening the logger works out from its calibration, and the live
// reading with its counters since the previous one.

#include "logdata/log_header.h"
#include "tlm.h"
#include "vehicle/sensor_readings.h"
#include "vehicle/vehicle_state.h"

#include <cstdint>

namespace torvane::sim {

// The sensors fitted to the bike: fixed end points, and on the VM inputs whatever the setting
// says is wired there. A setting's calibration words only become right by sensor
// initialisation.
SensorSetup FittedSensors(const logdata::LogHeader& setting);

// Throttle opening in whole per cent, 0..100, from a 10-bit reading and the setting's stored
// points; 0 when the points are not a valid pair.
int ThrottlePercent(int reading, const logdata::LogHeader& setting);

// The state as the logger measures it under a setting: wheel speeds from the pulses it counts,
// turned into km/h by the setting's pulses per revolution and tyre circumference, and engine
// speed by the setting's pulses per crank revolution. The bike carries 20 pulses a wheel
// revolution, tyres of 182 and 190 cm and one ignition pulse a revolution (the fresh record's
// words), so a setting that says otherwise reads speeds off by its ratio; a pulse count below 1
// reads nothing.
VehicleState AsMeasured(VehicleState state, const logdata::LogHeader& setting);

// Collects the steps between two live readings: the last state, and the detonation and lap
// counts of all steps since the previous reading.
class SignalAccumulator {
public:
    void Observe(const VehicleState& state);
    // The reading now; the counters start again from 0.
    TlmSignalCondition Take(const SensorSetup& sensors);

private:
    VehicleState last_;
    std::int32_t deto1_ = 0;
    std::int32_t deto2_ = 0;
    std::int32_t laps_ = 0;
};

} // namespace torvane::sim
