// Every way a deployment can fail gives its result code, leaves no stream or temporary file
// behind, and never changes the logging file.

#include <fstream>

#include <gtest/gtest.h>

#include "byte_order.h"
#include "rlg_container.h"
#include "rlg_format.h"
#include "rlg_test_support.h"
#include "support/file_size_limit.h"

namespace torvane::rlg::test {
namespace {

namespace fs = std::filesystem;

class DeployFailure : public ::testing::Test {
protected:
    // Small enough to try every prefix and every byte, and with a stream that already exists in
    // the deploy folder, which a failed deployment must keep.
    void SetUp() override {
        file_ = BuildContainer(
            MakeHeader(5),
            {{"Ne", SensorSamples(40, 1)}, {"TH", RandomSamples(9, 2)}, {"LAP", {}}});
        deployDir_ = folder_.Path() / "TMP";
        fs::create_directory(deployDir_);
        WriteBytes(deployDir_ / "TH-003.tmp", older_);
    }

    int DeployBytes(const std::vector<std::uint8_t>& bytes) {
        WriteBytes(logFile_, bytes);
        const int result = DeployFile();
        EXPECT_EQ(ReadBytes(logFile_), bytes) << "the logging file was changed";
        return result;
    }

    int DeployFile(const fs::path& deployDir) {
        HeaderBytes header{};
        DeployStats stats;
        const int result = Deploy(logFile_, deployDir, 3, header, stats);
        if (result != TLM_DECOMP_OK) {
            EXPECT_EQ(header, HeaderBytes{});
            EXPECT_EQ(stats.BytesWritten, 0);
            EXPECT_EQ(stats.StreamCount, 0);
        }
        return result;
    }
    int DeployFile() { return DeployFile(deployDir_); }

    void ExpectNothingDeployed() {
        EXPECT_EQ(TempFolder::FileNamesIn(deployDir_), std::vector<std::string>{"TH-003.tmp"});
        EXPECT_EQ(ReadBytes(deployDir_ / "TH-003.tmp"), older_);
    }

    TempFolder folder_;
    std::vector<std::uint8_t> file_;
    fs::path logFile_ = folder_.Path() / "run.rlg";
    fs::path deployDir_;
    const std::vector<std::uint8_t> older_{9, 9, 9, 9};
};

TEST_F(DeployFailure, MissingFolderOrSampleFreeFileGiveTheirCodes) {
    EXPECT_EQ(DeployFile(), TLM_DECOMP_NOT_FOUND);
    EXPECT_EQ(DeployBytes({}), TLM_DECOMP_NO_DATA);
    EXPECT_EQ(DeployBytes(BuildContainer(MakeHeader(6), {{"Ne", {}}, {"LAP", {}}})),
              TLM_DECOMP_NO_DATA);
    EXPECT_EQ(DeployBytes(BuildContainer(MakeHeader(6), {})), TLM_DECOMP_NO_DATA);
    fs::remove(logFile_);
    fs::create_directory(logFile_);
    EXPECT_EQ(DeployFile(), TLM_DECOMP_ACCESS_ERROR);
    ExpectNothingDeployed();
}

TEST_F(DeployFailure, AbsentOrReadOnlyDeployFolderIsWriteFailed) {
    WriteBytes(logFile_, file_);
    EXPECT_EQ(DeployFile(folder_.Path() / "absent"), TLM_DECOMP_WRITE_FAILED);
    EXPECT_EQ(DeployFile(logFile_), TLM_DECOMP_WRITE_FAILED);
    fs::permissions(deployDir_, fs::perms::owner_read | fs::perms::owner_exec);
    {
        // Permission bits do not stop root.
        std::ofstream probe(deployDir_ / "probe");
        if (probe.is_open()) {
            probe.close();
            fs::remove(deployDir_ / "probe");
            GTEST_SKIP() << "running with rights that ignore a read-only folder";
        }
    }
    EXPECT_EQ(DeployFile(), TLM_DECOMP_WRITE_FAILED);
    ExpectNothingDeployed();
}

// A file size limit fails the writes part way through a stream, like a full disk, for any user.
TEST_F(DeployFailure, FullDiskIsWriteFailedAndRemovesThePartialStreams) {
    WriteBytes(logFile_, BuildContainer(MakeHeader(7), {{"Ne", RandomSamples(20, 1)},
                                                        {"TH", RandomSamples(200000, 2)}}));
    int result = 0;
    {
        const torvane::testing::FileSizeLimit limit(100000);
        ASSERT_TRUE(limit.Active());
        result = DeployFile();
    }

    EXPECT_EQ(result, TLM_DECOMP_WRITE_FAILED);
    ExpectNothingDeployed();
}

// The head CRC covers magic, version, header and table; the stored CRC every frame byte; so no
// prefix and no single changed byte gets through, not even one zstd would decode unharmed.
TEST_F(DeployFailure, EveryTruncationAndFlippedByteIsAccessError) {
    for (std::size_t offset = 0; offset < file_.size(); ++offset) {
        const std::vector<std::uint8_t> prefix(file_.begin(),
                                               file_.begin() + std::ptrdiff_t(offset + 1));
        if (offset + 1 < file_.size()) {
            ASSERT_EQ(DeployBytes(prefix), TLM_DECOMP_ACCESS_ERROR) << "length " << offset + 1;
        }
        for (const std::uint8_t mask : {std::uint8_t{0x01}, std::uint8_t{0x80}}) {
            auto damaged = file_;
            damaged[offset] ^= mask;
            ASSERT_EQ(DeployBytes(damaged), TLM_DECOMP_ACCESS_ERROR) << "offset " << offset;
        }
    }
    ExpectNothingDeployed();
}

// Damage that keeps the head CRC right: a hostile or buggy writer. No size field is trusted.
TEST_F(DeployFailure, InconsistentTableIsAccessError) {
    const auto entry = [](std::size_t stream, std::size_t field) {
        return format::FixedHeadSize + stream * format::EntrySize + field;
    };
    const auto expectRejected = [&](const std::vector<std::uint8_t>& damaged, const char* what) {
        auto sealed = damaged;
        ResealHead(sealed);
        EXPECT_EQ(DeployBytes(sealed), TLM_DECOMP_ACCESS_ERROR) << what;
    };
    struct Overwrite {
        const char* What;
        std::size_t Offset;
        std::string Bytes;
    };
    for (const auto& [what, offset, bytes] :
         std::vector<Overwrite>{{"unknown version", format::VersionOffset, "\x02"},
                                {"too many streams", format::StreamCountOffset, "\xFF\xFF"},
                                {"path in a name", entry(0, format::NameOffset), "./"},
                                {"byte after the name", entry(2, format::NameOffset + 7), "X"},
                                {"same name twice", entry(1, format::NameOffset), "nE"},
                                {"unknown codec", entry(0, format::CodecOffset), "\x02"},
                                {"32-bit words", entry(0, format::WordSizeOffset), "\x04"},
                                {"reserved field set", entry(0, format::ReservedOffset), "\x01"}}) {
        auto damaged = file_;
        std::copy(bytes.begin(), bytes.end(), damaged.begin() + std::ptrdiff_t(offset));
        expectRejected(damaged, what);
    }
    struct SizeChange {
        const char* What;
        std::size_t Offset;
        std::int64_t Delta;
    };
    for (const auto& [what, offset, delta] : std::vector<SizeChange>{
             {"frame longer than announced", entry(0, format::SampleCountOffset), -1},
             {"frame shorter than announced", entry(0, format::SampleCountOffset), 1},
             {"sample count beyond the limit", entry(1, format::SampleCountOffset), 1ll << 40},
             {"huge stored size", entry(0, format::StoredSizeOffset), 1ll << 62},
             {"stored size past the end", entry(2, format::StoredSizeOffset), 1}}) {
        auto damaged = file_;
        const auto value = GetLittleEndian<std::uint64_t>(damaged, offset);
        PutLittleEndian(std::span(damaged), offset, value + static_cast<std::uint64_t>(delta));
        expectRejected(damaged, what);
    }
    auto longer = file_;
    longer.push_back(0);
    expectRejected(longer, "byte after the last frame");
    ExpectNothingDeployed();
}

} // namespace
} // namespace torvane::rlg::test
