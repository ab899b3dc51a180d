// The setting record, MT.DAT and the screen of the setting window as plain values: the memory
// budget, what a record shows, the checks before a send and the record built from the screen.

#include "logger/logging_time.h"
#include "logger/setting_file.h"
#include "logger/setting_view.h"
#include "support/hostile_files.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

namespace torvane::logger {
namespace {

using logdata::SettingWord;
using torvane::testing::TempFolder;

SamplingChoice Choose(std::initializer_list<std::pair<SampleRow, int>> rows, bool deto1 = false,
                      bool deto2 = false) {
    SamplingChoice choice;
    for (const auto& [row, column] : rows) {
        choice.Column[static_cast<std::size_t>(row)] = column;
    }
    choice.Deto1 = deto1;
    choice.Deto2 = deto2;
    return choice;
}

TEST(LoggingTime, FollowsTheTableAndTheChosenPeriods) {
    MemoryTable twoBytes = DefaultMemoryTable();
    twoBytes[static_cast<int>(SampleRow::TH) * PeriodCount + 2] = 2;
    twoBytes[Deto1Byte] = 3;
    const MemoryTable defaults = DefaultMemoryTable();
    constexpr int Ms25 = 2;
    const struct {
        MemoryTable Table;
        SamplingChoice Choice;
        std::int64_t Bytes;
        std::string Text;
    } cases[] = {
        {defaults, Choose({}), 0, "0h 00m"},
        {defaults, Choose({}, true, true), 0, "0h 00m"}, // the default table costs no DETO bytes
        {defaults,
         Choose({{SampleRow::Ne, Ms25},
                 {SampleRow::TH, Ms25},
                 {SampleRow::VFW, Ms25},
                 {SampleRow::VB, Ms25}}),
         48, "50h 58m"},
        {twoBytes, Choose({{SampleRow::TH, Ms25}}, true), 27, "90h 37m"},
        {defaults, Choose({{SampleRow::VM4, 5}}), 1, "2,446h 41m"},
        {defaults, Choose({{SampleRow::Ne, 0}, {SampleRow::VRW, 0}}), 120, "20h 23m"},
    };
    for (const auto& c : cases) {
        const std::int64_t bytes = BytesPer300Ms(c.Table, c.Choice);
        EXPECT_EQ(bytes, c.Bytes);
        EXPECT_EQ(LoggingTimeText(bytes), c.Text) << bytes;
    }
}

TEST(MemoryTableFile, MissingGivesTheDefaultAndOddLengthsReadAsARecord) {
    TempFolder folder;
    MemoryTable table{};
    layout::FileFailure failure;
    ASSERT_TRUE(LoadMemoryTable(folder / "MT.DAT", table, failure));
    EXPECT_EQ(table, DefaultMemoryTable());

    torvane::testing::WriteBytes(folder / "MT.DAT", std::vector<std::uint8_t>(10, 7));
    ASSERT_TRUE(LoadMemoryTable(folder / "MT.DAT", table, failure));
    EXPECT_EQ(table[9], 7);
    EXPECT_EQ(table[10], 0);

    std::vector<std::uint8_t> longer(300, 9);
    torvane::testing::WriteBytes(folder / "MT.DAT", longer);
    ASSERT_TRUE(LoadMemoryTable(folder / "MT.DAT", table, failure));
    EXPECT_EQ(table[55], 9);

    std::filesystem::create_directory(folder / "DIR.DAT");
    EXPECT_FALSE(LoadMemoryTable(folder / "DIR.DAT", table, failure));
    for (const auto& hostile : torvane::testing::HostileFiles()) {
        std::filesystem::remove(folder / "HOSTILE");
        ASSERT_TRUE(hostile.Make(folder / "HOSTILE")) << hostile.Kind;
        EXPECT_FALSE(LoadMemoryTable(folder / "HOSTILE", table, failure)) << hostile.Kind;
        EXPECT_FALSE(LoadSetting(folder / "HOSTILE", failure)) << hostile.Kind;
    }
}

TEST(SettingFile, RoundTripsShortFilesReadAsZerosAndAFailedSaveKeepsTheOldFile) {
    TempFolder folder;
    const auto file = folder / "SETTING.DAT";
    layout::FileFailure failure;
    logdata::LogHeader setting = logdata::FreshSetting();
    setting.SetWord(30, -7); // a reserved word is carried through
    ASSERT_TRUE(SaveSetting(file, setting, failure));
    EXPECT_EQ(std::filesystem::file_size(file), 82u);
    EXPECT_EQ(LoadSetting(file, failure), setting);
    EXPECT_EQ(HeaderOf(RecordOf(setting)), setting);

    torvane::testing::WriteBytes(file, {25, 0, 5});
    const auto shortOne = LoadSetting(file, failure);
    ASSERT_TRUE(shortOne);
    EXPECT_EQ(shortOne->Word(SettingWord::Sus), 25);
    EXPECT_EQ(shortOne->Word(SettingWord::NeTime), 5);
    EXPECT_EQ(shortOne->Word(SettingWord::Reserved40), 0);

    // Something in the way of the replacement stops the write as a read-only folder would.
    std::filesystem::create_directory(folder / "SETTING.DAT.tmp");
    EXPECT_FALSE(SaveSetting(file, setting, failure));
    EXPECT_EQ(std::filesystem::file_size(file), 3u);
}

logdata::LogHeader WithWords(std::initializer_list<std::pair<SettingWord, int>> words) {
    logdata::LogHeader setting = logdata::FreshSetting();
    for (const auto& [word, value] : words) {
        setting.SetWord(word, static_cast<std::int16_t>(value));
    }
    return setting;
}

TEST(ShowSetting, HoldsOutOfRangeWordsToWhatTheBoxesCanShow) {
    const MemoryTable table = DefaultMemoryTable();
    SettingView view = ClearedSettingView();

    ShowSetting(view, logdata::FreshSetting(), table);
    EXPECT_TRUE(view.Sampling[static_cast<int>(SampleRow::Ne)][2]);
    EXPECT_TRUE(view.On[0] && !view.Off[0]);
    EXPECT_TRUE(!view.On[1] && view.Off[1]);
    EXPECT_EQ(view.PulseF, 19);
    EXPECT_EQ(view.CmF, "182");
    EXPECT_EQ(view.CmR, "190");
    EXPECT_EQ(view.StartTh, "80");
    EXPECT_EQ(view.StartNe, "8000");
    EXPECT_EQ(view.Shift, "12800");
    EXPECT_EQ(view.SetTime, "");
    EXPECT_EQ(view.TotalTime, "50h 58m");

    ShowSetting(view,
                WithWords({{SettingWord::NeTime, 7},
                           {SettingWord::Sus, 5},
                           {SettingWord::Laf, 3},
                           {SettingWord::PulseF, 0},
                           {SettingWord::PulseR, 25},
                           {SettingWord::CmF, 20},
                           {SettingWord::CmR, 400},
                           {SettingWord::StartNe, 500},
                           {SettingWord::Shift, 400},
                           {SettingWord::StartTh, 101},
                           {SettingWord::Engine, 3},
                           {SettingWord::LapOn, -1}}),
                table);
    EXPECT_EQ(std::count(view.Sampling[0].begin(), view.Sampling[0].end(), true), 0);
    EXPECT_EQ(view.VmLabels, (std::array<std::string, 4>{"VM1", "VM2", "LAF1", "LAF2"}));
    EXPECT_EQ(view.PulseF, -1);
    EXPECT_EQ(view.PulseR, 19);
    EXPECT_EQ(view.CmF, "50");
    EXPECT_EQ(view.CmR, "300");
    EXPECT_EQ(view.StartNe, "20000");
    EXPECT_EQ(view.Shift, "20000");
    EXPECT_EQ(view.StartTh, "100");
    EXPECT_EQ(view.Engine, Engine::OnePerRev);
    EXPECT_TRUE(view.On[2]);
    EXPECT_EQ(PulseText(0), "     1");
}

TEST(ShowSetting, DateLabelOnlyForAValidDate) {
    const struct {
        int Year, Month, Day, Hour, Minute;
        std::string Text;
    } cases[] = {
        {2026, 11, 24, 15, 7, "PM 3:07 on November 24, 2026"},
        {2024, 2, 29, 0, 0, "AM 12:00 on February 29, 2024"},
        {2025, 1, 5, 12, 59, "PM 12:59 on January 05, 2025"},
        {2025, 2, 29, 10, 0, ""},
        {2025, 13, 1, 10, 0, ""},
        {2025, 1, 1, 24, 0, ""},
        {0, 0, 0, 0, 0, ""},
    };
    for (const auto& c : cases) {
        const auto setting = WithWords({{SettingWord::Year, c.Year},
                                        {SettingWord::Month, c.Month},
                                        {SettingWord::Day, c.Day},
                                        {SettingWord::Hour, c.Hour},
                                        {SettingWord::Minute, c.Minute}});
        EXPECT_EQ(SetTimeText(setting), c.Text) << c.Year << "/" << c.Month << "/" << c.Day;
    }
}

TEST(CheckSetting, RefusesTheFirstBadFieldInItsOrder) {
    const struct {
        std::string CmF, CmR, Th, Ne, Shift;
        SettingFieldError Field;
    } cases[] = {
        {"182", "190", "80", "8000", "12800", SettingFieldError::None},
        {" 50 ", "300", "0", "50", "0", SettingFieldError::None},
        {"49", "190", "80", "8000", "12800", SettingFieldError::CmF},
        {"", "190", "x", "x", "x", SettingFieldError::CmF},
        {"182", "301", "80", "8000", "12800", SettingFieldError::CmR},
        {"182", "190", "101", "8000", "12800", SettingFieldError::StartTh},
        {"182", "190", "80", "20001", "x", SettingFieldError::StartNe},
        {"182", "190", "0", "0", "x", SettingFieldError::NoStartCondition},
        {"182", "190", "80", "0", "20050", SettingFieldError::Shift},
        {"182", "190", "80", "0", "inf", SettingFieldError::Shift},
    };
    for (const auto& c : cases) {
        SettingView view;
        view.CmF = c.CmF;
        view.CmR = c.CmR;
        view.StartTh = c.Th;
        view.StartNe = c.Ne;
        view.Shift = c.Shift;
        EXPECT_EQ(CheckSetting(view), c.Field) << c.CmF << "," << c.Th << "," << c.Ne;
    }
    EXPECT_EQ(FieldControlName(SettingFieldError::NoStartCondition), "txtTH");
}

TEST(BuildSetting, TheScreenBecomesTheRecordAndShowsAgainAsItWas) {
    const MemoryTable table = DefaultMemoryTable();
    logdata::LogHeader base = logdata::FreshSetting();
    base.SetWord(SettingWord::ThOpen, 700);
    base.SetWord(31, 123);
    SettingView view = ClearedSettingView();
    ShowSetting(view, base, table);
    ClickSampling(view, SampleRow::VM2, 5, true, table);
    ClickSampling(view, SampleRow::Ne, 0, true, table);
    ClickOnOff(view, OnOffItem::Deto2, true, true, table);
    ClickOnOff(view, OnOffItem::Lap, false, false, table);
    ToggleSensorMenu(view, SensorMenu::RrSus);
    ToggleSensorMenu(view, SensorMenu::Laf1);
    view.StartNe = "25";
    view.Shift = "8049";
    view.PulseR = 3;
    view.Engine = Engine::HalfPerRev;
    ASSERT_EQ(CheckSetting(view), SettingFieldError::None);
    EXPECT_EQ(view.StartNe, "50");

    const auto built = BuildSetting(view, base, {2026, 11, 24, 15, 7});
    EXPECT_EQ(built.Word(SettingWord::NeTime), 5);
    EXPECT_EQ(built.Word(SettingWord::Vm2Time), 300);
    EXPECT_EQ(built.Word(SettingWord::Deto1Time), 300);
    EXPECT_EQ(built.Word(SettingWord::Deto2Time), 300);
    EXPECT_EQ(built.Word(SettingWord::LapOn), 1);
    EXPECT_EQ(built.Word(SettingWord::Sus), 2);
    EXPECT_EQ(built.Word(SettingWord::Laf), 1);
    EXPECT_EQ(built.Word(SettingWord::StartNe), 1);
    EXPECT_EQ(built.Word(SettingWord::Shift), 160);
    EXPECT_EQ(built.Word(SettingWord::PulseR), 4);
    EXPECT_EQ(built.Word(SettingWord::Engine), 2);
    EXPECT_EQ(built.Word(SettingWord::ThOpen), 700);
    EXPECT_EQ(built.Word(31), 123);
    EXPECT_EQ(built.Word(SettingWord::Year), 2026);

    SettingView again = ClearedSettingView();
    ShowSetting(again, built, table);
    EXPECT_EQ(again.Sampling, view.Sampling);
    EXPECT_EQ(again.VmLabels, view.VmLabels);
    EXPECT_EQ(again.SetTime, "PM 3:07 on November 24, 2026");
    EXPECT_EQ(again.Shift, "8000");
    EXPECT_EQ(BuildSetting(again, built, {2026, 11, 24, 15, 7}), built);
}

} // namespace
} // namespace torvane::logger
