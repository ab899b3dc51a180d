#include "logdata/csv_export.h"
#include "one_layer_run.h"
#include "support/file_size_limit.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <fstream>

namespace torvane::logdata {
namespace {

namespace fs = std::filesystem;
using shell::RecordingSink;
using torvane::testing::ReadText;
using torvane::testing::TempFolder;
using torvane::testing::WriteText;

// Slot i reads stream i; slot 7 is FRSUS on VM1's stream and slot 9 LAF1 on VM3's.
class CsvExportTest : public ::testing::Test, protected testing::OneLayerRun {
protected:
    CsvExportTest()
        : OneLayerRun({Ne, TH, VFW, VRW, DETO1, DETO2, VB, FRSUS, VM2, LAF1, VM4, LAP}) {}

    // The file's lines without their CR LF; every line must end so.
    std::vector<std::string> Export(const std::vector<int>& items,
                                    std::optional<CsvRange> range = std::nullopt) {
        EXPECT_TRUE(WriteCsv(out, layers, items, range, laf, sink));
        EXPECT_TRUE(sink.Messages.empty());
        const std::string text = ReadText(out);
        std::vector<std::string> lines;
        for (std::size_t begin = 0; begin < text.size();) {
            const std::size_t end = text.find("\r\n", begin);
            EXPECT_NE(end, std::string::npos) << "unterminated last line";
            if (end == std::string::npos) {
                break;
            }
            lines.push_back(text.substr(begin, end - begin));
            EXPECT_EQ(lines.back().find('\n'), std::string::npos);
            begin = end + 2;
        }
        return lines;
    }

    TempFolder target;
    fs::path out = target / "RUN.csv";
    RecordingSink sink;
};

TEST_F(CsvExportTest, RowsStepByTheSmallestIntervalAndEndAfterTheLastSample) {
    Stream(Ne, 300, {100, 200, 300});
    // The pair after the last sample ramps to 0; one row later the stream has run out.
    const auto lines = Export({Ne});
    const std::vector<std::string> expected{"Time(s),Ne",    "0.000,0.00",    "0.300,2000.00",
                                            "0.600,4000.00", "0.900,6000.00", "1.200,0.00",
                                            "1.500,0.00"};
    EXPECT_EQ(lines, expected);

    // LAP steps by 5 ms; its running index counts the marks passed.
    layers.Lap[0].LapTime = {400.0, 1000.0};
    const auto withLap = Export({Ne, LapSlot});
    EXPECT_EQ(withLap[0], "Time(s),Ne,LAP");
    EXPECT_EQ(withLap[1], "0.000,0.00,0.00");
    EXPECT_EQ(withLap[2], "0.005,33.33,0.00");    // the ramp to the first sample
    EXPECT_EQ(withLap[31], "0.150,1000.00,0.00"); // half of the first sample
    EXPECT_EQ(withLap[80], "0.395,2633.33,0.00"); // between samples 1 and 2
    EXPECT_EQ(withLap[81], "0.400,2666.67,1.00"); // on the first lap mark
    EXPECT_EQ(withLap[201], "1.000,4000.00,2.00");
    EXPECT_EQ(withLap.back(), "1.205,0.00,2.00");
    EXPECT_EQ(withLap.size(), 1U + 242U);
}

TEST_F(CsvExportTest, FirstRowIsZeroAndAChannelThatRunsOutReadsZeroUntilTheLastEnds) {
    Stream(Ne, 10, {100, 200});
    Stream(TH, 10, {125, 125, 125, 125});
    Stream(VFW, 10, {1, 2, 3, 4, 5});
    Stream(VB, 10, {255, 255});
    Stream(7, 10, {400, 400}); // FRSUS
    Stream(9, 10, {512, 512}); // LAF1, volts without a table
    const auto lines = Export({Ne, TH, VFW, VB, 7, 9});
    ASSERT_GE(lines.size(), 3U);
    EXPECT_EQ(lines[0], "Time(s),Ne,TH,VFW,VB,FRSUS,LAF1");
    EXPECT_EQ(lines[1], "0.000,0.00,0.00,0.00,0.00,0.00,0.00");
    EXPECT_EQ(lines[2], "0.010,2000.00,50.00,1.00,25.28,91.64,2.50");
    EXPECT_EQ(lines[4], "0.030,0.00,50.00,3.00,0.00,0.00,0.00");
    EXPECT_EQ(lines.back(), "0.070,0.00,0.00,0.00,0.00,0.00,0.00");
    EXPECT_EQ(lines.size(), 9U);
}

TEST_F(CsvExportTest, RangeStartsBetweenSamplesAndEndsAtTheLastStepBeforeItsEnd) {
    Stream(VFW, 10, {10, 20, 30, 40, 50, 60, 70, 80, 90, 100});
    const auto lines = Export({VFW}, CsvRange{25.0, 78.0});
    const std::vector<std::string> expected{"Time(s),VFW", "0.025,25.00", "0.035,35.00",
                                            "0.045,45.00", "0.055,55.00", "0.065,65.00",
                                            "0.075,75.00"};
    EXPECT_EQ(lines, expected);
    // A range that ends on a step includes it.
    EXPECT_EQ(Export({VFW}, CsvRange{20.0, 40.0}).back(), "0.040,40.00");
}

TEST_F(CsvExportTest, DetonationCountsOnTheirSamplesSlowerChannelsInterpolateGuardsHold) {
    Stream(VFW, 10, std::vector<std::int16_t>(100, 1));
    Stream(DETO1, 300, {3, 0, 7});
    Stream(VRW, 25, {10, 20, 30, 40});
    const auto lines = Export({VFW, DETO1, VRW});
    const auto row = [&](int ms) {
        return lines.at(static_cast<std::size_t>(ms / 10 + 1));
    };
    EXPECT_EQ(row(300), "0.300,1.00,3.00,0.00");
    EXPECT_EQ(row(310), "0.310,1.00,0.00,0.00");
    EXPECT_EQ(row(600), "0.600,1.00,0.00,0.00");
    EXPECT_EQ(row(900), "0.900,1.00,7.00,0.00");
    EXPECT_EQ(row(10), "0.010,1.00,0.00,4.00"); // VRW ramps: 10 x 10 / 25
    EXPECT_EQ(row(30), "0.030,1.00,0.00,12.00");
    EXPECT_EQ(row(90), "0.090,1.00,0.00,36.00");

    // Guarded channels stay zero on the ramp and below their zero.
    Stream(VFW, 50, std::vector<std::int16_t>(6, 1));
    Stream(Ne, 100, {50, 50});
    Stream(VB, 100, {255, 255});
    Stream(7, 100, {1000, 400}); // FRSUS: the first sample lies beyond its zero point
    const auto guarded = Export({VFW, Ne, VB, 7});
    EXPECT_EQ(guarded[2], "0.050,1.00,500.00,0.00,0.00");
    EXPECT_EQ(guarded[3], "0.100,1.00,1000.00,25.28,0.00");
    EXPECT_EQ(guarded[4], "0.150,1.00,1000.00,25.28,36.66");
    EXPECT_EQ(guarded[5], "0.200,1.00,1000.00,25.28,91.64");
}

TEST_F(CsvExportTest, ComputedItemsReadTheirWideStreamWithTheirDecimalsAndNoColumnNoFile) {
    layers.Layer[0].ItemChannel.push_back(ComputedChannel);
    layers.Layer[0].FormulaItems.push_back({2, 10, 0.0, "SLIP", "%"});
    torvane::testing::WriteWords32(layers.StreamPath(0, "SLIP"), {1000, 2000, 70000, -500});
    const auto lines = Export({SlotCount});
    ASSERT_EQ(lines.size(), 1U + 7U);
    EXPECT_EQ(lines[0], "Time(s),SLIP");
    EXPECT_EQ(lines[1], "0.000,0.00");
    EXPECT_EQ(lines[3], "0.020,20.00");
    EXPECT_EQ(lines[4], "0.030,700.00");
    EXPECT_EQ(lines[5], "0.040,0.00"); // below 0 shows 0

    // No column writes no file.
    fs::remove(out);
    EXPECT_TRUE(WriteCsv(out, layers, {}, std::nullopt, laf, sink));
    EXPECT_FALSE(fs::exists(out));
    EXPECT_TRUE(sink.Messages.empty());
}

TEST_F(CsvExportTest, UnwritableTargetsAreReportedAndNothingIsWritten) {
    Stream(Ne, 10, {100});
    const auto expectOneError = [&](const std::string& start) {
        ASSERT_EQ(sink.Messages.size(), 1U);
        EXPECT_TRUE(sink.Messages[0].Text.starts_with(start)) << sink.Messages[0].Text;
        sink.Messages.clear();
    };
    EXPECT_FALSE(WriteCsv(target / "missing" / "RUN.csv", layers, std::vector<int>{Ne},
                          std::nullopt, laf, sink));
    expectOneError("Error(76)\rPath not found");
    fs::create_directory(out);
    EXPECT_FALSE(WriteCsv(out, layers, std::vector<int>{Ne}, std::nullopt, laf, sink));
    expectOneError("Error(75)\rPath/File access error");
    EXPECT_TRUE(fs::is_empty(out));
    fs::remove(out);

    fs::permissions(target.Path(), fs::perms::owner_read | fs::perms::owner_exec);
    if (std::ofstream probe(target / "probe"); probe.is_open()) {
        probe.close();
        fs::remove(target / "probe");
        GTEST_SKIP() << "running with rights that ignore a read-only folder";
    }
    EXPECT_FALSE(WriteCsv(out, layers, std::vector<int>{Ne}, std::nullopt, laf, sink));
    expectOneError("Error(70)\rPermission denied");
    EXPECT_FALSE(fs::exists(out));
}

TEST_F(CsvExportTest, FullDiskIsReportedAndTheOldFileStays) {
    Stream(Ne, 5, std::vector<std::int16_t>(20000, 100));
    WriteText(out, "the old export");
    bool written = true;
    {
        const torvane::testing::FileSizeLimit limit(100000);
        ASSERT_TRUE(limit.Active());
        written = WriteCsv(out, layers, std::vector<int>{Ne}, std::nullopt, laf, sink);
    }

    EXPECT_FALSE(written);
    ASSERT_EQ(sink.Messages.size(), 1U);
    EXPECT_TRUE(sink.Messages[0].Text.starts_with("Error(61)\rDisk full")) << sink.Messages[0].Text;
    EXPECT_EQ(ReadText(out), "the old export");
    // Nothing but the old file: the partial one is gone.
    EXPECT_EQ(std::distance(fs::directory_iterator(target.Path()), fs::directory_iterator()), 1);
}

} // namespace
} // namespace torvane::logdata
