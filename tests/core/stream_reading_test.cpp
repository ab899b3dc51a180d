// Reading deployed streams by position: the reader's zeros outside the stream and its mapped
// words.

#include "logdata/stream_reader.h"
#include "support/temp_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>

namespace torvane {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

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
    testing::WriteBytes(folder / "TH-010.tmp", {1, 0, 2, 0, 0x7F});
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

} // namespace
} // namespace torvane
