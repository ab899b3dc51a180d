// The download dialog's work without its widgets: the file list and its texts, the next file
// name, downloading block by block with every failure code, stopping, and clearing.

#include "core/logger_test_support.h"
#include "logger/clear_logger.h"
#include "logger/download.h"
#include "logger/file_list.h"
#include "support/temp_folder.h"

#include <gmock/gmock.h>

#include <cstring>
#include <filesystem>

namespace torvane::logger {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::ScriptedLink;

class ProbeObserver : public DownloadObserver {
public:
    void KeepAwake() override { ++awakeCalls; }
    void Progress(std::int64_t bytesSoFar) override { progress.push_back(bytesSoFar); }
    void StopAnswered(bool stopping) override { stopAnswers.push_back(stopping); }

    int awakeCalls = 0;
    std::vector<std::int64_t> progress;
    std::vector<bool> stopAnswers;
};

class DownloadTest : public ::testing::Test, protected ScriptedLink {
protected:
    // Runs a download step by step, as a window's timer does; the operator asks to stop between
    // steps, before step `stopBefore` (from 1).
    static DownloadOutcome Stepped(ScriptedLink& on, ProbeObserver& watching,
                                   const std::filesystem::path& file, int stopBefore = 0) {
        Download download(on.link, watching);
        bool more = download.Start(entry, file);
        for (int step = 1; more; ++step) {
            if (step == stopBefore) {
                download.RequestStop();
            }
            more = download.Step();
        }
        EXPECT_TRUE(download.Finished());
        EXPECT_FALSE(download.Step()) << "a finished download takes no more steps";
        return download.Outcome();
    }
    DownloadOutcome Downloaded(int stopBefore = 0) {
        return Stepped(*this, observer, File(), stopBefore);
    }
    std::filesystem::path File() const { return temp / "LGGR0001.rlg"; }

    static void ScriptThreeBlocks(ScriptedDriver& scripted) {
        scripted.Script(Call::GetTheLogFile_reading,
                        {{.blockSize = 100}, {.blockSize = 200}, {.result = 1, .blockSize = 50}});
    }

    static constexpr TlmDownloadEntry entry{5, 0, 60, 350};
    torvane::testing::TempFolder temp;
    ProbeObserver observer;
};

TEST_F(DownloadTest, ACleanDownloadStopsAcquisitionReadsEveryBlockAndGivesItBack) {
    ScriptThreeBlocks(driver);
    const DownloadOutcome outcome = DownloadFile(link, entry, File(), observer);
    EXPECT_TRUE(outcome.ok);
    EXPECT_EQ(outcome.bytes, 350);
    EXPECT_THAT(observer.progress, ElementsAre(100, 300, 350));
    EXPECT_EQ(observer.awakeCalls, 3);
    EXPECT_THAT(sink.Texts(), IsEmpty());
    EXPECT_EQ(driver.startedFile, File());
    EXPECT_THAT(driver.Sequence(),
                ElementsAre(Call::Open, Call::GetStatus, Call::LoggingControl, Call::GetStatus,
                            Call::GetTheLogFile_start, Call::GetTheLogFile_reading,
                            Call::GetTheLogFile_reading, Call::GetTheLogFile_reading,
                            Call::GetTheLogFile_end, Call::GetStatus, Call::LoggingControl,
                            Call::GetStatus, Call::Close));
    EXPECT_THAT(driver.LoggingControlValues(), ElementsAre(1, 0));
}

// Each step moves one block and nothing else; the link is closed only by the last.
TEST_F(DownloadTest, StepsMoveOneBlockEachAndTheLastEndsTheLink) {
    ScriptThreeBlocks(driver);
    Download download(link, observer);
    ASSERT_TRUE(download.Start(entry, File()));
    EXPECT_EQ(driver.Sequence().back(), Call::GetTheLogFile_start);
    for (int block = 1; block <= 2; ++block) {
        EXPECT_TRUE(download.Step());
        EXPECT_EQ(driver.CountOf(Call::GetTheLogFile_reading), block);
        EXPECT_EQ(driver.Sequence().back(), Call::GetTheLogFile_reading);
        EXPECT_FALSE(download.Finished());
    }
    EXPECT_FALSE(download.Step());
    EXPECT_TRUE(download.Finished());
    EXPECT_EQ(driver.Sequence().back(), Call::Close);
    EXPECT_TRUE(download.Outcome().ok);
}

// An acquiring logger is asked about as for any logger action (LinkTest).
TEST_F(DownloadTest, AFlaggedLoggerIsGivenBackAfterACompleteDownload) {
    driver.flags = TLM_FLAG_DOWNLOAD;
    driver.Script(Call::GetTheLogFile_reading, {{.result = 1, .blockSize = 350}});
    EXPECT_TRUE(Downloaded().ok);
    EXPECT_THAT(driver.LoggingControlValues(), ElementsAre(1, 0));
}

TEST_F(DownloadTest, RefusedStartsAndFailedEndsAreToldByTheirCode) {
    struct Case {
        Call call;
        std::int32_t code;
        std::string shown;
    };
    const std::vector<Case> cases{
        {Call::GetTheLogFile_start, -1, "2001"}, {Call::GetTheLogFile_start, -2, "2002"},
        {Call::GetTheLogFile_start, -9, "2099"}, {Call::GetTheLogFile_end, -1, "3001"},
        {Call::GetTheLogFile_end, -2, "3002"},   {Call::GetTheLogFile_end, -5, "-0005"}};
    for (const auto& [call, code, shown] : cases) {
        ScriptedLink fresh;
        fresh.driver.Script(call, {{.result = code}});
        torvane::testing::WriteText(File(), "what the logger sent");
        EXPECT_FALSE(Stepped(fresh, observer, File()).ok) << code;
        EXPECT_THAT(fresh.sink.Texts(),
                    ElementsAre("It failed in download. Error code = " + shown));
        EXPECT_FALSE(std::filesystem::exists(File())) << code;
        // A refused start still ends the transfer and gives the logger back.
        EXPECT_EQ(fresh.driver.CountOf(Call::GetTheLogFile_end), 1);
        EXPECT_THAT(fresh.driver.LoggingControlValues(), ElementsAre(1, 0));
    }
    // -3 at the end is a success.
    driver.Script(Call::GetTheLogFile_end, {{.result = TLM_ERR_TIMEOUT}});
    EXPECT_TRUE(Downloaded().ok);
    EXPECT_THAT(sink.Texts(), IsEmpty());
}

// A sense at the start ends the transfer as a success; file-not-found while reading fails.
TEST_F(DownloadTest, ASenseAtTheStartSucceedsAndFileNotFoundWhileReadingFails) {
    driver.Script(Call::GetTheLogFile_start, {{.sense = 18}});
    EXPECT_TRUE(Downloaded().ok);
    EXPECT_THAT(sink.Texts(), ElementsAre("Sence code error. Error code = 018"));
    EXPECT_EQ(driver.CountOf(Call::GetTheLogFile_reading), 0);
    EXPECT_EQ(driver.CountOf(Call::GetTheLogFile_end), 1);

    ScriptedLink lost;
    lost.driver.Script(Call::GetTheLogFile_reading,
                       {{.blockSize = 100}, {.sense = TLM_SENSE_FILE_NOT_FOUND}});
    EXPECT_FALSE(Stepped(lost, observer, File()).ok);
    EXPECT_THAT(observer.progress, ElementsAre(100));
    EXPECT_THAT(lost.sink.Texts(), ElementsAre("File not found."));
    EXPECT_EQ(lost.driver.CountOf(Call::GetTheLogFile_end), 1);
}

// The link drops after a block has been written: the same message as ever, and the half file
// goes.
TEST_F(DownloadTest, ALinkLostBetweenStepsIsReportedAndLeavesNoHalfFile) {
    driver.Script(Call::GetTheLogFile_reading, {{.blockSize = 100}});
    driver.ScriptRepeated(Call::GetTheLogFile_reading, {.result = TLM_ERR_PROTOCOL}, 1);
    // The end's -1 is kept back: the failure before it has been told.
    driver.Script(Call::GetTheLogFile_end, {{.result = -1}});
    Download download(link, observer);
    ASSERT_TRUE(download.Start(entry, File()));
    ASSERT_TRUE(download.Step());
    torvane::testing::WriteText(File(), "the first block");
    EXPECT_FALSE(download.Step());
    EXPECT_FALSE(download.Outcome().ok);
    EXPECT_EQ(download.Outcome().bytes, 100);
    EXPECT_FALSE(std::filesystem::exists(File()));
    EXPECT_THAT(sink.Texts(), ElementsAre("USB device error. Error code =  1004"));
    EXPECT_EQ(driver.CountOf(Call::Close), 1);
    EXPECT_EQ(driver.Sequence().back(), Call::Close);
}

TEST_F(DownloadTest, StopAnsweredNoGoesOnYesEndsWithoutFailureAndKeepsTheFile) {
    ScriptThreeBlocks(driver);
    sink.answers = {shell::answers::No};
    const DownloadOutcome goesOn = Downloaded(2);
    EXPECT_TRUE(goesOn.ok);
    EXPECT_FALSE(goesOn.stopped);
    EXPECT_THAT(observer.stopAnswers, ElementsAre(false));
    EXPECT_THAT(observer.progress, ElementsAre(100, 300, 350));
    EXPECT_THAT(sink.Texts(), ElementsAre("Do you stop downloading? ")) << "asked once only";
    EXPECT_EQ(sink.messages[0].buttons, shell::buttons::YesNo);

    ScriptedLink fresh;
    ScriptThreeBlocks(fresh.driver);
    fresh.sink.answers = {shell::answers::Yes};
    torvane::testing::WriteText(File(), "the first block");
    ProbeObserver stopping;
    const DownloadOutcome stopped = Stepped(fresh, stopping, File(), 2);
    EXPECT_TRUE(stopped.ok);
    EXPECT_TRUE(stopped.stopped);
    EXPECT_EQ(stopped.bytes, 100);
    EXPECT_TRUE(std::filesystem::exists(File())) << "what was written stays";
    EXPECT_EQ(fresh.driver.CountOf(Call::GetTheLogFile_reading), 1);
    EXPECT_EQ(fresh.driver.CountOf(Call::GetTheLogFile_end), 1);
    EXPECT_THAT(fresh.driver.LoggingControlValues(), ElementsAre(1, 0)) << "not flagged";
}

// A flagged logger stays stopped after a stop; a stop asked before the start opens no link.
TEST_F(DownloadTest, AStoppedFlaggedLoggerStaysStoppedAndAnEarlyStopGivesUp) {
    driver.flags = TLM_FLAG_DOWNLOAD;
    ScriptThreeBlocks(driver);
    sink.answers = {shell::answers::Yes};
    EXPECT_TRUE(Downloaded(1).stopped);
    EXPECT_EQ(driver.CountOf(Call::GetTheLogFile_reading), 0);
    EXPECT_THAT(driver.LoggingControlValues(), ElementsAre(1));
    EXPECT_EQ(driver.Sequence().back(), Call::Close);

    ScriptedLink fresh;
    Download early(fresh.link, observer);
    early.RequestStop();
    EXPECT_FALSE(early.Start(entry, File()));
    EXPECT_TRUE(early.Finished());
    EXPECT_FALSE(early.Outcome().ok);
    EXPECT_THAT(fresh.driver.calls, IsEmpty());
}

// The file list

TEST(FileListTexts, ColumnsAndChoicesWithoutFilesOfThreeSecondsOrLess) {
    EXPECT_EQ(MeasurementTimeText(360000 + 59), "100H00M59S");
    EXPECT_EQ(DataSizeText(1024), "2");
    EXPECT_EQ(DataSizeText(1023), "1");
    EXPECT_EQ(DataSizeText(0), "1");

    const std::vector<TlmDownloadEntry> entries{
        {1, 0, 3, 100}, {7, 1, 3725, 2048}, {2, 0, 0, 0}, {12, 0, 4, 1023}};
    const auto rows = FileListRows(entries);
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(rows[0].fileName, "007");
    EXPECT_EQ(rows[0].measurementTime, "001H02M05S");
    EXPECT_EQ(rows[0].dataSize, "3");
    EXPECT_EQ(rows[0].download, "Done");
    EXPECT_EQ(rows[1].download, "None");
    EXPECT_EQ(rows[1].entryIndex, 3u);

    // Only files of four seconds or more can be chosen; an unknown number is no choice.
    testing::AnsweringSink sink;
    EXPECT_EQ(ChooseDownloadEntry(entries, 12, sink), &entries[3]);
    EXPECT_EQ(ChooseDownloadEntry(entries, 9, sink), nullptr);
    EXPECT_THAT(sink.Texts(), IsEmpty());
    EXPECT_EQ(ChooseDownloadEntry(entries, 1, sink), nullptr);
    ASSERT_EQ(sink.messages.size(), 1u);
    EXPECT_EQ(sink.messages[0].text, "Can not open the specified file,Because of excessive "
                                     "short measurement time.");
}

class FileListTest : public ::testing::Test, protected ScriptedLink {
protected:
    void SetProgramNumber(const char* number) {
        std::memset(driver.special.bytProgramNo, 0, sizeof driver.special.bytProgramNo);
        std::memcpy(driver.special.bytProgramNo, number, std::strlen(number));
    }
};

TEST_F(FileListTest, ReadsEveryEntryInOneLinkAndLetsAcquisitionRunAndAnOldProgramCannotClear) {
    driver.state = TLM_STATE_ACQUIRING;
    driver.files = {{1, 0, 3, 100}, {2, 1, 80, 4000}};
    SetProgramNumber("2");
    const auto list = ReadLoggerFileList(link);
    ASSERT_TRUE(list);
    EXPECT_EQ(list->entries.size(), 2u);
    EXPECT_TRUE(list->clearAllowed);
    EXPECT_THAT(sink.Texts(), IsEmpty());
    EXPECT_THAT(driver.Sequence(),
                ElementsAre(Call::Open, Call::GetStatus, Call::GetTheNumberofFiles,
                            Call::GetTheDownloadList, Call::GetTheSpecialData, Call::Close));
    SetProgramNumber("1");
    EXPECT_FALSE(ReadLoggerFileList(link)->clearAllowed) << "an old program cannot clear";
}

TEST_F(FileListTest, AnEmptyLoggerIsToldAndABusyOneOrAFailedCallGivesNoList) {
    const auto list = ReadLoggerFileList(link);
    ASSERT_TRUE(list);
    EXPECT_TRUE(list->entries.empty());
    EXPECT_THAT(sink.Texts(), ElementsAre("There is no file in Logger."));

    driver.state = TLM_STATE_SERVICE;
    EXPECT_FALSE(ReadLoggerFileList(link));
    EXPECT_EQ(sink.Texts().back(), "Now service mode is running.");

    driver.state = TLM_STATE_IDLE;
    driver.files = {{1, 0, 30, 100}};
    driver.Script(Call::GetTheSpecialData, {{.result = TLM_ERR_SEQUENCE}});
    EXPECT_FALSE(ReadLoggerFileList(link));
    EXPECT_EQ(sink.Texts().back(), "USB device error. Error code =  1017");
    EXPECT_EQ(driver.CountOf(Call::Close), 3);
}

// Clearing

class ClearTest : public ::testing::Test, protected ScriptedLink {};

// No to the acquisition question that follows ends it as it ends any logger action (LinkTest).
TEST_F(ClearTest, CancelDoesNotClear) {
    sink.answers = {shell::answers::Cancel};
    EXPECT_EQ(ClearLogger(link), ClearOutcome::Declined);
    EXPECT_THAT(driver.calls, IsEmpty());
    ASSERT_EQ(sink.messages.size(), 1u);
    EXPECT_EQ(sink.messages[0].text, "Do you want to clear all data in the logger ?");
    EXPECT_EQ(sink.messages[0].buttons, shell::buttons::OkCancel);
}

TEST_F(ClearTest, ClearsAStoppedLoggerAndGivesItBackOrReportsAFailedClear) {
    driver.files = {{1, 0, 30, 100}};
    sink.answers = {shell::answers::Ok, shell::answers::Cancel};
    EXPECT_EQ(ClearLogger(link), ClearOutcome::Cleared);
    EXPECT_TRUE(driver.files.empty());
    EXPECT_THAT(sink.Texts(),
                ElementsAre("Do you want to clear all data in the logger ?", "Completed."));
    EXPECT_THAT(driver.Sequence(), ElementsAre(Call::Open, Call::GetStatus, Call::LoggingControl,
                                               Call::GetStatus, Call::InitializeLogFile,
                                               Call::GetStatus, Call::LoggingControl, Call::Close));
    EXPECT_THAT(driver.LoggingControlValues(), ElementsAre(1, 0));

    // A failed clear is reported and not completed.
    sink.messages.clear();
    sink.answers = {shell::answers::Ok};
    driver.Script(Call::InitializeLogFile, {{.result = TLM_ERR_PROTOCOL}});
    EXPECT_EQ(ClearLogger(link), ClearOutcome::NotCleared);
    EXPECT_THAT(sink.Texts(), ElementsAre("Do you want to clear all data in the logger ?",
                                          "USB device error. Error code =  1004"));
}

} // namespace
} // namespace torvane::logger
