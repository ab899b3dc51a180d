#include "graph/lap_list.h"

#include <gtest/gtest.h>

namespace torvane::graph {
namespace {

logdata::LapInfo LapsOf(std::vector<double> marks, double best) {
    logdata::LapInfo lap;
    lap.LapTime = std::move(marks);
    lap.BestLap = best;
    return lap;
}

TEST(LapList, LapTextHasNoHourPartTheBestLapsAreRedAndTheListStopsAtLap254) {
    EXPECT_EQ(LapText(3725500.0), "62m05s500");
    EXPECT_EQ(LapText(59999.5), "01m00s000"); // half to even carries into the minutes
    EXPECT_EQ(LapText(1234.5), "00m01s234");

    // Laps 1 and 3 are 90 s exactly, lap 2 a millisecond longer.
    const LapList list = LapListOf(LapsOf({5000.0, 95000.0, 185001.0, 275001.0}, 90000.0), "RUN");
    EXPECT_EQ(list.BestText, "01m30s000");
    const std::vector<LapRow> expected = {{"0", "---------------", LapTextColor},
                                          {"1", "01m30s000", BestLapColor},
                                          {"2", "01m30s001", LapTextColor},
                                          {"3", "01m30s000", BestLapColor}};
    EXPECT_EQ(list.Rows, expected);

    std::vector<double> marks;
    for (int i = 0; i < 400; ++i) {
        marks.push_back(60000.0 * i);
    }
    const LapList longRun = LapListOf(LapsOf(marks, 60000.0), "LONG");
    ASSERT_EQ(longRun.Rows.size(), 255u);
    EXPECT_EQ(longRun.Rows.back().Number, "254");
}

TEST(LapList, TheGridGrowsSixteenPixelsARowUpTo325) {
    EXPECT_EQ(LapGridHeight(19), 309);
    EXPECT_EQ(LapGridHeight(20), 325);
    EXPECT_EQ(LapGridHeight(255), 325);
    // A run without marks: the start row alone, no best.
    const LapList empty = LapListOf(logdata::LapInfo{}, "EMPTY");
    EXPECT_EQ(empty.Rows.size(), 1u);
    EXPECT_EQ(empty.BestText, "00m00s000");
    EXPECT_EQ(empty.GridHeight, 21);
    EXPECT_EQ(empty.FormHeight, 21 + 56);
}

TEST(LapList, AJumpMovesOnlyTheActiveLayerToTheStartOfTheLap) {
    GraphWindowState state;
    state.LastLayer = 1;
    state.ActiveLayer = 1;
    state.Layers.Layer[0].TimeOffset = 700.0;
    state.Layers.Lap[1] = LapsOf({1000.0, 61000.0, 120500.0}, 59500.0);
    double& offset = state.Layers.Layer[1].TimeOffset;

    EXPECT_TRUE(MoveLapTime(state, 2));
    EXPECT_EQ(offset, 61000.0);
    EXPECT_EQ(state.Layers.Layer[0].TimeOffset, 700.0);
    EXPECT_TRUE(MoveLapTime(state, 0));
    EXPECT_EQ(offset, 0.0);
    // A lap past the layer's last mark (a list left from another layer) changes nothing.
    offset = 300.0;
    EXPECT_FALSE(MoveLapTime(state, 3));
    EXPECT_EQ(offset, 300.0);
}

} // namespace
} // namespace torvane::graph
