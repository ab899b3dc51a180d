// A logging file written by RlgWriter deploys to exactly the samples that went in.

#include <algorithm>
#include <random>

#include <gtest/gtest.h>

#include "rlg_container.h"
#include "rlg_test_support.h"

namespace torvane::rlg::test {
namespace {

namespace fs = std::filesystem;

TEST(RlgRoundTrip, DeploysEveryStreamWordForWordUnderItsNumberedName) {
    TempFolder folder;
    const auto header = MakeHeader(1);
    const auto streams = RunStreams(100);
    const auto logFile = folder.Path() / "run.rlg";
    WriteBytes(logFile, BuildContainer(header, streams));
    const auto deployDir = folder.Path() / "TMP";
    fs::create_directory(deployDir);
    // Window numbers are reused once their streams are deleted; a leftover must not block them.
    WriteBytes(deployDir / "Ne-010.tmp", std::vector<std::uint8_t>(1000, 0xAB));

    HeaderBytes deployedHeader{};
    DeployStats stats;
    ASSERT_EQ(Deploy(logFile, deployDir, 10, deployedHeader, stats), TLM_DECOMP_OK);

    EXPECT_EQ(deployedHeader, header);
    EXPECT_EQ(
        TempFolder::FileNamesIn(deployDir),
        (std::vector<std::string>{"DETO1-010.tmp", "DETO2-010.tmp", "LAP-010.tmp", "Ne-010.tmp",
                                  "TH-010.tmp", "VB-010.tmp", "VFW-010.tmp", "VM1-010.tmp",
                                  "VM2-010.tmp", "VM3-010.tmp", "VM4-010.tmp", "VRW-010.tmp"}));
    std::int64_t totalBytes = 0;
    for (const auto& stream : streams) {
        EXPECT_EQ(ReadWords(deployDir / (stream.Name + "-010.tmp")), stream.Samples) << stream.Name;
        totalBytes += static_cast<std::int64_t>(2 * stream.Samples.size());
    }
    EXPECT_EQ(fs::file_size(deployDir / "LAP-010.tmp"), 0u);
    EXPECT_EQ(stats.BytesWritten, totalBytes);
    EXPECT_EQ(stats.StreamCount, 12);
    EXPECT_EQ(StreamFileName("TH", 1234), "TH-1234.tmp");
    EXPECT_EQ(StreamFileName("VM4", 0), "VM4-000.tmp");
}

// Words cross the decoder's buffers at odd offsets and zstd blocks at arbitrary points; only a
// stream much longer than one buffer shows whether the carry between pieces is right.
TEST(RlgRoundTrip, ManySmallInterleavedAppendsEqualOneAppendPerStream) {
    TempFolder folder;
    const auto header = MakeHeader(2);
    const std::vector<StreamData> streams{{"Ne", RandomSamples(300001, 7)},
                                          {"TH", SensorSamples(250003, 8)},
                                          {"LAP", {}},
                                          {"VB", SensorSamples(1, 9)}};
    RlgWriter writer(header, {"Ne", "TH", "LAP", "VB"}, 1);
    std::mt19937 engine(3);
    std::vector<std::size_t> done(streams.size(), 0);
    for (bool left = true; left;) {
        left = false;
        for (std::size_t i = 0; i < streams.size(); ++i) {
            const auto& samples = streams[i].Samples;
            const std::size_t part =
                std::min<std::size_t>(engine() % 5000, samples.size() - done[i]);
            writer.Append(i, std::span(samples).subspan(done[i], part));
            done[i] += part;
            left = left || done[i] < samples.size();
        }
    }
    const auto interleaved = folder.Path() / "interleaved.rlg";
    WriteBytes(interleaved, writer.Finish());
    const auto whole = folder.Path() / "whole.rlg";
    WriteBytes(whole, BuildContainer(header, streams));

    for (const auto& [file, number] : {std::pair{interleaved, 1}, std::pair{whole, 2}}) {
        HeaderBytes deployedHeader{};
        DeployStats stats;
        ASSERT_EQ(Deploy(file, folder.Path(), number, deployedHeader, stats), TLM_DECOMP_OK);
        for (const auto& stream : streams) {
            EXPECT_EQ(ReadWords(folder.Path() / StreamFileName(stream.Name, number)),
                      stream.Samples)
                << stream.Name << " of " << file;
        }
    }
}

TEST(RlgWriter, RefusesWhatCouldNotBeDeployed) {
    const auto header = MakeHeader(4);
    const std::vector<std::vector<std::string>> badNames{
        {""}, {"NINECHARS"}, {"a/b"}, {".."}, {"Ne", "NE"}, std::vector<std::string>(33, "x")};
    for (const auto& names : badNames) {
        RlgWriter writer(header, names);
        EXPECT_TRUE(writer.Finish().empty()) << names.front();
    }

    RlgWriter outOfRange(header, {"Ne"});
    outOfRange.Append(1, std::vector<std::int16_t>{1, 2, 3});
    EXPECT_TRUE(outOfRange.Finish().empty());

    RlgWriter twice(header, {"Ne"});
    EXPECT_FALSE(twice.Finish().empty());
    EXPECT_TRUE(twice.Finish().empty());
}

TEST(WriteFileAtomically, ReplacesTheTargetOrLeavesNothing) {
    TempFolder folder;
    const auto target = folder.Path() / "run.rlg";
    const std::vector<std::uint8_t> first{1, 2, 3};
    const std::vector<std::uint8_t> second{4, 5};
    ASSERT_TRUE(WriteFileAtomically(target, first));
    ASSERT_TRUE(WriteFileAtomically(target, second));
    EXPECT_EQ(ReadBytes(target), second);

    EXPECT_FALSE(WriteFileAtomically(folder.Path() / "absent" / "run.rlg", first));
    fs::create_directory(folder.Path() / "folder.rlg");
    EXPECT_FALSE(WriteFileAtomically(folder.Path() / "folder.rlg", first));
    EXPECT_EQ(TempFolder::FileNamesIn(folder.Path()),
              (std::vector<std::string>{"folder.rlg", "run.rlg"}));
}

} // namespace
} // namespace torvane::rlg::test
