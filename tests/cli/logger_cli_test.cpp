// torvane-cli logger without a logger: the arguments and the "not connected" road, with
// TORVANE_LOGGER pointing at a socket where nothing listens.

#include "support/run_process.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

namespace torvane::cli {
namespace {

using torvane::testing::ProcessResult;
using torvane::testing::TempFolder;

class LoggerCliTest : public ::testing::Test {
protected:
    ProcessResult Cli(const std::vector<std::string>& args) const {
        return torvane::testing::RunProcess(
            TORVANE_CLI, args,
            {"TORVANE_HOME=" + (folder / "home").string(),
             "TORVANE_LOGGER=unix:" + (folder / "nobody.sock").string()});
    }

    TempFolder folder;
};

TEST_F(LoggerCliTest, WithoutALoggerCommandsSayNotConnectedAndBadArgumentsAreRefusedFirst) {
    const std::string out = (folder / "out.rlg").string();
    const std::vector<std::vector<std::string>> commands{{"logger", "status"},
                                                         {"logger", "list", "--json"},
                                                         {"logger", "download", "3", out, "--yes"},
                                                         {"logger", "--yes", "clear"}};
    for (const auto& command : commands) {
        const auto result = Cli(command);
        EXPECT_EQ(result.Status, 1) << command[1];
        EXPECT_EQ(result.Err, "TorvaneDataLogger is not connected.\n"
                              "USB device error. Error code =  1001\n")
            << command[1];
        EXPECT_EQ(result.Out, "") << command[1];
    }
    EXPECT_FALSE(std::filesystem::exists(out));

    // Bad arguments are refused before the logger is asked, and help is given.
    const std::vector<std::vector<std::string>> mistakes{
        {"logger"},
        {"logger", "reset"},
        {"logger", "download", "3"},
        {"logger", "download", "three", (folder / "out.rlg").string()},
        {"logger", "status", "--force"}};
    for (const auto& command : mistakes) {
        const auto result = Cli(command);
        EXPECT_NE(result.Status, 0) << command.back();
        EXPECT_EQ(result.Err.find("not connected"), std::string::npos) << command.back();
    }
    for (const char* command : {"status", "list", "download", "clear"}) {
        const auto help = Cli({"logger", command, "--help"});
        EXPECT_EQ(help.Status, 0) << command;
        EXPECT_NE(help.Out.find("Usage"), std::string::npos) << command;
    }
}

} // namespace
} // namespace torvane::cli
