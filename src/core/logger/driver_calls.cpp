#include "logger/driver_calls.h"

#include "logger/retry_policy.h"
#include "shell/number_format.h"

#include <algorithm>

namespace torvane::logger {

std::int32_t OpenLogger(LoggerLink& link, bool quiet) {
    const std::int32_t result = link.Driver.Open(link.Status);
    if (result == TLM_OK || (result == TLM_ERR_NOT_CONNECTED && quiet)) {
        return result;
    }
    if (result == TLM_ERR_NOT_CONNECTED) {
        shell::ShowMessage(link.Sink, "TorvaneDataLogger is not connected.", shell::buttons::Ok,
                           shell::icons::Stop);
        return result;
    }
    // The text ends in a blank and the code begins with one.
    const std::int32_t shown =
        result == TLM_ERR_OPEN_FAILED || result == TLM_ERR_TIMEOUT ? -result : result;
    shell::ShowMessage(link.Sink,
                       "USB device error. Error code = " +
                           shell::FormatNumber(shown, shell::formats::PaddedCode),
                       shell::buttons::Ok, shell::icons::Stop);
    return result;
}

std::int32_t GetLoggerStatus(LoggerLink& link) {
    return Retried(link, &Driver::GetStatus);
}

std::int32_t GetFileCount(LoggerLink& link, int& count) {
    return CallWithRetries(link,
                           [&] {
                               const std::int32_t result =
                                   link.Driver.GetTheNumberofFiles(link.Status);
                               if (result >= 0) {
                                   count = result;
                               }
                               return result;
                           },
                           {.ResultIsCount = true});
}

std::int32_t GetDownloadList(LoggerLink& link, int count, std::vector<TlmDownloadEntry>& entries) {
    entries.assign(static_cast<std::size_t>(std::max(count, 0)), TlmDownloadEntry{});
    return Retried(link, &Driver::GetTheDownloadList, entries);
}

std::int32_t ReadLogFileBlock(LoggerLink& link, TlmTransferBlock& block) {
    return CallWithRetries(link,
                           [&] { return link.Driver.GetTheLogFile_reading(link.Status, block); },
                           {.SenseLeftToCaller = TLM_SENSE_FILE_NOT_FOUND});
}

std::int32_t ClearLogFiles(LoggerLink& link) {
    return Retried(link, &Driver::InitializeLogFile);
}

std::int32_t ReadDetonationMap(LoggerLink& link, TlmDetonationMap& map) {
    return Retried(link, &Driver::GetTheDetonationMap, map);
}

std::int32_t InitializeSensor(LoggerLink& link, std::int16_t kind) {
    return Retried(link, &Driver::TSInitialize, kind);
}

std::int32_t ReadInitData(LoggerLink& link, std::int32_t index, TlmInitData& data) {
    return Retried(link, &Driver::GetTheInitData, index, data);
}

std::int32_t SendSetting(LoggerLink& link, const TlmSettingData& setting) {
    return Retried(link, &Driver::SendTheSettingData, setting);
}

std::int32_t ReadSetting(LoggerLink& link, TlmSettingData& setting) {
    return Retried(link, &Driver::GetTheSettingData, setting);
}

std::int32_t ReadSignalCondition(LoggerLink& link, TlmSignalCondition& signal) {
    return Retried(link, &Driver::GetTheSignalCondition, signal);
}

std::int32_t ReadSpecialData(LoggerLink& link, TlmSpecialData& special) {
    return Retried(link, &Driver::GetTheSpecialData, special);
}

std::int32_t ReadSpecialDataRaw(LoggerLink& link, std::span<std::uint8_t> buffer) {
    return Retried(link, &Driver::GetTheSpecialData_raw, buffer);
}

std::int32_t ControlServiceMode(LoggerLink& link, std::int16_t code) {
    return Retried(link, &Driver::ServiceModeCtrl, code);
}

std::int32_t ReadErrorInfo(LoggerLink& link, std::span<std::uint8_t> buffer) {
    return Retried(link, &Driver::GetTheErrorInfo, buffer);
}

std::int32_t ResetLogger(LoggerLink& link) {
    return Retried(link, &Driver::TLM_Reset);
}

std::int32_t ControlLogging(LoggerLink& link, std::int32_t value) {
    return Retried(link, &Driver::LoggingControl, value);
}

} // namespace torvane::logger
