// The Ne and TH histograms: where a sample counts, the shares, the axes, the bars' tops in the
// picture, the read-out under the mouse, the range dialog's rules and the window's copies.

#include "graph/window_state.h"
#include "support/temp_folder.h"
#include "views/histogram.h"
#include "views/histogram_range.h"
#include "views/histogram_view.h"
#include "views/histogram_window.h"

#include <gtest/gtest.h>

#include <fstream>

namespace torvane::views {
namespace {

namespace fs = std::filesystem;
using torvane::testing::TempFolder;
using torvane::testing::WriteWords16;

constexpr ThCalibration Calibrated{900, 100};

TEST(HistogramBars, ThrottleBandsAndTheirEdges) {
    struct Case {
        std::int16_t Raw;
        ThCalibration Calibration;
        int Bar;
    };
    const Case cases[] = {
        {25, Calibrated, 0},   // closed
        {0, Calibrated, 0},    // below closed
        {225, Calibrated, 19}, // fully open
        {300, Calibrated, 19}, // beyond open
        {125, Calibrated, 10}, // 50 %
        {223, Calibrated, 19}, // 99 %
        {224, Calibrated, -1}, // 99.5 % rounds to a bar 20 that does not exist
        // No span: the raw distance from the closed point, so anything above it is bar 19.
        {25, {100, 100}, 0},
        {26, {100, 100}, 19},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(ThBar(c.Raw, c.Calibration), c.Bar) << c.Raw;
    }
}

TEST(HistogramBars, EngineSpeedBandsAreRoundedUpAndEndIsInclusiveOnlyWhenItFits) {
    EXPECT_EQ(NeBandWidth({0, 20000}), 1000);
    EXPECT_EQ(NeBandWidth({0, 20}), 1);
    EXPECT_EQ(NeBandWidth({1000, 1021}), 2);
    EXPECT_EQ(NeBandWidth({1000, 1039}), 2);
    EXPECT_EQ(NeBandWidth({5, 5}), 0);

    EXPECT_EQ(NeBar(999, {0, 20000}, 1000), 19);
    EXPECT_EQ(NeBar(1000, {0, 20000}, 1000), -1); // exactly the end: bar 20
    EXPECT_EQ(NeBar(1001, {0, 20000}, 1000), -1);
    EXPECT_EQ(NeBar(-1, {0, 20000}, 1000), -1);
    EXPECT_EQ(NeBar(50, {1000, 1021}, 2), 0);
    EXPECT_EQ(NeBar(51, {1000, 1021}, 2), 10); // 1020 r/min
    EXPECT_EQ(NeBar(52, {1000, 1021}, 2), -1); // past the end, though bars reach 1040
}

class HistogramFileTest : public ::testing::Test {
protected:
    fs::path Stream(const std::string& name, const std::vector<std::int16_t>& words) {
        WriteWords16(folder / name, words);
        return folder / name;
    }
    TempFolder folder;
    shell::RecordingSink sink;
};

TEST_F(HistogramFileTest, AllClosedThrottleIsOneFullBarReadAsExactlyHundred) {
    HistogramFigures figures;
    ASSERT_TRUE(MakeThHistogram(Stream("th", std::vector<std::int16_t>(5000, 25)), Calibrated,
                                figures, sink));
    EXPECT_EQ(figures.Counts[0], 5000);
    EXPECT_FLOAT_EQ(figures.Percent[0], 100.0F);
    EXPECT_EQ(figures.Max, 100);
    const HistogramView view = MakeThView(figures);
    EXPECT_EQ(view.YIndex, (std::array<std::int32_t, 5>{20, 40, 60, 80, 100}));
    EXPECT_EQ(view.BarTops[0], 58);
    EXPECT_EQ(view.BarTops[1], 362);
    EXPECT_EQ(ReadOutAt(view, 65, 200), "TH : 0 - 4\n100.00%");
    EXPECT_EQ(ReadOutAt(view, 85, 362), "TH : 5 - 9\n0.00%");
}

TEST_F(HistogramFileTest, SharesAreOfAllSamplesAlsoThoseOutOfRange) {
    // 2000, 4000, 6000 r/min and twice 30000, which no default range holds.
    const fs::path ne = Stream("ne", {100, 200, 300, 1500, 1500});
    HistogramFigures figures;
    ASSERT_TRUE(MakeNeHistogram(ne, {0, 20000}, figures, sink));
    EXPECT_EQ(figures.Total, 5);
    EXPECT_EQ(figures.Counts[2] + figures.Counts[4] + figures.Counts[6], 3);
    EXPECT_FLOAT_EQ(figures.Percent[2], 20.0F);
    EXPECT_EQ(figures.Max, 20);
    // One in eight is 12.5 %, whose whole number is the even 12.
    ASSERT_TRUE(MakeNeHistogram(Stream("eighth", {100, 0, 0, 0, 0, 0, 0, 0}), {1000, 20000},
                                figures, sink));
    EXPECT_EQ(figures.Max, 12);

    // A range that holds none: twenty empty bars on the first scale, each read as 0.00 %.
    ASSERT_TRUE(MakeNeHistogram(ne, {10000, 12000}, figures, sink));
    const HistogramView view = MakeNeView(figures, {10000, 12000});
    EXPECT_EQ(view.YIndex, (std::array<std::int32_t, 5>{1, 3, 5, 10, 15}));
    EXPECT_EQ(ReadOutAt(view, 70, 362), "Ne : 10000 - 10099\n0.00%");
    EXPECT_TRUE(sink.Messages.empty());
}

TEST_F(HistogramFileTest, UnreadableOrEmptyStreamIsAReportedFailure) {
    HistogramFigures figures;
    figures.Max = 7;
    EXPECT_FALSE(MakeThHistogram(folder / "missing", Calibrated, figures, sink));
    EXPECT_FALSE(MakeNeHistogram(Stream("empty", {}), {0, 20000}, figures, sink));
    // A stream of 2^31 samples (sparse, so nothing is written) is more than a count can hold.
    const fs::path huge = Stream("huge", {});
    fs::resize_file(huge, std::uintmax_t{1} << 32);
    EXPECT_FALSE(MakeThHistogram(huge, Calibrated, figures, sink));
    ASSERT_EQ(sink.Messages.size(), 3u);
    EXPECT_EQ(sink.Messages[0].Text.rfind("Error(53)", 0), 0u);
    EXPECT_EQ(sink.Messages[1].Text.rfind("Error(11)", 0), 0u);
    EXPECT_EQ(sink.Messages[2].Text.rfind("Error(6)", 0), 0u);
    EXPECT_EQ(figures.Max, 7); // left as it was
}

TEST(HistogramAxes, YScaleByWholeMaximum) {
    using Ticks = std::array<std::int32_t, 5>;
    EXPECT_EQ(YIndexFor(0), (Ticks{1, 3, 5, 10, 15}));
    EXPECT_EQ(YIndexFor(14), (Ticks{1, 3, 5, 10, 15}));
    EXPECT_EQ(YIndexFor(15), (Ticks{5, 10, 15, 20, 25}));
    EXPECT_EQ(YIndexFor(24), (Ticks{5, 10, 15, 20, 25}));
    EXPECT_EQ(YIndexFor(25), (Ticks{10, 20, 30, 40, 50}));
    EXPECT_EQ(YIndexFor(50), (Ticks{20, 40, 60, 80, 100}));
}

TEST(HistogramAxes, BarTopsOnTheUnevenFirstScale) {
    const std::array<std::int32_t, 5> first{1, 3, 5, 10, 15};
    struct Case {
        float Percent;
        int Top;
    };
    const Case cases[] = {
        {0.0F, 362}, {0.3F, 344}, // below the first label: its own segment
        {1.4F, 289},              // 61 + round(0.4 / 2 * 60)
        {0.6F, 313},              // rounds to 1, so measured from label 0 downwards
        {12.4F, 89},              // in the last segment
        {15.0F, 58},              // the scale's top
    };
    for (const Case& c : cases) {
        EXPECT_EQ(BarTop(c.Percent, first), c.Top) << c.Percent;
    }
}

TEST(HistogramAxes, XLabelsAndWhenOnlyEveryOtherShows) {
    const XAxis th = XIndexFor(0, 0);
    EXPECT_EQ(th.Title, "TH[%]");
    EXPECT_EQ(th.Values[10], 100);
    EXPECT_EQ(std::count(th.Visible.begin(), th.Visible.end(), true), 11);

    const XAxis narrow = XIndexFor(0, 20);
    EXPECT_EQ(narrow.Title, "Ne[r/min]");
    EXPECT_EQ(narrow.Values[1], 2);
    EXPECT_EQ(narrow.Values[10], 20);
    EXPECT_EQ(std::count(narrow.Visible.begin(), narrow.Visible.end(), true), 11);

    const XAxis wide = XIndexFor(0, 20000);
    EXPECT_EQ(wide.Values[10], 20000);
    EXPECT_FALSE(wide.Visible[1]);
    EXPECT_TRUE(wide.Visible[2]);

    const XAxis late = XIndexFor(1000, 1021); // start past 999: long labels
    EXPECT_EQ(late.Values[10], 1040);
    EXPECT_FALSE(late.Visible[9]);
}

TEST(HistogramReadOut, ThSharesAreForcedToHundred) {
    std::array<float, BarCount> thirds{};
    thirds[0] = thirds[1] = thirds[2] = 100.0F / 3;
    EXPECT_EQ(ThHundredths(thirds)[0], 3334);
    EXPECT_EQ(ThHundredths(thirds)[1], 3333);

    std::array<float, BarCount> over{};
    over[3] = over[7] = 50.006F; // rounds to 10002: the walk stops, the largest gives back 2
    EXPECT_EQ(ThHundredths(over)[3], 4999);
    EXPECT_EQ(ThHundredths(over)[7], 5001);

    // Every sample in the band that has no bar: the whole 100 goes to bar 0.
    EXPECT_EQ(ThHundredths({})[0], 10000);
}

TEST(HistogramReadOut, BandsOfEachBarAndWhereTheMouseGetsNothing) {
    HistogramFigures figures;
    figures.Percent.fill(5.0F);
    const HistogramView th = MakeThView(figures);
    EXPECT_EQ(ReadOutAt(th, 61, 362), "TH : 0 - 4\n5.00%");
    EXPECT_EQ(ReadOutAt(th, 77, 362), "TH : 5 - 9\n5.00%");
    EXPECT_EQ(ReadOutAt(th, 379, 362), "TH : 95 - 100\n5.00%");
    const HistogramView ne = MakeNeView(figures, {0, 20000});
    EXPECT_EQ(ReadOutAt(ne, 61, 362), "Ne : 0 - 999\n5.00%");
    EXPECT_EQ(ReadOutAt(ne, 93, 362), "Ne : 2000 - 2999\n5.00%");
    EXPECT_EQ(ReadOutAt(ne, 379, 362), "Ne : 19000 - 20000\n5.00%");
    const int top = th.BarTops[0];
    for (const auto& [x, y] : std::vector<std::pair<int, int>>{
             {59, 362}, {76, 362}, {381, 362}, {61, 363}, {61, top - 1}}) {
        EXPECT_FALSE(ReadOutAt(th, x, y)) << x << "," << y;
    }
    EXPECT_TRUE(ReadOutAt(th, 61, top));
}

TEST(HistogramRangeDialog, ValidationTableInOrder) {
    struct Case {
        const char* Start;
        const char* End;
        std::string_view Message; // empty: accepted
        NeRangeBox Focus;
    };
    const Case cases[] = {
        {"", "100", NeRangeNotCorrect, NeRangeBox::Start},
        {"1a", "100", NeRangeNotCorrect, NeRangeBox::Start},
        {"-1", "100", NeRangeNotCorrect, NeRangeBox::Start},
        {"20001", "30000", NeRangeNotCorrect, NeRangeBox::Start},
        {"10.5", "100", NeRangeNotCorrect, NeRangeBox::Start},
        {"0", "", NeRangeNotCorrect, NeRangeBox::End},
        {"0", "1.5", NeRangeNotCorrect, NeRangeBox::End},
        {"100", "100", NeRangeNotCorrect, NeRangeBox::Start},
        {"100", "50", NeRangeNotCorrect, NeRangeBox::Start},
        {"100", "119", NeRangeTooNarrow, NeRangeBox::End},
        {"100", "120", {}, NeRangeBox::Start},
        {"10.00", "99999", {}, NeRangeBox::Start},
    };
    for (const Case& c : cases) {
        const NeRangeCheck check = CheckNeRange(c.Start, c.End);
        EXPECT_EQ(check.Accepted, c.Message.empty()) << c.Start << " " << c.End;
        EXPECT_EQ(check.Message, c.Message) << c.Start << " " << c.End;
        if (!check.Accepted) {
            EXPECT_EQ(check.Focus, c.Focus) << c.Start << " " << c.End;
        }
    }
    const NeRangeCheck capped = CheckNeRange("10", "99999");
    EXPECT_EQ(capped.EndText, "20000");
    EXPECT_EQ(capped.Range, (NeRange{10, 20000}));
    EXPECT_EQ(LeaveNeEnd("25000"), "20000");
    EXPECT_EQ(LeaveNeEnd("1x"), "1x");
}

class HistogramWindowTest : public HistogramFileTest {
protected:
    HistogramRequest Request(std::vector<std::int16_t> ne, std::vector<std::int16_t> th) {
        graph::GraphWindowState window;
        window.Layers.TempDir = folder.Path();
        window.Layers.WindowNumber = 3;
        window.ActiveLayer = 1;
        window.Layers.Layer[1].Header.SetWord(logdata::SettingWord::ThClose, 100);
        window.Layers.Layer[1].Header.SetWord(logdata::SettingWord::ThOpen, 900);
        const HistogramRequest request = HistogramRequestOf(window);
        EXPECT_EQ(request.FileNe, folder / "Ne-031.tmp");
        if (!ne.empty()) {
            WriteWords16(request.FileNe, ne);
        }
        if (!th.empty()) {
            WriteWords16(request.FileTh, th);
        }
        return request;
    }
};

TEST_F(HistogramWindowTest, OpensOnThroughItsOwnCopiesAndRemovesThemOnClose) {
    WriteWords16(folder / "HSNE0004.tmp", {1});
    const HistogramRequest request = Request({500, 500}, {25, 125});
    EXPECT_EQ(request.Th.Open, 900);
    HistogramWindowState state;
    ASSERT_TRUE(OpenHistogram(state, request, sink));
    EXPECT_EQ(state.TempNe, folder / "HSNE0005.tmp");
    EXPECT_EQ(state.TempTh, folder / "HSTH0001.tmp");
    EXPECT_EQ(state.Shown, HistogramKind::Th);
    EXPECT_EQ(ShownView(state)->Figures.Counts[10], 1);

    // The window no longer needs the layer's streams.
    fs::remove(request.FileNe);
    ASSERT_TRUE(ShowNeRange(state, {0, 20000}, sink));
    EXPECT_EQ(ShownView(state)->Figures.Counts[10], 2);
    ShowThView(state);
    EXPECT_EQ(state.Shown, HistogramKind::Th);

    // The same range is not read again; another one is, and a copy gone closes the window.
    fs::remove(state.TempNe);
    EXPECT_TRUE(ShowNeRange(state, {0, 20000}, sink));
    EXPECT_FALSE(ShowNeRange(state, {0, 10000}, sink));
    EXPECT_EQ(sink.Messages.size(), 1u);

    CloseHistogram(state);
    EXPECT_FALSE(fs::exists(folder / "HSTH0001.tmp"));
    EXPECT_TRUE(fs::exists(folder / "HSNE0004.tmp"));
}

TEST_F(HistogramWindowTest, WithoutThTheNeViewOpensOnTheWholeRange) {
    HistogramWindowState state;
    ASSERT_TRUE(OpenHistogram(state, Request({500}, {}), sink));
    EXPECT_FALSE(state.ThEnabled);
    EXPECT_EQ(state.Shown, HistogramKind::Ne);
    EXPECT_EQ(ShownView(state)->Range, (NeRange{0, 20000}));
    CloseHistogram(state);
}

TEST_F(HistogramWindowTest, ThWithoutSpanStillOpensAndEmptyNeIsNoView) {
    // Ne not sampled (interval 0) leaves an empty stream; TH without a span is counted raw.
    HistogramRequest request = Request({}, {25, 26, 200});
    WriteWords16(request.FileNe, {});
    request.Th = {100, 100};
    HistogramWindowState state;
    ASSERT_TRUE(OpenHistogram(state, request, sink));
    EXPECT_FALSE(state.NeEnabled);
    EXPECT_EQ(state.ThView->Figures.Counts[0], 1);
    EXPECT_EQ(state.ThView->Figures.Counts[19], 2);
    EXPECT_FALSE(ShowNeRange(state, {0, 20000}, sink));
    CloseHistogram(state);
}

TEST_F(HistogramWindowTest, NothingToShowOrAReadOnlyTempClosesTheWindowLosingNothing) {
    HistogramWindowState state;
    EXPECT_FALSE(OpenHistogram(state, Request({}, {}), sink));

    const HistogramRequest request = Request({500}, {25});
    fs::permissions(folder.Path(), fs::perms::owner_read | fs::perms::owner_exec);
    if (std::ofstream probe(folder / "probe"); probe.is_open()) {
        GTEST_SKIP() << "running with rights that ignore a read-only folder";
    }
    EXPECT_FALSE(OpenHistogram(state, request, sink));
    EXPECT_TRUE(sink.Messages.empty());
    EXPECT_EQ(folder.FileNames(), (std::vector<std::string>{"Ne-031.tmp", "TH-031.tmp"}));
}

} // namespace
} // namespace torvane::views
