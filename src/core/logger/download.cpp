#include "logger/download.h"

#include "logger/driver_calls.h"
#include "logger/link_messages.h"
#include "logger/logger_action.h"
#include "logger/wait_ready.h"
#include "shell/number_format.h"
#include "shell/temp_files.h"

#include <string_view>

namespace torvane::logger {
namespace {

using shell::buttons::Ok;
using shell::icons::Stop;

constexpr std::string_view FailedText = "It failed in download. Error code = ";

// The transfer itself, between the start and the end call, with its failure count.
class Transfer {
public:
    Transfer(LoggerLink& link, DownloadObserver& observer)
        : link_(link)
        , observer_(observer) {}

    std::int32_t Start(const TlmDownloadEntry& entry, const std::filesystem::path& file) {
        TlmDownloadEntry requested = entry;
        std::int32_t result =
            link_.driver.GetTheLogFile_start(link_.status, requested, file, block_);
        // -1 and -2 are the transfer's own refusals (tlm.h), not link errors.
        switch (result) {
        case -1:
            ShowFailed("2001");
            break;
        case -2:
            ShowFailed("2002");
            break;
        case 0:
            // A sense here ends the transfer without counting a failure: what the logger
            // wrote stands.
            if (link_.status.bytSense != TLM_SENSE_CLEAN) {
                ShowSenseError(link_.sink, link_.status.bytSense);
                result = 1;
            }
            break;
        default:
            ShowFailed("2099");
            break;
        }
        CountIfFailed(result);
        return result;
    }

    void ReadBlocks(std::int32_t result) {
        while (result == 0) {
            observer_.LetEventsIn();
            observer_.KeepAwake();
            if (observer_.StopRequested()) {
                const bool stopping =
                    shell::ShowMessage(link_.sink, "Do you stop downloading? ",
                                       shell::buttons::YesNo,
                                       shell::icons::Information) == shell::answers::Yes;
                if (!stopping) {
                    observer_.WithdrawStop();
                }
                observer_.StopAnswered(stopping);
                if (stopping) {
                    stopped_ = true;
                    return;
                }
            }
            result = ReadLogFileBlock(link_, block_);
            if (result < 0) {
                ReportDriverError(link_, result, true);
                ++failures_;
                return;
            }
            if (link_.status.bytSense == TLM_SENSE_FILE_NOT_FOUND) {
                shell::ShowMessage(link_.sink, "File not found.", Ok, shell::icons::Information);
                ++failures_;
                return;
            }
            bytes_ += block_.lngSize;
            observer_.Progress(bytes_);
        }
    }

    void End() {
        const std::int32_t result = link_.driver.GetTheLogFile_end(link_.status, block_);
        switch (result) {
        case 0:
        case TLM_ERR_TIMEOUT:
            return;
        case -1:
            // Already explained by the stop or the failure before it.
            if (!stopped_ && failures_ == 0) {
                ShowFailed("3001");
            }
            break;
        case -2:
            ShowFailed("3002");
            break;
        default:
            ShowFailed(shell::FormatNumber(result, shell::formats::FourDigits));
            break;
        }
        CountIfFailed(result);
    }

    bool Stopped() const { return stopped_; }
    int Failures() const { return failures_; }
    std::int64_t Bytes() const { return bytes_; }

private:
    void ShowFailed(std::string_view code) {
        shell::ShowMessage(link_.sink, std::string(FailedText) + std::string(code), Ok, Stop);
    }
    void CountIfFailed(std::int32_t result) {
        if (result < 0) {
            ++failures_;
        }
    }

    LoggerLink& link_;
    DownloadObserver& observer_;
    TlmTransferBlock block_{};
    int failures_ = 0;
    bool stopped_ = false;
    std::int64_t bytes_ = 0;
};

} // namespace

DownloadOutcome DownloadFile(LoggerLink& link, const TlmDownloadEntry& entry,
                             const std::filesystem::path& file, DownloadObserver& observer) {
    DownloadOutcome outcome;
    if (observer.StopRequested()) {
        return outcome;
    }
    Transfer transfer(link, observer);
    bool reachedEnd = false;
    const ActionOptions options{.alwaysStopAcquisition = true, .giveBackAcquisition = false};
    RunLoggerAction(link, options, [&](ActionContext& context) {
        const bool wasFlagged = (context.flagsAtStart & TLM_FLAG_DOWNLOAD) != 0;
        transfer.ReadBlocks(transfer.Start(entry, file));
        transfer.End();
        if (const std::int32_t result = WaitLoggerReady(link); result != 0) {
            return result;
        }
        // A stopped download of a flagged logger leaves it as it is.
        if (!(transfer.Stopped() && wasFlagged)) {
            if (const std::int32_t result = GiveBackAcquisition(link); result != 0) {
                return result;
            }
        }
        reachedEnd = true;
        return results::Ok;
    });
    outcome.ok = reachedEnd && transfer.Failures() == 0;
    outcome.stopped = transfer.Stopped();
    outcome.bytes = transfer.Bytes();
    return outcome;
}

std::filesystem::path NextLoggerFileName(const std::filesystem::path& tempDir) {
    return shell::NextNumberedFile(tempDir, "LGGR", ".rlg");
}

} // namespace torvane::logger
