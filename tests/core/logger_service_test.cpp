// Service mode: the hexadecimal dump, the heat run's settings, the built-in functions and their
// messages, the heat run's stages and its end, and saving a dump.

#include "logger/heat_setting.h"
#include "logger/hex_dump.h"
#include "logger/service_mode.h"
#include "logger_test_support.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <fstream>
#include <numeric>
#include <sstream>
#include <vector>

namespace torvane::logger {
namespace {

using testing::AnsweringSink;

std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> lines;
    std::size_t start = 0;
    for (std::size_t end; (end = text.find("\r\n", start)) != std::string::npos; start = end + 2) {
        lines.push_back(text.substr(start, end - start));
    }
    lines.push_back(text.substr(start));
    return lines;
}

std::vector<std::uint8_t> Counting(std::size_t n, std::uint8_t first = 0x41) {
    std::vector<std::uint8_t> bytes(n);
    std::iota(bytes.begin(), bytes.end(), first);
    return bytes;
}

TEST(HexDump, LinesOfSixteenWithOffsetsAndCharacters) {
    const auto lines = Lines(HexDump(Counting(94)));
    ASSERT_EQ(lines.size(), 6u);
    EXPECT_EQ(lines[0], "000000  41 42 43 44 45 46 47 48 - 49 4A 4B 4C 4D 4E 4F 50  "
                        "ABCDEFGHIJKLMNOP");
    EXPECT_EQ(lines[1].substr(0, 10), "000010  51");
}

TEST(HexDump, EdgeCases) {
    std::vector<std::uint8_t> withReturn = Counting(20);
    withReturn[3] = 13;
    const auto lines = Lines(HexDump(withReturn));
    EXPECT_NE(lines[0].find(" 0D "), std::string::npos);
    EXPECT_EQ(lines[0].substr(lines[0].size() - 17),
              "ABC" + std::string(DumpPlaceholder) + "EFGHIJKLMNOP");
    // Seventeen bytes: the last line holds one byte and no character column.
    const auto seventeen = Lines(HexDump(Counting(17)));
    ASSERT_EQ(seventeen.size(), 2u);
    EXPECT_EQ(seventeen[1], "000010  51");
    EXPECT_EQ(HexDump({}), "");
}

TEST(HexDump, NinetyFourBytesEndWithFourteenCharacters) {
    const auto lines = Lines(HexDump(Counting(94, 0x20)));
    const std::string& last = lines.back();
    // 0x20 + 80 .. 0x20 + 93: "pqrstuvwxyz{|}" is 0x70..0x7D.
    EXPECT_EQ(last.substr(last.size() - 14), "pqrstuvwxyz{|}");
    EXPECT_EQ(last.substr(0, 8 + 2 + 3 * 7), "000050  70 71 72 73 74 75 76 77");
    EXPECT_EQ(last.substr(last.size() - 14 - 2, 2), "  ");
}

TEST(HeatSetting, FirstAndNextSettings) {
    TlmSettingData setting = HeatRunFirstSetting();
    EXPECT_EQ(setting.intNeTime, 10);
    EXPECT_EQ(setting.intVmTime[3], 10);
    EXPECT_EQ(setting.intDeto1Time, 300);
    EXPECT_EQ(setting.intCmR, 50);
    EXPECT_EQ(setting.intMinute, 1);

    HeatNextSetting(setting);
    EXPECT_EQ(setting.intSus, 1);
    EXPECT_EQ(setting.intNeTime, 5);
    EXPECT_EQ(setting.intVbTime, 5);
    EXPECT_EQ(setting.intDeto1Time, 0);
    EXPECT_EQ(setting.intDeto2Time, 0);
    EXPECT_EQ(setting.intPulseR, 2);
    EXPECT_EQ(setting.intCmF, 51);
    EXPECT_EQ(setting.intShift, 2); // stepped twice
    EXPECT_EQ(setting.intYear, 2);
    HeatNextSetting(setting);
    EXPECT_EQ(setting.intNeTime, 10);
    EXPECT_EQ(setting.intDeto1Time, 300);

    setting.intSus = 3;
    setting.intPulseF = 20;
    setting.intCmF = 300;
    setting.intShift = 399;
    setting.intYear = 9999;
    setting.intMonth = 12;
    setting.intHour = 23;
    setting.intNeTime = 25;
    HeatNextSetting(setting);
    EXPECT_EQ(setting.intSus, 0);
    EXPECT_EQ(setting.intPulseF, 1);
    EXPECT_EQ(setting.intCmR, 50);
    EXPECT_EQ(setting.intShift, 0);
    EXPECT_EQ(setting.intYear, 1);
    EXPECT_EQ(setting.intMonth, 1);
    EXPECT_EQ(setting.intHour, 0);
    EXPECT_EQ(setting.intThTime, 25);

    TlmSettingData read = setting;
    read.intThClose = 5; // not compared
    EXPECT_TRUE(SameHeatSetting(setting, read));
    read.intMinute += 1;
    EXPECT_FALSE(SameHeatSetting(setting, read));
}

struct ServiceFixture : ::testing::Test {
    ScriptedDriver driver;
    AnsweringSink sink;
    torvane::testing::TempFolder temp;
    std::vector<std::chrono::milliseconds> pauses;
    ServiceMode service{driver, sink, temp.Path(), [this](std::chrono::milliseconds pause) {
                            pauses.push_back(pause);
                        }};
};

TEST_F(ServiceFixture, AFunctionThatEndsWellSaysSo) {
    service.RunFunction(ServiceFunction::Test1);
    EXPECT_EQ(sink.Texts(), std::vector<std::string>{"The setup was completed normally."});
    EXPECT_EQ(driver.calls.back().Call, Call::Close);
}

TEST_F(ServiceFixture, ALoggerOnAnErrorShowsItsStatusBytes) {
    driver.error = 0x2A;
    driver.state = TLM_STATE_READY;
    service.RunFunction(ServiceFunction::InitialConfiguration);
    EXPECT_EQ(sink.Texts(), std::vector<std::string>{"Error state. Error code = 42"});
    EXPECT_EQ(driver.CountOf(Call::ServiceModeCtrl), 0);
    EXPECT_EQ(service.DumpText().substr(0, 20), "000000  00 07 2A 00 ");
}

TEST_F(ServiceFixture, ALoggerThatIsNotThereIsToldOnlyByTheOpening) {
    driver.Script(Call::Open, {{.Result = TLM_ERR_NOT_CONNECTED}});
    EXPECT_FALSE(service.RunFunction(ServiceFunction::Test1));
    EXPECT_EQ(sink.Texts(), std::vector<std::string>{"TorvaneDataLogger is not connected."});
}

TEST_F(ServiceFixture, ABrokenLoggerIsToldOnceInATest) {
    driver.Script(Call::GetStatus, {{}, {.State = TLM_STATE_BROKEN}});
    service.RunFunction(ServiceFunction::Test2);
    EXPECT_EQ(sink.Texts(), std::vector<std::string>{"Logger is out of order."});
}

TEST_F(ServiceFixture, DumpsShowTheBlocksRead) {
    driver.special.bytProgramName[0] = 'T';
    service.ReadSpecialData();
    EXPECT_EQ(service.Bytes(ServiceDump::SpecialData)[34], 'T');
    EXPECT_EQ(Lines(service.DumpText()).size(), 6u);
    driver.Script(Call::GetTheErrorInfo, {{.Result = TLM_ERR_PROTOCOL}});
    service.ReadErrorCode();
    EXPECT_EQ(sink.Texts(), std::vector<std::string>{"USB device error. Error code =  1004"});
}

TEST_F(ServiceFixture, AHeatRunHoldsEveryControlButItsEndAndStopsWhenAsked) {
    shell::SteppedActivity* run = service.StartHeatRun(HeatRunKind::Service2);
    ASSERT_NE(run, nullptr);
    EXPECT_EQ(service.StartHeatRun(HeatRunKind::Service3), nullptr);
    EXPECT_FALSE(service.Enabled(ServiceControl::Special));
    EXPECT_FALSE(service.Enabled(ServiceControl::HeatEnd, 0));
    EXPECT_TRUE(service.Enabled(ServiceControl::HeatEnd, 1));
    for (int step = 0; step < 10 && run->Step(); ++step) {
    }
    EXPECT_EQ(service.RunningHeatRun()->Stage(), HeatStage::ReadingSignals);
    EXPECT_EQ(driver.CountOf(Call::TLM_Reset), 1);
    EXPECT_EQ(driver.CountOf(Call::ServiceModeCtrl), 1);
    EXPECT_EQ(driver.setting.intNeTime, 10);
    service.RequestHeatRunEnd();
    EXPECT_FALSE(run->Step());
    EXPECT_EQ(driver.calls.back().Call, Call::Close);
    service.HeatRunEnded();
    EXPECT_TRUE(service.Enabled(ServiceControl::Heat));
    EXPECT_TRUE(sink.Messages.empty());
}

TEST_F(ServiceFixture, AHeatRunPassDownloadsTheFirstFileAndMovesToTheNextSetting) {
    driver.files = {TlmDownloadEntry{3, 0, 60, 4096}};
    shell::SteppedActivity* run = service.StartHeatRun(HeatRunKind::Acquisition);
    while (run->Step() && service.RunningHeatRun()->Passes() == 0) {
    }
    EXPECT_EQ(driver.CountOf(Call::GetTheSignalCondition), HeatSignalReadings);
    EXPECT_EQ(driver.CountOf(Call::GetTheDetonationMap), 1);
    EXPECT_EQ(driver.startedFile, temp.Path() / HeatRunFileName);
    EXPECT_EQ(driver.startedEntry->intNumber, 3);
    EXPECT_EQ(driver.LoggingControlValues().front(), 0);
    EXPECT_EQ(service.RunningHeatRun()->Setting().intNeTime, 5);
    service.RequestHeatRunEnd();
    EXPECT_FALSE(run->Step());
}

TEST_F(ServiceFixture, ABrokenLoggerEndsTheHeatRunWithItsErrorLog) {
    shell::SteppedActivity* run = service.StartHeatRun(HeatRunKind::Acquisition);
    run->Step();
    driver.state = TLM_STATE_BROKEN;
    while (run->Step()) {
    }
    EXPECT_EQ(service.RunningHeatRun()->Result(), results::OutOfOrder);
    EXPECT_EQ(driver.CountOf(Call::GetTheErrorInfo), 1);
    EXPECT_EQ(Lines(service.DumpText()).size(), 64u);
}

TEST(SaveDump, WritesTheBytesKeepsALongerFilesTailAndLeavesNoHalfFile) {
    torvane::testing::TempFolder temp;
    AnsweringSink sink;
    const auto file = temp.Path() / "LOGGER.spd";
    { std::ofstream(file, std::ios::binary) << std::string(100, 'x'); }
    ASSERT_TRUE(SaveDump(Counting(94), file, sink));
    std::ifstream in(file, std::ios::binary);
    const std::string text((std::istreambuf_iterator<char>(in)), {});
    ASSERT_EQ(text.size(), 100u);
    EXPECT_EQ(text[0], 'A');
    EXPECT_EQ(text.substr(94), "xxxxxx");

    const auto missingFolder = temp.Path() / "gone" / "x.err";
    EXPECT_FALSE(SaveDump(Counting(10), missingFolder, sink));
    ASSERT_EQ(sink.Messages.size(), 1u);
    EXPECT_EQ(sink.Messages[0].Text.substr(0, 9), "Error(76)");
    EXPECT_FALSE(std::filesystem::exists(temp.Path() / "gone"));
}

} // namespace
} // namespace torvane::logger
