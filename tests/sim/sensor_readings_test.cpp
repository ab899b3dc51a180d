#include "logdata/channels.h"
#include "logdata/values.h"
#include "vehicle/demo_setting.h"
#include "vehicle/sensor_readings.h"

#include <gtest/gtest.h>

namespace torvane::sim {
namespace {

using namespace logdata;

VehicleState SampleState() {
    VehicleState state;
    state.EngineRpm = 11234.0;
    state.ThrottlePercent = 63.0;
    state.FrontWheelKmh = 187.4;
    state.RearWheelKmh = 191.6;
    state.BatteryVolt = 13.9;
    state.FrontStrokeMm = 87.3;
    state.RearStrokeMm = 41.2;
    state.AirFuel = {12.9, 14.6};
    state.Detonation = {2, 0};
    state.SpareVolt = {1.7, 2.5, 3.1, 1.2};
    return state;
}

// The viewer's conversion of a setting's raw words.
auto DecoderFor(const LogHeader& setting) {
    logger::LafTable laf;
    laf.SetPoints(logger::DefaultLafPoints());
    return [setting, laf](int channel, std::int16_t raw) {
        return RawToValue(setting, channel, raw, laf);
    };
}

// The viewer's conversion must give back what the bike did, to within one converter step.
TEST(SensorReadings, ReadingsDecodeBackThroughTheViewersConversion) {
    const LogHeader setting = DemoSetting();
    const auto decode = DecoderFor(setting);
    const VehicleState state = SampleState();
    const RawReadings raw = SensorReadings(SensorSetupOf(setting)).Read(state);

    EXPECT_NEAR(decode(Ne, raw.Ne), state.EngineRpm, 10.0);
    EXPECT_NEAR(decode(TH, raw.Th), state.ThrottlePercent, 100.0 * 4 / 656);
    EXPECT_NEAR(decode(VFW, raw.Vfw), state.FrontWheelKmh, 0.5);
    EXPECT_NEAR(decode(VB, raw.Vb), state.BatteryVolt, 25.0 / 255 / 2);
    EXPECT_NEAR(decode(FRSUS, raw.Vm[0]), state.FrontStrokeMm, 187.5 / 1023 / 2);
    EXPECT_NEAR(decode(RRSUS, raw.Vm[1]), state.RearStrokeMm, 125.0 / 1023 / 2);
    // The default table's voltages are rounded to 10 mV.
    EXPECT_NEAR(decode(LAF1, raw.Vm[2]), state.AirFuel[0], 0.02);
    EXPECT_EQ(raw.Deto[0], 2);
}

TEST(SensorReadings, EachModeBitRewiresOnlyItsOwnInput) {
    LogHeader setting = DemoSetting();
    setting.SetWord(SettingWord::Sus, 2);
    setting.SetWord(SettingWord::Laf, 1);
    const auto decode = DecoderFor(setting);
    const VehicleState state = SampleState();
    const RawReadings raw = SensorReadings(SensorSetupOf(setting)).Read(state);

    EXPECT_NEAR(decode(VM1, raw.Vm[0]), state.SpareVolt[0], 5.0 / 1023);
    EXPECT_NEAR(decode(RRSUS, raw.Vm[1]), state.RearStrokeMm, 125.0 / 1023);
    EXPECT_NEAR(decode(LAF1, raw.Vm[2]), state.AirFuel[0], 0.02);
    EXPECT_NEAR(decode(VM4, raw.Vm[3]), state.SpareVolt[3], 5.0 / 1023);
}

// 0 is "no data" to the viewer, and a converter cannot exceed its full scale.
TEST(SensorReadings, EndPointsReadTheCalibrationAndLiveInputsNeverReadZeroOrOverflow) {
    const SensorReadings calibrated(SensorSetup{95, 770, 910, 840, 3, 3});
    EXPECT_EQ(calibrated.ThrottleReading(0.0), 95);
    EXPECT_EQ(calibrated.ThrottleReading(100.0), 770);
    EXPECT_EQ(calibrated.FrontStrokeReading(0.0), 910);
    EXPECT_EQ(calibrated.RearStrokeReading(0.0), 840);

    const SensorReadings sensors(SensorSetup{0, 1023, 5, 5, 3, 3});
    VehicleState low;
    low.EngineRpm = 0.0;
    low.FrontStrokeMm = 120.0;
    low.RearStrokeMm = 80.0;
    low.AirFuel = {5.0, 5.0};
    low.BatteryVolt = 0.0;
    VehicleState high = low;
    high.ThrottlePercent = 150.0;
    high.FrontStrokeMm = -50.0;
    high.RearStrokeMm = -50.0;
    high.AirFuel = {30.0, 30.0};
    high.BatteryVolt = 40.0;

    for (const VehicleState& state : {low, high}) {
        const RawReadings raw = sensors.Read(state);
        EXPECT_GE(raw.Ne, 1);
        EXPECT_GE(raw.Th, 1);
        EXPECT_LE(raw.Th, 255);
        EXPECT_GE(raw.Vb, 1);
        EXPECT_LE(raw.Vb, 255);
        for (std::int16_t vm : raw.Vm) {
            EXPECT_GE(vm, 1);
            EXPECT_LE(vm, 1023);
        }
    }
}

} // namespace
} // namespace torvane::sim
