// Reading deployed streams by position: the reader's zeros outside the stream and its mapped
// words, and what a trace makes of odd streams and of readings it has converted before.

#include "graph/trace_builder.h"
#include "logdata/stream_reader.h"
#include "support/temp_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <fstream>

namespace torvane {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

void WriteBytes(const std::filesystem::path& file, const std::vector<char>& bytes) {
    std::ofstream out(file, std::ios::binary);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

class StreamReaderTest : public ::testing::Test {
protected:
    testing::TempFolder folder;
};

TEST_F(StreamReaderTest, SamplesOutsideTheStreamReadAsZero) {
    testing::WriteWords16(folder / "Ne-010.tmp", {1, 2, 3, -4});
    logdata::StreamReader reader(folder / "Ne-010.tmp");
    ASSERT_TRUE(reader.IsOpen());
    EXPECT_EQ(reader.ByteLength(), 8);
    std::array<std::int16_t, 3> words{};
    reader.ReadWords16(-1, words);
    EXPECT_THAT(words, ElementsAre(0, 0, 1));
    reader.ReadWords16(3, words);
    EXPECT_THAT(words, ElementsAre(3, -4, 0));
    reader.ReadWords16(9, words);
    EXPECT_THAT(words, ElementsAre(0, 0, 0));
    EXPECT_THAT(reader.MappedWords16(), ElementsAre(1, 2, 3, -4));
}

TEST_F(StreamReaderTest, ATruncatedWordReadsItsBytesAndIsNoWholeSample) {
    WriteBytes(folder / "TH-010.tmp", {1, 0, 2, 0, 0x7F});
    logdata::StreamReader reader(folder / "TH-010.tmp");
    std::array<std::int16_t, 2> words{};
    reader.ReadWords16(3, words);
    EXPECT_THAT(words, ElementsAre(0x7F, 0));
    EXPECT_THAT(reader.MappedWords16(), ElementsAre(1, 2));
}

TEST_F(StreamReaderTest, MissingEmptyAndFolderStreams) {
    std::array<std::int16_t, 2> words{7, 7};
    logdata::StreamReader missing(folder / "gone.tmp");
    EXPECT_FALSE(missing.IsOpen());
    missing.ReadWords16(1, words);
    EXPECT_THAT(words, ElementsAre(0, 0));
    EXPECT_THAT(missing.MappedWords16(), IsEmpty());

    std::filesystem::create_directory(folder / "VB-010.tmp");
    EXPECT_FALSE(logdata::StreamReader(folder / "VB-010.tmp").IsOpen());

    testing::WriteWords16(folder / "VM1-010.tmp", {});
    logdata::StreamReader empty(folder / "VM1-010.tmp");
    EXPECT_TRUE(empty.IsOpen());
    EXPECT_EQ(empty.ByteLength(), 0);
    EXPECT_THAT(empty.MappedWords16(), IsEmpty());
}

constexpr std::int32_t Base = 2000;

graph::TraceParams SampleAColumn(const std::filesystem::path& file) {
    graph::TraceParams params;
    params.Sampling = 5;
    params.Left = 100;
    params.Width = 400;
    params.Base = Base;
    params.File = file;
    return params;
}

std::vector<std::int32_t> Rows(const std::vector<graph::TracePoint>& points) {
    std::vector<std::int32_t> rows;
    for (const graph::TracePoint& point : points) {
        rows.push_back(point.Y);
    }
    return rows;
}

TEST_F(StreamReaderTest, TraceRowsOfReadingsThatShareAKeptSlotStayApart) {
    // 1 and 1025, -1 and 1023 fall on the same kept row; each must keep its own.
    testing::WriteWords16(folder / "Ne-010.tmp", {1, 1025, -1, 1023, 1, 1025});
    graph::TraceLists lists;
    const auto identity = [](double raw) {
        return raw;
    };
    ASSERT_EQ(graph::BuildTrace(SampleAColumn(folder / "Ne-010.tmp"), {1, 500, 5}, identity, lists),
              graph::TracePlain);
    EXPECT_THAT(Rows(lists.Main),
                ElementsAre(Base, Base - 1, Base - 1025, Base, Base - 1023, Base - 1, Base - 1025));
}

TEST_F(StreamReaderTest, ATruncatedStreamDrawsItsWholeSamplesOnly) {
    WriteBytes(folder / "Ne-010.tmp", {4, 0, 9, 0, 0x7F});
    graph::TraceLists lists;
    ASSERT_EQ(graph::BuildTrace(
                  SampleAColumn(folder / "Ne-010.tmp"), {1, 500, 5}, [](double raw) { return raw; },
                  lists),
              graph::TracePlain);
    EXPECT_THAT(Rows(lists.Main), ElementsAre(Base, Base - 4, Base - 9));
}

} // namespace
} // namespace torvane
