#pragma once
// Downloading one logging file from the logger, block by block, over one link.

#include "logger/logger_link.h"

#include <cstdint>
#include <filesystem>

namespace torvane::logger {

// The window that watches a download. The read loop calls it once per block; the operator's
// stop request is a flag that the window sets (from its cancel button, while the loop lets
// events in), and the loop asks "Do you stop downloading?" before it stops.
class DownloadObserver {
public:
    virtual ~DownloadObserver() = default;

    // Lets the operator's events run, so that a stop can be requested.
    virtual void LetEventsIn() {}
    // Keeps the machine and the display awake during a long transfer.
    virtual void KeepAwake() {}
    // The bytes taken so far, after each block.
    virtual void Progress(std::int64_t /*bytesSoFar*/) {}
    // The operator answered the stop question: stopping, or going on (the request has then
    // been withdrawn).
    virtual void StopAnswered(bool /*stopping*/) {}

    void RequestStop() { stopRequested_ = true; }
    void WithdrawStop() { stopRequested_ = false; }
    bool StopRequested() const { return stopRequested_; }

private:
    bool stopRequested_ = false;
};

struct DownloadOutcome {
    // The link went through to its end and no failure was counted. A download stopped by the
    // operator is not a failure, so this is also true then.
    bool ok = false;
    // The operator stopped the transfer; what was written so far stays.
    bool stopped = false;
    std::int64_t bytes = 0;
};

// Downloads the logger's file `entry` to `file` over one link: acquisition is stopped for the
// transfer and given back afterwards, except that a stopped download of a logger whose download
// flag was set at the start leaves it stopped. Every failure is told to the operator. A stop
// already requested before the start gives up at once.
DownloadOutcome DownloadFile(LoggerLink& link, const TlmDownloadEntry& entry,
                             const std::filesystem::path& file, DownloadObserver& observer);

// The next free LGGRnnnn.rlg in the temporary folder: one above the highest four-digit number
// found there, from LGGR0001.rlg. Numbers are not reused while older files stay.
std::filesystem::path NextLoggerFileName(const std::filesystem::path& tempDir);

} // namespace torvane::logger
