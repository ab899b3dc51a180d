#include "logger/laf_table.h"
#include "support/hostile_files.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <cmath>

namespace torvane::logger {
namespace {

using torvane::testing::ReadText;
using torvane::testing::TempFolder;
using torvane::testing::WriteText;

TEST(LafTable, WithoutATableVoltagesPassThroughAndTheDefaultTableConverts) {
    LafTable table;
    EXPECT_EQ(table.ConvertLaf(2.5), 2.5);
    table.SetPoints(DefaultLafPoints());
    EXPECT_DOUBLE_EQ(table.ConvertLaf(0.28), 9.5);
    EXPECT_DOUBLE_EQ(table.ConvertLaf(4.17), 16.5);
    EXPECT_NEAR(table.ConvertLaf(4.5), 4.5 * 16.5 / 4.17, 1e-12); // a line through 0, no limit
    const double low = table.ConvertLaf(0.1);
    EXPECT_GT(low, 9.0);
    EXPECT_LT(low, 9.5);
    EXPECT_EQ(table.ConvertLaf(-0.1), 0.0);
    EXPECT_EQ(table.ConvertLaf(0.0), 0.0);
    EXPECT_NEAR(table.ConvertLaf(2.5), 13.5, 0.02);
}

TEST(LafTable, MissingFileIsWrittenWithTheDefaultLinesOrConversionStaysOff) {
    TempFolder folder;
    shell::RecordingSink sink;
    LafTable table;
    LoadLafTable(table, folder.Path(), sink);
    EXPECT_TRUE(table.Loaded());
    EXPECT_TRUE(sink.Messages.empty());
    const std::string text = ReadText(folder / LafFileName);
    EXPECT_EQ(text.substr(0, 22), "9,0\r\n9.5,0.28\r\n10,0.56");
    EXPECT_NE(text.find("\r\n16.5,4.17\r\n"), std::string::npos);
    EXPECT_EQ(table.Points().size(), 16u);

    // A folder where the file cannot be written leaves conversion off.
    LafTable unwritten;
    unwritten.SetPoints(DefaultLafPoints());
    LoadLafTable(unwritten, folder / "missing" / "INT", sink);
    EXPECT_FALSE(unwritten.Loaded());
    EXPECT_EQ(unwritten.ConvertLaf(2.5), 2.5);
}

TEST(LafTable, NonNumericFieldsReadAsZero) {
    TempFolder folder;
    WriteText(folder / LafFileName, "9,0\r\nrich,1.0\r\n12,volts\r\n 14 , 2.78 \r\n15,3,4\r\n");
    shell::RecordingSink sink;
    LafTable table;
    LoadLafTable(table, folder.Path(), sink);
    ASSERT_EQ(table.Points().size(), 5u);
    EXPECT_EQ(table.Points()[1].Af, 0.0);
    EXPECT_EQ(table.Points()[1].Volt, 1.0);
    EXPECT_EQ(table.Points()[2].Volt, 0.0);
    EXPECT_EQ(table.Points()[3].Af, 14.0);
    EXPECT_EQ(table.Points()[3].Volt, 2.78);
    EXPECT_EQ(table.Points()[4].Volt, 0.0); // a third field spoils the second
    EXPECT_TRUE(sink.Messages.empty());

    // "nan" and "inf" are no values a table holds, and extremes never give an infinite ratio.
    WriteText(folder / LafFileName, "nan,1.0\r\n1e308,inf\r\n1e308,1e-300\r\n");
    LoadLafTable(table, folder.Path(), sink);
    ASSERT_EQ(table.Points().size(), 3u);
    EXPECT_EQ(table.Points()[0].Af, 0.0);
    EXPECT_EQ(table.Points()[1].Volt, 0.0);
    for (const double volt : {0.5, 1.0, 4.0}) {
        EXPECT_TRUE(std::isfinite(table.ConvertLaf(volt))) << volt;
    }
}

TEST(LafTable, FifoOrDeviceInPlaceOfTheFileIsReportedAndTheTableKept) {
    for (const auto& hostile : torvane::testing::HostileFiles()) {
        SCOPED_TRACE(hostile.Kind);
        TempFolder folder;
        ASSERT_TRUE(hostile.Make(folder / LafFileName));
        shell::RecordingSink sink;
        LafTable table;
        table.SetPoints(DefaultLafPoints());
        LoadLafTable(table, folder.Path(), sink);
        ASSERT_EQ(sink.Messages.size(), 1u);
        EXPECT_TRUE(sink.Messages[0].Text.starts_with("Error(75)\r")) << sink.Messages[0].Text;
        EXPECT_TRUE(table.Loaded());
        EXPECT_EQ(table.Points().size(), 16u);
    }
}

} // namespace
} // namespace torvane::logger
