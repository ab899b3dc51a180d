#pragma once
// The logger's view of the bike: the raw word each input reads for a vehicle state. The throttle
// and the VM inputs are 10-bit converters and the supply an 8-bit one; which sensor feeds each
// VM input follows SusMode and LafMode. A live input never reads 0, because 0 is "no data".

#include "logdata/log_header.h"
#include "vehicle/vehicle_state.h"

#include <array>
#include <cstdint>

namespace torvane::sim {

inline constexpr int VmInputs = 4;

// The bike's sensors as a setting describes them: the 10-bit throttle readings shut and wide
// open, the readings of the fork and the shock fully extended, and what the VM inputs carry.
struct SensorSetup {
    int ThClose = 102;
    int ThOpen = 758;
    int FrSusZero = 900;
    int RrSusZero = 850;
    int SusMode = 0;
    int LafMode = 0;
};

SensorSetup SensorSetupOf(const logdata::LogHeader& setting);

struct RawReadings {
    std::int16_t Ne = 0;        // r/min ÷ 20
    std::int16_t Th = 0;        // the top 8 bits of ThReading
    std::int16_t ThReading = 0; // 10-bit throttle sensor
    std::int16_t Vfw = 0;       // km/h
    std::int16_t Vrw = 0;
    std::int16_t Vb = 0;                          // 8-bit supply
    std::array<std::int16_t, SensorPairs> Deto{}; // knock events of the step
    std::array<std::int16_t, VmInputs> Vm{};      // 10-bit
};

class SensorReadings {
public:
    explicit SensorReadings(const SensorSetup& setup)
        : setup_(setup) {}

    RawReadings Read(const VehicleState& state) const;

    // The single converters, for a caller that wants one input (sensor initialisation reads
    // the throttle and the suspension at their end points).
    std::int16_t ThrottleReading(double percent) const;
    std::int16_t FrontStrokeReading(double strokeMm) const;
    std::int16_t RearStrokeReading(double strokeMm) const;
    // Sensor output of an air/fuel ratio by the default table, as a 10-bit reading.
    static std::int16_t AirFuelReading(double airFuel);
    static std::int16_t VoltReading(double volt);
    static std::int16_t BatteryReading(double volt);

private:
    std::int16_t VmReading(int input, const VehicleState& state) const;

    SensorSetup setup_;
};

} // namespace torvane::sim
