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
    return CallWithRetries(link, [&] { return link.Driver.GetStatus(link.Status); });
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
    return CallWithRetries(link,
                           [&] { return link.Driver.GetTheDownloadList(link.Status, entries); });
}

std::int32_t ReadLogFileBlock(LoggerLink& link, TlmTransferBlock& block) {
    return CallWithRetries(link,
                           [&] { return link.Driver.GetTheLogFile_reading(link.Status, block); },
                           {.SenseLeftToCaller = TLM_SENSE_FILE_NOT_FOUND});
}

std::int32_t ClearLogFiles(LoggerLink& link) {
    return CallWithRetries(link, [&] { return link.Driver.InitializeLogFile(link.Status); });
}

std::int32_t ReadDetonationMap(LoggerLink& link, TlmDetonationMap& map) {
    return CallWithRetries(link, [&] { return link.Driver.GetTheDetonationMap(link.Status, map); });
}

std::int32_t InitializeSensor(LoggerLink& link, std::int16_t kind) {
    return CallWithRetries(link, [&] { return link.Driver.TSInitialize(link.Status, kind); });
}

std::int32_t ReadInitData(LoggerLink& link, std::int32_t index, TlmInitData& data) {
    return CallWithRetries(link,
                           [&] { return link.Driver.GetTheInitData(link.Status, index, data); });
}

std::int32_t SendSetting(LoggerLink& link, const TlmSettingData& setting) {
    return CallWithRetries(link,
                           [&] { return link.Driver.SendTheSettingData(link.Status, setting); });
}

std::int32_t ReadSetting(LoggerLink& link, TlmSettingData& setting) {
    return CallWithRetries(link,
                           [&] { return link.Driver.GetTheSettingData(link.Status, setting); });
}

std::int32_t ReadSignalCondition(LoggerLink& link, TlmSignalCondition& signal) {
    return CallWithRetries(link,
                           [&] { return link.Driver.GetTheSignalCondition(link.Status, signal); });
}

std::int32_t ReadSpecialData(LoggerLink& link, TlmSpecialData& special) {
    return CallWithRetries(link,
                           [&] { return link.Driver.GetTheSpecialData(link.Status, special); });
}

std::int32_t ReadSpecialDataRaw(LoggerLink& link, std::span<std::uint8_t> buffer) {
    return CallWithRetries(link,
                           [&] { return link.Driver.GetTheSpecialData_raw(link.Status, buffer); });
}

std::int32_t ControlServiceMode(LoggerLink& link, std::int16_t code) {
    return CallWithRetries(link, [&] { return link.Driver.ServiceModeCtrl(link.Status, code); });
}

std::int32_t ReadErrorInfo(LoggerLink& link, std::span<std::uint8_t> buffer) {
    return CallWithRetries(link, [&] { return link.Driver.GetTheErrorInfo(link.Status, buffer); });
}

std::int32_t ResetLogger(LoggerLink& link) {
    return CallWithRetries(link, [&] { return link.Driver.Reset(link.Status); });
}

std::int32_t ControlLogging(LoggerLink& link, std::int32_t value) {
    return CallWithRetries(link, [&] { return link.Driver.LoggingControl(link.Status, value); });
}

} // namespace torvane::logger
