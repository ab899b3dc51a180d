#include "graph/lap_bar.h"
#include "graph/picture_geometry.h"
#include "graph/scale_column.h"
#include "graph_window_fixture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace torvane::graph {
namespace {

using ::testing::ElementsAre;

TEST(TimeGrid, LinesEveryHundredColumnsFromTheFirstGridTime) {
    const TimeGrid grid = TimeGridOf(0.0, {1, 500, 5}, 420);
    EXPECT_THAT(grid.Lines, ElementsAre(200, 300, 400));
    EXPECT_THAT(grid.HalfLines, ElementsAre(150, 250, 350));
    ASSERT_EQ(grid.Labels.size(), 3U);
    EXPECT_EQ(grid.Labels[0].Text, "500");
    EXPECT_EQ(grid.Labels[1].Text, " 1s");
    EXPECT_EQ(grid.Labels[2].Text, " 1s500");

    // 1250 ms at the left edge: the grid time 1500 stands 50 columns in, and the half line
    // before it would fall on the axis.
    const TimeGrid shifted = TimeGridOf(1250.0, {1, 500, 5}, 420);
    EXPECT_THAT(shifted.Lines, ElementsAre(150, 250, 350));
    EXPECT_THAT(shifted.HalfLines, ElementsAre(200, 300));
    EXPECT_EQ(shifted.Labels[0].Text, " 1s500");
}

class PictureTest : public ::testing::Test, public testing::GraphWindowFixture {
protected:
    PictureTest() {
        Open(0, testing::RunHeader(10));
        state.Time = {1, 500, 5};
        state.LapBarHeight = 14;
        state.CursorX = 300;
    }
};

TEST_F(PictureTest, RangeBandFollowsTheMarkedRangeAndTheDeltaLineItsMode) {
    EXPECT_EQ(RangeBandOf(state, 600, 400), std::nullopt);
    state.RangeState = RangeState::StartMarked;
    state.RangeStart = 0.0; // at the left edge: from the axis to the cursor
    EXPECT_EQ(RangeBandOf(state, 600, 400), (PixelRect{100, 14, 200, 366}));
    state.RangeStart = 1000.0; // on the cursor: nothing to fill
    EXPECT_EQ(RangeBandOf(state, 600, 400), std::nullopt);
    state.RangeStart = 1500.0;
    EXPECT_EQ(RangeBandOf(state, 600, 400), (PixelRect{300, 14, 100, 366}));
    state.RangeStart = 99999.0; // past the right edge: from the cursor to the edge
    EXPECT_EQ(RangeBandOf(state, 600, 400), (PixelRect{300, 14, 300, 366}));

    state.RangeState = RangeState::Complete;
    state.RangeStart = 500.0;
    state.RangeEnd = 99999.0;
    EXPECT_EQ(RangeBandOf(state, 600, 400), (PixelRect{200, 14, 400, 366}));
    state.Layers.Layer[0].TimeOffset = 100000.0; // wholly before the window
    EXPECT_EQ(RangeBandOf(state, 600, 400), std::nullopt);
    state.RangeEnd = 200000.0; // covering it
    EXPECT_EQ(RangeBandOf(state, 600, 400), (PixelRect{100, 14, 500, 366}));

    // The Delta line stands only in Delta mode, inside the window.
    state.Layers.Layer[0].TimeOffset = 0.0;
    state.DeltaMark = 1000.0;
    EXPECT_EQ(DeltaMarkColumn(state, 600), std::nullopt);
    state.DeltaMode = true;
    EXPECT_EQ(DeltaMarkColumn(state, 600), 300);
    state.DeltaMark = 2500.0; // the right edge itself
    EXPECT_EQ(DeltaMarkColumn(state, 600), std::nullopt);
}

TEST_F(PictureTest, ScaleColumnDrawsTheBandOfEachItemWithItsGrid) {
    for (auto& item : state.Views[0].Display.Items) {
        item.Grid = 0;
    }
    ItemDisplay& th = state.Views[0].Display.Items[1];
    th.Grid = 1;
    th.Bottom = 186;                                          // row 200 with the lap bar
    ASSERT_TRUE(ScaleFor(1, 4, state.Views[0].ItemScale[1])); // 1000/500/100, pitch 10
    ScaleColumn column = ScaleColumnOf(state);
    ASSERT_EQ(column.Lines.size(), 11U);
    EXPECT_EQ(column.Lines.front(), (ScaleLine{200, true}));
    EXPECT_EQ(column.Lines[1], (ScaleLine{190, false}));
    EXPECT_EQ(column.Lines[5], (ScaleLine{150, true}));
    EXPECT_EQ(column.Lines.back(), (ScaleLine{100, true}));
    EXPECT_THAT(column.Labels, ElementsAre(TextAt{60, 192, "    0"}, TextAt{60, 142, "   50"},
                                           TextAt{60, 92, "  100"}, TextAt{5, 80, "TH[%]"}));

    // A Min on the grid starts the band there, labelled; a Max off the grid is ignored.
    th.Min = 300;
    th.Max = 950;
    column = ScaleColumnOf(state);
    EXPECT_EQ(column.Lines.front(), (ScaleLine{170, true}));
    EXPECT_EQ(column.Lines.size(), 8U);
}

TEST_F(PictureTest, LapBarCellsFillOddLapsAndNameThemByWidth) {
    state.Layers.Layer[0].FilePath = "/runs/A_VERY_LONG_RUN_NAME.rlg";
    state.Layers.Lap[0].LapTime = {0.0, 1000.0, 2000.0, 2250.0};
    // One column per 5 ms: marks at columns 300, 500 and 550.
    const LapBar bar = LapBarOf(state, 600);
    EXPECT_THAT(bar.Filled, ElementsAre(PixelRect{100, 0, 200, 13}, PixelRect{500, 0, 50, 13}));
    EXPECT_THAT(bar.Texts,
                ElementsAre(TextAt{4, 1, "A_VERY_LONG_RUN"}, TextAt{102, 1, "1L 00m01s000"},
                            TextAt{302, 1, "2L 00m01s000"}, TextAt{502, 1, "3L"}));
    EXPECT_THAT(bar.Closes, ElementsAre(13));

    // The last cell, cut by the edge, is named only below 20 columns or from 51 on.
    state.Layers.Lap[0].LapTime = {0.0, 1000.0, 2000.0};
    EXPECT_EQ(LapBarOf(state, 530).Texts.size(), 3U);
    EXPECT_EQ(LapBarOf(state, 515).Texts.back(), (TextAt{502, 1, "3L"}));
    EXPECT_EQ(LapBarOf(state, 560).Texts.back(), (TextAt{502, 1, "3L 00m01s000"}));
}

TEST_F(PictureTest, LapBarOfARunWithoutMarksIsEmptyAndALapOfHoursShowsThem) {
    state.Layers.Layer[0].FilePath = "/runs/NOMARKS.rlg";
    const LapBar empty = LapBarOf(state, 600);
    EXPECT_TRUE(empty.Filled.empty());
    EXPECT_THAT(empty.Texts, ElementsAre(TextAt{4, 1, "NOMARKS"}));
    EXPECT_THAT(empty.Closes, ElementsAre(13));

    // 20 s a column: the mark at 1 h 2 min 5.5 s stands on column 286.
    state.Time = {1, 500, 20000};
    state.Layers.Lap[0].LapTime = {0.0, 3725500.0};
    const LapBar bar = LapBarOf(state, 600);
    EXPECT_THAT(bar.Filled, ElementsAre(PixelRect{100, 0, 186, 13}));
    EXPECT_EQ(bar.Texts.at(1), (TextAt{102, 1, "1L 01h02m05s500"}));
}

} // namespace
} // namespace torvane::graph
