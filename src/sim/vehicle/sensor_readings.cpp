#include "vehicle/sensor_readings.h"

#include "shell/rounding.h"

#include <algorithm>
#include <cmath>

namespace torvane::sim {
namespace {

constexpr double TenBitFull = 1023.0;
constexpr double VmFullScaleVolt = 5.0;
constexpr double FrontFullScaleMm = 187.5;
constexpr double RearFullScaleMm = 125.0;
constexpr double BatteryFullScaleVolt = 25.0;
constexpr double BatteryOffsetVolt = 0.28;
constexpr double EightBitFull = 255.0;
constexpr double RpmPerCount = 20.0;
// The default air/fuel table is the line A/F = 9 + 1.8 × volt.
constexpr double AfAtZeroVolt = 9.0;
constexpr double AfPerVolt = 1.8;

std::int16_t Quantise(double value, double low, double high) {
    if (std::isnan(value)) {
        return static_cast<std::int16_t>(low);
    }
    return static_cast<std::int16_t>(std::clamp(shell::RoundHalfEven(value), low, high));
}

std::int16_t TenBit(double counts) {
    return Quantise(counts, 1.0, TenBitFull);
}

} // namespace

SensorSetup SensorSetupOf(const logdata::LogHeader& setting) {
    return SensorSetup{setting.ThClose(),   setting.ThOpen(),  setting.FrSusZero(),
                       setting.RrSusZero(), setting.SusMode(), setting.LafMode()};
}

std::int16_t SensorReadings::ThrottleReading(double percent) const {
    return TenBit(setup_.ThClose + percent / 100.0 * (setup_.ThOpen - setup_.ThClose));
}

std::int16_t SensorReadings::FrontStrokeReading(double strokeMm) const {
    return TenBit(setup_.FrSusZero - strokeMm / FrontFullScaleMm * TenBitFull);
}

std::int16_t SensorReadings::RearStrokeReading(double strokeMm) const {
    return TenBit(setup_.RrSusZero - strokeMm / RearFullScaleMm * TenBitFull);
}

std::int16_t SensorReadings::AirFuelReading(double airFuel) {
    return VoltReading((airFuel - AfAtZeroVolt) / AfPerVolt);
}

std::int16_t SensorReadings::VoltReading(double volt) {
    return TenBit(volt / VmFullScaleVolt * TenBitFull);
}

std::int16_t SensorReadings::BatteryReading(double volt) {
    return Quantise((volt - BatteryOffsetVolt) / BatteryFullScaleVolt * EightBitFull, 1.0,
                    EightBitFull);
}

std::int16_t SensorReadings::VmReading(int input, const VehicleState& state) const {
    const auto spare = state.SpareVolt[static_cast<std::size_t>(input)];
    switch (input) {
    case 0:
        return (setup_.SusMode & 1) != 0 ? FrontStrokeReading(state.FrontStrokeMm)
                                         : VoltReading(spare);
    case 1:
        return (setup_.SusMode & 2) != 0 ? RearStrokeReading(state.RearStrokeMm)
                                         : VoltReading(spare);
    case 2:
        return (setup_.LafMode & 1) != 0 ? AirFuelReading(state.AirFuel[0]) : VoltReading(spare);
    default:
        return (setup_.LafMode & 2) != 0 ? AirFuelReading(state.AirFuel[1]) : VoltReading(spare);
    }
}

RawReadings SensorReadings::Read(const VehicleState& state) const {
    RawReadings raw;
    raw.Ne = Quantise(state.EngineRpm / RpmPerCount, 1.0, 32767.0);
    raw.ThReading = ThrottleReading(state.ThrottlePercent);
    // The 8-bit word is the converter's top bits, not a rounding of it.
    raw.Th = static_cast<std::int16_t>(std::max(raw.ThReading / 4, 1));
    // A wheel at rest reads 0 like an unplugged sensor would; that is what the logger records.
    raw.Vfw = Quantise(state.FrontWheelKmh, 0.0, 32767.0);
    raw.Vrw = Quantise(state.RearWheelKmh, 0.0, 32767.0);
    raw.Vb = BatteryReading(state.BatteryVolt);
    for (std::size_t i = 0; i < raw.Deto.size(); ++i) {
        raw.Deto[i] = static_cast<std::int16_t>(std::clamp(state.Detonation[i], 0, 32767));
    }
    for (int i = 0; i < VmInputs; ++i) {
        raw.Vm[static_cast<std::size_t>(i)] = VmReading(i, state);
    }
    return raw;
}

} // namespace torvane::sim
