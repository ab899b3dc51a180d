// torvane-cli against a real virtual logger on a private socket: listing, downloading what the
// logger recorded, the acquisition question, clearing, and the faults a real link shows (a
// dropped link, a file that is not there, a logger out of order, a logger that dies mid-way).

#include "support/documented_json.h"
#include "support/run_process.h"
#include "support/simulator_process.h"
#include "support/temp_folder.h"
#include "tlm.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <chrono>
#include <filesystem>
#include <future>
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

class LoggerEndToEnd : public ::testing::Test {
protected:
    // Starts the virtual logger with the options and waits until it has finished initialising.
    void StartLogger(std::vector<std::string> options) {
        logger_ = std::make_unique<SimulatorProcess>(TORVANE_LOGGER_SIM, folder / "logger.sock",
                                                     std::move(options));
        ASSERT_TRUE(logger_->Listening()) << logger_->Output();
        for (int tries = 0; tries < 100 && State() == TLM_STATE_INITIALIZING; ++tries) {
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
        }
    }

    ProcessResult Cli(std::vector<std::string> args) const {
        return torvane::testing::RunProcess(
            TORVANE_CLI, args,
            {"TORVANE_HOME=" + (folder / "home").string(),
             "TORVANE_LOGGER=unix:" + (folder / "logger.sock").string()});
    }

    // The logger's state as status --json gives it; -1 when the command failed.
    int State() const {
        const auto result = Cli({"logger", "status", "--json"});
        if (result.Status != 0) {
            return -1;
        }
        return json::parse(result.Out).at("state").get<int>();
    }

    json List() const {
        const auto result = Cli({"logger", "list", "--json"});
        EXPECT_EQ(result.Status, 0) << result.Err;
        return result.Status == 0 ? json::parse(result.Out) : json::array();
    }

    // The run a failed download must leave as it was.
    fs::path OlderRun() const {
        const auto file = folder / "run.rlg";
        torvane::testing::WriteText(file, "an older run");
        return file;
    }
    // The older run stands, and nothing beside it: no partial download is left.
    void ExpectOlderRunAlone() const {
        EXPECT_EQ(torvane::testing::ReadText(folder / "run.rlg"), "an older run");
        for (const auto& entry : fs::directory_iterator(folder.Path())) {
            EXPECT_FALSE(entry.path().extension() == ".part") << entry.path();
        }
    }

    TempFolder folder;
    std::unique_ptr<SimulatorProcess> logger_;
};

TEST_F(LoggerEndToEnd, DownloadedFileIsTheRunTheLoggerRecorded) {
    StartLogger({"--idle", "--files", "2", "--minutes", "1", "--seed", "7", "--rate", "0"});
    const json files = List();
    ASSERT_EQ(files.size(), 2u);
    // Both listings keep to docs/cli-json.schema.json, key for key.
    EXPECT_EQ(Undocumented(DocumentedJson("logger list"), files), std::vector<std::string>{});
    const auto status = Cli({"logger", "status", "--json"});
    ASSERT_EQ(status.Status, 0) << status.Err;
    EXPECT_EQ(Undocumented(DocumentedJson("logger status"), json::parse(status.Out)),
              std::vector<std::string>{});
    EXPECT_EQ(files[0].at("number"), 1);
    EXPECT_EQ(files[0].at("seconds"), 60);
    EXPECT_EQ(files[0].at("done"), false);

    const auto downloaded = folder / "run.rlg";
    const auto result = Cli({"logger", "download", "1", downloaded.string()});
    ASSERT_EQ(result.Status, 0) << result.Err;
    EXPECT_EQ(fs::file_size(downloaded), files[0].at("size").get<std::uintmax_t>());
    EXPECT_EQ(List()[0].at("done"), true);

    // The logger's first stored run is the vehicle of seed 7 under the demo setting, which is
    // what generate makes: the two files deploy into the same streams.
    const auto generated = folder / "generated.rlg";
    ASSERT_EQ(Cli({"generate", generated.string(), "--minutes", "1", "--seed", "7"}).Status, 0);
    fs::create_directories(folder / "a");
    fs::create_directories(folder / "b");
    ASSERT_EQ(Cli({"unpack", downloaded.string(), (folder / "a").string()}).Status, 0);
    ASSERT_EQ(Cli({"unpack", generated.string(), (folder / "b").string()}).Status, 0);
    for (const auto& entry : fs::directory_iterator(folder / "a")) {
        const auto name = entry.path().filename();
        EXPECT_EQ(torvane::testing::ReadText(entry.path()),
                  torvane::testing::ReadText(folder / "b" / name))
            << name;
    }
}

TEST_F(LoggerEndToEnd, AnAcquiringLoggerIsAskedOnceAndGivenBackToAcquisition) {
    StartLogger({"--files", "1", "--minutes", "1", "--rate", "0"});
    ASSERT_EQ(State(), TLM_STATE_ACQUIRING);
    const auto file = OlderRun();

    const auto refused = Cli({"logger", "download", "1", file.string()});
    EXPECT_EQ(refused.Status, 1);
    EXPECT_EQ(refused.Err, "Logger is acquiring data.\nMay I stop operation?\n");
    ExpectOlderRunAlone();
    EXPECT_EQ(State(), TLM_STATE_ACQUIRING);

    const auto accepted = Cli({"logger", "download", "1", file.string(), "--yes"});
    EXPECT_EQ(accepted.Status, 0) << accepted.Err;
    EXPECT_TRUE(fs::exists(file));
    EXPECT_EQ(State(), TLM_STATE_ACQUIRING);
}

TEST_F(LoggerEndToEnd, ALinkDroppedMidTransferFailsCleanlyAndTheNextDownloadWorks) {
    StartLogger(
        {"--idle", "--files", "1", "--minutes", "20", "--rate", "0", "--drop-after-blocks", "3"});
    const auto file = OlderRun();
    const auto dropped = Cli({"logger", "download", "1", file.string()});
    EXPECT_EQ(dropped.Status, 1);
    EXPECT_NE(dropped.Err.find("USB device error. Error code =  1007"), std::string::npos)
        << dropped.Err;
    ExpectOlderRunAlone();

    const auto again = Cli({"logger", "download", "1", file.string()});
    EXPECT_EQ(again.Status, 0) << again.Err;
    EXPECT_EQ(fs::file_size(file), List()[0].at("size").get<std::uintmax_t>());
}

TEST_F(LoggerEndToEnd, AFileThatIsNotThereIsToldAndNothingIsKept) {
    StartLogger({"--idle", "--files", "1", "--minutes", "1", "--sense", "7", "--on",
                 "GetTheLogFile_reading"});
    const auto file = OlderRun();
    const auto result = Cli({"logger", "download", "1", file.string()});
    EXPECT_EQ(result.Status, 1);
    EXPECT_NE(result.Err.find("File not found."), std::string::npos) << result.Err;
    ExpectOlderRunAlone();
}

// A sense code on the first block ends the transfer without a failure, but without a run.
TEST_F(LoggerEndToEnd, ASenseOnTheFirstBlockGivesNoFileAndAFailingStatus) {
    StartLogger({"--idle", "--files", "1", "--minutes", "1", "--sense", "5", "--on",
                 "GetTheLogFile_start"});
    const auto file = OlderRun();
    const auto result = Cli({"logger", "download", "1", file.string()});
    EXPECT_EQ(result.Status, 1);
    EXPECT_NE(result.Err.find("Sence code error. Error code = 005"), std::string::npos)
        << result.Err;
    ExpectOlderRunAlone();
}

TEST_F(LoggerEndToEnd, ClearingEmptiesTheLoggerOnlyWhenConfirmed) {
    StartLogger({"--idle", "--files", "2", "--minutes", "1"});
    EXPECT_EQ(Cli({"logger", "clear"}).Status, 1);
    EXPECT_EQ(List().size(), 2u);

    const auto cleared = Cli({"logger", "clear", "--yes"});
    EXPECT_EQ(cleared.Status, 0) << cleared.Err;
    const auto empty = Cli({"logger", "list"});
    EXPECT_NE(empty.Err.find("There is no file in Logger."), std::string::npos) << empty.Err;
}

TEST_F(LoggerEndToEnd, ALoggerOutOfOrderSaysSo) {
    StartLogger({"--broken"});
    EXPECT_EQ(State(), TLM_STATE_BROKEN);
    const auto result = Cli({"logger", "list"});
    EXPECT_EQ(result.Status, 1);
    EXPECT_NE(result.Err.find("Logger is out of order."), std::string::npos) << result.Err;
}

TEST_F(LoggerEndToEnd, ALoggerThatDiesMidDownloadLeavesTheCommandAnswering) {
    // A slow link makes the transfer last seconds, long enough to pull the plug in the middle.
    StartLogger({"--idle", "--files", "1", "--minutes", "20", "--rate", "50000"});
    const auto file = OlderRun();
    auto download = std::async(std::launch::async, [&] {
        return Cli({"logger", "download", "1", file.string()});
    });
    std::this_thread::sleep_for(std::chrono::milliseconds(700));
    logger_->Kill();
    ASSERT_EQ(download.wait_for(std::chrono::seconds(30)), std::future_status::ready);
    const auto result = download.get();
    EXPECT_EQ(result.Status, 1);
    EXPECT_NE(result.Err.find("USB device error"), std::string::npos) << result.Err;
    ExpectOlderRunAlone();
}

TEST_F(LoggerEndToEnd, TheDetonationMapIsReadWhileAcquiringAndABusyLoggerGivesNone) {
    // The vehicle moves as requests arrive: a fast clock and a few looks give it a run.
    StartLogger({"--time-scale", "200", "--seed", "7"});
    for (int look = 0; look < 20; ++look) {
        ASSERT_EQ(State(), TLM_STATE_ACQUIRING);
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
    }
    const auto file = folder / "logger.dto";
    const auto read = Cli({"logger", "--json", "deto", file.string()});
    ASSERT_EQ(read.Status, 0) << read.Err;
    const json map = json::parse(read.Out);
    EXPECT_EQ(Undocumented(DocumentedJson("deto"), map), std::vector<std::string>{});
    // The fresh setting records DETO1 only.
    EXPECT_EQ(map.at("present"), json::array({true, false}));
    EXPECT_GT(map.at("RunTime").get<int>(), 60);
    EXPECT_GT(map.at("RunDistance").get<int>(), 0);
    EXPECT_EQ(fs::file_size(file), 807u);
    EXPECT_EQ(State(), TLM_STATE_ACQUIRING); // neither asked nor stopped

    logger_.reset();
    StartLogger({"--broken"});
    const auto broken = Cli({"logger", "deto", (folder / "none.dto").string()});
    EXPECT_EQ(broken.Status, 1);
    EXPECT_EQ(broken.Err, "Logger is out of order.\n");
    EXPECT_FALSE(fs::exists(folder / "none.dto"));
}

} // namespace
} // namespace torvane::logger
