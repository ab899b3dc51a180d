// The link policy over a scripted driver: retries, reports, the readiness wait and the order of
// a logger action.

#include "core/logger_test_support.h"
#include "logger/driver_calls.h"
#include "logger/link_messages.h"
#include "logger/logger_action.h"
#include "logger/wait_ready.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace torvane::logger {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::ScriptedLink;

class LinkTest : public ::testing::Test, protected ScriptedLink {};

// The retry policy

TEST_F(LinkTest, TimeOutsAndSensesAreRetriedAndACleanTryWipesThemOut) {
    driver.ScriptRepeated(Call::GetStatus, {.result = TLM_ERR_TIMEOUT}, 4);
    EXPECT_EQ(GetLoggerStatus(link), 0);
    EXPECT_EQ(driver.CountOf(Call::GetStatus), 5);
    driver.Script(Call::LoggingControl, {{.result = TLM_ERR_LINK_LOST}, {.sense = 3}, {}});
    EXPECT_EQ(ControlLogging(link, 1), 0);
    EXPECT_EQ(driver.CountOf(Call::LoggingControl), 3);
    EXPECT_THAT(sink.Texts(), IsEmpty());
}

TEST_F(LinkTest, FiveFailedTriesShowTheFirstSenseOnceAndOtherCodesEndAtOnceUnreported) {
    driver.ScriptRepeated(Call::GetStatus, {.sense = 5}, 6);
    EXPECT_EQ(GetLoggerStatus(link), results::SenseShown);
    EXPECT_EQ(driver.CountOf(Call::GetStatus), 5);
    driver.Script(Call::GetTheSettingData, {{.sense = 9}});
    driver.ScriptRepeated(Call::GetTheSettingData, {.result = TLM_ERR_BUSY}, 4);
    TlmSettingData setting{};
    EXPECT_EQ(ReadSetting(link, setting), results::SenseShown);
    EXPECT_THAT(sink.Texts(), ElementsAre("Sence code error. Error code = 005",
                                          "Sence code error. Error code = 009"));
    EXPECT_EQ(sink.messages[0].buttons, shell::buttons::Ok);

    // Other driver codes end at once, unreported.
    sink.messages.clear();
    driver.Script(Call::InitializeLogFile, {{.result = TLM_ERR_PROTOCOL}});
    EXPECT_EQ(ClearLogFiles(link), TLM_ERR_PROTOCOL);
    driver.Script(Call::InitializeLogFile, {{.sense = 4}, {.result = TLM_ERR_SENSE}});
    // The sense seen first is still reported, now that no try came out clean.
    EXPECT_EQ(ClearLogFiles(link), results::SenseShown);
    EXPECT_EQ(driver.CountOf(Call::InitializeLogFile), 3);
    EXPECT_THAT(sink.Texts(), ElementsAre("Sence code error. Error code = 004"));
}

TEST_F(LinkTest, CountsBlocksAndListsAreAnswersOnlyWhenClean) {
    driver.Script(Call::GetTheNumberofFiles,
                  {{.result = 3, .sense = 4}, {.result = 2}, {.result = TLM_ERR_ARGUMENT}});
    int count = -1;
    EXPECT_EQ(GetFileCount(link, count), 0);
    EXPECT_EQ(count, 2);
    EXPECT_EQ(GetFileCount(link, count), TLM_ERR_ARGUMENT);
    EXPECT_EQ(count, 2);

    // A block read leaves "file not found" to its caller.
    TlmTransferBlock block{};
    driver.Script(Call::GetTheLogFile_reading,
                  {{.sense = TLM_SENSE_FILE_NOT_FOUND}, {.result = 1, .blockSize = 40}});
    EXPECT_EQ(ReadLogFileBlock(link, block), 0);
    EXPECT_EQ(link.status.bytSense, TLM_SENSE_FILE_NOT_FOUND);
    EXPECT_EQ(ReadLogFileBlock(link, block), 1);
    EXPECT_EQ(block.lngSize, 40);

    driver.files = {{1, 0, 10, 100}, {2, 1, 20, 200}, {3, 0, 30, 300}};
    std::vector<TlmDownloadEntry> entries(7);
    EXPECT_EQ(GetDownloadList(link, 2, entries), 0);
    ASSERT_EQ(entries.size(), 2u);
    EXPECT_EQ(entries[1].intNumber, 2);
    EXPECT_THAT(sink.Texts(), IsEmpty());
}

// Opening and reporting

TEST_F(LinkTest, OpenLoggerTellsWhyTheLinkDidNotOpen) {
    driver.Script(Call::Open, {{.result = TLM_ERR_NOT_CONNECTED},
                               {.result = TLM_ERR_NOT_CONNECTED},
                               {.result = TLM_ERR_OPEN_FAILED},
                               {.result = TLM_ERR_TIMEOUT},
                               {.result = TLM_ERR_OPEN_FAILED},
                               {}});
    // A quiet open is quiet only about a missing logger.
    EXPECT_EQ(OpenLogger(link, true), TLM_ERR_NOT_CONNECTED);
    EXPECT_EQ(OpenLogger(link, false), TLM_ERR_NOT_CONNECTED);
    EXPECT_EQ(OpenLogger(link, false), TLM_ERR_OPEN_FAILED);
    EXPECT_EQ(OpenLogger(link, false), TLM_ERR_TIMEOUT);
    EXPECT_EQ(OpenLogger(link, true), TLM_ERR_OPEN_FAILED);
    EXPECT_EQ(OpenLogger(link, false), 0);
    EXPECT_THAT(sink.Texts(), ElementsAre("TorvaneDataLogger is not connected.",
                                          "USB device error. Error code =  0002",
                                          "USB device error. Error code =  0003",
                                          "USB device error. Error code =  0002"));
}

TEST_F(LinkTest, ReportDriverErrorTellsKnownCodesAndClosesUnlessKeptOpen) {
    link.status.bytSense = 33;
    for (const std::int32_t code : {-1, -7, -16, -17, -32}) {
        ReportDriverError(link, code, true);
    }
    EXPECT_EQ(driver.CountOf(Call::Close), 0);
    EXPECT_THAT(sink.Texts(), ElementsAre("USB device error. Error code =  1001",
                                          "USB device error. Error code =  1007",
                                          "USB device error. Error code =  1016",
                                          "USB device error. Error code =  1017",
                                          "Sence code error. Error code = 033"));
    sink.messages.clear();
    ReportDriverError(link, -8, false);
    EXPECT_THAT(sink.Texts(), IsEmpty());
    EXPECT_EQ(driver.CountOf(Call::Close), 1);
}

// The readiness wait

TEST_F(LinkTest, WaitLoggerReadyPollsUntilIdleABrokenLoggerOrAnError) {
    driver.Script(Call::GetStatus, {{.state = TLM_STATE_READY}, {}, {}, {.state = TLM_STATE_IDLE}});
    EXPECT_EQ(WaitLoggerReady(link), 0);
    EXPECT_EQ(driver.CountOf(Call::GetStatus), 4);
    EXPECT_THAT(pauses, ElementsAre(ReadyPollInterval, ReadyPollInterval, ReadyPollInterval));
    pauses.clear();

    driver.Script(Call::GetStatus,
                  {{.state = TLM_STATE_WRITING_FLASH}, {.state = TLM_STATE_BROKEN}});
    EXPECT_EQ(WaitLoggerReady(link), results::OutOfOrder);
    EXPECT_THAT(sink.Texts(), ElementsAre("Logger is out of order."));
    driver.Script(Call::GetStatus, {{.state = TLM_STATE_WRITING_FLASH, .error = 3}});
    EXPECT_EQ(WaitLoggerReady(link), results::ErrorState);
    EXPECT_EQ(sink.messages.size(), 1u);
    driver.Script(Call::GetStatus, {{.result = TLM_ERR_PROTOCOL}});
    EXPECT_EQ(WaitLoggerReady(link), TLM_ERR_PROTOCOL);
    EXPECT_EQ(pauses.size(), 1u);
}

// The order of a logger action

struct ActionProbe {
    int runs = 0;
    bool sawStoppedAcquisition = false;
    std::int32_t result = 0;
    LoggerAction Action() {
        return [this](ActionContext& context) {
            ++runs;
            sawStoppedAcquisition = context.acquisitionStopped;
            return result;
        };
    }
};

TEST_F(LinkTest, AnIdleLoggerIsActedOnAndABusyOrMissingOneToldAndClosed) {
    ActionProbe probe;
    EXPECT_TRUE(RunLoggerAction(link, {}, probe.Action()).done);
    EXPECT_EQ(probe.runs, 1);
    EXPECT_THAT(driver.Sequence(),
                ElementsAre(Call::Open, Call::GetStatus, Call::GetStatus, Call::Close));
    EXPECT_THAT(sink.Texts(), IsEmpty());

    // A busy or missing logger is told and closed.
    driver.calls.clear();
    driver.state = TLM_STATE_THROTTLE_INIT;
    EXPECT_FALSE(RunLoggerAction(link, {}, probe.Action()).done);
    EXPECT_EQ(driver.Sequence().back(), Call::Close);

    driver.calls.clear();
    driver.Script(Call::Open, {{.result = TLM_ERR_NOT_CONNECTED}});
    EXPECT_EQ(RunLoggerAction(link, {}, probe.Action()).result, TLM_ERR_NOT_CONNECTED);
    EXPECT_EQ(probe.runs, 1);
    EXPECT_THAT(sink.Texts(),
                ElementsAre("Now throttle initializing.", "TorvaneDataLogger is not connected.",
                            "USB device error. Error code =  1001"));
    EXPECT_THAT(driver.Sequence(), ElementsAre(Call::Open, Call::Close));
}

TEST_F(LinkTest, AnAcquiringLoggerIsStoppedOnlyIfTheOperatorSaysYes) {
    driver.state = TLM_STATE_ACQUIRING;
    sink.answers = {shell::answers::No, shell::answers::Yes};
    ActionProbe probe;
    EXPECT_FALSE(RunLoggerAction(link, {}, probe.Action()).done);
    EXPECT_EQ(probe.runs, 0);
    ASSERT_EQ(sink.messages.size(), 1u);
    EXPECT_EQ(sink.messages[0].text, "Logger is acquiring data.\r\nMay I stop operation?");
    EXPECT_EQ(sink.messages[0].buttons, shell::buttons::YesNo);
    EXPECT_THAT(driver.Sequence(), ElementsAre(Call::Open, Call::GetStatus, Call::Close));

    driver.calls.clear();
    EXPECT_TRUE(RunLoggerAction(link, {}, probe.Action()).done);
    EXPECT_TRUE(probe.sawStoppedAcquisition);
    EXPECT_THAT(driver.Sequence(),
                ElementsAre(Call::Open, Call::GetStatus, Call::LoggingControl, Call::GetStatus,
                            Call::LoggingControl, Call::GetStatus, Call::Close));
    EXPECT_THAT(driver.LoggingControlValues(), ElementsAre(1, 0));

    // Reading windows let an acquiring logger through without asking.
    driver.calls.clear();
    sink.messages.clear();
    EXPECT_TRUE(
        RunLoggerAction(link, {.whenAcquiring = WhenAcquiring::LetThrough}, probe.Action()).done);
    EXPECT_FALSE(probe.sawStoppedAcquisition);
    EXPECT_THAT(sink.Texts(), IsEmpty());
    EXPECT_EQ(driver.CountOf(Call::LoggingControl), 0);
}

TEST_F(LinkTest, AFailedActionIsReportedOnceAndClosesTheLinkWithoutGivingBack) {
    driver.state = TLM_STATE_ACQUIRING;
    sink.answers = {shell::answers::Yes};
    ActionProbe probe;
    probe.result = TLM_ERR_PROTOCOL;
    const ActionResult result = RunLoggerAction(link, {}, probe.Action());
    EXPECT_FALSE(result.done);
    EXPECT_EQ(result.result, TLM_ERR_PROTOCOL);
    EXPECT_EQ(sink.Texts().back(), "USB device error. Error code =  1004");
    EXPECT_THAT(driver.LoggingControlValues(), ElementsAre(1));
    EXPECT_EQ(driver.CountOf(Call::Close), 1);
}

} // namespace
} // namespace torvane::logger
