#include "graph/comment_tool.h"
#include "load/comment_file.h"
#include "support/hostile_files.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

namespace torvane::load {
namespace {

namespace fs = std::filesystem;
using graph::CommentRecord;
using shell::RecordingSink;
using torvane::testing::ReadText;
using torvane::testing::TempFolder;
using torvane::testing::WriteText;

CommentRecord Comment(std::string text, int layer = 0, std::int32_t time = 3000) {
    CommentRecord comment;
    comment.Free = 0;
    comment.OffsetX = 40;
    comment.OffsetY = -40;
    comment.Time = time;
    comment.Value = 10000;
    comment.Layer = static_cast<std::int16_t>(layer);
    comment.Text = std::move(text);
    return comment;
}

const std::string Head = "TORVANE-COMMENTS 1\n";

// What the operator does with the edit box of the comment at `index`: new text, or blanks to
// remove it.
void EditText(graph::GraphWindowState& window, std::size_t index, std::string_view text) {
    window.EditComment = static_cast<int>(index);
    ASSERT_TRUE(graph::EndCommentEdit(window, graph::CommentEditKey::Enter, text).Changed);
}

TEST(CommentFileFormat, EveryStoredFieldAndAnyTextComeBack) {
    CommentRecord extremes = Comment("back\\slash\ttab");
    extremes.OffsetX = -32768;
    extremes.OffsetY = 32767;
    extremes.Channel = logdata::ComputedChannel;
    extremes.Slot = 13;
    extremes.Time = -5;
    extremes.Value = 2147483647;
    const std::vector<CommentRecord> written{Comment("Late apex"), extremes,
                                             Comment("\xE3\x81\x82\xE3\x81\x84 1")};
    const std::string text = EncodeCommentFile(written);
    EXPECT_TRUE(text.starts_with(Head +
                                 "3\n40 -40 0 0 3000 10000 Late apex\n"
                                 "-32768 32767 99 13 -5 2147483647 back\\x5Cslash\\x09tab\n"))
        << text;

    std::vector<CommentRecord> read;
    CommentFileDamage damage;
    ASSERT_TRUE(DecodeCommentFile(text, read, damage)) << damage.Reason;
    EXPECT_EQ(read, written);
    ASSERT_TRUE(DecodeCommentFile(Head + "0\n", read, damage));
    EXPECT_TRUE(read.empty());
}

// A window with RUN.rlg as layer 0 and OTHER.rlg as layer 1, both in a folder of the test.
class CommentFileTest : public ::testing::Test {
protected:
    CommentFileTest() {
        state.LastLayer = 1;
        state.Layers.Layer[0].FilePath = run;
        state.Layers.Layer[1].FilePath = data / "OTHER.rlg";
    }

    TempFolder data;
    fs::path run = data / "RUN.rlg";
    fs::path sideFile = data / "RUN.rlg.comments";
    graph::GraphWindowState state;
    RecordingSink sink;
};

TEST_F(CommentFileTest, SideFileHoldsTheLayersCommentsAndGoesWithTheLast) {
    graph::AddComment(state.Comments, Comment("Brake"));
    graph::AddComment(state.Comments, Comment("Other file", 1));
    ASSERT_TRUE(SaveLayerComments(state, 0, sink));
    EXPECT_EQ(ReadText(sideFile), Head + "1\n40 -40 0 0 3000 10000 Brake\n");

    EditText(state, 0, " ");
    ASSERT_TRUE(SaveLayerComments(state, 0, sink));
    EXPECT_FALSE(fs::exists(sideFile));
    EXPECT_EQ(data.FileNames(), std::vector<std::string>{});
    EXPECT_TRUE(sink.Messages.empty());
}

TEST_F(CommentFileTest, ReadingReplacesTheLayersCommentsAndPinsThemToIt) {
    WriteText(data / "OTHER.rlg.comments", Head + "2\n1 2 3 4 5 6 First\n7 8 9 10 11 12 Second\n");
    graph::AddComment(state.Comments, Comment("Stale", 1));
    graph::AddComment(state.Comments, Comment("Main file"));
    ReadLayerComments(state, 1, sink);
    EXPECT_TRUE(sink.Messages.empty());
    ASSERT_EQ(state.Comments.size(), 3U);
    EXPECT_EQ(state.Comments[0].Text, "First"); // in the slot the stale one left
    EXPECT_EQ(state.Comments[1].Text, "Main file");
    EXPECT_EQ(state.Comments[2],
              (CommentRecord{0, 7, 8, 9, 10, 1, 11, 12, "Second", data / "OTHER.rlg"}));
}

// Each window writes what it shows of the file and keeps what it finds in the side file unless
// its own operator changed or removed it; a change in one window does not reach another.
TEST_F(CommentFileTest, WindowsOfOneFileKeepEachOthersCommentsAndLeaveOutOnlyTheirOwnRemovals) {
    graph::GraphWindowState other;
    other.Layers.Layer[0].FilePath = run;
    graph::AddComment(state.Comments, Comment("Brake"));
    ASSERT_TRUE(SaveLayerComments(state, 0, sink));
    ReadLayerComments(other, 0, sink);
    graph::AddComment(other.Comments, Comment("Apex", 0, 5000));
    ASSERT_TRUE(SaveLayerComments(other, 0, sink));

    EditText(state, 0, "Brake late");
    ASSERT_TRUE(SaveLayerComments(state, 0, sink));
    EXPECT_EQ(ReadText(sideFile), Head + "2\n40 -40 0 0 3000 10000 Brake late\n"
                                         "40 -40 0 0 5000 10000 Apex\n");

    EditText(other, 1, "");
    ASSERT_TRUE(SaveLayerComments(other, 0, sink));
    EXPECT_EQ(ReadText(sideFile), Head + "2\n40 -40 0 0 3000 10000 Brake\n"
                                         "40 -40 0 0 3000 10000 Brake late\n");
    EXPECT_TRUE(sink.Messages.empty());
}

TEST_F(CommentFileTest, DamagedSideFileIsReportedAndKeptAsideAndTheRunHasNoComments) {
    const std::string damaged = Head + "2\n40 -40 0 0 3000 10000 Brake\n40 -4";
    WriteText(sideFile, damaged);
    graph::AddComment(state.Comments, Comment("Before"));
    ReadLayerComments(state, 0, sink);
    EXPECT_TRUE(graph::LayerComments(state.Comments, 0).empty());
    ASSERT_EQ(sink.Messages.size(), 1U);
    EXPECT_EQ(sink.Messages[0].Icon, shell::icons::Warning);
    EXPECT_EQ(sink.Messages[0].Text,
              "The comments of RUN.rlg were left out: " + sideFile.string() +
                  " is damaged (line 4: the file ends inside a line); it is kept as "
                  "RUN.rlg.comments.damaged.");
    EXPECT_EQ(ReadText(data / "RUN.rlg.comments.damaged"), damaged);

    // A new comment does not write over the damaged file's bytes.
    graph::AddComment(state.Comments, Comment("After"));
    ASSERT_TRUE(SaveLayerComments(state, 0, sink));
    EXPECT_EQ(ReadText(data / "RUN.rlg.comments.damaged"), damaged);
    EXPECT_EQ(sink.Messages.size(), 1U);
}

TEST_F(CommentFileTest, FurtherDamagedSideFilesAreNumberedAndNoEarlierCopyIsRenamedOver) {
    const std::vector<std::string> damaged{"first", "second", "third"};
    const std::vector<std::string> kept{"RUN.rlg.comments.damaged", "RUN.rlg.comments.damaged.2",
                                        "RUN.rlg.comments.damaged.3"};
    for (std::size_t i = 0; i < damaged.size(); ++i) {
        WriteText(sideFile, damaged[i]);
        ReadLayerComments(state, 0, sink);
        ASSERT_EQ(sink.Messages.size(), i + 1);
        EXPECT_TRUE(sink.Messages[i].Text.ends_with("; it is kept as " + kept[i] + "."))
            << sink.Messages[i].Text;
    }
    EXPECT_FALSE(fs::exists(sideFile));
    for (std::size_t i = 0; i < damaged.size(); ++i) {
        EXPECT_EQ(ReadText(data / kept[i]), damaged[i]);
    }

    // A copy the operator removed frees its name for the next one.
    fs::remove(data / kept[0]);
    WriteText(sideFile, "fourth");
    ReadLayerComments(state, 0, sink);
    EXPECT_EQ(ReadText(data / kept[0]), "fourth");
    EXPECT_EQ(ReadText(data / kept[1]), "second");

    // With every name taken the damaged file stays, and no save writes over it.
    for (int copy = 2; copy <= 99; ++copy) {
        WriteText(data / ("RUN.rlg.comments.damaged." + std::to_string(copy)), "kept");
    }
    WriteText(sideFile, "fifth");
    sink.Messages.clear();
    graph::AddComment(state.Comments, Comment("New"));
    EXPECT_FALSE(SaveLayerComments(state, 0, sink));
    ASSERT_EQ(sink.Messages.size(), 2U);
    EXPECT_TRUE(sink.Messages[0].Text.ends_with(", and it was left as it is."));
    EXPECT_TRUE(sink.Messages[1].Text.starts_with("The comments of RUN.rlg could not be saved ("));
    EXPECT_EQ(ReadText(sideFile), "fifth");
}

TEST_F(CommentFileTest, EveryRefusalOfTheReaderNamesItsLineAndWhatIsWrong) {
    const std::string numbers = "the numbers of the comment are not as written";
    const std::string text = "the text is not a comment of 1 to 40 characters";
    const std::string one = Head + "1\n";
    const struct {
        std::string file;
        int line;
        std::string reason;
    } refused[] = {
        {"", 1, "the file is empty"},
        {Head + "1\n1 2 0 4 5 6 Brake", 3, "the file ends inside a line"},
        {"TORVANE-COMMENTS 2\n0\n", 1, "it does not begin with TORVANE-COMMENTS 1"},
        {Head + "32768\n", 2, "the number of comments is missing"},
        {Head + "2\n1 2 0 4 5 6 Brake\n", 4, "the file ends after 1 of 2 comments"},
        {Head + "1\n1 2 0 4 5 6 Brake\n1 2 0 4 5 6 Apex\n", 4,
         "there is more after the last comment"},
        {one + "1 32768 0 4 5 6 Brake\n", 3, numbers},
        {one + "1 2 0 4 5 Brake\n", 3, numbers},
        {one + "1 2 16 4 5 6 Brake\n", 3, "the comment names no item"},
        {one + "1 2 0 4 5 6 " + std::string(41, 'x') + "\n", 3, text},
        {one + "1 2 0 4 5 6 Brake \n", 3, text},
        {one + "1 2 0 4 5 6 Brake\r\n", 3, text},
        {one + "1 2 0 4 5 6 Brake\\x5\n", 3, text},
        {one + "1 2 0 4 5 6 " + std::string(8 << 20, 'x') + "\n", 1,
         "it is far longer than any comment file"},
    };
    for (const auto& [file, line, reason] : refused) {
        SCOPED_TRACE(file.substr(0, 60));
        sink.Messages.clear();
        WriteText(sideFile, file);
        ReadLayerComments(state, 0, sink);
        ASSERT_EQ(sink.Messages.size(), 1U);
        EXPECT_NE(sink.Messages[0].Text.find(" is damaged (line " + std::to_string(line) + ": " +
                                             reason + "); it is kept as "),
                  std::string::npos)
            << sink.Messages[0].Text;
    }
}

TEST_F(CommentFileTest, FailedSaveIsReportedAndLeavesTheSideFileAsItWas) {
    const std::string saved = Head + "1\n40 -40 0 0 3000 10000 Saved\n";
    WriteText(sideFile, saved);
    // Something in the way of the replacement stops the write as a read-only folder would.
    fs::create_directory(data / "RUN.rlg.comments.new");
    graph::AddComment(state.Comments, Comment("Changed"));
    EXPECT_FALSE(SaveLayerComments(state, 0, sink));
    ASSERT_EQ(sink.Messages.size(), 1U);
    EXPECT_TRUE(sink.Messages[0].Text.starts_with("The comments of RUN.rlg could not be saved ("))
        << sink.Messages[0].Text;
    EXPECT_TRUE(sink.Messages[0].Text.ends_with("They stay in this window while it is open."));
    EXPECT_EQ(ReadText(sideFile), saved);
    EXPECT_EQ(graph::LayerComments(state.Comments, 0).size(), 1U);

    EXPECT_FALSE(WriteCommentFile(WindowFileComments(state, run), data / "gone" / "RUN.rlg", sink));
    ASSERT_EQ(sink.Messages.size(), 2U);
    EXPECT_NE(sink.Messages[1].Text.find("Path not found"), std::string::npos);
}

TEST_F(CommentFileTest, UnreadableSideFileIsReported) {
    fs::create_directory(sideFile);
    ReadLayerComments(state, 0, sink);
    ASSERT_EQ(sink.Messages.size(), 1U);
    EXPECT_TRUE(sink.Messages[0].Text.starts_with("The comments of RUN.rlg were left out: they "
                                                  "could not be read ("))
        << sink.Messages[0].Text;
}

TEST_F(CommentFileTest, FifoOrDeviceAsSideFileIsRefusedUnopenedAndNotWrittenOver) {
    for (const auto& hostile : torvane::testing::HostileFiles()) {
        SCOPED_TRACE(hostile.Kind);
        fs::remove(sideFile);
        sink.Messages.clear();
        ASSERT_TRUE(hostile.Make(sideFile));
        ReadLayerComments(state, 0, sink);
        graph::AddComment(state.Comments, Comment("Kept in the window"));
        EXPECT_FALSE(SaveLayerComments(state, 0, sink));
        ASSERT_EQ(sink.Messages.size(), 2U);
        EXPECT_EQ(sink.Messages[0].Text, "The comments of RUN.rlg were left out: they could not "
                                         "be read (Path/File access error: " +
                                             sideFile.string() + ").");
        EXPECT_TRUE(
            sink.Messages[1].Text.starts_with("The comments of RUN.rlg could not be saved"));
        EXPECT_FALSE(fs::is_regular_file(fs::symlink_status(sideFile)));
        EXPECT_FALSE(fs::exists(data / "RUN.rlg.comments.damaged"));
    }
}

} // namespace
} // namespace torvane::load
