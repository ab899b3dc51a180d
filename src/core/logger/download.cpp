#include "logger/download.h"

#include "logger/driver_calls.h"
#include "logger/link_messages.h"
#include "logger/logger_action.h"
#include "logger/wait_ready.h"
#include "shell/number_format.h"
#include "shell/temp_files.h"

#include <string_view>
#include <system_error>

namespace torvane::logger {
namespace {

using shell::buttons::Ok;
using shell::icons::Stop;

constexpr std::string_view FailedText = "It failed in download. Error code = ";

} // namespace

bool Download::Start(const TlmDownloadEntry& entry, const std::filesystem::path& file) {
    // A folder that takes no new file shows as the driver's own refusal to open it.
    file_.emplace(file);
    if (stopRequested_ || !action_.Begin()) {
        Conclude();
        return false;
    }
    reading_ = StartTransfer(entry) == 0;
    if (!reading_) {
        Finish();
    }
    return reading_;
}

bool Download::Step() {
    if (!reading_) {
        return false;
    }
    observer_.KeepAwake();
    if (stopRequested_ && OperatorStops()) {
        stopped_ = true;
        Finish();
        return false;
    }
    const std::int32_t result = ReadLogFileBlock(link_, block_);
    if (result < 0) {
        ReportDriverError(link_, result, true);
        ++failures_;
        Finish();
        return false;
    }
    if (link_.Status.bytSense == TLM_SENSE_FILE_NOT_FOUND) {
        shell::ShowMessage(link_.Sink, "File not found.", Ok, shell::icons::Information);
        ++failures_;
        Finish();
        return false;
    }
    bytes_ += block_.lngSize;
    observer_.Progress(bytes_);
    if (result != 0) {
        lastBlock_ = true;
        Finish();
        return false;
    }
    return true;
}

DownloadOutcome Download::Outcome() const {
    const bool ok = reachedEnd_ && failures_ == 0;
    return {.Ok = ok, .Stopped = stopped_, .Bytes = bytes_, .Whole = ok && !stopped_ && lastBlock_};
}

std::int32_t Download::StartTransfer(const TlmDownloadEntry& entry) {
    TlmDownloadEntry requested = entry;
    std::int32_t result =
        link_.Driver.GetTheLogFile_start(link_.Status, requested, file_->Path(), block_);
    // -1 and -2 are the transfer's own refusals (tlm.h), not link errors.
    switch (result) {
    case -1:
        ShowFailed("2001");
        break;
    case -2:
        ShowFailed("2002");
        break;
    case 0:
        // A sense here ends the transfer without counting a failure: what the logger wrote
        // stands.
        if (link_.Status.bytSense != TLM_SENSE_CLEAN) {
            ShowSenseError(link_.Sink, link_.Status.bytSense);
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

bool Download::OperatorStops() {
    const bool stopping =
        shell::ShowMessage(link_.Sink, "Do you stop downloading? ", shell::buttons::YesNo,
                           shell::icons::Information) == shell::answers::Yes;
    if (!stopping) {
        stopRequested_ = false;
    }
    observer_.StopAnswered(stopping);
    return stopping;
}

void Download::EndTransfer() {
    const std::int32_t result = link_.Driver.GetTheLogFile_end(link_.Status, block_);
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

void Download::Finish() {
    reading_ = false;
    EndTransfer();
    std::int32_t result = WaitLoggerReady(link_);
    // A stopped download of a flagged logger leaves it as it is.
    const bool wasFlagged = (action_.Context().FlagsAtStart & TLM_FLAG_DOWNLOAD) != 0;
    if (result == 0 && !(stopped_ && wasFlagged)) {
        result = GiveBackAcquisition(link_);
    }
    reachedEnd_ = result == 0;
    action_.End(result);
    Conclude();
}

void Download::Conclude() {
    finished_ = true;
    const DownloadOutcome outcome = Outcome();
    if (file_ && (replace_ == ReplaceWhen::Ok ? outcome.Ok : outcome.Whole)) {
        file_->Commit();
    }
    // Not committed: the destructor removes what was written.
    file_.reset();
}

void Download::ShowFailed(std::string_view code) {
    shell::ShowMessage(link_.Sink, std::string(FailedText) + std::string(code), Ok, Stop);
}

void Download::CountIfFailed(std::int32_t result) {
    if (result < 0) {
        ++failures_;
    }
}

DownloadOutcome DownloadFile(LoggerLink& link, const TlmDownloadEntry& entry,
                             const std::filesystem::path& file, DownloadObserver& observer,
                             ReplaceWhen replace) {
    Download download(link, observer, replace);
    if (download.Start(entry, file)) {
        shell::RunToEnd(download);
    }
    return download.Outcome();
}

std::filesystem::path NextLoggerFileName(const std::filesystem::path& tempDir) {
    return shell::NextNumberedFile(tempDir, "LGGR", ".rlg");
}

} // namespace torvane::logger
