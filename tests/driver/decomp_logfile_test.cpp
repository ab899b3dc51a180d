// The C entry point of libtlm, called as a C program would.

#include <string>

#include <gtest/gtest.h>

#include "rlg_test_support.h"
#include "tlm.h"

namespace torvane::rlg::test {
namespace {

TEST(DecompLogfile, DeploysWithOrWithoutTrailingSeparatorAndNullCounts) {
    TempFolder folder;
    const auto header = MakeHeader(8);
    const std::vector<StreamData> streams{{"Ne", SensorSamples(100, 1)}, {"LAP", {}}};
    const std::string logPath = (folder.Path() / "run.rlg").string();
    WriteBytes(logPath, BuildContainer(header, streams));
    const std::string tempPath = folder.Path().string();

    HeaderBytes deployed{};
    std::int32_t byteCount = -1;
    std::int32_t deployCount = -1;
    ASSERT_EQ(decomp_logfile(logPath.c_str(), tempPath.c_str(), 121, deployed.data(), &byteCount,
                             &deployCount),
              TLM_DECOMP_OK);
    EXPECT_EQ(deployed, header);
    EXPECT_EQ(byteCount, 200);
    EXPECT_EQ(deployCount, 2);
    EXPECT_EQ(ReadWords(folder.Path() / "Ne-121.tmp"), streams[0].Samples);
    EXPECT_TRUE(std::filesystem::exists(folder.Path() / "LAP-121.tmp"));

    const std::string withSeparator = tempPath + "/";
    EXPECT_EQ(decomp_logfile(logPath.c_str(), withSeparator.c_str(), 5, deployed.data(), nullptr,
                             nullptr),
              TLM_DECOMP_OK);
    EXPECT_EQ(ReadWords(folder.Path() / "Ne-005.tmp"), streams[0].Samples);
}

TEST(DecompLogfile, NullArgumentsGiveResultCodes) {
    TempFolder folder;
    const std::string logPath = (folder.Path() / "run.rlg").string();
    WriteBytes(logPath, BuildContainer(MakeHeader(9), {{"Ne", SensorSamples(3, 1)}}));
    const std::string tempPath = folder.Path().string();
    HeaderBytes header{};
    std::int32_t byteCount = -1;

    EXPECT_EQ(decomp_logfile(nullptr, tempPath.c_str(), 1, header.data(), &byteCount, nullptr),
              TLM_DECOMP_NOT_FOUND);
    EXPECT_EQ(byteCount, 0);
    EXPECT_EQ(decomp_logfile(logPath.c_str(), tempPath.c_str(), 1, nullptr, nullptr, nullptr),
              TLM_DECOMP_ACCESS_ERROR);
    EXPECT_EQ(decomp_logfile(logPath.c_str(), nullptr, 1, header.data(), nullptr, nullptr),
              TLM_DECOMP_WRITE_FAILED);
    EXPECT_EQ(TempFolder::FileNamesIn(folder.Path()), std::vector<std::string>{"run.rlg"});
}

} // namespace
} // namespace torvane::rlg::test
