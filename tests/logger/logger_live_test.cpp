// The monitor and service mode over the real libtlm to a real virtual logger: live values that
// follow the ridden bike, dumps equal to the logger's blocks, the built-in functions, a heat run
// that leaves HEATRUN.TMP and stops when asked, and a logger that dies under each of them.

#include "binding/tlm_driver.h"
#include "logger/monitor.h"
#include "logger/service_mode.h"
#include "shell/message_sink.h"
#include "support/documented_json.h"
#include "support/run_process.h"
#include "support/simulator_process.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <chrono>
#include <cstdlib>
#include <fstream>
#include <future>
#include <set>
#include <sstream>
#include <thread>

namespace torvane::logger {
namespace {

using nlohmann::json;
using torvane::testing::ProcessResult;
using torvane::testing::SimulatorProcess;
using torvane::testing::TempFolder;
namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

class LiveLogger : public ::testing::Test {
protected:
    void StartLogger(std::vector<std::string> options) {
        const auto socket = folder.Path() / "logger.sock";
        logger_ = std::make_unique<SimulatorProcess>(TORVANE_LOGGER_SIM, socket, options);
        ASSERT_TRUE(logger_->Listening()) << logger_->Output();
        ::setenv("TORVANE_LOGGER", ("unix:" + socket.string()).c_str(), 1);
        // Past the logger's power-on initialising.
        TlmStatus status{};
        for (int tries = 0; tries < 100; ++tries) {
            if (driver.Open(status) == TLM_OK && driver.GetStatus(status) == TLM_OK &&
                status.bytState != TLM_STATE_INITIALIZING) {
                driver.Close(status);
                return;
            }
            driver.Close(status);
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
        }
        FAIL() << "the logger stayed initialising";
    }

    void TearDown() override { ::unsetenv("TORVANE_LOGGER"); }

    ProcessResult Cli(std::vector<std::string> args, std::string extra = {}) const {
        std::vector<std::string> environment{"TORVANE_HOME=" + (folder.Path() / "home").string(),
                                             "TORVANE_LOGGER=unix:" +
                                                 (folder.Path() / "logger.sock").string()};
        if (!extra.empty()) {
            environment.push_back(std::move(extra));
        }
        return torvane::testing::RunProcess(TORVANE_CLI, args, environment);
    }

    std::vector<std::uint8_t> ReadFile(const fs::path& file) const {
        std::ifstream in(file, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }

    TempFolder folder;
    std::unique_ptr<SimulatorProcess> logger_;
    binding::TlmDriver driver;
    shell::RecordingSink sink;
};

TEST_F(LiveLogger, TheMonitorFollowsTheRiddenBikeAndReleasesItsLinkOnClosing) {
    StartLogger({"--time-scale", "5"});
    LafTable laf;
    LoggerLink link(driver, sink);
    Monitor monitor(link, laf);
    ASSERT_TRUE(monitor.Open());
    EXPECT_EQ(monitor.Header().Program, "TORVANE LOGGER 2");
    std::set<std::string> speeds;
    double fastest = 0;
    for (int tick = 0; tick < 120; ++tick) {
        std::this_thread::sleep_for(std::chrono::milliseconds(25));
        monitor.Tick();
        ASSERT_EQ(monitor.State(), MonitorState::Polling);
        const auto& values = monitor.Values();
        speeds.insert(values[static_cast<std::size_t>(MonitorField::Ne)].Text);
        fastest = std::max(fastest, values[static_cast<std::size_t>(MonitorField::VRW)].Value);
    }
    EXPECT_GT(speeds.size(), 20u);
    EXPECT_GT(fastest, 30.0);
    monitor.Close();
    // The link is given back: the next program finds the logger free.
    EXPECT_EQ(Cli({"logger", "status"}).Status, 0);
    EXPECT_TRUE(sink.Messages.empty());
}

TEST_F(LiveLogger, MonitorLinesAreDocumentedAndALostLoggerEndsTheCommand) {
    StartLogger({});
    const auto result = Cli({"logger", "monitor", "--count", "5", "--interval", "10", "--json"});
    ASSERT_EQ(result.Status, 0) << result.Err;
    std::istringstream lines(result.Out);
    int count = 0;
    for (std::string line; std::getline(lines, line); ++count) {
        const json reading = json::parse(line);
        EXPECT_EQ(torvane::testing::Undocumented(torvane::testing::DocumentedJson("logger monitor"),
                                                 reading),
                  std::vector<std::string>{});
    }
    EXPECT_EQ(count, 5);

    auto polling = std::async(std::launch::async, [&] {
        return Cli({"logger", "monitor", "--count", "100000", "--interval", "5"});
    });
    std::this_thread::sleep_for(std::chrono::milliseconds(500));
    const auto killed = Clock::now();
    logger_->Kill();
    ASSERT_EQ(polling.wait_for(std::chrono::seconds(20)), std::future_status::ready);
    const auto ended = polling.get();
    EXPECT_LT(Clock::now() - killed, std::chrono::seconds(10));
    EXPECT_EQ(ended.Status, 1);
    EXPECT_NE(ended.Err.find("USB device error. Error code =  1007"), std::string::npos)
        << ended.Err;
}

TEST_F(LiveLogger, TheWindowsMonitorComesBackWhenTheLoggerDoes) {
    StartLogger({});
    LafTable laf;
    LoggerLink link(driver, sink);
    Monitor monitor(link, laf);
    ASSERT_TRUE(monitor.Open());
    logger_->Kill();
    const auto killed = Clock::now();
    monitor.Tick();
    EXPECT_LT(Clock::now() - killed, std::chrono::seconds(2));
    EXPECT_EQ(monitor.State(), MonitorState::LinkLost);
    ASSERT_EQ(sink.Messages.size(), 1u);
    monitor.Tick(); // silent while nothing listens
    EXPECT_EQ(sink.Messages.size(), 1u);
    StartLogger({});
    monitor.Tick();
    EXPECT_EQ(monitor.State(), MonitorState::Polling);
    monitor.Tick();
    EXPECT_GT(monitor.Readings(), 1);
}

TEST_F(LiveLogger, ADroppedLinkIsToldOnceAndReadingsComeBack) {
    // The first reading is answered, then the cable is pulled.
    StartLogger({"--drop", "--on", "GetTheSignalCondition"});
    LafTable laf;
    LoggerLink link(driver, sink);
    Monitor monitor(link, laf);
    ASSERT_TRUE(monitor.Open());
    monitor.Tick();
    EXPECT_EQ(monitor.State(), MonitorState::LinkLost);
    for (int tick = 0; tick < 40 && monitor.State() != MonitorState::Polling; ++tick) {
        std::this_thread::sleep_for(std::chrono::milliseconds(25));
        monitor.Tick();
    }
    EXPECT_EQ(monitor.State(), MonitorState::Polling);
    monitor.Tick();
    EXPECT_EQ(monitor.Readings(), 2);
    ASSERT_EQ(sink.Messages.size(), 1u);
    EXPECT_EQ(sink.Messages[0].Text, "USB device error. Error code =  1007");
}

TEST_F(LiveLogger, AStalledLinkGivesTheMessageInBoundedTime) {
    StartLogger({"--delay", "3000", "--on", "GetTheSignalCondition"});
    const auto start = Clock::now();
    const auto stalled =
        Cli({"logger", "monitor", "--count", "3"}, "TORVANE_LOGGER_TIMEOUT_MS=200");
    // Five tries of one exchange each under the retry policy, and the link's close.
    EXPECT_LT(Clock::now() - start, std::chrono::seconds(3));
    EXPECT_EQ(stalled.Status, 1);
    EXPECT_NE(stalled.Err.find("USB device error. Error code =  1003"), std::string::npos)
        << stalled.Err;
}

TEST_F(LiveLogger, ALinkLostDuringADumpLeavesNoFile) {
    StartLogger({"--result", "-7", "--on", "GetTheErrorInfo", "--times", "5"});
    const auto err = folder.Path() / "logger.err";
    const auto result = Cli({"logger", "dump", "errors", err.string()});
    EXPECT_EQ(result.Status, 1);
    EXPECT_NE(result.Err.find("USB device error. Error code =  1007"), std::string::npos)
        << result.Err;
    EXPECT_FALSE(fs::exists(err));
}

TEST_F(LiveLogger, DumpsEqualTheLoggersBlocks) {
    StartLogger({"--idle", "--error-state", "12"});
    std::vector<std::uint8_t> identity(TLM_SPECIAL_DATA_SIZE);
    std::vector<std::uint8_t> errors(TLM_ERROR_INFO_SIZE);
    TlmStatus status{};
    ASSERT_EQ(driver.Open(status), TLM_OK);
    ASSERT_EQ(driver.GetTheSpecialData_raw(status, identity), TLM_OK);
    ASSERT_EQ(driver.GetTheErrorInfo(status, errors), TLM_OK);
    driver.Close(status);

    const auto spd = folder.Path() / "logger.spd";
    const auto err = folder.Path() / "logger.err";
    ASSERT_EQ(Cli({"logger", "dump", "identity", spd.string()}).Status, 0);
    ASSERT_EQ(Cli({"logger", "dump", "errors", err.string()}).Status, 0);
    EXPECT_EQ(ReadFile(spd), identity);
    EXPECT_EQ(ReadFile(err), errors);
    EXPECT_EQ(errors[1], 12);

    const auto hex = folder.Path() / "logger.txt";
    ASSERT_EQ(Cli({"logger", "dump", "identity", hex.string(), "--hex"}).Status, 0);
    std::ifstream in(hex);
    std::string first;
    std::getline(in, first);
    EXPECT_EQ(first.substr(0, 10), "000000  54");

    const auto nowhere = folder.Path() / "missing" / "logger.spd";
    const auto refused = Cli({"logger", "dump", "identity", nowhere.string()});
    EXPECT_EQ(refused.Status, 1);
    EXPECT_NE(refused.Err.find("Error(76)"), std::string::npos) << refused.Err;
    EXPECT_FALSE(fs::exists(nowhere.parent_path()));
}

TEST_F(LiveLogger, BuiltInFunctionsAskForYesAndTellHowTheyEnded) {
    StartLogger({"--idle"});
    EXPECT_EQ(Cli({"logger", "service", "test1"}).Status, 1);
    const auto done = Cli({"logger", "service", "test1", "--yes"});
    EXPECT_EQ(done.Status, 0) << done.Err;
    EXPECT_NE(done.Err.find("The setup was completed normally."), std::string::npos);
    logger_.reset();
    StartLogger({"--idle", "--error-state", "3"});
    const auto stopped = Cli({"logger", "service", "init", "--yes"});
    EXPECT_EQ(stopped.Status, 1);
    EXPECT_NE(stopped.Err.find("Error state. Error code = 03"), std::string::npos) << stopped.Err;
    EXPECT_NE(stopped.Out.find("000000  00 07 03"), std::string::npos) << stopped.Out;
}

// The heat run reads for three minutes a pass at one reading each 30 ms; here the readings
// follow each other at once, every other pause is real.
Pause WithoutReadingPauses() {
    return [](std::chrono::milliseconds pause) {
        if (pause != HeatSignalPause) {
            SleepFor(pause);
        }
    };
}

TEST_F(LiveLogger, AHeatRunPassLeavesHeatrunTmpAndTheRunStopsWhenAsked) {
    StartLogger({"--idle", "--files", "1", "--minutes", "1", "--rate", "0"});
    TlmStatus status{};
    ASSERT_EQ(driver.Open(status), TLM_OK);
    TlmDownloadEntry first{};
    ASSERT_EQ(driver.GetTheDownloadList(status, std::span(&first, 1)), TLM_OK);
    driver.Close(status);

    ServiceMode service(driver, sink, folder.Path(), WithoutReadingPauses());
    shell::SteppedActivity* run = service.StartHeatRun(HeatRunKind::Acquisition);
    ASSERT_NE(run, nullptr);
    const auto deadline = Clock::now() + std::chrono::seconds(60);
    while (run->Step() && service.RunningHeatRun()->Passes() == 0 && Clock::now() < deadline) {
    }
    ASSERT_EQ(service.RunningHeatRun()->Passes(), 1)
        << (sink.Messages.empty() ? "" : sink.Messages[0].Text);
    const auto file = folder.Path() / HeatRunFileName;
    ASSERT_TRUE(fs::exists(file));
    EXPECT_EQ(fs::file_size(file), static_cast<std::uintmax_t>(first.lngSize));

    // Into the next pass's readings, then the end button.
    for (int step = 0; step < 20; ++step) {
        ASSERT_TRUE(run->Step());
    }
    EXPECT_EQ(service.RunningHeatRun()->Stage(), HeatStage::ReadingSignals);
    service.RequestHeatRunEnd();
    EXPECT_FALSE(run->Step());
    EXPECT_TRUE(sink.Messages.empty()) << sink.Messages[0].Text;
    service.HeatRunEnded();
    EXPECT_TRUE(fs::exists(file));
    // The link was given back.
    EXPECT_EQ(Cli({"logger", "status"}).Status, 0);
}

TEST_F(LiveLogger, ALoggerThatDiesInAHeatRunEndsItWithTheMessage) {
    StartLogger({"--idle"});
    ServiceMode service(driver, sink, folder.Path(), WithoutReadingPauses());
    shell::SteppedActivity* run = service.StartHeatRun(HeatRunKind::Service2);
    for (int step = 0; step < 10; ++step) {
        ASSERT_TRUE(run->Step());
    }
    logger_->Kill();
    const auto killed = Clock::now();
    while (run->Step()) {
    }
    EXPECT_LT(Clock::now() - killed, std::chrono::seconds(5));
    ASSERT_EQ(sink.Messages.size(), 1u);
    EXPECT_EQ(sink.Messages[0].Text, "USB device error. Error code =  1007");
}

} // namespace
} // namespace torvane::logger
