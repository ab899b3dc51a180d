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
        Download download(on.Link, watching);
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
                        {{.BlockSize = 100}, {.BlockSize = 200}, {.Result = 1, .BlockSize = 50}});
    }

    static constexpr TlmDownloadEntry entry{5, 0, 60, 350};
    torvane::testing::TempFolder temp;
    ProbeObserver observer;
};

TEST_F(DownloadTest, ACleanDownloadStopsAcquisitionReadsEveryBlockAndGivesItBack) {
    ScriptThreeBlocks(Driver);
    const DownloadOutcome outcome = DownloadFile(Link, entry, File(), observer);
    EXPECT_TRUE(outcome.Ok);
    EXPECT_EQ(outcome.Bytes, 350);
    EXPECT_THAT(observer.progress, ElementsAre(100, 300, 350));
    EXPECT_EQ(observer.awakeCalls, 3);
    EXPECT_THAT(Sink.Texts(), IsEmpty());
    // The logger's bytes go to a file beside the target, renamed over it at the end.
    EXPECT_EQ(Driver.startedFile.parent_path(), File().parent_path());
    EXPECT_NE(Driver.startedFile, File());
    EXPECT_TRUE(std::filesystem::exists(File()));
    EXPECT_FALSE(std::filesystem::exists(Driver.startedFile));
    EXPECT_TRUE(outcome.Whole);
    EXPECT_THAT(Driver.Sequence(),
                ElementsAre(Call::Open, Call::GetStatus, Call::LoggingControl, Call::GetStatus,
                            Call::GetTheLogFile_start, Call::GetTheLogFile_reading,
                            Call::GetTheLogFile_reading, Call::GetTheLogFile_reading,
                            Call::GetTheLogFile_end, Call::GetStatus, Call::LoggingControl,
                            Call::GetStatus, Call::Close));
    EXPECT_THAT(Driver.LoggingControlValues(), ElementsAre(1, 0));
}

// Each step moves one block and nothing else; the link is closed only by the last.
TEST_F(DownloadTest, StepsMoveOneBlockEachAndTheLastEndsTheLink) {
    ScriptThreeBlocks(Driver);
    Download download(Link, observer);
    ASSERT_TRUE(download.Start(entry, File()));
    EXPECT_EQ(Driver.Sequence().back(), Call::GetTheLogFile_start);
    for (int block = 1; block <= 2; ++block) {
        EXPECT_TRUE(download.Step());
        EXPECT_EQ(Driver.CountOf(Call::GetTheLogFile_reading), block);
        EXPECT_EQ(Driver.Sequence().back(), Call::GetTheLogFile_reading);
        EXPECT_FALSE(download.Finished());
    }
    EXPECT_FALSE(download.Step());
    EXPECT_TRUE(download.Finished());
    EXPECT_EQ(Driver.Sequence().back(), Call::Close);
    EXPECT_TRUE(download.Outcome().Ok);
}

// An acquiring logger is asked about as for any logger action (LinkTest).
TEST_F(DownloadTest, AFlaggedLoggerIsGivenBackAfterACompleteDownload) {
    Driver.flags = TLM_FLAG_DOWNLOAD;
    Driver.Script(Call::GetTheLogFile_reading, {{.Result = 1, .BlockSize = 350}});
    EXPECT_TRUE(Downloaded().Ok);
    EXPECT_THAT(Driver.LoggingControlValues(), ElementsAre(1, 0));
}

TEST_F(DownloadTest, RefusedStartsAndFailedEndsAreToldByTheirCode) {
    struct Case {
        logger::Call Call;
        std::int32_t Code;
        std::string Shown;
    };
    const std::vector<Case> cases{
        {Call::GetTheLogFile_start, -1, "2001"}, {Call::GetTheLogFile_start, -2, "2002"},
        {Call::GetTheLogFile_start, -9, "2099"}, {Call::GetTheLogFile_end, -1, "3001"},
        {Call::GetTheLogFile_end, -2, "3002"},   {Call::GetTheLogFile_end, -5, "-0005"}};
    for (const auto& [call, code, shown] : cases) {
        ScriptedLink fresh;
        fresh.Driver.Script(call, {{.Result = code}});
        torvane::testing::WriteText(File(), "an older run");
        EXPECT_FALSE(Stepped(fresh, observer, File()).Ok) << code;
        EXPECT_THAT(fresh.Sink.Texts(),
                    ElementsAre("It failed in download. Error code = " + shown));
        // A failure leaves the old file as it was, and nothing beside it.
        EXPECT_EQ(torvane::testing::ReadText(File()), "an older run") << code;
        EXPECT_EQ(std::distance(std::filesystem::directory_iterator(temp.Path()),
                                std::filesystem::directory_iterator()),
                  1)
            << code;
        // A refused start still ends the transfer and gives the logger back.
        EXPECT_EQ(fresh.Driver.CountOf(Call::GetTheLogFile_end), 1);
        EXPECT_THAT(fresh.Driver.LoggingControlValues(), ElementsAre(1, 0));
    }
    // -3 at the end is a success.
    Driver.Script(Call::GetTheLogFile_end, {{.Result = TLM_ERR_TIMEOUT}});
    EXPECT_TRUE(Downloaded().Ok);
    EXPECT_THAT(Sink.Texts(), IsEmpty());
}

// A sense at the start ends the transfer as a success; file-not-found while reading fails.
TEST_F(DownloadTest, ASenseAtTheStartSucceedsAndFileNotFoundWhileReadingFails) {
    Driver.Script(Call::GetTheLogFile_start, {{.Sense = 18}});
    const DownloadOutcome sensed = Downloaded();
    EXPECT_TRUE(sensed.Ok);
    EXPECT_FALSE(sensed.Whole);
    EXPECT_TRUE(std::filesystem::exists(File())) << "the file the logger wrote stands";
    EXPECT_THAT(Sink.Texts(), ElementsAre("Sence code error. Error code = 018"));
    EXPECT_EQ(Driver.CountOf(Call::GetTheLogFile_reading), 0);
    EXPECT_EQ(Driver.CountOf(Call::GetTheLogFile_end), 1);

    // Unless only a whole file may take the target's place.
    ScriptedLink batch;
    batch.Driver.Script(Call::GetTheLogFile_start, {{.Sense = 5}});
    torvane::testing::WriteText(File(), "an older run");
    EXPECT_FALSE(DownloadFile(batch.Link, entry, File(), observer, ReplaceWhen::Whole).Whole);
    EXPECT_EQ(torvane::testing::ReadText(File()), "an older run");

    ScriptedLink lost;
    lost.Driver.Script(Call::GetTheLogFile_reading,
                       {{.BlockSize = 100}, {.Sense = TLM_SENSE_FILE_NOT_FOUND}});
    EXPECT_FALSE(Stepped(lost, observer, File()).Ok);
    EXPECT_THAT(observer.progress, ElementsAre(100));
    EXPECT_THAT(lost.Sink.Texts(), ElementsAre("File not found."));
    EXPECT_EQ(lost.Driver.CountOf(Call::GetTheLogFile_end), 1);
}

// The link drops after a block has been written: the same message as ever, and the half file
// goes.
TEST_F(DownloadTest, ALinkLostBetweenStepsIsReportedAndLeavesNoHalfFile) {
    Driver.Script(Call::GetTheLogFile_reading, {{.BlockSize = 100}});
    Driver.ScriptRepeated(Call::GetTheLogFile_reading, {.Result = TLM_ERR_PROTOCOL}, 1);
    // The end's -1 is kept back: the failure before it has been told.
    Driver.Script(Call::GetTheLogFile_end, {{.Result = -1}});
    Download download(Link, observer);
    ASSERT_TRUE(download.Start(entry, File()));
    ASSERT_TRUE(download.Step());
    torvane::testing::WriteText(Driver.startedFile, "the first block");
    EXPECT_FALSE(download.Step());
    EXPECT_FALSE(download.Outcome().Ok);
    EXPECT_EQ(download.Outcome().Bytes, 100);
    EXPECT_FALSE(std::filesystem::exists(File()));
    EXPECT_FALSE(std::filesystem::exists(Driver.startedFile));
    EXPECT_THAT(Sink.Texts(), ElementsAre("USB device error. Error code =  1004"));
    EXPECT_EQ(Driver.CountOf(Call::Close), 1);
    EXPECT_EQ(Driver.Sequence().back(), Call::Close);
}

TEST_F(DownloadTest, StopAnsweredNoGoesOnYesEndsWithoutFailureAndKeepsTheFile) {
    ScriptThreeBlocks(Driver);
    Sink.Answers = {shell::answers::No};
    const DownloadOutcome goesOn = Downloaded(2);
    EXPECT_TRUE(goesOn.Ok);
    EXPECT_FALSE(goesOn.Stopped);
    EXPECT_THAT(observer.stopAnswers, ElementsAre(false));
    EXPECT_THAT(observer.progress, ElementsAre(100, 300, 350));
    EXPECT_THAT(Sink.Texts(), ElementsAre("Do you stop downloading? ")) << "asked once only";
    EXPECT_EQ(Sink.Messages[0].Buttons, shell::buttons::YesNo);

    ScriptedLink fresh;
    ScriptThreeBlocks(fresh.Driver);
    fresh.Sink.Answers = {shell::answers::Yes};
    torvane::testing::WriteText(File(), "the first block");
    ProbeObserver stopping;
    const DownloadOutcome stopped = Stepped(fresh, stopping, File(), 2);
    EXPECT_TRUE(stopped.Ok);
    EXPECT_TRUE(stopped.Stopped);
    EXPECT_EQ(stopped.Bytes, 100);
    EXPECT_TRUE(std::filesystem::exists(File())) << "what was written stays";
    EXPECT_EQ(fresh.Driver.CountOf(Call::GetTheLogFile_reading), 1);
    EXPECT_EQ(fresh.Driver.CountOf(Call::GetTheLogFile_end), 1);
    EXPECT_THAT(fresh.Driver.LoggingControlValues(), ElementsAre(1, 0)) << "not flagged";
}

// A flagged logger stays stopped after a stop; a stop asked before the start opens no link.
TEST_F(DownloadTest, AStoppedFlaggedLoggerStaysStoppedAndAnEarlyStopGivesUp) {
    Driver.flags = TLM_FLAG_DOWNLOAD;
    ScriptThreeBlocks(Driver);
    Sink.Answers = {shell::answers::Yes};
    EXPECT_TRUE(Downloaded(1).Stopped);
    EXPECT_EQ(Driver.CountOf(Call::GetTheLogFile_reading), 0);
    EXPECT_THAT(Driver.LoggingControlValues(), ElementsAre(1));
    EXPECT_EQ(Driver.Sequence().back(), Call::Close);

    ScriptedLink fresh;
    Download early(fresh.Link, observer);
    early.RequestStop();
    EXPECT_FALSE(early.Start(entry, File()));
    EXPECT_TRUE(early.Finished());
    EXPECT_FALSE(early.Outcome().Ok);
    EXPECT_THAT(fresh.Driver.calls, IsEmpty());
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
    EXPECT_EQ(rows[0].FileName, "007");
    EXPECT_EQ(rows[0].MeasurementTime, "001H02M05S");
    EXPECT_EQ(rows[0].DataSize, "3");
    EXPECT_EQ(rows[0].Download, "Done");
    EXPECT_EQ(rows[1].Download, "None");
    EXPECT_EQ(rows[1].EntryIndex, 3u);

    // Only files of four seconds or more can be chosen; an unknown number is no choice.
    testing::AnsweringSink sink;
    EXPECT_EQ(ChooseDownloadEntry(entries, 12, sink), &entries[3]);
    EXPECT_EQ(ChooseDownloadEntry(entries, 9, sink), nullptr);
    EXPECT_THAT(sink.Texts(), IsEmpty());
    EXPECT_EQ(ChooseDownloadEntry(entries, 1, sink), nullptr);
    ASSERT_EQ(sink.Messages.size(), 1u);
    EXPECT_EQ(sink.Messages[0].Text, "Can not open the specified file,Because of excessive "
                                     "short measurement time.");
}

class FileListTest : public ::testing::Test, protected ScriptedLink {
protected:
    void SetProgramNumber(const char* number) {
        std::memset(Driver.special.bytProgramNo, 0, sizeof Driver.special.bytProgramNo);
        std::memcpy(Driver.special.bytProgramNo, number, std::strlen(number));
    }
};

TEST_F(FileListTest, ReadsEveryEntryInOneLinkAndLetsAcquisitionRunAndAnOldProgramCannotClear) {
    Driver.state = TLM_STATE_ACQUIRING;
    Driver.files = {{1, 0, 3, 100}, {2, 1, 80, 4000}};
    SetProgramNumber("2");
    const auto list = ReadLoggerFileList(Link);
    ASSERT_TRUE(list);
    EXPECT_EQ(list->Entries.size(), 2u);
    EXPECT_TRUE(list->ClearAllowed);
    EXPECT_THAT(Sink.Texts(), IsEmpty());
    EXPECT_THAT(Driver.Sequence(),
                ElementsAre(Call::Open, Call::GetStatus, Call::GetTheNumberofFiles,
                            Call::GetTheDownloadList, Call::GetTheSpecialData, Call::Close));
    SetProgramNumber("1");
    EXPECT_FALSE(ReadLoggerFileList(Link)->ClearAllowed) << "an old program cannot clear";
}

TEST_F(FileListTest, AnEmptyLoggerIsToldAndABusyOneOrAFailedCallGivesNoList) {
    const auto list = ReadLoggerFileList(Link);
    ASSERT_TRUE(list);
    EXPECT_TRUE(list->Entries.empty());
    EXPECT_THAT(Sink.Texts(), ElementsAre("There is no file in Logger."));

    Driver.state = TLM_STATE_SERVICE;
    EXPECT_FALSE(ReadLoggerFileList(Link));
    EXPECT_EQ(Sink.Texts().back(), "Now service mode is running.");

    Driver.state = TLM_STATE_IDLE;
    Driver.files = {{1, 0, 30, 100}};
    Driver.Script(Call::GetTheSpecialData, {{.Result = TLM_ERR_SEQUENCE}});
    EXPECT_FALSE(ReadLoggerFileList(Link));
    EXPECT_EQ(Sink.Texts().back(), "USB device error. Error code =  1017");
    EXPECT_EQ(Driver.CountOf(Call::Close), 3);
}

// Clearing

class ClearTest : public ::testing::Test, protected ScriptedLink {};

// No to the acquisition question that follows ends it as it ends any logger action (LinkTest).
TEST_F(ClearTest, CancelDoesNotClear) {
    Sink.Answers = {shell::answers::Cancel};
    EXPECT_EQ(ClearLogger(Link), ClearOutcome::Declined);
    EXPECT_THAT(Driver.calls, IsEmpty());
    ASSERT_EQ(Sink.Messages.size(), 1u);
    EXPECT_EQ(Sink.Messages[0].Text, "Do you want to clear all data in the logger ?");
    EXPECT_EQ(Sink.Messages[0].Buttons, shell::buttons::OkCancel);
}

TEST_F(ClearTest, ClearsAStoppedLoggerAndGivesItBackOrReportsAFailedClear) {
    Driver.files = {{1, 0, 30, 100}};
    Sink.Answers = {shell::answers::Ok, shell::answers::Cancel};
    EXPECT_EQ(ClearLogger(Link), ClearOutcome::Cleared);
    EXPECT_TRUE(Driver.files.empty());
    EXPECT_THAT(Sink.Texts(),
                ElementsAre("Do you want to clear all data in the logger ?", "Completed."));
    EXPECT_THAT(Driver.Sequence(), ElementsAre(Call::Open, Call::GetStatus, Call::LoggingControl,
                                               Call::GetStatus, Call::InitializeLogFile,
                                               Call::GetStatus, Call::LoggingControl, Call::Close));
    EXPECT_THAT(Driver.LoggingControlValues(), ElementsAre(1, 0));

    // A failed clear is reported and not completed.
    Sink.Messages.clear();
    Sink.Answers = {shell::answers::Ok};
    Driver.Script(Call::InitializeLogFile, {{.Result = TLM_ERR_PROTOCOL}});
    EXPECT_EQ(ClearLogger(Link), ClearOutcome::NotCleared);
    EXPECT_THAT(Sink.Texts(), ElementsAre("Do you want to clear all data in the logger ?",
                                          "USB device error. Error code =  1004"));
}

} // namespace
} // namespace torvane::logger
