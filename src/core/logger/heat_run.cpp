#include "logger/heat_run.h"

#include "logger/driver_calls.h"
#include "logger/heat_setting.h"
#include "logger/link_messages.h"
#include "logger/wait_ready.h"
#include "shell/number_format.h"

#include <array>
#include <string>
#include <vector>

namespace torvane::logger {
namespace {

using shell::buttons::Ok;
using shell::icons::Stop;

constexpr std::string_view SettingMismatchText =
    "Error! \r\nPlease check reconsideration of a setting item, and connection of measurement "
    "equipment, and perform again.";

void ShowFailed(LoggerLink& link, std::string_view code) {
    shell::ShowMessage(link.Sink, "It failed in download. Error code = " + std::string(code), Ok,
                       Stop);
}

} // namespace

HeatRun::~HeatRun() {
    if (linkOpen_) {
        link_.Driver.Close(link_.Status);
    }
}

bool HeatRun::Step() {
    if (stage_ == HeatStage::Finished) {
        return false;
    }
    // Every piece of a pass begins with a look at the end button, except inside a transfer,
    // which is ended properly first.
    const bool inTransfer = stage_ == HeatStage::Downloading && transferring_;
    if (endRequested_ && stage_ != HeatStage::Opening && !inTransfer) {
        Finish(0);
        return false;
    }
    std::int32_t result = 0;
    switch (stage_) {
    case HeatStage::Opening:
        if (Open() != 0) {
            stage_ = HeatStage::Finished;
            return false;
        }
        stage_ = HeatStage::SendingSetting;
        return true;
    case HeatStage::SendingSetting:
        result = SendSetting();
        stage_ = HeatStage::StartingFunction;
        break;
    case HeatStage::StartingFunction:
        result = StartFunction();
        stage_ = HeatStage::ReadingSignals;
        readings_ = 0;
        break;
    case HeatStage::ReadingSignals:
        result = ReadSignals();
        if (readings_ >= HeatSignalReadings) {
            stage_ = HeatStage::ReadingDetonation;
        }
        break;
    case HeatStage::ReadingDetonation:
        result = ReadDetonation();
        stage_ = HeatStage::Downloading;
        transferring_ = false;
        break;
    case HeatStage::Downloading:
        if (!transferring_) {
            result = StartDownload();
        } else if (endRequested_ || DownloadBlock() != 0) {
            result = EndDownload();
            stage_ = HeatStage::NextSetting;
        }
        break;
    case HeatStage::NextSetting:
        HeatNextSetting(setting_);
        ++passes_;
        stage_ = HeatStage::SendingSetting;
        break;
    case HeatStage::Finished:
        break;
    }
    if (result != 0) {
        Finish(result);
        return false;
    }
    return true;
}

std::int32_t HeatRun::Open() {
    std::int32_t result = OpenLogger(link_, false);
    if (result != 0) {
        return result;
    }
    linkOpen_ = true;
    result = ResetLogger(link_);
    if (result < 0) {
        ReportDriverError(link_, result, false);
        linkOpen_ = false;
        return result;
    }
    link_.Pause(HeatResetPause);
    setting_ = HeatRunFirstSetting();
    return 0;
}

std::int32_t HeatRun::CheckStage(bool takesReady, bool stopsAcquisition) {
    if (const std::int32_t result = GetLoggerStatus(link_); result != 0) {
        return result;
    }
    const std::uint8_t state = link_.Status.bytState;
    if (state == TLM_STATE_BROKEN) {
        return results::OutOfOrder;
    }
    if (state == TLM_STATE_ACQUIRING && stopsAcquisition) {
        return ControlLogging(link_, 1);
    }
    const bool taken = state == TLM_STATE_IDLE || (takesReady && state == TLM_STATE_READY) ||
                       (!takesReady && state == TLM_STATE_ACQUIRING);
    return taken ? 0 : heat_results::UnexpectedState;
}

std::int32_t HeatRun::SendSetting() {
    std::int32_t result = CheckStage(true, true);
    if (result == 0) {
        result = WaitLoggerReady(link_);
    }
    if (result == 0) {
        result = logger::SendSetting(link_, setting_);
    }
    if (result == 0) {
        result = WaitLoggerReady(link_);
    }
    TlmSettingData readBack{};
    if (result == 0) {
        result = ReadSetting(link_, readBack);
    }
    if (result == 0 && !SameHeatSetting(setting_, readBack)) {
        shell::ShowMessage(link_.Sink, SettingMismatchText, Ok, Stop);
        result = heat_results::Told;
    }
    return result;
}

std::int32_t HeatRun::StartFunction() {
    switch (kind_) {
    case HeatRunKind::Service2:
        return ControlServiceMode(link_, TLM_SERVICE_HEAT_RUN2);
    case HeatRunKind::Service3:
        return ControlServiceMode(link_, TLM_SERVICE_HEAT_RUN3);
    case HeatRunKind::Acquisition:
        break;
    }
    return ControlLogging(link_, 0);
}

std::int32_t HeatRun::ReadSignals() {
    if (readings_ == 0) {
        if (const std::int32_t result = CheckStage(false, false); result != 0) {
            return result;
        }
    } else {
        link_.Pause(HeatSignalPause);
    }
    TlmSignalCondition signal{};
    ++readings_;
    return ReadSignalCondition(link_, signal);
}

std::int32_t HeatRun::ReadDetonation() {
    if (const std::int32_t result = CheckStage(false, false); result != 0) {
        return result;
    }
    TlmDetonationMap map{};
    return ReadDetonationMap(link_, map);
}

std::int32_t HeatRun::StartDownload() {
    std::int32_t result = CheckStage(true, true);
    if (result == 0) {
        result = WaitLoggerReady(link_);
    }
    int count = 0;
    if (result == 0) {
        result = GetFileCount(link_, count);
    }
    if (result != 0) {
        return result;
    }
    if (count <= 0) {
        shell::ShowMessage(link_.Sink, "There is no file in Logger.", Ok, shell::icons::None);
        return heat_results::Told;
    }
    std::vector<TlmDownloadEntry> entries;
    if (result = GetDownloadList(link_, count, entries); result != 0) {
        return result;
    }
    failures_ = 0;
    block_ = {};
    TlmDownloadEntry entry = entries.front();
    result = link_.Driver.GetTheLogFile_start(link_.Status, entry, file_, block_);
    switch (result) {
    case 0:
        if (link_.Status.bytSense != TLM_SENSE_CLEAN) {
            ShowSenseError(link_.Sink, link_.Status.bytSense);
            result = results::SenseShown;
        }
        break;
    case -1:
        ShowFailed(link_, "2001");
        break;
    case -2:
        ShowFailed(link_, "2002");
        break;
    default:
        ShowFailed(link_, "2099");
        break;
    }
    if (result != 0) {
        ++failures_;
        // Ended at once, as the read loop would be.
        stage_ = HeatStage::NextSetting;
        return EndDownload();
    }
    transferring_ = true;
    return 0;
}

std::int32_t HeatRun::DownloadBlock() {
    const std::int32_t result = ReadLogFileBlock(link_, block_);
    if (result < 0 || link_.Status.bytSense != TLM_SENSE_CLEAN) {
        ++failures_;
        return 1;
    }
    return result;
}

std::int32_t HeatRun::EndDownload() {
    transferring_ = false;
    const std::int32_t result = link_.Driver.GetTheLogFile_end(link_.Status, block_);
    bool clean = false;
    switch (result) {
    case 0:
    case TLM_ERR_TIMEOUT:
        clean = true;
        break;
    case -1:
        // Unlike the download window, the heat run tells this end only after a failure.
        if (failures_ > 0) {
            ShowFailed(link_, "3001");
        }
        break;
    case -2:
        ShowFailed(link_, "3002");
        break;
    default:
        ShowFailed(link_, shell::FormatNumber(result, shell::formats::FourDigits));
        break;
    }
    if (result < 0 && !clean) {
        ++failures_;
    }
    if (clean) {
        if (const std::int32_t ready = WaitLoggerReady(link_); ready != 0) {
            return ready;
        }
    }
    return failures_ > 0 ? heat_results::Told : 0;
}

void HeatRun::Finish(std::int32_t result) {
    stage_ = HeatStage::Finished;
    result_ = result;
    switch (result) {
    case results::SenseShown:
    case heat_results::UnexpectedState:
    case heat_results::Told:
        break;
    case results::OutOfOrder: {
        std::array<std::uint8_t, TLM_ERROR_INFO_SIZE> log{};
        if (ReadErrorInfo(link_, log) == 0 && errorLog_) {
            errorLog_(log);
        }
        break;
    }
    default:
        ReportDriverError(link_, result, true);
        break;
    }
    link_.Driver.Close(link_.Status);
    linkOpen_ = false;
    endRequested_ = false;
}

} // namespace torvane::logger
