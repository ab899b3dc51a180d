#include "graph/time_axis.h"

#include <gtest/gtest.h>

namespace torvane::graph {
namespace {

TEST(TimeAxis, ColumnsFallOnTheStepGridTheRightEdgeOnAWholeStepAndGridLinesEvery100) {
    const TimeScale fine{25, 20, 5};
    EXPECT_EQ(ColumnOfTime(1000.0, 1000.0, fine), 100);
    EXPECT_EQ(ColumnOfTime(1009.0, 1000.0, fine), 100 + 25); // 9 ms is one whole step
    EXPECT_EQ(ColumnOfTime(1010.0, 1000.0, fine), 100 + 50);
    EXPECT_EQ(ColumnOfTime(1002.5, 1000.0, fine), 100); // 2.5 rounds to 2, not 3
    EXPECT_EQ(ColumnOfTime(995.0, 1000.0, fine), 75);   // before the left edge
    // 1000 columns at 25 per step: 36 whole steps of 5 ms fit beside the scale column.
    EXPECT_DOUBLE_EQ(RightEdgeTime(300.0, 1000, fine), 300.0 + 36 * 5);
    const TimeScale coarse{1, 30000, 300};
    EXPECT_DOUBLE_EQ(RightEdgeTime(0.0, 1100, coarse), 1000 * 300.0);

    // The zoom levels give a grid line every hundred columns.
    const int levels[] = {1, 2, 3, 4, 5, 0, 9};
    const TimeScale expected[] = {{1, 500, 5}, {5, 100, 5}, {10, 50, 5}, {25, 20, 5},
                                  {50, 10, 5}, {1, 500, 5}, {1, 500, 5}};
    for (std::size_t i = 0; i < std::size(levels); ++i) {
        TimeScale scale{7, 7, 7};
        SetTimeZoom(scale, levels[i]);
        EXPECT_EQ(scale, expected[i]) << "level " << levels[i];
    }
}

TEST(TimeAxis, LabelsWriteOnlyThePartsAboveZero) {
    EXPECT_EQ(TimeLabel(90500), " 1m30s500");
    EXPECT_EQ(TimeLabel(60000), " 1m");
    EXPECT_EQ(TimeLabel(5000), " 5s");
    EXPECT_EQ(TimeLabel(100), "100");
    EXPECT_EQ(TimeLabel(3'600'000 + 5), "1h  5");
    EXPECT_EQ(TimeLabel(12 * 3'600'000 + 10 * 60'000), "12h10m");
    EXPECT_EQ(TimeLabel(0), "");
}

} // namespace
} // namespace torvane::graph
