#include "graph_window_fixture.h"
#include "load/comment_file.h"
#include "load/save_file.h"

#include <gtest/gtest.h>

namespace torvane::load {
namespace {

namespace fs = std::filesystem;
using graph::testing::AllShown;
using graph::testing::RunHeader;
using torvane::testing::ReadText;
using torvane::testing::TempFolder;
using torvane::testing::WriteText;

class SaveFileTest : public graph::testing::GraphWindowFixture, public ::testing::Test {
protected:
    SaveFileTest() {
        logdata::LogHeader header = RunHeader(10);
        header.SetSampleTime(logdata::VRW, 0);
        graph::DisplaySet display = AllShown();
        display.Items[logdata::TH].View = 0;
        Open(0, header, "RUN", display);
        AddComputed(0, {0, 10, 100.0, "HIDDEN", ""}, 0);
        AddComputed(0, {1, 10, 100.0, "SLIP", "%"}, 1);
        state.Layers.Layer[0].FilePath = main;
        WriteText(main, "logging file");
        EXPECT_EQ(registry.Claim(), state.Layers.WindowNumber);
    }

    bool Save(const fs::path& path, bool all = false, bool range = false) {
        return SaveMainFile(state, {path, all, range}, registry, laf, sink);
    }
    int Logger() const { return registry.GetLogger(state.Layers.WindowNumber); }
    std::string Caption() const { return state.Panel.File(0)->Caption; }

    TempFolder data;
    fs::path main = data / "RUN.rlg";
    shell::WindowRegistry registry;
    logger::LafTable laf;
    shell::RecordingSink sink;
};

TEST_F(SaveFileTest, ExportTakesTheShownItemsThatHoldDataOrEveryItemOverTheMarkedRange) {
    const logdata::LayerRecord& record = state.Layers.Layer[0];
    EXPECT_EQ(CsvItems(record, state.Views[0], false),
              (std::vector<int>{0, 2, 4, 5, 6, 7, 8, 9, 10, 11, 13}));
    EXPECT_EQ(CsvItems(record, state.Views[0], true),
              (std::vector<int>{0, 1, 2, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13}));

    // Names other than a logging file's export the shown items over the marked range.
    Stream(0, "Ne", {100, 200, 300, 400});
    Stream(0, "TH", {125, 125, 125, 125});
    state.Views[0].Display.Items.fill({});
    state.Views[0].Display.Items[logdata::Ne].View = 1;
    state.Views[0].Computed[1].Display.View = 0;
    state.RangeStart = 20.0;
    state.RangeEnd = 30.0;
    EXPECT_TRUE(Save(data / "RUN.csv", false, true));
    EXPECT_EQ(ReadText(data / "RUN.csv"), "Time(s),Ne\r\n0.020,4000.00\r\n0.030,6000.00\r\n");
    EXPECT_EQ(state.Layers.Layer[0].FilePath, main);
    EXPECT_TRUE(sink.Messages.empty());
}

TEST_F(SaveFileTest, SavingOverItsOwnPathDoesNothingAndElsewhereTheLayerFollowsTheCopy) {
    registry.SetLogger(state.Layers.WindowNumber, 1);
    EXPECT_TRUE(Save(main));
    EXPECT_EQ(ReadText(main), "logging file");
    EXPECT_EQ(Logger(), 1);
    EXPECT_TRUE(sink.Messages.empty());

    // A file from the disk is copied, its comments beside the copy, and the layer follows it.
    graph::CommentRecord brake;
    brake.Time = 2500;
    brake.Text = "Brake";
    graph::AddComment(state.Comments, brake);
    registry.SetLogger(state.Layers.WindowNumber, 0);
    EXPECT_TRUE(Save(data / "COPY.Rlg"));
    EXPECT_EQ(ReadText(data / "COPY.Rlg"), "logging file");
    EXPECT_EQ(ReadText(CommentFilePath(data / "COPY.Rlg")),
              std::string(CommentFileMagic) + "\n1\n0 0 0 0 2500 0 Brake\n");
    EXPECT_TRUE(fs::exists(main));
    EXPECT_EQ(state.Layers.Layer[0].FilePath, data / "COPY.Rlg");
    EXPECT_EQ(Caption(), "COPY");
}

TEST_F(SaveFileTest, ADownloadedFileIsKeptAndItsWorkingCopyGoes) {
    registry.SetLogger(state.Layers.WindowNumber, 1);
    // A copy that fails changes nothing: the file is still only in its working copy.
    EXPECT_FALSE(Save(data / "missing" / "KEEP.rlg"));
    ASSERT_EQ(sink.Messages.size(), 1U);
    EXPECT_TRUE(sink.Messages[0].Text.starts_with("Error(76)\r")) << sink.Messages[0].Text;
    EXPECT_EQ(Logger(), 1);
    EXPECT_EQ(state.Layers.Layer[0].FilePath, main);
    EXPECT_EQ(Caption(), "RUN");

    EXPECT_TRUE(Save(data / "KEEP.rlg"));
    EXPECT_EQ(Logger(), 0);
    EXPECT_FALSE(fs::exists(main));
    EXPECT_EQ(ReadText(data / "KEEP.rlg"), "logging file");
    EXPECT_EQ(Caption(), "KEEP");
    EXPECT_EQ(sink.Messages.size(), 1U);
}

} // namespace
} // namespace torvane::load
