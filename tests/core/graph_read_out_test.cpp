#include "graph/read_out.h"
#include "graph_window_fixture.h"

#include <gtest/gtest.h>

namespace torvane::graph {
namespace {

using testing::GraphWindowFixture;
using testing::RunHeader;

class ReadOutTest : public ::testing::Test, public GraphWindowFixture {
protected:
    // A main file with SusMode 3 and LafMode 1: slots 7..10 hold FRSUS, RRSUS, LAF1 and VM4.
    void OpenMain() {
        Open(0, RunHeader(10, 3, 1));
        const std::vector<std::int16_t> flat(20, 0);
        Stream(0, "Ne", Words(600)); // 12000 r/min
        Stream(0, "TH", Words(125)); // (500 - 100) / 800 = 50 %
        Stream(0, "VFW", Words(123));
        Stream(0, "VRW", flat);
        Stream(0, "DETO1", Words(3));
        Stream(0, "DETO2", flat);
        Stream(0, "VB", Words(255));  // 25.28 V
        Stream(0, "VM1", Words(400)); // FRSUS (900 - 400) / 1023 x 187.5
        Stream(0, "VM2", Words(900)); // RRSUS above its zero: 0
        Stream(0, "VM3", Words(1023));
        Stream(0, "VM4", Words(1023));
        state.Layers.Lap[0].LapTime = {50.0, 1000.0};
    }

    static std::vector<std::int16_t> Words(std::int16_t value) {
        return std::vector<std::int16_t>(20, value);
    }

    std::string Text(int layer, int slot) {
        const ItemRow* row = state.Panel.FindRow(layer, slot);
        return row != nullptr ? row->ValueText : "<no row>";
    }

    // The cursor column of a time on the axis, at the window's time scale.
    void CursorAt(double ms) {
        state.CursorX =
            static_cast<std::int32_t>(ms) / state.Time.MsPerStep * state.Time.PixelsPerStep + 100;
    }

    logger::LafTable laf;
};

TEST_F(ReadOutTest, EachChannelInItsFormatAndUnit) {
    OpenMain();
    AddComputed(0, {2, 5, 50.0, "Slip", "%"});
    AddComputed(0, {0, 5, 50.0, "Gear", ""});
    state.Panel.RemoveLayerItems(0, state.Layers.Layer[0], state.Views[0]);
    torvane::testing::WriteWords32(state.Layers.StreamPath(0, "Slip"),
                                   std::vector<std::int32_t>(40, 1234));
    torvane::testing::WriteWords32(state.Layers.StreamPath(0, "Gear"),
                                   std::vector<std::int32_t>(40, 4));
    CursorAt(100);
    ASSERT_TRUE(DispValues(state, 1, laf));

    EXPECT_EQ(state.TitleText, " Time 00h00m00s100");
    EXPECT_EQ(Text(0, 0), "12000r/min");
    EXPECT_EQ(Text(0, 1), "50.0%");
    EXPECT_EQ(Text(0, 2), "123km/h");
    EXPECT_EQ(Text(0, 4), "3"); // detonation counts show bare
    EXPECT_EQ(Text(0, 6), "25.3V");
    EXPECT_EQ(Text(0, 7), "91.64mm");
    EXPECT_EQ(Text(0, 8), "0.00mm");
    EXPECT_EQ(Text(0, 9), "5.00A/F"); // no air/fuel table: the sensor's volts
    EXPECT_EQ(Text(0, 11), "1LAP");
    EXPECT_EQ(Text(0, 12), "12.34%");
    EXPECT_EQ(Text(0, 13), "4");
}

TEST_F(ReadOutTest, CursorBeforeTheFirstMoveReadsBeforeTheStart) {
    OpenMain();
    ASSERT_EQ(state.CursorX, 0);
    DispValues(state, 1, laf);
    // t = (-100 / 1) x 5: the ramp towards the first sample runs on below zero unconverted.
    EXPECT_EQ(state.Layers.Layer[0].CursorTime, -500.0);
    EXPECT_EQ(state.TitleText, " Time -00h00m00s500");
    EXPECT_EQ(Text(0, 2), "-6150km/h");
    EXPECT_EQ(Text(0, 11), "0LAP");

    // Zoomed in the truncating division leaves a shorter stretch: (-100 / 25) x 5.
    state.Time = {25, 20, 5};
    DispValues(state, 1, laf);
    EXPECT_EQ(state.Layers.Layer[0].CursorTime, -20.0);
}

TEST_F(ReadOutTest, LayersReadAtTheirOwnOffset) {
    OpenMain();
    Open(1, RunHeader(10));
    Stream(1, "Ne",
           {100, 200, 300, 400, 500, 600, 700, 800, 900, 1000, 1100, 1200, 1300, 1400, 1500, 1600,
            1700});
    state.Layers.Layer[1].TimeOffset = 50.5;
    SelectLayer(state, 1);
    CursorAt(100);
    DispValues(state, 1, laf);
    EXPECT_EQ(state.Layers.Layer[0].CursorTime, 100.0);
    EXPECT_EQ(state.Layers.Layer[1].CursorTime, 150.5);
    EXPECT_EQ(state.CursorAxisTime, 150); // half to even
    // 150.5 ms is read as 150 ms: sample 15 exactly.
    EXPECT_EQ(Text(1, 0), "30000r/min");
    EXPECT_EQ(state.TitleText, " Time 00h00m00s100"); // the title follows layer 0

    // Without a move the cursor times stand as they are.
    state.CursorX = 700;
    state.Layers.Layer[1].CursorTime = 20.0;
    DispValues(state, 0, laf);
    EXPECT_EQ(state.Layers.Layer[1].CursorTime, 20.0);
    EXPECT_EQ(Text(1, 0), "4000r/min");
}

TEST_F(ReadOutTest, DetonationToleranceFollowsTheScaleAndAThrottleWithoutSpanKeepsItsText) {
    OpenMain();
    state.Layers.Layer[0].CursorTime = 105.0; // 5 ms past sample 10
    DispValues(state, 0, laf);
    EXPECT_EQ(Text(0, logdata::DETO1), "3"); // P 1, S 5: within 3 steps
    state.Time = {5, 100, 5};
    DispValues(state, 0, laf);
    EXPECT_EQ(Text(0, logdata::DETO1), "0"); // zoomed in: exact hits only

    state.Panel.FindRow(0, logdata::TH)->ValueText = "before";
    state.Layers.Layer[0].Header.SetWord(logdata::SettingWord::ThOpen, 100);
    DispValues(state, 0, laf);
    EXPECT_EQ(Text(0, logdata::TH), "before");
}

TEST_F(ReadOutTest, TitleTimeAndDeltaMode) {
    // The time itself is FormatTime's; the sign stays when the mark is not before the cursor.
    EXPECT_EQ(TitleTimeText(true, 6500.0, 5000.0), "Delta -00h00m01s500");
    EXPECT_EQ(TitleTimeText(true, 5000.0, 5000.0), "Delta -00h00m00s000");

    OpenMain();
    state.Layers.Layer[0].CursorTime = 2000.0;
    state.DeltaMark = 1500.0;
    ToggleDeltaMode(state);
    EXPECT_EQ(state.DeltaMark, 0.0);
    EXPECT_EQ(state.TitleText, "Delta  00h00m00s000");
    state.DeltaMark = 500.0;
    DispTitleTime(state);
    EXPECT_EQ(state.TitleText, "Delta  00h00m01s500");
    ToggleDeltaMode(state);
    EXPECT_EQ(state.TitleText, " Time 00h00m02s000");
}

} // namespace
} // namespace torvane::graph
