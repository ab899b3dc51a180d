// The cursor and the mouse tools of a graph window on its model: the cursor column, both time
// zoom ladders and the offset that keeps the cursor's time under the mouse, value zoom, range
// marking, the arrow keys and the hit test.

#include "graph/arrow_keys.h"
#include "graph/cursor.h"
#include "graph/hit_test.h"
#include "graph/range_tool.h"
#include "graph/time_zoom.h"
#include "graph/value_zoom.h"
#include "graph_window_fixture.h"
#include "shell/common.h"

#include <gtest/gtest.h>

#include <map>

namespace torvane::graph {
namespace {

using testing::GraphWindowFixture;
using testing::RunHeader;

TEST(Cursor, TheHotSpotAndTheRightEdgeDecideTheColumnAndAMoveRedrawsOnANewOne) {
    const TimeScale fine{25, 20, 5};
    // X 89 reads as 100: the press is accepted and the cursor stands on the axis line.
    EXPECT_EQ(CursorColumn(89.0, 1000, fine), 100);
    EXPECT_EQ(CursorColumn(-40.0, 1000, fine), 100);
    EXPECT_EQ(CursorColumn(89.0 + 24, 1000, fine), 100);
    EXPECT_EQ(CursorColumn(89.0 + 25, 1000, fine), 125);
    // 1000 / 25 * 25 = 1000 is the end: from there the cursor stays one step short of it.
    EXPECT_EQ(CursorColumn(1000.0 - 11 - 1, 1000, fine), 975);
    EXPECT_EQ(CursorColumn(1000.0 - 11, 1000, fine), 975);
    EXPECT_EQ(CursorColumn(1010.0 - 11, 1010, fine), 1000 - 25);

    GraphWindowFixture window;
    window.Open(0, RunHeader());
    GraphWindowState& state = window.state;
    EXPECT_TRUE(GraphTakesPress(state, 89.0, 0.0));
    EXPECT_FALSE(GraphTakesPress(state, 88.9, 0.0));
    state.LapBarHeight = 14;
    EXPECT_FALSE(GraphTakesPress(state, 200.0, 13.0));
    state.DragState = DragState::BoxMove;
    EXPECT_FALSE(GraphTakesPress(state, 200.0, 20.0));

    // A move redraws only when the column changes, and never while a loop draws.
    state.DragState = DragState::None;
    state.LapBarHeight = 0;
    const CursorMove first = MoveCursor(state, 289.0, 40.0, 800);
    EXPECT_TRUE(first.Moved && first.Redraw);
    EXPECT_EQ(state.CursorX, 300);
    EXPECT_EQ(state.MouseX, 289);
    EXPECT_EQ(state.MouseY, 40);
    EXPECT_FALSE(MoveCursor(state, 289.4, 50.0, 800).Moved);
    EXPECT_EQ(state.MouseY, 50);
    int x = 300;
    for (const DragState drag :
         {DragState::TraceDrag, DragState::CommentLeader, DragState::HeldScroll}) {
        state.DragState = drag;
        x += 25;
        const CursorMove move = MoveCursor(state, x, 40.0, 800);
        EXPECT_TRUE(move.Moved);
        EXPECT_FALSE(move.Redraw) << static_cast<int>(drag);
    }
    state.DragState = DragState::BoxMove;
    EXPECT_TRUE(MoveCursor(state, 500.0, 40.0, 800).Redraw);
}

TEST(TimeZoom, ExpansionStopsAtFiftyColumnsPerStepAndReductionPastAMillionMs) {
    const std::map<std::int32_t, TimeScale> expanded{
        {5, {5, 100, 5}},       {10, {1, 500, 5}},      {11, {1, 1000, 10}},
        {25, {1, 1000, 10}},    {26, {1, 2500, 25}},    {100, {1, 5000, 50}},
        {101, {1, 10000, 100}}, {300, {1, 10000, 100}}, {600, {1, 30000, 300}},
        {601, {1, 30000, 300}}, {700, {1, 35000, 350}}, {1'000'005, {1, 50'000'000, 500'000}}};
    for (const auto& [step, expected] : expanded) {
        TimeScale scale{1, 100 * step, step};
        ExpandTimeScale(scale);
        EXPECT_EQ(scale, expected) << "S " << step;
    }
    TimeScale finest{1, 500, 5};
    for (const int pixels : {5, 10, 25, 50, 50}) {
        ExpandTimeScale(finest);
        EXPECT_EQ(finest.PixelsPerStep, pixels);
    }
    EXPECT_EQ(finest, (TimeScale{50, 10, 5}));

    const std::map<std::int32_t, TimeScale> reduced{
        {5, {1, 1000, 10}},     {10, {1, 2500, 25}},
        {24, {1, 2500, 25}},    {25, {1, 5000, 50}},
        {99, {1, 10000, 100}},  {100, {1, 30000, 300}},
        {299, {1, 30000, 300}}, {300, {1, 60000, 600}},
        {305, {1, 61000, 610}}, {1'000'000, {1, 200'000'000, 2'000'000}}};
    for (const auto& [step, expected] : reduced) {
        TimeScale scale{1, 100 * step, step};
        ReduceTimeScale(scale);
        EXPECT_EQ(scale, expected) << "S " << step;
    }
    TimeScale coarsest{1, 200'000'000, 2'000'000};
    ReduceTimeScale(coarsest);
    EXPECT_EQ(coarsest.MsPerStep, 2'000'000);
    const std::map<std::int16_t, std::int16_t> fine{{50, 25}, {25, 10}, {10, 5}, {5, 1}};
    for (const auto& [pixels, next] : fine) {
        TimeScale scale{pixels, 100 / pixels * 5, 5};
        ReduceTimeScale(scale);
        EXPECT_EQ(scale.PixelsPerStep, next);
        EXPECT_EQ(scale.MsPerStep, 5);
    }
}

TEST(TimeZoom, TheCursorTimeStaysUnderTheMouseAndShortRunsStartAtZero) {
    GraphWindowFixture window;
    window.Open(0, RunHeader());
    window.Open(1, RunHeader());
    GraphWindowState& state = window.state;
    state.Time = {1, 5000, 50};
    state.Layers.Layer[0].MeasureTime = 600'000.0;
    state.Layers.Layer[0].CursorTime = 100'000.0;
    // Layer 1 fits into the 900 columns once they show 10 ms each.
    state.Layers.Layer[1].MeasureTime = 8'000.0;
    state.Layers.Layer[1].TimeOffset = 4'000.0;
    ZoomTime(state, true, 400.0, 1000);
    EXPECT_EQ(state.Time, (TimeScale{1, 2500, 25}));
    // 300 columns of 25 ms left of the mouse: 7500 ms.
    EXPECT_DOUBLE_EQ(state.Layers.Layer[0].TimeOffset, 100'000.0 - 7'500.0);
    EXPECT_DOUBLE_EQ(state.Layers.Layer[1].TimeOffset, 0.0);

    // Near the end of the run the view jumps back to its start.
    state.Layers.Layer[0].CursorTime = 599'000.0;
    ZoomTime(state, false, 900.0, 1000);
    EXPECT_EQ(state.Time.MsPerStep, 50);
    EXPECT_DOUBLE_EQ(state.Layers.Layer[0].TimeOffset, 0.0);
    // An offset off the step grid lands on it.
    state.Layers.Layer[0].CursorTime = 200'033.0;
    ZoomTime(state, false, 100.0, 1000);
    EXPECT_EQ(state.Time.MsPerStep, 100);
    EXPECT_DOUBLE_EQ(state.Layers.Layer[0].TimeOffset, 200'000.0);
}

TEST(ValueZoom, TheValueUnderTheMouseKeepsItsRowAndTheEndsChangeNothing) {
    GraphWindowFixture window;
    window.Open(0, RunHeader());
    GraphWindowState& state = window.state;
    ItemDisplay& ne = state.Views[0].Display.Items[0];
    ne.Zoom = 6; // 20000 / 2000 / 500 / 10
    ne.Bottom = 300;
    ScaleFor(0, 6, state.Views[0].ItemScale[0]);
    // 10 rows above Bottom stand 500 rpm; the mouse 4 rows higher still reads one grid step.
    ASSERT_TRUE(ZoomItemValue(state, {0, 0}, true, 286.0));
    EXPECT_EQ(ne.Zoom, 7); // 20000 / 1000 / 500 / 15
    EXPECT_EQ(state.Views[0].ItemScale[0].Pitch, 15);
    EXPECT_EQ(ne.Bottom, 286 + 15);
    EXPECT_EQ(ne.Top, ne.Bottom - 20000 / 500 * 15);

    ne.Zoom = 9;
    const ItemDisplay before = ne;
    EXPECT_FALSE(ZoomItemValue(state, {0, 0}, true, 200.0));
    EXPECT_EQ(ne, before);
    ne.Zoom = 0;
    EXPECT_FALSE(ZoomItemValue(state, {0, 0}, false, 200.0));
    EXPECT_EQ(ne.Zoom, 0);

    // A computed item zooms its own record by its own scale.
    window.AddComputed(0, {0, 5, 101.0, "P", "kW"});
    ComputedItemView& computed = state.Views[0].Computed[0];
    computed.Display.Zoom = 3;
    computed.Display.Bottom = 200;
    ASSERT_TRUE(ZoomItemValue(state, {0, logdata::SlotCount}, false, 200.0));
    EXPECT_EQ(computed.Display.Zoom, 2);
    EXPECT_EQ(computed.Scale.AxisMax, 101);
    EXPECT_FALSE(ZoomItemValue(state, {0, logdata::SlotCount + 1}, false, 200.0));
}

TEST(RangeTool, PressAndReleaseMarkARangeInOrderOrClearItAndTheEdgesScrollMeanwhile) {
    GraphWindowFixture window;
    window.Open(0, RunHeader());
    GraphWindowState& state = window.state;
    double& cursor = state.Layers.Layer[0].CursorTime;

    cursor = 5000.0;
    PressRangeTool(state);
    EXPECT_EQ(state.RangeState, RangeState::StartMarked);
    cursor = 3000.0;
    PressRangeTool(state); // a second press while marking changes nothing
    EXPECT_DOUBLE_EQ(state.RangeStart, 5000.0);
    EXPECT_TRUE(ReleaseRangeTool(state));
    EXPECT_EQ(state.RangeState, RangeState::Complete);
    EXPECT_DOUBLE_EQ(state.RangeStart, 3000.0);
    EXPECT_DOUBLE_EQ(state.RangeEnd, 5000.0);
    EXPECT_FALSE(ReleaseRangeTool(state));

    PressRangeTool(state);
    EXPECT_DOUBLE_EQ(state.RangeEnd, 0.0);
    EXPECT_TRUE(ReleaseRangeTool(state));
    EXPECT_EQ(state.RangeState, RangeState::None);

    state.DeltaMode = true;
    cursor = 7000.0;
    PressRangeTool(state);
    EXPECT_DOUBLE_EQ(state.DeltaMark, 7000.0);
    EXPECT_EQ(state.RangeState, RangeState::None);
    EXPECT_FALSE(ReleaseRangeTool(state));

    // The edges scroll only while a range is marked.
    state.DeltaMode = false;
    state.Time = {25, 20, 5};
    state.CursorX = 119;
    EXPECT_FALSE(RangeEdgeScrolls(state, 1010));
    state.RangeState = RangeState::StartMarked;
    EXPECT_TRUE(RangeEdgeScrolls(state, 1010));
    state.CursorX = 120;
    EXPECT_FALSE(RangeEdgeScrolls(state, 1010));
    state.CursorX = 1000 - 25 - 20;
    EXPECT_FALSE(RangeEdgeScrolls(state, 1010));
    state.CursorX += 1;
    EXPECT_TRUE(RangeEdgeScrolls(state, 1010));
    state.DeltaMode = true;
    EXPECT_FALSE(RangeEdgeScrolls(state, 1010));
}

class ArrowKeys : public ::testing::Test {
protected:
    ArrowKeys() {
        window.Open(0, RunHeader(10));
        window.Open(1, RunHeader(10));
        state.Layers.MinSampleTime = 10;
        state.Time = {1, 1500, 15}; // L = lcm(15, 10) = 30
        for (logdata::LayerRecord& record : state.Layers.Layer) {
            record.MeasureTime = 100'000.0;
            record.TimeOffset = 1000.0;
            record.CursorTime = 1500.0;
        }
        state.CursorAxisTime = 1500;
    }
    logdata::LayerRecord& Layer(int layer) { return state.Layers.Layer[std::size_t(layer)]; }

    GraphWindowFixture window;
    GraphWindowState& state = window.state;
};

TEST_F(ArrowKeys, TheReadOutWalksByTheFinestTimeThePictureJumpsByLAndTheEndsHold) {
    EXPECT_EQ(PressArrowRight(state, false, 1000), ArrowResult::ReadOut);
    EXPECT_DOUBLE_EQ(Layer(0).CursorTime, 1510.0);
    EXPECT_EQ(PressArrowRight(state, false, 1000), ArrowResult::ReadOut);
    EXPECT_EQ(PressArrowRight(state, false, 1000), ArrowResult::Shifted);
    EXPECT_DOUBLE_EQ(Layer(0).TimeOffset, 1030.0);
    EXPECT_DOUBLE_EQ(Layer(1).TimeOffset, 1000.0); // not linked: only the active layer

    state.CursorAxisTime = 1530;
    Layer(0).CursorTime = Layer(1).CursorTime = 1530.0;
    for (int press = 0; press < 2; ++press) {
        EXPECT_EQ(PressArrowLeft(state, true), ArrowResult::ReadOut);
    }
    EXPECT_EQ(PressArrowLeft(state, true), ArrowResult::Shifted);
    EXPECT_DOUBLE_EQ(Layer(0).TimeOffset, 1000.0);
    EXPECT_DOUBLE_EQ(Layer(1).TimeOffset, 970.0);

    // At the ends nothing moves at all: 900 columns of 15 ms outlast a 10000 ms file.
    Layer(0).TimeOffset = Layer(1).TimeOffset = 1000.0;
    Layer(0).CursorTime = Layer(1).CursorTime = 1500.0;
    state.CursorAxisTime = 1500;
    Layer(1).MeasureTime = 10'000.0;
    EXPECT_EQ(PressArrowRight(state, true, 1000), ArrowResult::Nothing);
    EXPECT_DOUBLE_EQ(Layer(0).CursorTime, 1500.0);

    Layer(1).MeasureTime = 100'000.0;
    Layer(1).TimeOffset = 0.0;
    EXPECT_EQ(PressArrowLeft(state, true), ArrowResult::Nothing);
    EXPECT_DOUBLE_EQ(Layer(0).CursorTime, 1500.0);
    EXPECT_DOUBLE_EQ(Layer(0).TimeOffset, 1000.0);
}

class HitTest : public ::testing::Test {
protected:
    HitTest() {
        window.Open(0, RunHeader());
        // Ne and TH drawn in the same colour, both bands reaching row 200.
        state.Views[0].Display.Items[1].Color = state.Views[0].Display.Items[0].Color;
        for (ItemRow& row : state.Panel.Rows()) {
            row.LineColor = shell::ColorValue(row.Kinds == 1 ? 1 : row.Kinds + 1);
        }
        for (const int channel : {0, 1}) {
            state.Views[0].Display.Items[std::size_t(channel)].Bottom = 300;
        }
    }

    // A picture that is white except for a pixel of colour index 1 at (250, 205).
    PixelReader Picture() const {
        return [](int x, int y) {
            return x == 250 && y == 205 ? shell::ColorValue(1) : 0xFFFFFFu;
        };
    }

    GraphWindowFixture window;
    GraphWindowState& state = window.state;
};

TEST_F(HitTest, TheColourNearTheMouseNamesItsRowAndTracesTellRowsOfOneColourApart) {
    const auto none = [](int, int, std::int32_t, std::int32_t, double) {
        return std::optional<TraceRows>();
    };
    EXPECT_EQ(ColorAtPoint(240, 215, Picture(), DisplayedColors()), shell::ColorValue(1));
    EXPECT_EQ(ColorAtPoint(239, 215, Picture(), DisplayedColors()), 0u);
    EXPECT_EQ(ColorAtPoint(250, 216, Picture(), DisplayedColors()), 0u);
    // Colour index 3 belongs to VFW alone.
    const PixelReader vfw = [](int, int) {
        return shell::ColorValue(3);
    };
    const auto vfwHit = HitTestItem(state, 250, 250, vfw, DisplayedColors(), none);
    ASSERT_TRUE(vfwHit);
    EXPECT_EQ(vfwHit->Position, 2);
    EXPECT_FALSE(HitTestItem(state, 250, 250, Picture(), DisplayedColors(), none));

    // Several rows of one colour are told apart by their traces.
    state.Time = {1, 1000, 10};
    state.Layers.Layer[0].TimeOffset = 5000.0;
    std::vector<std::tuple<int, std::int32_t, std::int32_t, double>> asked;
    const TraceExtent extent = [&](int, int position, std::int32_t left, std::int32_t width,
                                   double start) {
        asked.emplace_back(position, left, width, start);
        // Ne runs between rows 150 and 180, TH between 200 and 210.
        return std::optional<TraceRows>(position == 0 ? TraceRows{150, 180} : TraceRows{200, 210});
    };
    const auto hit = HitTestItem(state, 250, 205, Picture(), DisplayedColors(), extent);
    ASSERT_TRUE(hit);
    EXPECT_EQ(hit->Position, 1);
    ASSERT_EQ(asked.size(), 2u);
    EXPECT_EQ(asked[0], std::make_tuple(0, 240, 20, 140 * 10.0 + 5000.0));

    // Near the scale column the window starts at column 100 and time 0.
    const PixelReader near = [](int, int) {
        return shell::ColorValue(1);
    };
    asked.clear();
    EXPECT_TRUE(HitTestItem(state, 105, 170, near, DisplayedColors(), extent));
    EXPECT_EQ(asked.at(0), std::make_tuple(0, 100, 20, 5000.0));
}

// The scan stops at the first pixel of any shown colour, the greys of the grid and the cursor's
// colour included. No colour index names those, so they give red and the press goes to the red
// rows (Ne and TH here), even with another trace within reach.
TEST_F(HitTest, AGridOrCursorPixelMetBeforeATraceCountsAsRed) {
    // VFW's colour at (250, 205), and a column of `other` such as a half grid line.
    const auto picture = [](std::uint32_t other, int column) -> PixelReader {
        return [=](int x, int y) {
            if (x == 250 && y == 205) {
                return shell::ColorValue(3);
            }
            return x == column ? other : 0xFFFFFFu;
        };
    };
    // TH's trace comes near the mouse, Ne's does not.
    const TraceExtent extent = [](int, int position, std::int32_t, std::int32_t, double) {
        return std::optional<TraceRows>(position == 0 ? TraceRows{100, 120} : TraceRows{200, 210});
    };
    for (const std::uint32_t other : {0xC0C0C0u, 0x808080u, 0xFF8000u}) {
        SCOPED_TRACE(other);
        // Columns are scanned from the left: column 245 is met before the trace's 250.
        EXPECT_EQ(ColorAtPoint(250, 205, picture(other, 245), DisplayedColors()),
                  shell::ColorValue(1));
        const auto hit =
            HitTestItem(state, 250, 205, picture(other, 245), DisplayedColors(), extent);
        ASSERT_TRUE(hit);
        EXPECT_EQ(hit->Position, 1);
        const auto behind =
            HitTestItem(state, 250, 205, picture(other, 255), DisplayedColors(), extent);
        ASSERT_TRUE(behind);
        EXPECT_EQ(behind->Position, 2);
    }
    // The range band's colour is in no entry, so the scan passes over it.
    EXPECT_EQ(ColorAtPoint(250, 205, picture(0xFFFFBF, 245), DisplayedColors()),
              shell::ColorValue(3));

    // Without a red row, a press that meets the grid first hits nothing.
    for (ItemRow& row : state.Panel.Rows()) {
        if (row.LineColor == shell::ColorValue(1)) {
            row.LineColor = shell::ColorValue(5);
        }
    }
    EXPECT_FALSE(HitTestItem(state, 250, 205, picture(0xC0C0C0, 245), DisplayedColors(), extent));
}

} // namespace
} // namespace torvane::graph
