#include "graph/trace_builder.h"
#include "graph/trace_item.h"
#include "graph_window_fixture.h"
#include "support/temp_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <numeric>

namespace torvane::graph {
namespace {

using ::testing::ElementsAre;

constexpr std::int32_t Base = 500;

// Values are the raw words and one row stands for one unit, so a sample w stands on row
// Base - w.
double Identity(double raw) {
    return raw;
}

std::vector<std::int16_t> Counting(int count) {
    std::vector<std::int16_t> words(static_cast<std::size_t>(count));
    std::iota(words.begin(), words.end(), std::int16_t{1});
    return words;
}

class TraceTest : public ::testing::Test {
protected:
    TraceParams Params(int channel, int sampling, double start = 0.0) {
        TraceParams params;
        params.Sampling = sampling;
        params.Left = 100;
        params.Width = 400;
        params.Base = Base;
        params.Channel = channel;
        params.Start = start;
        params.File = folder / "stream.tmp";
        return params;
    }
    void Write(const std::vector<std::int16_t>& words) {
        torvane::testing::WriteWords16(folder / "stream.tmp", words);
    }
    static std::vector<std::int32_t> Columns(const std::vector<TracePoint>& points) {
        std::vector<std::int32_t> xs;
        for (const TracePoint& point : points) {
            xs.push_back(point.X);
        }
        return xs;
    }
    static std::vector<std::int32_t> Rows(const std::vector<TracePoint>& points) {
        std::vector<std::int32_t> ys;
        for (const TracePoint& point : points) {
            ys.push_back(point.Y);
        }
        return ys;
    }

    torvane::testing::TempFolder folder;
    TraceLists lists;
};

TEST_F(TraceTest, SteppingPutsEachSampleOnTheFirstColumnAtOrAfterItsTime) {
    Write(Counting(4));
    // s 25 with S 10: samples at 25, 50, 75 and 100 ms stand 3, 5, 8 and 10 columns on.
    EXPECT_EQ(BuildTrace(Params(0, 25), {1, 100, 10}, Identity, lists), TracePlain);
    EXPECT_THAT(Columns(lists.Main), ElementsAre(100, 103, 105, 108, 110));
    EXPECT_THAT(Rows(lists.Main), ElementsAre(Base, Base - 1, Base - 2, Base - 3, Base - 4));
    EXPECT_EQ(lists.Upper[1], (TracePoint{103, Base - 2}));
    EXPECT_EQ(lists.Lower[1], (TracePoint{103, Base}));
}

TEST_F(TraceTest, EnvelopeColumnsCarryTheRemainderOfTheRatio) {
    Write(Counting(10));
    // s 10 with S 25: columns read 2 and 3 samples in turn.
    EXPECT_EQ(BuildTrace(Params(0, 10), {1, 500, 25}, Identity, lists), TraceEnvelope);
    ASSERT_GE(lists.Main.size(), 8U);
    EXPECT_EQ(lists.Main[0], (TracePoint{101, Base}));
    const std::vector<TracePoint> columns(lists.Main.begin() + 1, lists.Main.end());
    EXPECT_THAT(Columns(columns), ElementsAre(102, 102, 103, 103, 104, 104, 105));
    // Low then high of samples 1-2, 3-5, 6-7, 8-10; the end of the stream cuts the last high.
    EXPECT_THAT(Rows(columns),
                ElementsAre(Base - 1, Base - 2, Base - 3, Base - 5, Base - 6, Base - 7, Base - 8));
}

TEST_F(TraceTest, PlainTracesTakeOneSampleABlockAndThinnedOnesAreDashDotDotted) {
    Write(Counting(200));
    // s 5 at S 5 and 25 columns a step: one sample every 25 columns.
    ASSERT_EQ(BuildTrace(Params(0, 5), {25, 500, 5}, Identity, lists), TracePlain);
    ASSERT_EQ(lists.Main.size(), 18U);
    for (std::size_t i = 0; i < lists.Main.size(); ++i) {
        const auto step = static_cast<std::int32_t>(i);
        EXPECT_EQ(lists.Main[i], (TracePoint{100 + 25 * step, Base - step})) << i;
    }
    // Up to 60 samples a column keep their envelope; beyond, one sample in 61 stands alone.
    EXPECT_EQ(BuildTrace(Params(0, 5), {1, 30000, 300}, Identity, lists), TraceEnvelope);
    ASSERT_EQ(BuildTrace(Params(0, 5), {1, 30500, 305}, Identity, lists), TraceThinned);
    EXPECT_THAT(Columns(lists.Main), ElementsAre(100, 101, 102, 103, 104));
    EXPECT_THAT(Rows(lists.Main), ElementsAre(Base, Base - 1, Base - 62, Base - 123, Base - 184));
    EXPECT_EQ(TracePenStyle(TraceThinned, 3), PenStyle::DashDotDot);
    EXPECT_EQ(TracePenStyle(TracePlain, 3), PenStyle::DashDot);
}

TEST_F(TraceTest, DetonationPulsesJoinWhenTheyFollowEachOther) {
    Write({1, 1, 0, 1});
    // s 10 at S 5: two columns a sample, half width 3.
    ASSERT_EQ(BuildTrace(Params(4, 10), {1, 500, 5}, Identity, lists), TracePlain);
    EXPECT_THAT(Columns(lists.Main), ElementsAre(100,             // base line
                                                 99, 102, 103,    // moved to meet the next
                                                 103, 104, 107,   // joined
                                                 106, 106, 106,   // a zero count
                                                 105, 108, 111,   // after a zero: its own foot
                                                 110, 110, 110)); // one word past the end
    EXPECT_THAT(Rows(lists.Main),
                ElementsAre(Base, Base, Base - 1, Base, Base, Base - 1, Base, Base, Base, Base,
                            Base, Base - 1, Base, Base, Base, Base));
}

TEST_F(TraceTest, FormulaWordsAreThirtyTwoBitsScaledByTheDecimalPoint) {
    torvane::testing::WriteWords32(folder / "stream.tmp", {1234, -50, 70000});
    TraceParams params = Params(logdata::ComputedChannel, 5);
    params.Unit = 0.01;
    ASSERT_EQ(BuildFormulaTrace(params, {1, 500, 5}, 2, lists), TracePlain);
    // 12.34, below zero on the base line, 700.
    EXPECT_THAT(Rows(lists.Main), ElementsAre(Base, Base - 1234, Base, Base - 70000));
}

TEST_F(TraceTest, LapStaircaseClimbsAtEachMark) {
    logdata::LapInfo laps;
    EXPECT_EQ(BuildLapTrace(laps, Params(15, 300), {1, 500, 5}, lists), TraceNone);
    laps.LapTime = {0.0, 1000.0, 3000.0};
    ASSERT_EQ(BuildLapTrace(laps, Params(15, 300), {1, 500, 5}, lists), TracePlain);
    EXPECT_THAT(Columns(lists.Main), ElementsAre(100, 300, 300, 500));
    EXPECT_THAT(Rows(lists.Main), ElementsAre(Base - 1, Base - 1, Base - 2, Base - 2));
    // Past the last mark the row of the last count.
    ASSERT_EQ(BuildLapTrace(laps, Params(15, 300, 5000.0), {1, 500, 5}, lists), TracePlain);
    EXPECT_THAT(Rows(lists.Main), ElementsAre(Base - 3, Base - 3));
}

TEST_F(TraceTest, EmptyTruncatedAndMissingStreams) {
    Write({});
    EXPECT_EQ(BuildTrace(Params(0, 5), {1, 500, 5}, Identity, lists), TracePlain);
    EXPECT_THAT(lists.Main, ElementsAre(TracePoint{100, Base}));
    // A word cut short is no sample.
    torvane::testing::WriteBytes(folder / "stream.tmp", {4, 0, 9, 0, 0x7F});
    ASSERT_EQ(BuildTrace(Params(0, 5), {1, 500, 5}, Identity, lists), TracePlain);
    EXPECT_THAT(Rows(lists.Main), ElementsAre(Base, Base - 4, Base - 9));
    TraceParams missing = Params(0, 5);
    missing.File = folder / "gone.tmp";
    EXPECT_EQ(BuildTrace(missing, {1, 500, 5}, Identity, lists), TraceFailed);
}

TEST_F(TraceTest, RowsOfReadingsThatShareAKeptSlotStayApart) {
    // 1 and 1025, -1 and 1023 fall on the same kept row; each must keep its own.
    Write({1, 1025, -1, 1023, 1, 1025});
    ASSERT_EQ(BuildTrace(Params(0, 5), {1, 500, 5}, Identity, lists), TracePlain);
    EXPECT_THAT(Rows(lists.Main),
                ElementsAre(Base, Base - 1, Base - 1025, Base, Base - 1023, Base - 1, Base - 1025));
}

TEST(TraceTag, StandsFifteenRowsAboveTheTraceAtColumn151) {
    EXPECT_EQ(TraceTagRow({{100, 300}, {151, 200}, {160, 100}}), 185);
    EXPECT_EQ(TraceTagRow({{101, 300}, {201, 200}}), 235); // 300 - 50 rounded, less 15
    EXPECT_EQ(TraceTagRow({{140, 90}, {160, 90}}), 75);
    EXPECT_EQ(TraceTagRow({{100, 300}, {150, 300}}), std::nullopt);
    // Pulses step back to their left foot: a later point on column 151 wins over 152.
    EXPECT_EQ(TraceTagRow({{100, 300}, {146, 300}, {149, 290}, {152, 300}, {151, 300}, {154, 280}}),
              285);
}

class TraceItemTest : public ::testing::Test, public testing::GraphWindowFixture {
protected:
    TraceLists lists;
};

TEST_F(TraceItemTest, ItemsThatCannotShowAreSkippedBeforeAnyReadAndRawZeroIsConverted) {
    Open(0, testing::RunHeader(10));
    state.LapBarHeight = 14;
    ItemDisplay& ne = state.Views[0].Display.Items[0];
    // Ne at its default scale: 30000 r/min is 60 grid steps of 500, 10 rows each.
    ne.Bottom = 600 + 580;
    EXPECT_TRUE(ItemDrawn(state, 0, 0, 600));
    ne.Bottom = 600 + 581;
    EXPECT_FALSE(ItemDrawn(state, 0, 0, 600));

    EXPECT_TRUE(ItemDrawn(state, 0, 1, 600));
    state.Layers.Layer[0].Header.SetWord(logdata::SettingWord::ThOpen, 100);
    EXPECT_FALSE(ItemDrawn(state, 0, 1, 600));

    state.Views[0].Display.Items[2].View = 0;
    EXPECT_FALSE(ItemDrawn(state, 0, 2, 600));
    EXPECT_FALSE(ItemDrawn(state, 1, 2, 600)); // no such layer

    const auto params = TraceParamsFor(state, 0, 0, 100, 500, 0.0);
    ASSERT_TRUE(params.has_value());
    EXPECT_EQ(params->Base, ne.Bottom + 14);
    EXPECT_EQ(params->Sampling, 10);
    EXPECT_DOUBLE_EQ(params->Unit, 50.0); // 500 r/min a grid step of 10 rows
    EXPECT_EQ(params->File.filename(), "Ne-010.tmp");

    // The trace converts a raw zero through the table: 0.28 V stands above the base line.
    logger::LafTable laf;
    Stream(0, "VB", {0, 0});
    const auto vb = TraceParamsFor(state, 0, 6, 100, 100, 0.0);
    ASSERT_TRUE(vb.has_value());
    ASSERT_EQ(BuildItemTrace(state, laf, 0, 6, *vb, lists), TracePlain);
    EXPECT_LT(lists.Main[1].Y, vb->Base);
}

} // namespace
} // namespace torvane::graph
