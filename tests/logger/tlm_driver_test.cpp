// Core's driver carried by the real libtlm to a real virtual logger: the calls made from the
// operations table hand integers and records to the right entry point, in the right order, and
// a record sent arrives whole. Core's retry wrappers run over it as the windows run them.

#include "binding/tlm_driver.h"
#include "logger/driver_calls.h"
#include "logger/wait_ready.h"
#include "shell/message_sink.h"
#include "support/simulator_process.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

namespace torvane::binding {
namespace {

using torvane::testing::SimulatorProcess;
using torvane::testing::TempFolder;

class RecordingSink : public shell::MessageSink {
public:
    int Show(const shell::Message& message) override {
        texts.push_back(message.Text);
        return shell::answers::Ok;
    }
    std::vector<std::string> texts;
};

class TlmDriverOverTheLink : public ::testing::Test {
protected:
    void SetUp() override {
        const auto socket = folder / "logger.sock";
        logger = std::make_unique<SimulatorProcess>(
            TORVANE_LOGGER_SIM, socket,
            std::vector<std::string>{"--idle", "--files", "1", "--minutes", "1", "--rate", "0"});
        ASSERT_TRUE(logger->Listening()) << logger->Output();
        ::setenv("TORVANE_LOGGER", ("unix:" + socket.string()).c_str(), 1);
        ASSERT_EQ(driver.Open(status), TLM_OK);
        for (int tries = 0; tries < 100 && status.bytState != TLM_STATE_IDLE; ++tries) {
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
            ASSERT_EQ(driver.GetStatus(status), TLM_OK);
        }
        ASSERT_EQ(status.bytState, TLM_STATE_IDLE);
    }

    void TearDown() override {
        driver.Close(status);
        ::unsetenv("TORVANE_LOGGER");
    }

    TempFolder folder;
    std::unique_ptr<SimulatorProcess> logger;
    TlmDriver driver;
    TlmStatus status{};
};

TEST_F(TlmDriverOverTheLink, IntegersReachTheLoggerAsGiven) {
    EXPECT_EQ(driver.GetTheNumberofFiles(status), 1);

    // The logger refuses any index but 0 and any unknown sensor kind: a value lost or swapped
    // on the way would turn a refusal into an answer, or the other way round.
    TlmInitData data{};
    driver.GetTheInitData(status, 1, data);
    EXPECT_EQ(status.bytSense, TLM_SENSE_BAD_ARGUMENT);
    EXPECT_EQ(driver.GetTheInitData(status, 0, data), TLM_OK);
    EXPECT_EQ(status.bytSense, TLM_SENSE_CLEAN);
    driver.TSInitialize(status, 99);
    EXPECT_EQ(status.bytSense, TLM_SENSE_BAD_ARGUMENT);
    EXPECT_EQ(driver.TSInitialize(status, TLM_INIT_FRONT_SUSPENSION), TLM_OK);
    EXPECT_EQ(status.bytSense, TLM_SENSE_CLEAN);
    EXPECT_EQ(status.bytState, TLM_STATE_SUSPENSION_INIT);
}

TEST_F(TlmDriverOverTheLink, ASettingSentThroughTheRetryWrappersIsReadBack) {
    RecordingSink sink;
    logger::LoggerLink link(driver, sink);
    link.Status = status;

    TlmSettingData before{};
    ASSERT_EQ(logger::ReadSetting(link, before), 0);
    TlmSettingData changed = before;
    changed.intLapOn = static_cast<std::int16_t>(before.intLapOn == 0 ? 1 : 0);
    changed.intLaf = static_cast<std::int16_t>(before.intLaf + 1);
    // The logger keeps its own sensor points whatever a setting says.
    changed.intThClose = static_cast<std::int16_t>(before.intThClose + 7);
    ASSERT_EQ(logger::SendSetting(link, changed), 0);
    ASSERT_EQ(logger::WaitLoggerReady(link), 0);

    TlmSettingData after{};
    ASSERT_EQ(logger::Retried(link, &logger::Driver::GetTheSettingData, after), 0);
    EXPECT_EQ(after.intLapOn, changed.intLapOn);
    EXPECT_EQ(after.intLaf, changed.intLaf);
    EXPECT_EQ(after.intThClose, before.intThClose);
    EXPECT_EQ(sink.texts, std::vector<std::string>{});

    TlmDetonationMap map{};
    EXPECT_EQ(logger::ReadDetonationMap(link, map), 0);
    status = link.Status;
}

} // namespace
} // namespace torvane::binding
