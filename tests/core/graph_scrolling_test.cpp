// The scroll strip and the moves of the layers in time: the strip's samples, the box, the drags
// from press to release, the holds and one pass of each.

#include "graph/cursor.h"
#include "graph/lap_list.h"
#include "graph/scroll_strip.h"
#include "graph/scrolling.h"
#include "graph_window_fixture.h"
#include "logdata/channels.h"

#include <gtest/gtest.h>

namespace torvane::graph {
namespace {

using testing::GraphWindowFixture;
using testing::RunHeader;

std::vector<std::int32_t> ColumnsOf(const std::vector<StripSample>& samples) {
    std::vector<std::int32_t> columns;
    for (const StripSample& sample : samples) {
        columns.push_back(sample.X);
    }
    return columns;
}

TEST(ScrollStrip, SamplesStandThreeColumnsApartOrSpreadAndTheStreamGivesRowsAndSpan) {
    // 30 columns take 10 samples: of 25, every second one; of 10, each.
    const auto thinned = StripSamples(25, 30);
    ASSERT_EQ(thinned.size(), 10u);
    EXPECT_EQ(thinned[1].Sample, 3);
    EXPECT_EQ(thinned[9].Sample, 19);
    EXPECT_EQ(thinned[9].X, 27);
    EXPECT_EQ(StripSamples(10, 30).back().Sample, 10);
    // 4 samples: a gap of 7 and 2 columns over, given to the first gaps.
    const auto spread = StripSamples(4, 30);
    EXPECT_EQ(ColumnsOf(spread), (std::vector<std::int32_t>{0, 8, 16, 23}));
    EXPECT_EQ(spread[3].Sample, 4);
    EXPECT_TRUE(StripSamples(0, 30).empty());
    EXPECT_TRUE(StripSamples(5, 2).empty());

    // The followed stream gives the rows and the span.
    GraphWindowFixture window;
    window.Open(0, RunHeader(10));
    GraphWindowState& state = window.state;
    ASSERT_EQ(state.Layers.Layer[0].ScrollItem, 1); // TH
    window.Stream(0, logdata::StreamNames[std::size_t(logdata::ChannelStream(1))],
                  {0, 255, 128, 51});
    const ScrollStrip strip = BuildScrollStrip(state, {}, 30);
    EXPECT_EQ(state.ScrollSpan, 40);
    EXPECT_EQ(strip.Points, (std::vector<StripPoint>{{0, 24}, {8, 0}, {16, 12}, {23, 24 - 5}}));

    // A missing stream reads as an empty one: no trace and no span.
    state.Layers.Layer[0].ScrollItem = 0;
    EXPECT_TRUE(BuildScrollStrip(state, {}, 30).Points.empty());
    EXPECT_EQ(state.ScrollSpan, 0);
}

TEST(ScrollBox, ItStandsForTheVisibleTimeIsNeverNarrowerThanTenAndItsEdgesPull) {
    GraphWindowFixture window;
    window.Open(0, RunHeader());
    GraphWindowState& state = window.state;
    state.Time = {1, 500, 5};
    state.ScrollSpan = 40'000;
    state.Layers.Layer[0].TimeOffset = 10'000.0;
    // 901 steps of 5 ms of 40 s on 400 columns.
    EXPECT_EQ(DrawScrollBox(state, {}, 1000, 400), (ScrollBox{254, 45}));
    state.ScrollSpan = 4'000;
    EXPECT_EQ(DrawScrollBox(state, {}, 1000, 400).Width, 400);
    state.ScrollSpan = 4'000'000;
    EXPECT_EQ(DrawScrollBox(state, {}, 1000, 400).Width, 10);

    // Drawn again, the strip keeps a box pulled narrow by its edge; a new size places it.
    const ScrollBox pulled{300, 12};
    EXPECT_EQ(BuildScrollStrip(state, pulled, 400).Box, pulled);
    window.Stream(0, logdata::StreamNames[std::size_t(logdata::ChannelStream(1))],
                  std::vector<std::int16_t>(4000, 100));
    const ScrollStrip rebuilt = RebuildStripAndBox(state, pulled, 1000, 400);
    EXPECT_EQ(rebuilt.ScrollSpan, 40'000);
    EXPECT_EQ(rebuilt.Box, (ScrollBox{254, 45}));
    EXPECT_EQ(BuildScrollStrip(state, pulled, 400).Box, pulled);

    EXPECT_EQ(MoveScrollBox({200, 50}, 153, 0), (ScrollBox{200, 50}));
    EXPECT_EQ(MoveScrollBox({200, 50}, 154, 3), (ScrollBox{154, 10}));

    // A press near an edge pulls it. Width 9: edges of 3; width 30: a third would be 10, held
    // at 6.
    EXPECT_EQ(BoxPressState(9, 2), DragState::BoxLeftEdge);
    EXPECT_EQ(BoxPressState(9, 3), DragState::BoxMove);
    EXPECT_EQ(BoxPressState(9, 5), DragState::BoxMove);
    EXPECT_EQ(BoxPressState(9, 6), DragState::BoxRightEdge);
    EXPECT_EQ(BoxPressState(30, 5), DragState::BoxLeftEdge);
    EXPECT_EQ(BoxPressState(30, 6), DragState::BoxMove);
    EXPECT_EQ(BoxPressState(30, 23), DragState::BoxMove);
    EXPECT_EQ(BoxPressState(30, 24), DragState::BoxRightEdge);
}

class Layers : public ::testing::Test {
protected:
    explicit Layers(int count = 2) {
        for (int layer = 0; layer < count; ++layer) {
            window.Open(layer, RunHeader());
            Layer(layer).MeasureTime = 100'000.0;
        }
        state.Time = {1, 500, 5};
        state.GraphMidX = 550;
    }
    logdata::LayerRecord& Layer(int layer) { return state.Layers.Layer[std::size_t(layer)]; }

    GraphWindowFixture window;
    GraphWindowState& state = window.state;
};

TEST_F(Layers, ABoxMoveShiftsAllLayersOnTheStepGridAndKeepsTheirDistance) {
    state.Time = {1, 1500, 15};
    state.ScrollSpan = 40'000;
    Layer(0).TimeOffset = 1000.0;
    Layer(1).TimeOffset = 3000.0;
    EndBoxMove(state, 254, 400); // 10000 ms, 9990 on the grid of 15
    EXPECT_DOUBLE_EQ(Layer(0).TimeOffset, 9990.0);
    EXPECT_DOUBLE_EQ(Layer(1).TimeOffset, 11990.0);
    EndBoxMove(state, 154, 400);
    EXPECT_DOUBLE_EQ(Layer(0).TimeOffset, 0.0);
    EXPECT_DOUBLE_EQ(Layer(1).TimeOffset, 2000.0);
}

TEST_F(Layers, PullingAnEdgeSetsTheScaleThatShowsTheBoxAcrossTheGraph) {
    state.ScrollSpan = 36'000; // 90 ms a strip column
    // The right edge pulled to 5 columns: 10 wide, 1 ms a column.
    EXPECT_EQ(EndBoxZoom(state, DragState::BoxRightEdge, {254, 45}, 259, 400, 1000),
              (ScrollBox{254, 10}));
    EXPECT_EQ(state.Time, (TimeScale{5, 100, 5}));
    // The left edge pulled out to 100 wide: 10 ms a column.
    EXPECT_EQ(EndBoxZoom(state, DragState::BoxLeftEdge, {254, 45}, 199, 400, 1000),
              (ScrollBox{199, 100}));
    EXPECT_EQ(state.Time, (TimeScale{1, 1500, 15}));
    EXPECT_DOUBLE_EQ(Layer(0).TimeOffset, 4050.0);
    EXPECT_DOUBLE_EQ(Layer(1).TimeOffset, 4050.0);
    // 30 wide: 3 ms a column, one column per 5 ms.
    EndBoxZoom(state, DragState::BoxRightEdge, {254, 45}, 284, 400, 1000);
    EXPECT_EQ(state.Time, (TimeScale{1, 500, 5}));
}

TEST_F(Layers, ATraceDragMovesItsBandAndAllLayersByWholeSteps) {
    state.Time = {5, 100, 5};
    Layer(0).TimeOffset = 1000.0;
    Layer(1).TimeOffset = 5.0;
    ItemDisplay& ne = state.Views[0].Display.Items[0];
    ne.Top = 100;
    ne.Bottom = 300;
    EndTraceDrag(state, {0, 0}, 12, -7); // two whole steps to the right
    EXPECT_EQ(ne.Top, 93);
    EXPECT_EQ(ne.Bottom, 293);
    EXPECT_DOUBLE_EQ(Layer(0).TimeOffset, 990.0);
    EXPECT_DOUBLE_EQ(Layer(1).TimeOffset, 0.0);
    EndTraceDrag(state, {0, 0}, -12, 0);
    EXPECT_DOUBLE_EQ(Layer(0).TimeOffset, 1000.0);
    EXPECT_DOUBLE_EQ(Layer(1).TimeOffset, 10.0);
}

// While a drag or hold runs the graph takes no press; a move only records the cursor's column
// when a timer draws.
void ExpectBusy(GraphWindowState& state, bool timerDraws) {
    EXPECT_FALSE(GraphTakesPress(state, 300.0, 100.0));
    const std::int32_t x = state.CursorX == 300 ? 400 : 300;
    EXPECT_EQ(MoveCursor(state, x - CursorHotSpot, 100.0, 1000).Redraw, !timerDraws);
}

TEST_F(Layers, ABoxMoveEndsNoLongerAsLoadedAndAnEdgeZoomsKeepingIt) {
    state.ScrollSpan = 36'000;
    BeginBoxDrag(state, DragState::BoxRightEdge);
    ExpectBusy(state, false);
    EXPECT_EQ(EndBoxDrag(state, DragState::BoxRightEdge, {254, 45}, 259, 400, 1000),
              (ScrollBox{254, 10}));
    EXPECT_EQ(state.DragState, DragState::None);
    EXPECT_EQ(state.SingleFileState, SingleFileState::Loaded);

    BeginBoxDrag(state, DragState::BoxMove);
    EXPECT_EQ(EndBoxDrag(state, DragState::BoxMove, {194, 45}, 0, 400, 1000), (ScrollBox{194, 45}));
    EXPECT_EQ(state.DragState, DragState::None);
    EXPECT_DOUBLE_EQ(Layer(1).TimeOffset, 3600.0); // 40 of 400 strip columns of 36 s
    EXPECT_EQ(state.SingleFileState, SingleFileState::Cleared);
}

TEST_F(Layers, ATraceDragMovesTheMarkedRowOnReleaseAndNothingOnEscape) {
    state.Time = {5, 100, 5};
    Layer(0).TimeOffset = 1000.0;
    const ItemDisplay& ne = state.Views[0].Display.Items[0];
    state.Panel.SelectItem(0, 0);
    BeginTraceDrag(state);
    ExpectBusy(state, true);
    DropTraceDrag(state);
    EXPECT_EQ(state.DragState, DragState::None);
    EXPECT_DOUBLE_EQ(Layer(0).TimeOffset, 1000.0);
    EXPECT_EQ(state.SingleFileState, SingleFileState::Loaded);

    const std::int16_t top = ne.Top;
    BeginTraceDrag(state);
    ReleaseTraceDrag(state, 12, -7);
    EXPECT_EQ(state.DragState, DragState::None);
    EXPECT_EQ(ne.Top, top - 7);
    EXPECT_DOUBLE_EQ(Layer(0).TimeOffset, 990.0);
    EXPECT_EQ(state.SingleFileState, SingleFileState::Cleared);
}

// Linked layers, one at its end: a no ends the hold and asks again next time, a yes lets them
// drift apart from then on.
TEST_F(Layers, AHoldLastsUntilItEndsAndTheShiftAnswerEndsItToo) {
    state.MouseX = 650;
    state.MouseY = 200;
    Layer(1).TimeOffset = 100'000.0 - 900 * 5;
    for (const bool shift : {false, true}) {
        BeginHold(state);
        EXPECT_TRUE(Holding(state));
        ExpectBusy(state, true);
        ASSERT_EQ(AutoScrollStep(state, true, 1000, 400), AutoScrollResult::AskShift);
        AnswerLayerShift(state, shift);
        EXPECT_FALSE(Holding(state));
        EXPECT_TRUE(GraphTakesPress(state, 300.0, 100.0));
        EXPECT_EQ(state.ShiftAccepted, shift);
    }
    EXPECT_EQ(AutoScrollStep(state, true, 1000, 400), AutoScrollResult::Scrolled);
}

TEST_F(Layers, AFailedRedrawAndAJumpToALapLeaveTheWindowNoLongerAsLoaded) {
    EXPECT_TRUE(RecordRedraw(state, true));
    EXPECT_EQ(state.SingleFileState, SingleFileState::Loaded);
    EXPECT_FALSE(RecordRedraw(state, false));
    EXPECT_EQ(state.SingleFileState, SingleFileState::Cleared);

    state.SingleFileState = SingleFileState::Loaded;
    state.Layers.Lap[0].LapTime = {30'000.0, 60'000.0};
    EXPECT_FALSE(MoveLapTime(state, 2));
    EXPECT_EQ(state.SingleFileState, SingleFileState::Loaded);
    EXPECT_TRUE(MoveLapTime(state, 1));
    EXPECT_EQ(state.SingleFileState, SingleFileState::Cleared);
}

TEST_F(Layers, AutoScrollGoesFasterAwayFromTheMiddleAndWaitsOutside) {
    Layer(0).TimeOffset = 1000.0;
    state.MouseY = 200;
    state.MouseX = 550; // on the middle: a step of 0, still a pass that redraws
    EXPECT_EQ(AutoScrollStep(state, false, 1000, 400), AutoScrollResult::Scrolled);
    EXPECT_DOUBLE_EQ(Layer(0).TimeOffset, 1000.0);
    state.MouseX = 649; // 9 steps forward
    EXPECT_EQ(AutoScrollStep(state, false, 1000, 400), AutoScrollResult::Scrolled);
    EXPECT_DOUBLE_EQ(Layer(0).TimeOffset, 1045.0);
    EXPECT_DOUBLE_EQ(Layer(1).TimeOffset, 0.0);
    state.MouseX = 101; // 44 steps back
    EXPECT_EQ(AutoScrollStep(state, true, 1000, 400), AutoScrollResult::AskShift);
    EXPECT_EQ(AutoScrollStep(state, false, 1000, 400), AutoScrollResult::Scrolled);
    EXPECT_DOUBLE_EQ(Layer(0).TimeOffset, 1045.0 - 220.0);
    for (const auto& [x, y] : {std::pair{99, 200}, {1001, 200}, {500, -1}, {500, 381}}) {
        state.MouseX = x;
        state.MouseY = y;
        EXPECT_EQ(AutoScrollStep(state, true, 1000, 400), AutoScrollResult::Waited);
    }
}

TEST_F(Layers, LinkedLayersAskBeforeOneRunsIntoItsEnd) {
    state.MouseX = 650;
    state.MouseY = 200;
    const double end = 100'000.0 - 900 * 5;
    Layer(0).TimeOffset = 1000.0;
    Layer(1).TimeOffset = end - 10.0;
    EXPECT_EQ(AutoScrollStep(state, true, 1000, 400), AutoScrollResult::AskShift);
    EXPECT_DOUBLE_EQ(Layer(0).TimeOffset, 1000.0);
    state.ShiftAccepted = true;
    EXPECT_EQ(AutoScrollStep(state, true, 1000, 400), AutoScrollResult::Scrolled);
    EXPECT_DOUBLE_EQ(Layer(0).TimeOffset, 1050.0);
    EXPECT_DOUBLE_EQ(Layer(1).TimeOffset, end - 10.0);
    // When all of them are at their ends nobody is asked and nothing moves.
    state.ShiftAccepted = false;
    Layer(0).TimeOffset = end;
    EXPECT_EQ(AutoScrollStep(state, true, 1000, 400), AutoScrollResult::Scrolled);
    EXPECT_DOUBLE_EQ(Layer(0).TimeOffset, end);
}

class ThreeLayers : public Layers {
protected:
    ThreeLayers()
        : Layers(3) {}
};

TEST_F(ThreeLayers, TheMoveButtonsStopAtTheFirstLayerAtItsEnd) {
    const double end = 100'000.0 - 900 * 5;
    Layer(1).TimeOffset = end - 20.0; // a step of 25 reaches the end
    EXPECT_TRUE(ScrollButtonStep(state, 1, 1000));
    EXPECT_DOUBLE_EQ(Layer(0).TimeOffset, 25.0);
    EXPECT_DOUBLE_EQ(Layer(1).TimeOffset, end - 20.0);
    EXPECT_DOUBLE_EQ(Layer(2).TimeOffset, 0.0);

    state.Time = {5, 100, 5}; // a step of one step of 5 ms
    EXPECT_TRUE(ScrollButtonStep(state, 0, 1000));
    EXPECT_DOUBLE_EQ(Layer(0).TimeOffset, 20.0);
    EXPECT_DOUBLE_EQ(Layer(1).TimeOffset, end - 25.0);
    EXPECT_DOUBLE_EQ(Layer(2).TimeOffset, 0.0);
    Layer(0).TimeOffset = 0.0;
    EXPECT_FALSE(ScrollButtonStep(state, 0, 1000));
    EXPECT_DOUBLE_EQ(Layer(1).TimeOffset, end - 25.0);
}

} // namespace
} // namespace torvane::graph
