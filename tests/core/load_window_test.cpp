#include "graph/comment_tool.h"
#include "graph/window_menus.h"
#include "layout/default_layout.h"
#include "layout/layout_store.h"
#include "load/comment_file.h"
#include "load/layer_commands.h"
#include "load/load_logging_file.h"
#include "load/window_close.h"
#include "recording_view.h"
#include "scripted_decompressor.h"
#include "shell/temp_files.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <array>

namespace torvane::load {
namespace {

// Open layer, close layer and align, as the window's menu enables them.
std::array<bool, 3> LayerMenus(const graph::GraphWindowState& window) {
    const graph::WindowMenuState menus = graph::MenuStateOf(window);
    return {menus.OpenLayerEnabled, menus.CloseLayerEnabled, menus.AlignEnabled};
}

namespace fs = std::filesystem;
using logdata::LogHeader;
using logdata::SettingWord;
using logdata::testing::ScriptedDecompressor;
using logdata::testing::ScriptedRun;
using shell::RecordingSink;
using torvane::load::testing::RecordingView;
using torvane::testing::TempFolder;
using torvane::testing::WriteWords16;

// Ne (and TH) at 10 ms for the given length; with lapMarks a mark at 300 ms and one at 1200 ms.
ScriptedRun MakeRun(int lengthMs, bool lapMarks = false) {
    ScriptedRun run;
    run.Header.SetSampleTime(0, 10);
    run.Header.SetSampleTime(1, 10);
    run.Header.SetWord(SettingWord::ThClose, 100);
    run.Header.SetWord(SettingWord::ThOpen, 700);
    const auto words = static_cast<std::size_t>(lengthMs / 10);
    run.Streams["Ne"] = std::vector<std::int16_t>(words, 400);
    run.Streams["TH"] = std::vector<std::int16_t>(words, 80);
    std::vector<std::int16_t> lap(static_cast<std::size_t>(lengthMs / 300), 0);
    if (lapMarks) {
        run.Header.SetWord(SettingWord::LapOn, 1);
        lap.at(0) = 1;
        lap.at(3) = 1;
    }
    run.Streams["LAP"] = lap;
    return run;
}

class LoadTest : public ::testing::Test {
protected:
    LoadTest() {
        files.Layers.TempDir = folder.Path();
        files.Layers.WindowNumber = registry.Claim();
        display = layout::DefaultLayout();
        display.Items[logdata::Ne].Zoom = 3;
        display.Time = {2, 5000, 50};
    }

    bool Load(const ScriptedRun& run, const std::string& path = "/runs/MAIN.rlg") {
        driver.runs[path] = run;
        return LoadLoggingFile(files, path, display, driver, sink, view);
    }
    bool Open(const ScriptedRun& run, const std::string& path) {
        driver.runs[path] = run;
        return OpenLayer(files, path, driver, sink, view);
    }
    bool StreamExists(int layer, const std::string& stream) const {
        return fs::exists(files.Layers.StreamPath(layer, stream));
    }

    TempFolder folder;
    shell::WindowRegistry registry;
    graph::GraphWindowState files;
    graph::DisplaySet display;
    ScriptedDecompressor driver;
    RecordingSink sink;
    RecordingView view;
};

TEST_F(LoadTest, MainFileIsReadyToShowWithTheScrollItemItHas) {
    ASSERT_TRUE(Load(MakeRun(6000, true)));
    EXPECT_TRUE(sink.Messages.empty());
    EXPECT_EQ(files.SingleFileState, graph::SingleFileState::Loaded);
    EXPECT_EQ(files.Layers.Layer[0].MeasureTime, 6000.0);
    EXPECT_EQ(files.Time, display.Time);
    graph::ScaleRecord neScale;
    ASSERT_TRUE(graph::ScaleFor(logdata::Ne, 3, neScale));
    EXPECT_EQ(files.Views[0].ItemScale[logdata::Ne], neScale);
    EXPECT_EQ(files.Layers.Layer[0].ScrollItem, logdata::TH);
    EXPECT_EQ(files.Layers.Lap[0].LapTime, (std::vector<double>{300.0, 1200.0}));
    EXPECT_EQ(LayerMenus(files), (std::array{true, false, false}));
    EXPECT_EQ(view.steps, (std::vector<std::string>{"panel 0", "scales", "select 0",
                                                    "values, cursor found again"}));
}

TEST_F(LoadTest, RunOrLayerOfThreeSecondsOrLessIsRefusedAndItsNumberUsedAgain) {
    ASSERT_FALSE(Load(MakeRun(3000)));
    ASSERT_EQ(sink.Messages.size(), 1U);
    EXPECT_EQ(sink.Messages[0].Text, ShortMeasurementMessage);
    EXPECT_TRUE(view.steps.empty());

    // Ne at 5 ms gives the next length above the limit.
    ScriptedRun run = MakeRun(3000);
    run.Header.SetSampleTime(0, 5);
    run.Streams["Ne"].resize(601);
    EXPECT_TRUE(Load(run));
    EXPECT_EQ(files.Layers.Layer[0].MeasureTime, 3005.0);

    EXPECT_FALSE(Open(MakeRun(3000), "/runs/SHORT.rlg"));
    ASSERT_EQ(sink.Messages.size(), 2U);
    EXPECT_EQ(sink.Messages[1].Text, ShortMeasurementMessage);
    EXPECT_EQ(files.LastLayer, 0);
    ASSERT_TRUE(Open(MakeRun(8000), "/runs/LONG.rlg"));
    EXPECT_EQ(driver.fileNumbers, (std::vector<int>{10, 10, 11, 11}));
}

TEST_F(LoadTest, FailedDeploymentShowsTheDriversMessageAndAFailedWindowStepFailsTheLoad) {
    driver.result = -4;
    EXPECT_FALSE(Load(MakeRun(6000)));
    ASSERT_EQ(sink.Messages.size(), 1U);
    EXPECT_EQ(sink.Messages[0].Text, "File access error.");
    EXPECT_TRUE(folder.FileNames().empty());
    driver.result = 0;

    view.selectFails = true;
    EXPECT_FALSE(Load(MakeRun(6000)));
    EXPECT_EQ(files.SingleFileState, graph::SingleFileState::Cleared);
    EXPECT_NE(view.steps.back(), "values, cursor found again");
    view = RecordingView{};
    view.panelFails = true;
    EXPECT_FALSE(Load(MakeRun(6000)));
    EXPECT_EQ(view.steps, std::vector<std::string>{"panel 0"});
}

TEST_F(LoadTest, SecondAndThirdLayersOpenAndAFourthIsRefused) {
    ASSERT_TRUE(Load(MakeRun(6000)));
    files.Layers.Layer[0].TimeOffset = 1500.0;
    files.Layers.Layer[0].CursorTime = 2500.0;
    view.steps.clear();

    ASSERT_TRUE(Open(MakeRun(4000), "/runs/SECOND.rlg"));
    EXPECT_EQ(files.ActiveLayer, 0);
    EXPECT_EQ(files.SingleFileState, graph::SingleFileState::Cleared);
    EXPECT_EQ(LayerMenus(files), (std::array{true, true, true}));
    // The new layer starts where the main file is shown, with its display.
    EXPECT_EQ(files.Layers.Layer[1].TimeOffset, 1500.0);
    EXPECT_EQ(files.Layers.Layer[1].CursorTime, 2500.0);
    EXPECT_EQ(files.Views[1].ItemScale, files.Views[0].ItemScale);
    EXPECT_EQ(view.steps, (std::vector<std::string>{"panel 1", "scales", "redraw", "values"}));

    ASSERT_TRUE(Open(MakeRun(5000), "/runs/THIRD.rlg"));
    EXPECT_EQ(LayerMenus(files), (std::array{false, true, true}));

    EXPECT_FALSE(Open(MakeRun(5000), "/runs/FOURTH.rlg"));
    EXPECT_EQ(driver.fileNumbers, (std::vector<int>{10, 11, 12}));
    EXPECT_EQ(files.LastLayer, 2);
    EXPECT_TRUE(sink.Messages.empty());
}

TEST_F(LoadTest, ClosingLayersFallsBackToTheMainFile) {
    ASSERT_TRUE(Load(MakeRun(6000)));
    ASSERT_TRUE(Open(MakeRun(6000), "/runs/SECOND.rlg"));
    ASSERT_TRUE(Open(MakeRun(6000), "/runs/THIRD.rlg"));
    files.ActiveLayer = 1;
    view.steps.clear();

    // The highest layer is not the active one: the selection stays.
    ASSERT_TRUE(CloseLayer(files, view));
    EXPECT_EQ(files.ActiveLayer, 1);
    EXPECT_EQ(view.steps, (std::vector<std::string>{"close panel 2", "scales", "redraw"}));

    view.steps.clear();
    ASSERT_TRUE(CloseLayer(files, view));
    EXPECT_EQ(files.ActiveLayer, 0);
    EXPECT_EQ(LayerMenus(files), (std::array{true, false, false}));
    EXPECT_EQ(view.steps,
              (std::vector<std::string>{"close panel 1", "select 0", "scales", "redraw"}));
    EXPECT_FALSE(CloseLayer(files, view));

    // The streams of closed layers stay until the window closes.
    EXPECT_TRUE(StreamExists(1, "Ne"));
    EXPECT_TRUE(StreamExists(2, "Ne"));
}

TEST_F(LoadTest, CommentsComeBackWithTheirFileAsMainFileOrLayerAndGoWithTheLayer) {
    TempFolder data;
    const std::string run = (data / "RUN.rlg").string();
    ASSERT_TRUE(Load(MakeRun(6000), run));
    graph::CommentRecord brake;
    brake.OffsetX = 40;
    brake.OffsetY = -40;
    brake.Time = 2500;
    brake.Value = 8000;
    brake.Text = "Brake";
    brake.FileName = run;
    graph::AddComment(files.Comments, brake);
    ASSERT_TRUE(SaveLayerComments(files, 0, sink));

    const auto reopenedTexts = [&] {
        graph::GraphWindowState reopened;
        reopened.Layers.TempDir = folder.Path();
        reopened.Layers.WindowNumber = registry.Claim();
        NoWindowView noWindow;
        EXPECT_TRUE(LoadLoggingFile(reopened, run, display, driver, sink, noWindow));
        std::vector<std::string> texts;
        for (const graph::CommentRecord& comment : graph::LayerComments(reopened.Comments, 0)) {
            texts.push_back(comment.Text);
        }
        return texts;
    };
    EXPECT_EQ(reopenedTexts(), std::vector<std::string>{"Brake"});

    // The same file over another one: its comments take the layer's number, and go with it.
    ASSERT_TRUE(Open(MakeRun(6000), run));
    const std::vector<graph::CommentRecord> layerComments = graph::LayerComments(files.Comments, 1);
    ASSERT_EQ(layerComments.size(), 1U);
    EXPECT_EQ(layerComments[0].Text, "Brake");

    // A comment on layer 1 and then a change on layer 0: the file keeps both, each once, and
    // the change reaches layer 1's copy.
    brake.Time = 4000;
    brake.Text = "Apex";
    brake.Layer = 1;
    graph::AddComment(files.Comments, brake);
    ASSERT_TRUE(SaveLayerComments(files, 1, sink));
    files.EditComment = 0;
    ASSERT_TRUE(graph::EndCommentEdit(files, graph::CommentEditKey::Enter, "Brake late").Changed);
    ASSERT_TRUE(SaveLayerComments(files, 0, sink));
    EXPECT_EQ(reopenedTexts(), (std::vector<std::string>{"Brake late", "Apex"}));
    EXPECT_EQ(files.Comments[1].Text, "Brake late");

    ASSERT_TRUE(CloseLayer(files, view));
    EXPECT_TRUE(graph::LayerComments(files.Comments, 1).empty());
    EXPECT_EQ(graph::LayerComments(files.Comments, 0).size(), 1U);
    EXPECT_TRUE(fs::exists(CommentFilePath(run)));
    EXPECT_TRUE(sink.Messages.empty());
}

// A downloaded file in TMP, in window 1 of the registry.
class QueryUnloadTest : public ::testing::Test {
protected:
    QueryUnloadTest() {
        files.Layers.WindowNumber = registry.Claim();
        files.Layers.Layer[0].FilePath = downloaded;
        torvane::testing::WriteText(downloaded, "logging file");
        registry.SetLogger(files.Layers.WindowNumber, 1);
    }

    bool Query(int answer, std::optional<fs::path> chosen = std::nullopt) {
        sink.SetAnswer(answer);
        return QueryUnload(files, registry, sink, [&] {
            ++dialogs;
            return chosen;
        });
    }
    int Logger() const { return registry.GetLogger(files.Layers.WindowNumber); }

    TempFolder tmp;
    TempFolder data;
    fs::path downloaded = tmp / "LGGR0001.rlg";
    shell::WindowRegistry registry;
    graph::GraphWindowState files;
    RecordingSink sink;
    int dialogs = 0;
};

TEST_F(QueryUnloadTest, NothingIsAskedForAFileFromTheDiskOrGoneCancelKeepsItAndNoDeletesIt) {
    registry.SetLogger(files.Layers.WindowNumber, 0);
    EXPECT_TRUE(Query(shell::answers::Cancel));
    registry.SetLogger(files.Layers.WindowNumber, 1);
    fs::remove(downloaded);
    EXPECT_TRUE(Query(shell::answers::Cancel));
    EXPECT_TRUE(sink.Messages.empty());

    // For a downloaded file Cancel keeps the window and No deletes the file.
    torvane::testing::WriteText(downloaded, "logging file");
    EXPECT_FALSE(Query(shell::answers::Cancel));
    ASSERT_EQ(sink.Messages.size(), 1U);
    EXPECT_EQ(sink.Messages[0].Text, "This file is not saved.\r\nDoes it save?");
    EXPECT_EQ(sink.Messages[0].Buttons, shell::buttons::YesNoCancel);
    EXPECT_TRUE(fs::exists(downloaded));
    EXPECT_EQ(dialogs, 0);

    // Its comments go with it, so that the next download of that name starts without them.
    torvane::testing::WriteText(CommentFilePath(downloaded), "comments");
    EXPECT_TRUE(Query(shell::answers::No));
    EXPECT_FALSE(fs::exists(downloaded));
    EXPECT_FALSE(fs::exists(CommentFilePath(downloaded)));
    EXPECT_EQ(Logger(), 0);
}

TEST_F(QueryUnloadTest, YesMovesTheFileToAnotherChosenPlaceOrReportsAFailedCopy) {
    // No place chosen, or the same place: the file stays.
    EXPECT_TRUE(Query(shell::answers::Yes, std::nullopt));
    EXPECT_TRUE(Query(shell::answers::Yes, downloaded));
    EXPECT_TRUE(fs::exists(downloaded));

    EXPECT_TRUE(Query(shell::answers::Yes, data / "missing" / "RUN.rlg"));
    ASSERT_EQ(sink.Messages.size(), 4U);
    EXPECT_TRUE(sink.Messages[3].Text.starts_with("Error(76)\r")) << sink.Messages[3].Text;
    EXPECT_TRUE(fs::exists(downloaded));

    graph::CommentRecord comment;
    comment.Text = "Downloaded";
    graph::AddComment(files.Comments, comment);
    EXPECT_TRUE(Query(shell::answers::Yes, data / "RUN.rlg"));
    EXPECT_EQ(torvane::testing::ReadText(data / "RUN.rlg"), "logging file");
    EXPECT_TRUE(fs::exists(CommentFilePath(data / "RUN.rlg")));
    EXPECT_FALSE(fs::exists(downloaded));
    EXPECT_EQ(Logger(), 0);
    EXPECT_EQ(dialogs, 4);
}

TEST(UnloadWindowTest, RemovesTheWindowsStreamsAndKeepsItsDisplay) {
    TempFolder app;
    const shell::AppPaths paths(app.Path());
    ASSERT_TRUE(paths.MakeFolders());
    RecordingSink sink;
    layout::LayoutStore store(paths, sink);
    ASSERT_TRUE(store.LoadLayouts());
    shell::WindowRegistry registry;

    graph::GraphWindowState first;
    first.Layers.TempDir = paths.TempDir();
    first.Layers.WindowNumber = registry.Claim();
    graph::GraphWindowState second = first;
    second.Layers.WindowNumber = registry.Claim();
    for (int layer = 0; layer < logdata::LayerCount; ++layer) {
        WriteWords16(first.Layers.StreamPath(layer, "Ne"), {1});
        WriteWords16(second.Layers.StreamPath(layer, "Ne"), {1});
    }
    first.SingleFileState = graph::SingleFileState::Loaded;
    first.Views[0].Display = layout::DefaultLayout();
    first.Views[0].Display.Items[logdata::TH].Zoom = 9;
    first.Time = {4, 2000, 20};

    EXPECT_FALSE(UnloadWindow(first, registry, store, layout::FactoryToolBox).LastWindow);
    EXPECT_FALSE(registry.InUse(first.Layers.WindowNumber));
    EXPECT_EQ(shell::DeleteTempFiles(paths.TempDir(), first.Layers.WindowNumber), 0);
    EXPECT_EQ(shell::DeleteTempFiles(paths.TempDir(), second.Layers.WindowNumber), 3);
    graph::DisplaySet kept;
    ASSERT_TRUE(store.GetLayout(0, kept));
    EXPECT_EQ(kept.Items, first.Views[0].Display.Items);

    // The last window saves the store; its display was changed, so record 0 stays.
    second.SingleFileState = graph::SingleFileState::Cleared;
    const layout::ToolBoxPlace toolBox{true, 120, 240};
    EXPECT_TRUE(UnloadWindow(second, registry, store, toolBox).LastWindow);
    layout::LayoutStore reread(paths, sink);
    ASSERT_TRUE(reread.LoadLayouts());
    EXPECT_EQ(reread.ToolBox(), toolBox);
    ASSERT_TRUE(reread.GetLayout(0, kept));
    EXPECT_EQ(kept.Time, first.Time);
}

} // namespace
} // namespace torvane::load
