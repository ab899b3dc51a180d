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
    Driver.ScriptRepeated(Call::GetStatus, {.Result = TLM_ERR_TIMEOUT}, 4);
    EXPECT_EQ(GetLoggerStatus(Link), 0);
    EXPECT_EQ(Driver.CountOf(Call::GetStatus), 5);
    Driver.Script(Call::LoggingControl, {{.Result = TLM_ERR_LINK_LOST}, {.Sense = 3}, {}});
    EXPECT_EQ(ControlLogging(Link, 1), 0);
    EXPECT_EQ(Driver.CountOf(Call::LoggingControl), 3);
    EXPECT_THAT(Sink.Texts(), IsEmpty());
}

TEST_F(LinkTest, FiveFailedTriesShowTheFirstSenseOnceAndOtherCodesEndAtOnceUnreported) {
    Driver.ScriptRepeated(Call::GetStatus, {.Sense = 5}, 6);
    EXPECT_EQ(GetLoggerStatus(Link), results::SenseShown);
    EXPECT_EQ(Driver.CountOf(Call::GetStatus), 5);
    Driver.Script(Call::GetTheSettingData, {{.Sense = 9}});
    Driver.ScriptRepeated(Call::GetTheSettingData, {.Result = TLM_ERR_BUSY}, 4);
    TlmSettingData setting{};
    EXPECT_EQ(ReadSetting(Link, setting), results::SenseShown);
    EXPECT_THAT(Sink.Texts(), ElementsAre("Sence code error. Error code = 005",
                                          "Sence code error. Error code = 009"));
    EXPECT_EQ(Sink.Messages[0].Buttons, shell::buttons::Ok);

    // Other driver codes end at once, unreported.
    Sink.Messages.clear();
    Driver.Script(Call::InitializeLogFile, {{.Result = TLM_ERR_PROTOCOL}});
    EXPECT_EQ(ClearLogFiles(Link), TLM_ERR_PROTOCOL);
    Driver.Script(Call::InitializeLogFile, {{.Sense = 4}, {.Result = TLM_ERR_SENSE}});
    // The sense seen first is still reported, now that no try came out clean.
    EXPECT_EQ(ClearLogFiles(Link), results::SenseShown);
    EXPECT_EQ(Driver.CountOf(Call::InitializeLogFile), 3);
    EXPECT_THAT(Sink.Texts(), ElementsAre("Sence code error. Error code = 004"));
}

TEST_F(LinkTest, CountsBlocksAndListsAreAnswersOnlyWhenClean) {
    Driver.Script(Call::GetTheNumberofFiles,
                  {{.Result = 3, .Sense = 4}, {.Result = 2}, {.Result = TLM_ERR_ARGUMENT}});
    int count = -1;
    EXPECT_EQ(GetFileCount(Link, count), 0);
    EXPECT_EQ(count, 2);
    EXPECT_EQ(GetFileCount(Link, count), TLM_ERR_ARGUMENT);
    EXPECT_EQ(count, 2);

    // A block read leaves "file not found" to its caller.
    TlmTransferBlock block{};
    Driver.Script(Call::GetTheLogFile_reading,
                  {{.Sense = TLM_SENSE_FILE_NOT_FOUND}, {.Result = 1, .BlockSize = 40}});
    EXPECT_EQ(ReadLogFileBlock(Link, block), 0);
    EXPECT_EQ(Link.Status.bytSense, TLM_SENSE_FILE_NOT_FOUND);
    EXPECT_EQ(ReadLogFileBlock(Link, block), 1);
    EXPECT_EQ(block.lngSize, 40);

    Driver.files = {{1, 0, 10, 100}, {2, 1, 20, 200}, {3, 0, 30, 300}};
    std::vector<TlmDownloadEntry> entries(7);
    EXPECT_EQ(GetDownloadList(Link, 2, entries), 0);
    ASSERT_EQ(entries.size(), 2u);
    EXPECT_EQ(entries[1].intNumber, 2);
    EXPECT_THAT(Sink.Texts(), IsEmpty());
}

// Opening and reporting

TEST_F(LinkTest, OpenLoggerTellsWhyTheLinkDidNotOpen) {
    Driver.Script(Call::Open, {{.Result = TLM_ERR_NOT_CONNECTED},
                               {.Result = TLM_ERR_NOT_CONNECTED},
                               {.Result = TLM_ERR_OPEN_FAILED},
                               {.Result = TLM_ERR_TIMEOUT},
                               {.Result = TLM_ERR_OPEN_FAILED},
                               {}});
    // A quiet open is quiet only about a missing logger.
    EXPECT_EQ(OpenLogger(Link, true), TLM_ERR_NOT_CONNECTED);
    EXPECT_EQ(OpenLogger(Link, false), TLM_ERR_NOT_CONNECTED);
    EXPECT_EQ(OpenLogger(Link, false), TLM_ERR_OPEN_FAILED);
    EXPECT_EQ(OpenLogger(Link, false), TLM_ERR_TIMEOUT);
    EXPECT_EQ(OpenLogger(Link, true), TLM_ERR_OPEN_FAILED);
    EXPECT_EQ(OpenLogger(Link, false), 0);
    EXPECT_THAT(Sink.Texts(), ElementsAre("TorvaneDataLogger is not connected.",
                                          "USB device error. Error code =  0002",
                                          "USB device error. Error code =  0003",
                                          "USB device error. Error code =  0002"));
}

TEST_F(LinkTest, ReportDriverErrorTellsKnownCodesAndClosesUnlessKeptOpen) {
    Link.Status.bytSense = 33;
    for (const std::int32_t code : {-1, -7, -16, -17, -32}) {
        ReportDriverError(Link, code, true);
    }
    EXPECT_EQ(Driver.CountOf(Call::Close), 0);
    EXPECT_THAT(Sink.Texts(), ElementsAre("USB device error. Error code =  1001",
                                          "USB device error. Error code =  1007",
                                          "USB device error. Error code =  1016",
                                          "USB device error. Error code =  1017",
                                          "Sence code error. Error code = 033"));
    Sink.Messages.clear();
    ReportDriverError(Link, -8, false);
    EXPECT_THAT(Sink.Texts(), IsEmpty());
    EXPECT_EQ(Driver.CountOf(Call::Close), 1);
}

// The readiness wait

TEST_F(LinkTest, WaitLoggerReadyPollsUntilIdleABrokenLoggerOrAnError) {
    Driver.Script(Call::GetStatus, {{.State = TLM_STATE_READY}, {}, {}, {.State = TLM_STATE_IDLE}});
    EXPECT_EQ(WaitLoggerReady(Link), 0);
    EXPECT_EQ(Driver.CountOf(Call::GetStatus), 4);
    EXPECT_THAT(Pauses, ElementsAre(ReadyPollInterval, ReadyPollInterval, ReadyPollInterval));
    Pauses.clear();

    Driver.Script(Call::GetStatus,
                  {{.State = TLM_STATE_WRITING_FLASH}, {.State = TLM_STATE_BROKEN}});
    EXPECT_EQ(WaitLoggerReady(Link), results::OutOfOrder);
    EXPECT_THAT(Sink.Texts(), ElementsAre("Logger is out of order."));
    Driver.Script(Call::GetStatus, {{.State = TLM_STATE_WRITING_FLASH, .Error = 3}});
    EXPECT_EQ(WaitLoggerReady(Link), results::ErrorState);
    EXPECT_EQ(Sink.Messages.size(), 1u);
    Driver.Script(Call::GetStatus, {{.Result = TLM_ERR_PROTOCOL}});
    EXPECT_EQ(WaitLoggerReady(Link), TLM_ERR_PROTOCOL);
    EXPECT_EQ(Pauses.size(), 1u);
}

// The order of a logger action

struct ActionProbe {
    int Runs = 0;
    bool SawStoppedAcquisition = false;
    std::int32_t Result = 0;
    LoggerAction Action() {
        return [this](ActionContext& context) {
            ++Runs;
            SawStoppedAcquisition = context.AcquisitionStopped;
            return Result;
        };
    }
};

TEST_F(LinkTest, AnIdleLoggerIsActedOnAndABusyOrMissingOneToldAndClosed) {
    ActionProbe probe;
    EXPECT_TRUE(RunLoggerAction(Link, {}, probe.Action()).Done);
    EXPECT_EQ(probe.Runs, 1);
    EXPECT_THAT(Driver.Sequence(),
                ElementsAre(Call::Open, Call::GetStatus, Call::GetStatus, Call::Close));
    EXPECT_THAT(Sink.Texts(), IsEmpty());

    // A busy or missing logger is told and closed.
    Driver.calls.clear();
    Driver.state = TLM_STATE_THROTTLE_INIT;
    EXPECT_FALSE(RunLoggerAction(Link, {}, probe.Action()).Done);
    EXPECT_EQ(Driver.Sequence().back(), Call::Close);

    Driver.calls.clear();
    Driver.Script(Call::Open, {{.Result = TLM_ERR_NOT_CONNECTED}});
    EXPECT_EQ(RunLoggerAction(Link, {}, probe.Action()).Result, TLM_ERR_NOT_CONNECTED);
    EXPECT_EQ(probe.Runs, 1);
    EXPECT_THAT(Sink.Texts(),
                ElementsAre("Now throttle initializing.", "TorvaneDataLogger is not connected.",
                            "USB device error. Error code =  1001"));
    EXPECT_THAT(Driver.Sequence(), ElementsAre(Call::Open, Call::Close));
}

TEST_F(LinkTest, AnAcquiringLoggerIsStoppedOnlyIfTheOperatorSaysYes) {
    Driver.state = TLM_STATE_ACQUIRING;
    Sink.Answers = {shell::answers::No, shell::answers::Yes};
    ActionProbe probe;
    EXPECT_FALSE(RunLoggerAction(Link, {}, probe.Action()).Done);
    EXPECT_EQ(probe.Runs, 0);
    ASSERT_EQ(Sink.Messages.size(), 1u);
    EXPECT_EQ(Sink.Messages[0].Text, "Logger is acquiring data.\r\nMay I stop operation?");
    EXPECT_EQ(Sink.Messages[0].Buttons, shell::buttons::YesNo);
    EXPECT_THAT(Driver.Sequence(), ElementsAre(Call::Open, Call::GetStatus, Call::Close));

    Driver.calls.clear();
    EXPECT_TRUE(RunLoggerAction(Link, {}, probe.Action()).Done);
    EXPECT_TRUE(probe.SawStoppedAcquisition);
    EXPECT_THAT(Driver.Sequence(),
                ElementsAre(Call::Open, Call::GetStatus, Call::LoggingControl, Call::GetStatus,
                            Call::LoggingControl, Call::GetStatus, Call::Close));
    EXPECT_THAT(Driver.LoggingControlValues(), ElementsAre(1, 0));

    // Reading windows let an acquiring logger through without asking.
    Driver.calls.clear();
    Sink.Messages.clear();
    EXPECT_TRUE(
        RunLoggerAction(Link, {.WhenAcquiring = WhenAcquiring::LetThrough}, probe.Action()).Done);
    EXPECT_FALSE(probe.SawStoppedAcquisition);
    EXPECT_THAT(Sink.Texts(), IsEmpty());
    EXPECT_EQ(Driver.CountOf(Call::LoggingControl), 0);
}

TEST_F(LinkTest, AFailedActionIsReportedOnceAndClosesTheLinkWithoutGivingBack) {
    Driver.state = TLM_STATE_ACQUIRING;
    Sink.Answers = {shell::answers::Yes};
    ActionProbe probe;
    probe.Result = TLM_ERR_PROTOCOL;
    const ActionResult result = RunLoggerAction(Link, {}, probe.Action());
    EXPECT_FALSE(result.Done);
    EXPECT_EQ(result.Result, TLM_ERR_PROTOCOL);
    EXPECT_EQ(Sink.Texts().back(), "USB device error. Error code =  1004");
    EXPECT_THAT(Driver.LoggingControlValues(), ElementsAre(1));
    EXPECT_EQ(Driver.CountOf(Call::Close), 1);
}

} // namespace
} // namespace torvane::logger
