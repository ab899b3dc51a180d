#pragma once
// Downloading one logging file from the logger, block by block, over one link.

#include "logger/logger_action.h"
#include "logger/logger_link.h"
#include "shell/replacing_file.h"
#include "shell/stepped_activity.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string_view>

namespace torvane::logger {

// The window that watches a download: told after each block and after the stop question.
class DownloadObserver {
public:
    virtual ~DownloadObserver() = default;

    // Keeps the machine and the display awake during a long transfer.
    virtual void KeepAwake() {}
    // The bytes taken so far, after each block.
    virtual void Progress(std::int64_t /*bytesSoFar*/) {}
    // The operator answered the stop question: stopping, or going on (the request has then
    // been withdrawn).
    virtual void StopAnswered(bool /*stopping*/) {}
};

struct DownloadOutcome {
    // The link went through to its end and no failure was counted. A download stopped by the
    // operator is not a failure, so this is also true then.
    bool Ok = false;
    // The operator stopped the transfer; what was written so far stays.
    bool Stopped = false;
    std::int64_t Bytes = 0;
    // Ok, not stopped, and the logger sent the file to its last block.
    bool Whole = false;
};

// What may take the target's place. The desktop keeps what the logger wrote when it ended the
// transfer with a sense code; a batch job wants a whole run or nothing.
enum class ReplaceWhen { Ok, Whole };

// Downloads the logger's file `entry` to `file` over one link, one block a step: acquisition is
// stopped for the transfer and given back afterwards, except that a stopped download of a logger
// whose download flag was set at the start leaves it stopped. Every failure is told to the
// operator. The file is written beside `file` and renamed over it only when the download ends
// as `replace` says; otherwise it is removed and `file` stays as it was, so no half file stands.
class Download : public shell::SteppedActivity {
public:
    Download(LoggerLink& link, DownloadObserver& observer, ReplaceWhen replace = ReplaceWhen::Ok)
        : link_(link)
        , observer_(observer)
        , action_(link, {.AlwaysStopAcquisition = true, .GiveBackAcquisition = false})
        , replace_(replace) {}

    // Opens the link, readies the logger and starts the transfer. False when no block is to be
    // read: the download has then finished. A stop requested before the start gives up at once.
    bool Start(const TlmDownloadEntry& entry, const std::filesystem::path& file);
    // One block, or the stop question when a stop was requested since the last step. False once
    // the download has finished: the transfer ended and the link closed.
    bool Step() override;

    // The next step asks "Do you stop downloading?" before it reads.
    void RequestStop() { stopRequested_ = true; }
    bool Finished() const { return finished_; }
    // Final once Finished.
    DownloadOutcome Outcome() const;

private:
    std::int32_t StartTransfer(const TlmDownloadEntry& entry);
    bool OperatorStops();
    void EndTransfer();
    // Ends the transfer, gives the logger back and closes the link.
    void Finish();
    void Conclude();
    void ShowFailed(std::string_view code);
    void CountIfFailed(std::int32_t result);

    LoggerLink& link_;
    DownloadObserver& observer_;
    LoggerActionFrame action_;
    ReplaceWhen replace_;
    std::optional<shell::ReplacingFile> file_;
    TlmTransferBlock block_{};
    bool stopRequested_ = false;
    bool reading_ = false;
    bool stopped_ = false;
    bool finished_ = false;
    bool reachedEnd_ = false;
    bool lastBlock_ = false;
    int failures_ = 0;
    std::int64_t bytes_ = 0;
};

// Runs a whole download in a plain loop, for callers that have no events to take between blocks.
DownloadOutcome DownloadFile(LoggerLink& link, const TlmDownloadEntry& entry,
                             const std::filesystem::path& file, DownloadObserver& observer,
                             ReplaceWhen replace = ReplaceWhen::Ok);

// The next free LGGRnnnn.rlg in the temporary folder: one above the highest four-digit number
// found there, from LGGR0001.rlg. Numbers are not reused while older files stay.
std::filesystem::path NextLoggerFileName(const std::filesystem::path& tempDir);

} // namespace torvane::logger
