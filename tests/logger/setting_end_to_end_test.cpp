// A setting made and sent with torvane-cli to a real virtual logger: the logger reports it back
// and records its next run with it.

#include "support/documented_json.h"
#include "support/run_process.h"
#include "support/simulator_process.h"
#include "support/temp_folder.h"
#include "tlm.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <chrono>
#include <filesystem>
#include <thread>

namespace torvane::logger {
namespace {

using nlohmann::json;
using torvane::testing::DocumentedJson;
using torvane::testing::ProcessResult;
using torvane::testing::SimulatorProcess;
using torvane::testing::TempFolder;
using torvane::testing::Undocumented;
namespace fs = std::filesystem;

class SettingEndToEnd : public ::testing::Test {
protected:
    void StartLogger(std::vector<std::string> options) {
        logger_.reset();
        logger_ = std::make_unique<SimulatorProcess>(TORVANE_LOGGER_SIM, folder / "logger.sock",
                                                     std::move(options));
        ASSERT_TRUE(logger_->Listening()) << logger_->Output();
        for (int tries = 0; tries < 100 && State() == TLM_STATE_INITIALIZING; ++tries) {
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
        }
    }

    int State() const {
        const auto result = Cli({"logger", "status", "--json"});
        return result.Status == 0 ? json::parse(result.Out).at("state").get<int>() : -1;
    }

    ProcessResult Cli(std::vector<std::string> args) const {
        return torvane::testing::RunProcess(
            TORVANE_CLI, args,
            {"TORVANE_HOME=" + (folder / "home").string(),
             "TORVANE_LOGGER=unix:" + (folder / "logger.sock").string()});
    }

    json Json(std::vector<std::string> args) const {
        const auto result = Cli(std::move(args));
        EXPECT_EQ(result.Status, 0) << result.Err;
        return result.Status == 0 ? json::parse(result.Out) : json::object();
    }

    TempFolder folder;
    std::unique_ptr<SimulatorProcess> logger_;
};

TEST_F(SettingEndToEnd, TheLoggerRecordsWithTheSettingItWasSent) {
    StartLogger({"--idle", "--time-scale", "40", "--rate", "0"});
    const auto setting = (folder / "SETTING.DAT").string();
    ASSERT_EQ(Cli({"setting", "make",       setting, "--sample",     "Ne=10", "--sample",
                   "TH=50",   "--sample",   "VFW=0", "--sample",     "VB=0",  "--sample",
                   "VM1=100", "--deto1",    "off",   "--lap",        "on",    "--start-ne",
                   "0",       "--start-th", "1",     "--pulse-rear", "10"})
                  .Status,
              0);
    // Sent to an idle logger, which the send leaves acquiring, as the window does on closing.
    const auto sent = Cli({"logger", "send", setting});
    ASSERT_EQ(sent.Status, 0) << sent.Err;
    EXPECT_EQ(sent.Err, "The setup was completed normally.\n");
    const json made = Json({"setting", "show", setting, "--json"});
    const json read = Json({"logger", "setting", "--json"});
    EXPECT_EQ(Undocumented(DocumentedJson("logger setting"), read), std::vector<std::string>{});
    EXPECT_EQ(Undocumented(DocumentedJson("setting show"), made), std::vector<std::string>{});
    for (const char* field : {"NeTime", "ThTime", "VfwTime", "VbTime", "VmTime", "Deto1Time",
                              "LapOn", "StartTh", "StartNe", "PulseR"}) {
        EXPECT_EQ(read["fields"][field], made["fields"][field]) << field;
    }
    EXPECT_EQ(read["fields"]["Program"], 2);
    EXPECT_EQ(read["LoggingTime"], made["LoggingTime"]);
    EXPECT_EQ(State(), TLM_STATE_ACQUIRING);

    // A second of riding at forty times, then the send again stops acquisition (the run becomes
    // file 1) and gives the logger back.
    std::this_thread::sleep_for(std::chrono::milliseconds(1500));
    ASSERT_EQ(Cli({"logger", "--yes", "send", setting}).Status, 0);
    const auto run = folder / "run.rlg";
    const auto downloaded = Cli({"logger", "--yes", "download", "1", run.string()});
    ASSERT_EQ(downloaded.Status, 0) << downloaded.Err;

    const json info = Json({"info", run.string(), "--json"});
    EXPECT_EQ(info["header"]["SampleTime"], json::parse("[10, 50, 0, 0, 0, 0, 0, 100, 0, 0, 0]"));
    EXPECT_EQ(info["header"]["LapWord"], 1);
    EXPECT_EQ(info["MinSampleTime"], 10);
    fs::create_directories(folder / "streams");
    ASSERT_EQ(Cli({"unpack", run.string(), (folder / "streams").string()}).Status, 0);
    const auto words = [&](const char* stream) {
        return fs::file_size(folder / "streams" / (std::string(stream) + "-010.tmp")) / 2;
    };
    EXPECT_GT(words("Ne"), 1000u);
    EXPECT_NEAR(static_cast<double>(words("Ne")), 5.0 * static_cast<double>(words("TH")), 5.0);
    EXPECT_NEAR(static_cast<double>(words("Ne")), 10.0 * static_cast<double>(words("VM1")), 10.0);
    EXPECT_EQ(words("VFW"), 0u);
}

TEST_F(SettingEndToEnd, ASendTheLoggerRefusesIsToldAndChangesNothing) {
    const auto setting = (folder / "SETTING.DAT").string();
    ASSERT_EQ(Cli({"setting", "make", setting, "--sample", "Ne=5"}).Status, 0);
    StartLogger({"--idle", "--sense", "9", "--on", "SendTheSettingData", "--times", "5"});
    const json before = Json({"logger", "setting", "--json"});
    const auto refused = Cli({"logger", "send", setting});
    EXPECT_EQ(refused.Status, 1);
    EXPECT_EQ(refused.Err, "Sence code error. Error code = 009\n"
                           "Error! \nPlease check reconsideration of a setting item, and "
                           "connection of measurement equipment, and perform again.\n");
    EXPECT_EQ(Json({"logger", "setting", "--json"}), before);

    StartLogger({"--broken"});
    const auto broken = Cli({"logger", "send", setting});
    EXPECT_EQ(broken.Status, 1);
    EXPECT_EQ(broken.Err, "STATUS CODE : 240\n\n"); // the text ends in a carriage return
}

} // namespace
} // namespace torvane::logger
