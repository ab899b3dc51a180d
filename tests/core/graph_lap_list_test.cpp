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

TEST(LapList, LapTextHasNoHourPartAndRoundsTheWholeValue) {
    EXPECT_EQ(LapText(3725500.0), "62m05s500");
    EXPECT_EQ(LapText(0.0), "00m00s000");
    EXPECT_EQ(LapText(110040.0), "01m50s040");
    // Rounded before the division, half to even: the carry reaches the minutes.
    EXPECT_EQ(LapText(59999.5), "01m00s000");
    EXPECT_EQ(LapText(1234.5), "00m01s234");
    EXPECT_EQ(LapText(100.0 * 60000.0), "100m00s000");
}

TEST(LapList, RowsNameEachLapAndTheLapsAsShortAsTheBestAreRed) {
    // Laps 1 and 3 are 90 s exactly, lap 2 a millisecond longer.
    const LapList list = LapListOf(LapsOf({5000.0, 95000.0, 185001.0, 275001.0}, 90000.0), "RUN");
    EXPECT_EQ(list.Caption, "RUN");
    EXPECT_EQ(list.BestText, "01m30s000");
    const std::vector<LapRow> expected = {{"0", "---------------", LapTextColor},
                                          {"1", "01m30s000", BestLapColor},
                                          {"2", "01m30s001", LapTextColor},
                                          {"3", "01m30s000", BestLapColor}};
    EXPECT_EQ(list.Rows, expected);

    // A run without marks shows the start row only, and no best.
    const LapList empty = LapListOf(logdata::LapInfo{}, "EMPTY");
    ASSERT_EQ(empty.Rows.size(), 1u);
    EXPECT_EQ(empty.Rows[0].Time, "---------------");
    EXPECT_EQ(empty.BestText, "00m00s000");
    EXPECT_EQ(empty.GridHeight, 21);
}

TEST(LapList, TheListStopsAtLap254) {
    for (const std::size_t marks : {std::size_t{255}, std::size_t{400}}) {
        std::vector<double> times;
        for (std::size_t i = 0; i < marks; ++i) {
            times.push_back(60000.0 * static_cast<double>(i + 1));
        }
        const LapList list = LapListOf(LapsOf(times, 60000.0), "LONG");
        ASSERT_EQ(list.Rows.size(), 255u) << marks << " marks";
        EXPECT_EQ(list.Rows.back().Number, "254");
        EXPECT_EQ(list.GridHeight, 325);
    }
}

TEST(LapList, TheGridGrowsSixteenPixelsARowUpTo325) {
    EXPECT_EQ(LapGridHeight(1), 21);
    EXPECT_EQ(LapGridHeight(19), 309);
    EXPECT_EQ(LapGridHeight(20), 325);
    EXPECT_EQ(LapGridHeight(21), 325);

    std::vector<double> nineteenRows(19);
    for (std::size_t i = 0; i < nineteenRows.size(); ++i) {
        nineteenRows[i] = 1000.0 * static_cast<double>(i);
    }
    const LapList list = LapListOf(LapsOf(nineteenRows, 1000.0), "RUN");
    EXPECT_EQ(list.GridHeight, 309);
    EXPECT_EQ(list.FormHeight, 309 + 56);
}

TEST(LapList, AJumpMovesOnlyTheActiveLayerToTheStartOfTheLap) {
    GraphWindowState state;
    state.LastLayer = 1;
    state.ActiveLayer = 1;
    state.Layers.Layer[0].TimeOffset = 700.0;
    state.Layers.Lap[1] = LapsOf({1000.0, 61000.0, 120500.0}, 59500.0);

    ASSERT_TRUE(MoveLapTime(state, 2));
    EXPECT_EQ(state.Layers.Layer[1].TimeOffset, 61000.0);
    EXPECT_EQ(state.Layers.Layer[0].TimeOffset, 700.0);
    ASSERT_TRUE(MoveLapTime(state, 1));
    EXPECT_EQ(state.Layers.Layer[1].TimeOffset, 1000.0);
    ASSERT_TRUE(MoveLapTime(state, 0));
    EXPECT_EQ(state.Layers.Layer[1].TimeOffset, 0.0);

    // A lap past the layer's last mark (a list left from another layer) changes nothing.
    state.Layers.Layer[1].TimeOffset = 300.0;
    EXPECT_FALSE(MoveLapTime(state, 3));
    EXPECT_EQ(state.Layers.Layer[1].TimeOffset, 300.0);
}

} // namespace
} // namespace torvane::graph
