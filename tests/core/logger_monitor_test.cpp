// The real-time monitor: every live value in engineering units, the counters' sums, the texts
// of the logger's program, setting time and start condition, and the monitor's states over a
// scripted logger.

#include "logger/monitor.h"
#include "logger_test_support.h"

#include <gtest/gtest.h>

#include <cstring>

namespace torvane::logger {
namespace {

using testing::ScriptedLink;

TlmSettingData Calibrated() {
    TlmSettingData setting{};
    setting.intThClose = 102;
    setting.intThOpen = 758;
    setting.intFrZero = 900;
    setting.intRrZero = 800;
    return setting;
}

LafTable DefaultLaf() {
    LafTable laf;
    laf.SetPoints(DefaultLafPoints());
    return laf;
}

std::string TextOf(const MonitorValues& values, MonitorField field) {
    return values[static_cast<std::size_t>(field)].Text;
}

struct ConversionCase {
    const char* Name;
    void (*Set)(TlmSignalCondition&);
    MonitorField Field;
    const char* Shown;
};

const ConversionCase ConversionCases[] = {
    {"Ne below zero", [](TlmSignalCondition& s) { s.intNe = -1; }, MonitorField::Ne, "0"},
    {"Ne at its limit", [](TlmSignalCondition& s) { s.intNe = 30000; }, MonitorField::Ne, "30000"},
    {"Ne between", [](TlmSignalCondition& s) { s.intNe = 12345; }, MonitorField::Ne, "12345"},
    {"throttle half open", [](TlmSignalCondition& s) { s.intTh = 430; }, MonitorField::THper, "50"},
    {"throttle far below closed", [](TlmSignalCondition& s) { s.intTh = 0; }, MonitorField::THper,
     "-10"},
    {"throttle far past open", [](TlmSignalCondition& s) { s.intTh = 1023; }, MonitorField::THper,
     "110"},
    {"throttle volts", [](TlmSignalCondition& s) { s.intTh = 512; }, MonitorField::THV, "2.50"},
    {"throttle volts at full scale", [](TlmSignalCondition& s) { s.intTh = 1023; },
     MonitorField::THV, "5.00"},
    {"throttle volts negative", [](TlmSignalCondition& s) { s.intTh = -200; }, MonitorField::THV,
     "-0.50"},
    {"front wheel over the limit", [](TlmSignalCondition& s) { s.intVfw = 401; }, MonitorField::VFW,
     "400"},
    {"rear wheel", [](TlmSignalCondition& s) { s.intVrw = 187; }, MonitorField::VRW, "187"},
    {"battery at zero keeps its offset", [](TlmSignalCondition&) {}, MonitorField::VB, "0.3"},
    {"battery", [](TlmSignalCondition& s) { s.intVb = 553; }, MonitorField::VB, "13.8"},
    {"battery at full scale", [](TlmSignalCondition& s) { s.intVb = 1023; }, MonitorField::VB,
     "25.0"},
    {"front stroke counts down from zero", [](TlmSignalCondition& s) { s.intVm[0] = 354; },
     MonitorField::FRSUS, "100"},
    {"rear stroke on its own full scale", [](TlmSignalCondition& s) { s.intVm[1] = 391; },
     MonitorField::RRSUS, "50"},
    {"stroke above the zero point", [](TlmSignalCondition& s) { s.intVm[0] = 1000; },
     MonitorField::FRSUS, "-5"},
    {"spare volts", [](TlmSignalCondition& s) { s.intVm[1] = 205; }, MonitorField::VM2, "1.00"},
    {"air/fuel at 0 V", [](TlmSignalCondition&) {}, MonitorField::LAF1, "0.00"},
    {"air/fuel through the table", [](TlmSignalCondition& s) { s.intVm[3] = 57; },
     MonitorField::LAF2, "9.50"},
};

TEST(MonitorConversion, EachLabelShowsItsValueWithinItsLimits) {
    const LafTable laf = DefaultLaf();
    for (const ConversionCase& c : ConversionCases) {
        TlmSignalCondition signal{};
        signal.intVm[0] = 900;
        signal.intVm[1] = 800;
        c.Set(signal);
        MonitorCounters counters;
        const MonitorValues values = ConvertReading(signal, Calibrated(), laf, counters, {});
        EXPECT_EQ(TextOf(values, c.Field), c.Shown) << c.Name;
    }
}

TEST(MonitorConversion, AThrottleWithoutCalibrationKeepsWhatItShowed) {
    TlmSettingData uncalibrated{};
    TlmSignalCondition signal{};
    signal.intTh = 430;
    MonitorCounters counters;
    const LafTable laf;
    EXPECT_EQ(TextOf(ConvertReading(signal, uncalibrated, laf, counters, {}), MonitorField::THper),
              "");
    const MonitorValue before{42.0, "42"};
    EXPECT_EQ(
        TextOf(ConvertReading(signal, uncalibrated, laf, counters, before), MonitorField::THper),
        "42");
}

TEST(MonitorConversion, CountersStartAfterTheFirstReadingAndStopAtTheirLimit) {
    const LafTable laf;
    MonitorCounters counters;
    TlmSignalCondition signal{};
    signal.intDeto1 = 7;
    signal.intDeto2 = 3;
    signal.intLap = 1;
    MonitorValues values = ConvertReading(signal, {}, laf, counters, {});
    EXPECT_EQ(TextOf(values, MonitorField::DETO1), "0");
    EXPECT_EQ(TextOf(values, MonitorField::LAP), "0");
    values = ConvertReading(signal, {}, laf, counters, {});
    EXPECT_EQ(TextOf(values, MonitorField::DETO1), "7");
    EXPECT_EQ(TextOf(values, MonitorField::DETO2), "3");
    EXPECT_EQ(TextOf(values, MonitorField::LAP), "1");

    counters.Deto1 = 65530;
    signal.intDeto1 = 10;
    values = ConvertReading(signal, {}, laf, counters, {});
    EXPECT_EQ(TextOf(values, MonitorField::DETO1), "65535");
    EXPECT_EQ(counters.Deto1, CounterLimit);
    values = ConvertReading(signal, {}, laf, counters, {});
    EXPECT_EQ(counters.Deto1, CounterLimit);
}

TEST(MonitorTexts, ProgramSettingTimeAndStartCondition) {
    TlmSpecialData special{};
    std::memcpy(special.bytProgramName, "TORVANE LOGGER", 14);
    std::memcpy(special.bytProgramNo, "2", 1);
    EXPECT_EQ(ProgramText(special), "TORVANE LOGGER 2");

    TlmSettingData setting{};
    EXPECT_EQ(SettingTimeText(setting), "");
    setting.intYear = 2026;
    setting.intMonth = 3;
    setting.intDay = 7;
    setting.intHour = 14;
    setting.intMinute = 5;
    EXPECT_EQ(SettingTimeText(setting), "PM 2:05 on March 07, 2026");
    setting.intHour = 0;
    EXPECT_EQ(SettingTimeText(setting), "AM 12:05 on March 07, 2026");

    setting.intStartNe = 160;
    setting.intStartTh = 80;
    EXPECT_EQ(StartConditionText(setting), "Ne 8000r/min & TH 80%");
}

struct MonitorFixture : ::testing::Test {
    ScriptedLink scripted;
    LafTable laf;
    Monitor monitor{scripted.Link, laf};
};

TEST_F(MonitorFixture, OpensOnAnIdleOrAcquiringLoggerAndPollsEveryTick) {
    scripted.Driver.state = TLM_STATE_ACQUIRING;
    scripted.Driver.signal.intNe = 5000;
    ASSERT_TRUE(monitor.Open());
    EXPECT_EQ(monitor.State(), MonitorState::Polling);
    EXPECT_EQ(monitor.Interval(), MonitorInterval);
    EXPECT_EQ(TextOf(monitor.Values(), MonitorField::Ne), "5000");
    scripted.Driver.signal.intNe = 6000;
    monitor.Tick();
    EXPECT_EQ(TextOf(monitor.Values(), MonitorField::Ne), "6000");
    EXPECT_EQ(scripted.Driver.CountOf(Call::Close), 0);
    monitor.Close();
    EXPECT_EQ(scripted.Driver.CountOf(Call::Close), 1);
    EXPECT_TRUE(scripted.Sink.Messages.empty());
}

TEST_F(MonitorFixture, ABusyLoggerIsToldAndTheWindowDoesNotStay) {
    scripted.Driver.state = TLM_STATE_SERVICE;
    EXPECT_FALSE(monitor.Open());
    EXPECT_EQ(scripted.Sink.Texts(), std::vector<std::string>{"Now service mode is running."});
    EXPECT_EQ(scripted.Driver.CountOf(Call::Close), 1);
}

TEST_F(MonitorFixture, ALostLinkIsToldOnceThenRetriedSilentlyUntilItComesBack) {
    ASSERT_TRUE(monitor.Open());
    scripted.Driver.ScriptRepeated(Call::GetTheSignalCondition, {.Result = TLM_ERR_LINK_LOST}, 5);
    monitor.Tick();
    EXPECT_EQ(monitor.State(), MonitorState::LinkLost);
    EXPECT_TRUE(monitor.StopTicked());
    EXPECT_FALSE(monitor.StopEnabled());
    EXPECT_EQ(monitor.Interval(), MonitorInterval);
    EXPECT_EQ(scripted.Sink.Texts(),
              std::vector<std::string>{"USB device error. Error code =  1007"});

    scripted.Driver.Script(Call::Open, {{.Result = TLM_ERR_NOT_CONNECTED}});
    monitor.Tick();
    EXPECT_EQ(monitor.State(), MonitorState::LinkLost);
    monitor.Tick();
    EXPECT_EQ(monitor.State(), MonitorState::Polling);
    EXPECT_FALSE(monitor.StopTicked());
    EXPECT_EQ(scripted.Sink.Messages.size(), 1u);
}

TEST(MonitorLink, EveryKindOfFailedReadingIsToldOnceAndLosesTheLink) {
    struct Case {
        std::int32_t Result;
        int Tries; // the retry policy's
        const char* Told;
    };
    for (const Case& c : {Case{TLM_ERR_PROTOCOL, 1, "USB device error. Error code =  1004"},
                          Case{TLM_ERR_TIMEOUT, 5, "USB device error. Error code =  1003"},
                          Case{TLM_ERR_BUSY, 5, "USB device error. Error code =  1006"}}) {
        ScriptedLink scripted;
        LafTable laf;
        Monitor monitor(scripted.Link, laf);
        ASSERT_TRUE(monitor.Open());
        scripted.Driver.ScriptRepeated(Call::GetTheSignalCondition, {.Result = c.Result}, c.Tries);
        monitor.Tick();
        EXPECT_EQ(monitor.State(), MonitorState::LinkLost) << c.Told;
        EXPECT_EQ(scripted.Sink.Texts(), std::vector<std::string>{c.Told});
        EXPECT_EQ(scripted.Driver.CountOf(Call::GetTheSignalCondition), 1 + c.Tries);
    }
    // A sense code the logger keeps giving is told as such, once.
    ScriptedLink scripted;
    LafTable laf;
    Monitor monitor(scripted.Link, laf);
    ASSERT_TRUE(monitor.Open());
    scripted.Driver.ScriptRepeated(Call::GetTheSignalCondition, {.Sense = 9}, 5);
    monitor.Tick();
    EXPECT_EQ(monitor.State(), MonitorState::LinkLost);
    EXPECT_EQ(scripted.Sink.Texts(),
              std::vector<std::string>{"Sence code error. Error code = 009"});
}

TEST_F(MonitorFixture, StopStandsTheTimerAndKeepsTheLink) {
    ASSERT_TRUE(monitor.Open());
    monitor.ToggleStop();
    EXPECT_EQ(monitor.State(), MonitorState::Stopped);
    EXPECT_EQ(monitor.Interval(), 0);
    EXPECT_TRUE(monitor.StopTicked());
    monitor.ToggleStop();
    EXPECT_EQ(monitor.Interval(), MonitorInterval);
    EXPECT_EQ(scripted.Driver.CountOf(Call::Close), 0);
}

} // namespace
} // namespace torvane::logger
