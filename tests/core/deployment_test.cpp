#include "scripted_decompressor.h"
#include "shell/message_sink.h"

#include <gtest/gtest.h>

namespace torvane::logdata {
namespace {

using testing::ScriptedDecompressor;
using torvane::testing::TempFolder;

class DeployTest : public ::testing::Test {
protected:
    DeployTest() {
        layers.TempDir = folder.Path();
        layers.WindowNumber = 1;
        run.Header.SetSampleTime(0, 10);
        run.Header.SetSampleTime(1, 25);
        run.Header.SetWord(SettingWord::ThClose, 102);
        run.Header.SetWord(SettingWord::ThOpen, 758);
        run.Streams = {{"Ne", std::vector<std::int16_t>(400, 500)},
                       {"TH", std::vector<std::int16_t>(100, 100)},
                       {"LAP", {}}};
    }

    bool Deploy(int layer = 0) {
        return DeployLoggingFile(layers, layer, "/runs/RUN1.rlg", driver, sink);
    }

    TempFolder folder;
    LayerSet layers;
    ScriptedDecompressor driver;
    testing::ScriptedRun& run = driver.runs["/runs/RUN1.rlg"];
    shell::RecordingSink sink;
};

TEST_F(DeployTest, GoodFileFillsTheLayerUnderItsFileNumber) {
    run.Header.SetWord(SettingWord::Sus, 1);
    run.Header.SetWord(SettingWord::Reserved40, 10);
    ASSERT_TRUE(Deploy());
    EXPECT_TRUE(sink.Messages.empty());
    EXPECT_EQ(driver.fileNumbers.back(), 10);
    const LayerRecord& layer = layers.Layer[0];
    EXPECT_EQ(layer.Header, run.Header);
    EXPECT_EQ(layer.ItemChannel[7], FRSUS);
    EXPECT_TRUE(layer.ItemExists[TH]);
    EXPECT_FALSE(layer.ItemExists[VFW]);
    EXPECT_FALSE(layer.ItemExists[LapSlot]);
    EXPECT_EQ(layer.DeployCount, 3);
    EXPECT_EQ(layer.MeasureTime, 4000); // 400 Ne samples at 10 ms decide
    EXPECT_EQ(layers.MinSampleTime, 10);

    layers.WindowNumber = 12; // the layer number goes into the file number
    ASSERT_TRUE(Deploy(1));
    EXPECT_EQ(driver.fileNumbers.back(), 121);
    EXPECT_TRUE(std::filesystem::exists(folder / "Ne-121.tmp"));
}

TEST_F(DeployTest, FirstExistingSlotOrLapWordsDecideTheMeasureTimeAndTHNeedsASpan) {
    run.Header.SetSampleTime(0, 0);
    ASSERT_TRUE(Deploy());
    EXPECT_EQ(layers.Layer[0].MeasureTime, 2500); // TH: 100 samples at 25 ms

    // A throttle without span is no item.
    run.Header.SetSampleTime(0, 10);
    run.Header.SetWord(SettingWord::ThOpen, 102);
    ASSERT_TRUE(Deploy(2));
    EXPECT_FALSE(layers.Layer[2].ItemExists[TH]);
    EXPECT_TRUE(layers.Layer[2].ItemExists[Ne]);

    run.Header = LogHeader{};
    run.Header.SetWord(SettingWord::LapOn, 1);
    run.Streams = {{"LAP", std::vector<std::int16_t>(20, 0)}};
    ASSERT_TRUE(Deploy(1));
    EXPECT_EQ(layers.Layer[1].MeasureTime, 6000);
}

TEST_F(DeployTest, DriverResultsShowTheirMessagesWithStopIcon) {
    const std::vector<std::pair<int, std::string>> cases{
        {-1, "[/runs/RUN1.rlg]Can not find the specified log file."},
        {-2, "There is No data in a file."},
        {-3, "Can not make the file after deployment."},
        {-4, "File access error."},
        {-7, "Error code = -7"},
        {3, "Error code = 3"}};
    for (const auto& [result, text] : cases) {
        driver.result = result;
        EXPECT_FALSE(Deploy()) << result;
        ASSERT_FALSE(sink.Messages.empty());
        EXPECT_EQ(sink.Messages.back().Text, text);
        EXPECT_EQ(sink.Messages.back().Icon, shell::icons::Stop);
        EXPECT_EQ(sink.Messages.back().Buttons, shell::buttons::Ok);
    }
}

TEST_F(DeployTest, RefusedHeaderWarnsAndAThrowingDriverIsARunTimeError) {
    run.Header.SetWord(SettingWord::Sus, 4);
    EXPECT_FALSE(Deploy(1));
    ASSERT_EQ(sink.Messages.size(), 1u);
    EXPECT_EQ(sink.Messages[0].Text, "A file format is not correct.");
    EXPECT_EQ(sink.Messages[0].Icon, shell::icons::Warning);
    EXPECT_TRUE(layers.Layer[1].ItemChannel.empty());

    driver.throws = true;
    EXPECT_FALSE(Deploy());
    ASSERT_EQ(sink.Messages.size(), 2u);
    EXPECT_EQ(sink.Messages[1].Text.rfind("Error(", 0), 0u);
    EXPECT_EQ(sink.Messages[1].Icon, shell::icons::Stop);
}

} // namespace
} // namespace torvane::logdata
