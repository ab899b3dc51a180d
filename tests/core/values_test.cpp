#include "logdata/channels.h"
#include "logdata/laps.h"
#include "logdata/values.h"
#include "one_layer_run.h"

#include <gtest/gtest.h>

namespace torvane::logdata {
namespace {

using torvane::testing::WriteWords16;

class ValueAtTest : public ::testing::Test, protected testing::OneLayerRun {
protected:
    ValueAtTest()
        : OneLayerRun({Ne, TH, VFW, VRW, DETO1, DETO2, VB, FRSUS, RRSUS, LAF1, VM4, LAP}) {}

    double At(int slot, double time, TimeScale scale = {}) const {
        return ValueReader(layers, laf).ValueAt(0, slot, time, scale);
    }
};

TEST_F(ValueAtTest, OrdinaryChannelRampsInterpolatesAndEndsAndMissingOnesReadZero) {
    Stream(Ne, 10, {100, 200, 300});
    EXPECT_EQ(At(Ne, 0), 0.0);
    EXPECT_DOUBLE_EQ(At(Ne, 5), 100 * 20 * 0.5); // half of sample 1 before it
    EXPECT_DOUBLE_EQ(At(Ne, 10), 2000);
    EXPECT_DOUBLE_EQ(At(Ne, 20), 4000); // exactly sample 2, sample 3 not used
    EXPECT_DOUBLE_EQ(At(Ne, 12.5), (100 + 100 * 2.0 / 10) * 20); // 12.5 rounds to 12
    EXPECT_DOUBLE_EQ(At(Ne, 30), 6000);
    // Past the last sample the next word reads as 0 ...
    EXPECT_DOUBLE_EQ(At(Ne, 35), 3000);
    // ... up to T times the length in bytes, and nothing beyond.
    EXPECT_EQ(At(Ne, 60), 0.0);
    EXPECT_EQ(At(Ne, 61), 0.0);

    // A missing stream, an interval of 0 or no such item reads 0.
    EXPECT_EQ(At(VFW, 100), 0.0);
    Stream(VRW, 0, {50, 50});
    EXPECT_EQ(At(VRW, 10), 0.0);
    EXPECT_EQ(At(40, 10), 0.0); // no such item
}

TEST_F(ValueAtTest, RawToValueGuardsAndConversionsAlsoOnTheSpareInputs) {
    const LogHeader& header = layers.Layer[0].Header;
    EXPECT_EQ(RawToValue(header, VB, 0, laf), 0.0);
    EXPECT_DOUBLE_EQ(RawToValue(header, VB, 1, laf), 25.0 / 255 + 0.28);
    EXPECT_DOUBLE_EQ(RawToValue(header, TH, 125, laf), (500.0 - 100) / 800 * 100);
    EXPECT_EQ(RawToValue(header, TH, 10, laf), 0.0); // below the closed point
    EXPECT_DOUBLE_EQ(RawToValue(header, VM2, 1023, laf), 5.0);
    EXPECT_DOUBLE_EQ(RawToValue(header, FRSUS, 400, laf), 500.0 / 1023 * 187.5);
    EXPECT_EQ(RawToValue(header, FRSUS, 950, laf), 0.0); // above the zero point
    EXPECT_EQ(RawToValue(header, FRSUS, 0, laf), 0.0);   // no reading, not full stroke
    EXPECT_DOUBLE_EQ(RawToValue(header, RRSUS, 300, laf), 500.0 / 1023 * 125);
    EXPECT_DOUBLE_EQ(RawToValue(header, LAF1, 1023, laf), 5.0); // no table: volts
    EXPECT_EQ(RawToValue(header, Ne, -4, laf), -4.0);           // not converted

    // Items on shared streams read the spare input.
    Stream(VM1, 10, {400, 400});
    Stream(VM3, 10, {1023, 1023});
    EXPECT_DOUBLE_EQ(At(7, 10), 500.0 / 1023 * 187.5); // slot 7 holds FRSUS on VM1
    laf.SetPoints({{9.0, 0.0}, {18.0, 5.0}});
    EXPECT_DOUBLE_EQ(At(9, 10), 18.0); // slot 9 holds LAF1 on VM3
}

TEST_F(ValueAtTest, DetonationWithinToleranceOfTheZoom) {
    Stream(DETO1, 300, {0, 2, 3, 0});
    const TimeScale fine{1, 50};                   // w = 150 <= T: the earlier sample near it
    const TimeScale coarse{1, 200};                // w = 600 > T
    EXPECT_EQ(At(DETO1, 100, fine), 0.0);          // before the first sample
    EXPECT_EQ(At(DETO1, 600, fine), 2.0);          // on a sample
    EXPECT_EQ(At(DETO1, 700, fine), 2.0);          // m 100 <= w: sample k
    EXPECT_EQ(At(DETO1, 780, fine), 3.0);          // m 180 >= T - w: sample k + 1
    EXPECT_EQ(At(DETO1, 300 + 150, {1, 10}), 0.0); // between, outside the tolerance
    EXPECT_EQ(At(DETO1, 700, coarse), 3.0);        // both non-zero: the later one
    EXPECT_EQ(At(DETO1, 400, coarse), 2.0);        // 0 and 2: the non-zero one
    EXPECT_EQ(At(DETO1, 700, {2, 50}), 0.0);       // zoomed in: only exact hits
    EXPECT_EQ(At(DETO1, 900, {2, 50}), 3.0);
    EXPECT_EQ(At(DETO1, 300.0 * 8 + 1, fine), 0.0); // beyond T x bytes
}

TEST_F(ValueAtTest, LapFileMarksBestLapAndLapBarRows) {
    // Step 2 with word 1 marks 600 ms; step 5 with word 60 marks 4 x 300 + 5 ms.
    Stream(LapSlot, 300, {0, 1, 0, 0, 60, 0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 1});
    ReadLapFile(layers, 0);
    EXPECT_EQ(layers.Lap[0].LapTime, (std::vector<double>{600, 1205, 3900, 6300}));
    EXPECT_EQ(layers.Lap[0].BestLap, 605);
    EXPECT_EQ(layers.Lap[0].LapBarTop, 0);

    Stream(LapSlot, 300, {1, 0, 1, 0, 1});
    ReadLapFile(layers, 0);
    EXPECT_EQ(layers.Lap[0].BestLap, 600); // equal laps: the first stays best

    // Each earlier layer with laps pushes the bar one row down; an empty file has no laps.
    WriteWords16(layers.StreamPath(1, "LAP"), {});
    WriteWords16(layers.StreamPath(2, "LAP"), {});
    layers.Layer[1].ItemExists[LapSlot] = false;
    ReadLapFile(layers, 1);
    ReadLapFile(layers, 2);
    EXPECT_EQ(layers.Lap[2].LapBarTop, 14);
    EXPECT_EQ(layers.Lap[1].LapTime, std::vector<double>{0.0});
    EXPECT_EQ(layers.Lap[1].BestLap, 0.0);
    layers.Layer[1].ItemExists[LapSlot] = true;
    ReadLapFile(layers, 2);
    EXPECT_EQ(layers.Lap[2].LapBarTop, 28);
}

} // namespace
} // namespace torvane::logdata
