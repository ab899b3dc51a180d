// torvane-cli setting make and show: the window's checks and rules from the command line, and
// damaged records and tables.

#include "support/documented_json.h"
#include "support/hostile_files.h"
#include "support/run_process.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace torvane::cli {
namespace {

using nlohmann::json;
using torvane::testing::ProcessResult;
using torvane::testing::TempFolder;

class SettingCliTest : public ::testing::Test {
protected:
    ProcessResult Cli(const std::vector<std::string>& args) const {
        return torvane::testing::RunProcess(TORVANE_CLI, args,
                                            {"TORVANE_HOME=" + (folder / "home").string()});
    }
    std::string File(const std::string& name) const { return (folder / name).string(); }

    TempFolder folder;
};

TEST_F(SettingCliTest, MakeChecksAsTheWindowDoesAndShowGivesTheLoggingTime) {
    const auto made = Cli({"setting", "make", File("S.DAT"), "--sample", "VRW=0", "--sample",
                           "VB=25", "--start-ne", "25", "--shift", "8049", "--sus", "2"});
    ASSERT_EQ(made.Status, 0) << made.Err;
    const auto shown = Cli({"setting", "show", File("S.DAT"), "--json"});
    ASSERT_EQ(shown.Status, 0) << shown.Err;
    const json setting = json::parse(shown.Out);
    EXPECT_EQ(
        torvane::testing::Undocumented(torvane::testing::DocumentedJson("setting show"), setting),
        std::vector<std::string>{});
    EXPECT_EQ(setting["LoggingTime"], "50h 58m");
    EXPECT_EQ(setting["TotalBytesPer300ms"], 48);
    EXPECT_EQ(setting["fields"]["StartNe"], 1);
    EXPECT_EQ(setting["fields"]["Shift"], 160);
    EXPECT_EQ(setting["fields"]["Sus"], 2);
    EXPECT_NE(Cli({"setting", "show", File("S.DAT")}).Out.find("RRSUS"), std::string::npos);

    // Two bytes a sample and two for DETO1: (96 + 2) bytes per 300 ms.
    torvane::testing::WriteBytes(folder / "MT.DAT", std::vector<std::uint8_t>(56, 2));
    const auto halved = Cli({"setting", "show", File("S.DAT"), "--mt", File("MT.DAT"), "--json"});
    EXPECT_EQ(json::parse(halved.Out)["LoggingTime"], "24h 58m");

    const struct {
        std::vector<std::string> Options;
        std::string Field;
    } refused[] = {
        {{"--start-ne", "0", "--start-th", "0"}, "txtTH"},
        {{"--cm-front", "49"}, "txtCm_F"},
        {{"--cm-rear", "abc"}, "txtCm_R"},
        {{"--start-ne", "20001"}, "txtNe"},
        {{"--shift", "-1"}, "txtShift"},
    };
    for (const auto& c : refused) {
        std::vector<std::string> args{"setting", "make", File("BAD.DAT")};
        args.insert(args.end(), c.Options.begin(), c.Options.end());
        const auto result = Cli(args);
        EXPECT_EQ(result.Status, 1) << c.Field;
        EXPECT_EQ(result.Err, "Inputted data are not correct. (" + c.Field + ")\n");
    }
    for (const std::vector<std::string>& options : {std::vector<std::string>{"--sample", "Ne=7"},
                                                    {"--sample", "LAP=5"},
                                                    {"--sus", "4"},
                                                    {"--pulse-front", "21"},
                                                    {"--engine", "3"},
                                                    {"--deto1", "yes"}}) {
        std::vector<std::string> args{"setting", "make", File("BAD.DAT")};
        args.insert(args.end(), options.begin(), options.end());
        EXPECT_NE(Cli(args).Status, 0) << options[0];
    }
    EXPECT_FALSE(std::filesystem::exists(folder / "BAD.DAT"));
}

TEST_F(SettingCliTest, DamagedRecordsShowWithinTheWindowsLimitsAndHostileFilesAreRefused) {
    std::vector<std::uint8_t> bytes(300);
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        bytes[i] = static_cast<std::uint8_t>(i * 37 + 11);
    }
    torvane::testing::WriteBytes(folder / "RANDOM.DAT", bytes);
    torvane::testing::WriteBytes(folder / "SHORT.DAT", {0x05, 0x00, 0x07});
    for (const char* name : {"RANDOM.DAT", "SHORT.DAT"}) {
        const auto result = Cli({"setting", "show", File(name), "--json"});
        EXPECT_EQ(result.Status, 0) << name << result.Err;
    }
    for (const auto& hostile : torvane::testing::HostileFiles()) {
        ASSERT_TRUE(hostile.Make(folder / "HOSTILE")) << hostile.Kind;
        EXPECT_EQ(Cli({"setting", "show", File("HOSTILE")}).Status, 1) << hostile.Kind;
        EXPECT_EQ(Cli({"setting", "show", File("SHORT.DAT"), "--mt", File("HOSTILE")}).Status, 1)
            << hostile.Kind;
        std::filesystem::remove(folder / "HOSTILE");
    }
    EXPECT_EQ(Cli({"setting", "show", File("MISSING.DAT")}).Status, 1);
}

} // namespace
} // namespace torvane::cli
