#include "graph/comment_tool.h"
#include "graph/comments.h"
#include "graph/time_axis.h"
#include "graph_window_fixture.h"

#include <gtest/gtest.h>

namespace torvane::graph {
namespace {

constexpr PictureSize Picture{800, 400};

// Ne (slot 0) in a band 200 rows high from row 50: 100 axis units a row, so value 10000 stands
// on row 150. One column per 5 ms, so 1000 ms stands on column 300.
class CommentTest : public ::testing::Test, public testing::GraphWindowFixture {
protected:
    CommentTest() {
        Open(0, testing::RunHeader());
        state.Layers.Layer[0].FilePath = "/runs/RUN.rlg";
        state.Views[0].ItemScale[0] = {10, 1, 20000, 0, 5000, 1000, 30000};
        NeDisplay().Top = 50;
    }

    ItemDisplay& NeDisplay() { return state.Views[0].Display.Items[logdata::Ne]; }

    CommentRecord& Pin(std::int32_t time, std::int32_t value, std::int16_t offsetX,
                       std::int16_t offsetY, std::string text = "Brake") {
        CommentRecord comment;
        comment.Time = time;
        comment.Value = value;
        comment.OffsetX = offsetX;
        comment.OffsetY = offsetY;
        comment.Text = std::move(text);
        return state.Comments[AddComment(state.Comments, comment)];
    }

    std::vector<std::size_t> Drawn(PictureSize picture = Picture) const {
        std::vector<std::size_t> indices;
        for (const CommentPicture& drawn : DrawComments(state, picture)) {
            indices.push_back(drawn.Index);
        }
        return indices;
    }

    // Pulls a leader from `from` to `to` on Ne and types `text` into the box that opens.
    CommentEditEnd PinWithTool(PixelPoint from, PixelPoint to, std::string_view text) {
        BeginCommentLeader(state, {0, logdata::Ne}, from);
        MoveCommentLeader(state, to);
        EXPECT_TRUE(EndCommentLeader(state, Picture));
        return EndCommentEdit(state, CommentEditKey::Enter, text);
    }
};

TEST_F(CommentTest, AnchorFollowsTheTraceThroughOffsetAndTop) {
    Pin(1000, 10000, 40, -40);
    std::vector<CommentPicture> drawn = DrawComments(state, Picture);
    ASSERT_EQ(drawn.size(), 1U);
    EXPECT_EQ(drawn[0].Anchor, (PixelPoint{300, 150}));
    EXPECT_EQ(drawn[0].TextPoint, (PixelPoint{340, 110}));
    EXPECT_EQ(drawn[0].TextOrigin, (PixelPoint{340, 104}));
    EXPECT_EQ(drawn[0].Text, "Brake");

    // A dragged trace and a scrolled layer take the comment along, text and all.
    NeDisplay().Top = 80;
    state.Layers.Layer[0].TimeOffset = 500.0;
    drawn = DrawComments(state, Picture);
    ASSERT_EQ(drawn.size(), 1U);
    EXPECT_EQ(drawn[0].Anchor, (PixelPoint{200, 180}));
    EXPECT_EQ(drawn[0].TextPoint, (PixelPoint{240, 140}));
}

TEST_F(CommentTest, ArrowHeadTakesTheLeadersAngleAndTurnsForLeftAndDown) {
    const PixelPoint anchor{300, 150};
    using Head = std::array<PixelPoint, 2>;
    // Straight up: 90 degrees, the barbs rise towards the text; straight down they are turned.
    EXPECT_EQ(ArrowHead(anchor, {300, 100}), (Head{{{305, 141}, {295, 141}}}));
    EXPECT_EQ(ArrowHead(anchor, {300, 200}), (Head{{{295, 159}, {305, 159}}}));
    // Level: 0 degrees, turned when the text is on the left.
    EXPECT_EQ(ArrowHead(anchor, {350, 150}), (Head{{{309, 155}, {309, 145}}}));
    EXPECT_EQ(ArrowHead(anchor, {250, 150}), (Head{{{291, 145}, {291, 155}}}));
    // 45 degrees up and right, and the same slope reached to the lower left.
    EXPECT_EQ(ArrowHead(anchor, {340, 110}), (Head{{{310, 147}, {303, 140}}}));
    EXPECT_EQ(ArrowHead(anchor, {260, 190}), (Head{{{290, 153}, {297, 160}}}));
    // A leader of no length counts as straight up.
    EXPECT_EQ(ArrowHead(anchor, anchor), ArrowHead(anchor, {300, 100}));
}

TEST_F(CommentTest, CommentIsLeftOutWholeOutsideTheVisibleGraphOrWithTextPastTheRightEdge) {
    Pin(400, 10000, 100, -10);
    Pin(1000, 10000, 10, -10);
    state.Layers.Layer[0].TimeOffset = 500.0;
    // 400 ms lies before the left edge although its text would still be in the graph.
    EXPECT_EQ(Drawn(), std::vector<std::size_t>{1});

    state.Layers.Layer[0].TimeOffset = 0.0;
    NeDisplay().View = 0;
    EXPECT_TRUE(Drawn().empty());
    NeDisplay().View = 1;
    state.Comments[1].Layer = 1; // a layer that is not open
    EXPECT_EQ(Drawn(), std::vector<std::size_t>{0});

    // 40 characters of three bytes each: 720 columns from column 160, past the right edge.
    state.Comments = NewCommentList();
    std::string wide;
    for (int i = 0; i < 40; ++i) {
        wide += "\xE3\x81\x82";
    }
    EXPECT_EQ(AnsiLength(wide), 120U);
    Pin(1000, 10000, -140, -10, wide);
    EXPECT_TRUE(Drawn({879, 400}).empty());
    EXPECT_EQ(Drawn({880, 400}).size(), 1U);

    // With 50 columns a step the test takes the text's column rounded up to the next step: a
    // text from column 50 reaches column 100 and is drawn, one from 49 only reaches 50.
    state.Comments = NewCommentList();
    Pin(1000, 10000, -250, -10); // anchor on column 300 at either scale
    EXPECT_TRUE(Drawn().empty());
    state.Time = {50, 500, 250};
    EXPECT_EQ(Drawn(), std::vector<std::size_t>{0});
    state.Comments[0].OffsetX = -251;
    EXPECT_TRUE(Drawn().empty());
}

TEST_F(CommentTest, NewCommentIsPinnedWhereTheLeaderBeganWithItsTextWhereItEnded) {
    state.Layers.Layer[0].TimeOffset = 2000.0;
    const CommentEditEnd end = PinWithTool({300, 150}, {340, 110}, "  Late apex  ");
    EXPECT_TRUE(end.Changed);
    EXPECT_EQ(end.Layer, 0);
    EXPECT_EQ(state.EditComment, -1);
    EXPECT_EQ(state.DragState, DragState::None);
    CommentRecord pinned{0, 40, -40, logdata::Ne, 0, 0, 3000, 10000, "Late apex", "/runs/RUN.rlg"};
    EXPECT_EQ(state.Comments, CommentList{pinned});
    EXPECT_EQ(DrawComments(state, Picture).at(0).Anchor, (PixelPoint{300, 150}));

    // Longer text than the box holds keeps its first 40 characters.
    PinWithTool({300, 150}, {340, 200}, std::string(45, 'x'));
    EXPECT_EQ(state.Comments.at(1).Text, std::string(40, 'x'));
}

TEST_F(CommentTest, EditBoxOpensOnlyWhereTheLeaderEndsInsideTheGraph) {
    const auto opensAt = [&](PixelPoint end) {
        BeginCommentLeader(state, {0, logdata::Ne}, {300, 150});
        MoveCommentLeader(state, end);
        return EndCommentLeader(state, Picture);
    };
    const std::optional<CommentEditBox> box = opensAt({101, 1});
    ASSERT_TRUE(box);
    EXPECT_EQ(box->TopFor(20), -9);
    EXPECT_TRUE(opensAt({799, 379}));
    EXPECT_FALSE(opensAt({100, 150}));
    EXPECT_FALSE(opensAt({800, 150}));
    EXPECT_FALSE(opensAt({300, 0}));
    EXPECT_FALSE(opensAt({300, 380}));
    // The drag is over: the timer's last tick moves nothing.
    EXPECT_FALSE(MoveCommentLeader(state, {200, 200}));
}

TEST_F(CommentTest, BlankTextRemovesACommentAndCreatesNone) {
    EXPECT_FALSE(PinWithTool({300, 150}, {340, 110}, "   ").Changed);
    EXPECT_FALSE(state.Comments[0].InUse());

    PinWithTool({300, 150}, {340, 110}, "Brake");
    PinWithTool({400, 150}, {440, 110}, "Turn in");
    // The first text's box: columns 340 to 370, rows 110 to 122.
    EXPECT_FALSE(BeginCommentEdit(state, Picture, {339, 115}));
    std::optional<CommentEditBox> box = BeginCommentEdit(state, Picture, {370, 122});
    ASSERT_TRUE(box);
    EXPECT_EQ(state.EditComment, 0);
    EXPECT_EQ(box->Left, 340);
    EXPECT_EQ(box->CentreY, 116);
    EXPECT_EQ(box->Text, "Brake");

    // Escape and a lost focus keep the text.
    EXPECT_FALSE(EndCommentEdit(state, CommentEditKey::Escape, "Other").Changed);
    EXPECT_EQ(state.EditComment, -1);
    BeginCommentEdit(state, Picture, {350, 115});
    EXPECT_FALSE(EndCommentEdit(state, CommentEditKey::FocusLost, "").Changed);
    EXPECT_EQ(state.Comments[0].Text, "Brake");

    BeginCommentEdit(state, Picture, {350, 115});
    EXPECT_TRUE(EndCommentEdit(state, CommentEditKey::Enter, "  ").Changed);
    EXPECT_FALSE(state.Comments[0].InUse());
    EXPECT_EQ(Drawn(), std::vector<std::size_t>{1});
    EXPECT_FALSE(BeginCommentEdit(state, Picture, {350, 115}));

    // The freed slot is taken again; the array never shrinks.
    PinWithTool({300, 150}, {340, 110}, "Brake later");
    EXPECT_EQ(state.Comments.size(), 2U);
    EXPECT_EQ(state.Comments[0].Text, "Brake later");
}

TEST_F(CommentTest, DoubleClickLeftOfTheGraphOrBeforeTheLeftEdgeFindsNothing) {
    Pin(1000, 10000, -250, -40, "Brake zone"); // text from column 50 to 110
    EXPECT_FALSE(BeginCommentEdit(state, Picture, {60, 115}));
    EXPECT_TRUE(BeginCommentEdit(state, Picture, {100, 115}));

    state.Comments[0].OffsetX = 100;
    state.Layers.Layer[0].TimeOffset = 1000.0; // anchor on column 100, text from 200
    EXPECT_TRUE(BeginCommentEdit(state, Picture, {210, 115}));
    state.Layers.Layer[0].TimeOffset = 1005.0; // anchor on 99, text from 199
    EXPECT_FALSE(BeginCommentEdit(state, Picture, {210, 115}));
}

} // namespace
} // namespace torvane::graph
