// The setting window's model over a scripted logger: opening with and without the logger, the
// watch, the send, the sensor steps and the close.

#include "core/logger_test_support.h"
#include "logger/setting_file.h"
#include "logger/setting_mode.h"
#include "support/temp_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>

namespace torvane::logger {
namespace {

using logdata::SettingWord;
using ::testing::ElementsAre;
using testing::ScriptedLink;
using torvane::testing::TempFolder;

constexpr LocalTime Now{2026, 11, 24, 15, 7};

class SettingModeTest : public ::testing::Test, protected ScriptedLink {
protected:
    SettingModeTest() {
        Driver.setting = RecordOf(logdata::FreshSetting());
        Driver.initData = {102, 758};
        std::memcpy(Driver.special.bytProgramNo, "7", 2);
    }
    void Unplugged() { Driver.SetDefault(Call::Open, {.Result = TLM_ERR_NOT_CONNECTED}); }
    void PluggedIn() { Driver.SetDefault(Call::Open, {}); }
    std::vector<std::string> Texts() const { return Sink.Texts(); }

    TempFolder Init;
    SettingMode Mode{Link, Init.Path(), [] {
                         return Now;
                     }};
};

TEST_F(SettingModeTest, OfflineOpeningWritesTheFreshRecordAndDisablesTheLoggerCommands) {
    Unplugged();
    ASSERT_TRUE(Mode.Open());
    layout::FileFailure failure;
    EXPECT_EQ(LoadSetting(Init / "SETTING.DAT", failure), logdata::FreshSetting());
    EXPECT_FALSE(Mode.Commands().Send || Mode.Commands().Throttle0 || Mode.Commands().Front);
    EXPECT_EQ(Mode.View().TotalTime, "50h 58m");
    EXPECT_EQ(Mode.WatchInterval(), 1000);
    EXPECT_TRUE(Texts().empty());

    // A later opening reads the file, whatever it holds.
    logdata::LogHeader odd;
    odd.SetWord(SettingWord::Sus, 9);
    odd.SetWord(SettingWord::StartNe, 500);
    ASSERT_TRUE(SaveSetting(Init / "SETTING.DAT", odd, failure));
    SettingMode again(Link, Init.Path(), [] { return Now; });
    ASSERT_TRUE(again.Open());
    EXPECT_EQ(again.View().StartNe, "20000");
    EXPECT_EQ(again.View().VmLabels[0], "VM1");
    EXPECT_EQ(again.View().TotalTime, "0h 00m");
}

TEST_F(SettingModeTest, AnUnwritableFolderOrAnUnreadableFileKeepsTheWindowShut) {
    Unplugged();
    // Something in the way of the replacement stops the write as a read-only folder would.
    std::filesystem::create_directory(Init / "SETTING.DAT.tmp");
    EXPECT_FALSE(Mode.Open());
    std::filesystem::create_directory(Init / "MT.DAT");
    SettingMode again(Link, Init.Path(), [] { return Now; });
    EXPECT_FALSE(again.Open());
    EXPECT_EQ(Sink.Messages.size(), 2u);
    EXPECT_EQ(Sink.Messages[0].Icon, shell::icons::Stop);
}

TEST_F(SettingModeTest, OpeningWithTheLoggerReadsItsSettingAndABusyLoggerRefuses) {
    Driver.setting.intSus = 1;
    Driver.state = TLM_STATE_ACQUIRING;
    ASSERT_TRUE(Mode.Open());
    EXPECT_TRUE(Mode.Connected());
    EXPECT_TRUE(Mode.Commands().Front);
    EXPECT_FALSE(Mode.Commands().Rear);
    EXPECT_THAT(Driver.Sequence(),
                ElementsAre(Call::Open, Call::GetStatus, Call::GetTheSettingData, Call::Close));

    Driver.state = TLM_STATE_SENDING;
    SettingMode busy(Link, Init.Path(), [] { return Now; });
    EXPECT_FALSE(busy.Open());
    EXPECT_EQ(Texts().back(), "Now logging data is transmitting.");
}

TEST_F(SettingModeTest, TheWatchAsksOnceWhenTheLoggerAppearsAndFollowsTheCable) {
    Unplugged();
    ASSERT_TRUE(Mode.Open());
    Mode.WatchTick();
    EXPECT_TRUE(Texts().empty());

    PluggedIn();
    Driver.setting.intNeTime = 5;
    Sink.Answers = {shell::answers::Ok};
    Mode.WatchTick();
    EXPECT_THAT(Texts(), ElementsAre("Do you get setting data from Logger?"));
    EXPECT_TRUE(Mode.View().Sampling[0][0]);
    EXPECT_TRUE(Mode.Commands().Send && Mode.Commands().Throttle100);
    Mode.WatchTick();
    EXPECT_EQ(Texts().size(), 1u);

    Unplugged();
    Mode.WatchTick();
    EXPECT_FALSE(Mode.Connected() || Mode.Commands().Send);
    EXPECT_EQ(Mode.WatchInterval(), 1000);

    // Cancel keeps the screen; a logger in a state the window cannot take stops the watch.
    PluggedIn();
    Driver.setting.intNeTime = 10;
    Sink.Answers = {shell::answers::Cancel};
    Mode.WatchTick();
    EXPECT_TRUE(Mode.View().Sampling[0][0]);
    Unplugged();
    Mode.WatchTick();
    PluggedIn();
    Driver.state = TLM_STATE_BROKEN;
    Mode.WatchTick();
    EXPECT_EQ(Texts().back(), "Logger is out of order.");
    EXPECT_EQ(Mode.WatchInterval(), 0);
    EXPECT_FALSE(Mode.Commands().Send);
}

TEST_F(SettingModeTest, ASendBuildsChecksSendsAndKeepsTheRecord) {
    ASSERT_TRUE(Mode.Open());
    Mode.SetText(SettingText::StartTh, "0");
    Mode.SetText(SettingText::StartNe, "0");
    EXPECT_EQ(Mode.Send(), SettingFieldError::NoStartCondition);
    EXPECT_EQ(Driver.CountOf(Call::SendTheSettingData), 0);
    EXPECT_EQ(Texts().back(), "Inputted data are not correct.");

    Mode.SetText(SettingText::StartNe, "25");
    Mode.ClickSampling(SampleRow::VRW, 1, true);
    Driver.state = TLM_STATE_ACQUIRING;
    Sink.Answers = {shell::answers::Yes};
    EXPECT_EQ(Mode.Send(), SettingFieldError::None);
    EXPECT_EQ(Texts().back(), "The setup was completed normally.");
    EXPECT_EQ(Driver.LoggingControlValues(), std::vector<std::int64_t>{1});
    const logdata::LogHeader sent = HeaderOf(Driver.setting);
    EXPECT_EQ(sent.Word(SettingWord::VrwTime), 10);
    EXPECT_EQ(sent.Word(SettingWord::StartNe), 1);
    EXPECT_EQ(sent.Word(SettingWord::Program), 7);
    EXPECT_EQ(sent.Word(SettingWord::Year), 2026);
    layout::FileFailure failure;
    EXPECT_EQ(LoadSetting(Init / "SETTING.DAT", failure), sent);
    EXPECT_TRUE(Mode.MustRelease());
    EXPECT_EQ(Mode.WatchInterval(), 1000);

    // Closing gives the logger back.
    EXPECT_TRUE(Mode.Close());
    EXPECT_EQ(Driver.LoggingControlValues(), (std::vector<std::int64_t>{1, 0}));
}

TEST_F(SettingModeTest, ASendThatCannotBeKeptOrDoesNotArriveIsTold) {
    ASSERT_TRUE(Mode.Open());
    std::filesystem::create_directory(Init / "SETTING.DAT.tmp");
    Mode.SetText(SettingText::CmF, "200");
    Mode.Send();
    EXPECT_EQ(Driver.setting.intCmF, 200);
    EXPECT_THAT(Texts().back(), ::testing::StartsWith("Error! \r\nPlease check"));

    Driver.Script(Call::SendTheSettingData, {{.Result = TLM_ERR_PROTOCOL}});
    Mode.SetText(SettingText::CmF, "210");
    Mode.Send();
    EXPECT_EQ(Driver.setting.intCmF, 200);
    EXPECT_THAT(Texts(), ::testing::Contains(::testing::HasSubstr(" 1004")));

    Driver.state = TLM_STATE_SERVICE;
    Mode.Send();
    EXPECT_EQ(Texts().back(), "STATUS CODE : 208\r");
}

TEST_F(SettingModeTest, ThrottlePairsAreJudgedOnlyWhenComplete) {
    ASSERT_TRUE(Mode.Open());
    EXPECT_TRUE(Mode.TakeSensor(SensorButton::Throttle100));
    EXPECT_EQ(Mode.ThrottleDone(), 2);
    EXPECT_EQ(Mode.Color(SensorButton::Throttle100), ButtonColor::Grey);
    EXPECT_TRUE(Mode.TakeSensor(SensorButton::Throttle0));
    EXPECT_EQ(Mode.Color(SensorButton::Throttle0), ButtonColor::Blue);
    EXPECT_EQ(Driver.calls.back().Argument, 0); // the close after TSInitialize 4
    EXPECT_EQ(Driver.CountOf(Call::TSInitialize), 3);
    EXPECT_TRUE(Mode.MustRelease());

    // Equal points are a wrong pair: red, no commit; the next press starts a new pair.
    Driver.initData = {500, 500};
    Mode.TakeSensor(SensorButton::Throttle0);
    EXPECT_EQ(Mode.Color(SensorButton::Throttle0), ButtonColor::Grey);
    Mode.TakeSensor(SensorButton::Throttle100);
    EXPECT_EQ(Mode.Color(SensorButton::Throttle100), ButtonColor::Red);
    EXPECT_EQ(Texts().back(), "The Initialized throttle is not correct.");
    EXPECT_EQ(Driver.CountOf(Call::TSInitialize), 5);

    // Closing with a wrong pair asks; Cancel keeps the window.
    Sink.Answers = {shell::answers::Cancel};
    EXPECT_FALSE(Mode.Close());
    Sink.Answers = {shell::answers::Ok};
    EXPECT_TRUE(Mode.Close());
    EXPECT_EQ(Driver.LoggingControlValues(), std::vector<std::int64_t>{0});
}

TEST_F(SettingModeTest, SuspensionButtonsFollowTheirMenusAndColourTheirOutcome) {
    ASSERT_TRUE(Mode.Open());
    EXPECT_FALSE(Mode.Commands().Front);
    Mode.ToggleMenu(SensorMenu::FrSus);
    EXPECT_TRUE(Mode.Commands().Front);
    EXPECT_EQ(Mode.View().VmLabels[0], "FRSUS");
    EXPECT_TRUE(Mode.TakeSensor(SensorButton::Front));
    EXPECT_EQ(Mode.Color(SensorButton::Front), ButtonColor::Blue);

    Driver.Script(Call::TSInitialize, {{.Result = TLM_ERR_PROTOCOL}});
    EXPECT_FALSE(Mode.TakeSensor(SensorButton::Rear));
    EXPECT_EQ(Mode.Color(SensorButton::Rear), ButtonColor::Red);
    EXPECT_EQ(Mode.WatchInterval(), 0);
    EXPECT_THAT(Texts().back(), ::testing::HasSubstr(" 1004"));
    Mode.ToggleMenu(SensorMenu::FrSus);
    EXPECT_FALSE(Mode.Commands().Front);
}

TEST(SettingFocus, ReturnWalksTheFieldsThenTheFirstEnabledSensorButton) {
    SettingCommands commands;
    EXPECT_EQ(NextOnReturn(SettingControl::PulseF, commands), SettingControl::CmF);
    EXPECT_EQ(NextOnReturn(SettingControl::Shift, commands), SettingControl::Engine);
    EXPECT_EQ(NextOnReturn(SettingControl::Engine, commands), SettingControl::Throttle0);
    commands.Throttle0 = false;
    EXPECT_EQ(NextOnReturn(SettingControl::Engine, commands), SettingControl::Front);
    commands.Front = false;
    EXPECT_EQ(NextOnReturn(SettingControl::Engine, commands), SettingControl::Rear);
    commands.Rear = false;
    EXPECT_EQ(NextOnReturn(SettingControl::Engine, commands), SettingControl::PulseF);
    EXPECT_EQ(FocusOf(SettingFieldError::NoStartCondition), SettingControl::StartTh);
    EXPECT_TRUE(SettingKeyPasses('7') && SettingKeyPasses('\b'));
    EXPECT_FALSE(SettingKeyPasses('-') || SettingKeyPasses('a') || SettingKeyPasses('.'));
}

} // namespace
} // namespace torvane::logger
