#include "graph/scale.h"

#include <gtest/gtest.h>

#include <array>

namespace torvane::graph {
namespace {

ScaleRecord Scale(int channel, int zoom) {
    ScaleRecord scale;
    EXPECT_TRUE(ScaleFor(channel, zoom, scale)) << "channel " << channel << " zoom " << zoom;
    return scale;
}

TEST(ScaleFor, EndsOfTheTableAndNumbersOutsideIt) {
    //                              Pitch Divisor AxisMax Min Label  Grid  FullScale
    EXPECT_EQ(Scale(0, 0), (ScaleRecord{10, 1, 40000, 0, 40000, 40000, 30000}));
    EXPECT_EQ(Scale(0, 9), (ScaleRecord{10, 1, 20000, 0, 500, 100, 30000}));
    EXPECT_EQ(Scale(15, 0), (ScaleRecord{10, 1, 300, 0, 300, 300, 100}));
    EXPECT_EQ(Scale(15, 9), (ScaleRecord{25, 1, 50, 0, 5, 1, 100}));

    // Numbers outside the table leave the record alone.
    const ScaleRecord before{1, 2, 3, 4, 5, 6, 7};
    for (const auto& [channel, zoom] :
         std::array<std::array<int, 2>, 5>{{{0, 10}, {15, 10}, {0, -1}, {16, 0}, {-1, 3}}}) {
        ScaleRecord scale = before;
        EXPECT_FALSE(ScaleFor(channel, zoom, scale));
        EXPECT_EQ(scale, before);
    }
}

TEST(BandHeight, WholeGridStepsTimesPitch) {
    EXPECT_EQ(BandHeight(Scale(0, 6)), 400);                          // 20000 / 500 * 10
    EXPECT_EQ(BandHeight(Scale(11, 4)), 120);                         // 200 / 25 = 8 steps of 15
    EXPECT_EQ(BandHeight(Scale(0, 6), 15000), 300);                   // the item's own top
    EXPECT_EQ(BandHeight(Scale(0, 6), 499), 0);                       // a part step counts nothing
    EXPECT_EQ(BandHeight(ScaleRecord{10, 1, 100, 0, 10, 0, 100}), 0); // no grid step
}

ScaleRecord Formula(double maxValue, int zoom) {
    ScaleRecord scale;
    EXPECT_TRUE(FormulaScale(maxValue, zoom, scale));
    return scale;
}

TEST(FormulaScale, BaseAndDivisorFollowTheMaximum) {
    struct Case {
        double Max;
        std::int32_t Base;
        std::int32_t Divisor;
        std::int32_t FullScale;
    };
    for (const Case& c : std::array<Case, 10>{{{-5.0, 1000, 100000, -5},
                                               {0.01, 1000, 100000, 0},
                                               {0.011, 1000, 10000, 0},
                                               {0.5, 1000, 1000, 0}, // half to even
                                               {1.5, 1000, 100, 2},
                                               {10.0, 1000, 100, 10},
                                               {100.0, 1000, 10, 100},
                                               {100.5, 100, 1, 100},
                                               {101.0, 101, 1, 101},
                                               {101.5, 102, 1, 102}}}) {
        const ScaleRecord scale = Formula(c.Max, 0);
        EXPECT_EQ(scale.AxisMax, c.Base) << c.Max;
        EXPECT_EQ(scale.Divisor, c.Divisor) << c.Max;
        EXPECT_EQ(scale.FullScale, c.FullScale) << c.Max;
    }
}

TEST(FormulaScale, StepsByScaleNumberRoundHalfToEvenFromThreeByDefaultUpToNine) {
    EXPECT_EQ(Formula(1000, 0), (ScaleRecord{10, 1, 1000, 0, 1000, 1000, 1000}));
    EXPECT_EQ(Formula(50, 4), (ScaleRecord{15, 10, 1000, 0, 500, 100, 50}));
    EXPECT_EQ(Formula(50, 8), (ScaleRecord{15, 10, 1000, 0, 100, 20, 50}));
    EXPECT_EQ(Formula(101, 1).GridStep, 50); // 50.5
    EXPECT_EQ(Formula(103, 1).GridStep, 52); // 51.5
    EXPECT_EQ(Formula(250, 9).GridStep, 2);  // 2.5
    EXPECT_EQ(Formula(330, 6).LabelStep, 66);
    EXPECT_EQ(Formula(330, 6).GridStep, 13); // 13.2

    // The default is scale number 3; 10 is refused.
    ScaleRecord scale;
    ASSERT_TRUE(DefaultFormulaScale(400, scale));
    EXPECT_EQ(scale, Formula(400, 3));

    const ScaleRecord before = scale;
    EXPECT_FALSE(FormulaScale(400, 10, scale));
    EXPECT_EQ(scale, before);
}

} // namespace
} // namespace torvane::graph
