#pragma once
// The logger calls that windows make: each runs its entry point under the retry policy and
// returns 0, a negative driver code (not yet shown) or results::SenseShown. OpenLogger is not
// retried; the transfer's start and end and TLM_Close are called on the driver directly, since
// they must never be repeated.

#include "logger/logger_link.h"
#include "logger/retry_policy.h"

#include <cstdint>
#include <span>
#include <vector>

namespace torvane::logger {

// Opens the link and tells the operator why it did not open. A quiet open (windows that poll
// for the logger) says nothing when no logger is connected.
std::int32_t OpenLogger(LoggerLink& link, bool quiet);

// Any of the driver's calls under the retry policy, given the call and its arguments after the
// status (link.Status goes first), so that a new plain operation needs no wrapper of its own. The
// named ones below read better where windows call them.
template <typename... Parameters, typename... Arguments>
std::int32_t Retried(LoggerLink& link, std::int32_t (Driver::*call)(TlmStatus&, Parameters...),
                     Arguments&&... arguments) {
    return CallWithRetries(link, [&] { return (link.Driver.*call)(link.Status, arguments...); });
}

std::int32_t GetLoggerStatus(LoggerLink& link);
// count receives the number of files of the last try that answered.
std::int32_t GetFileCount(LoggerLink& link, int& count);
// Sizes entries to count first.
std::int32_t GetDownloadList(LoggerLink& link, int count, std::vector<TlmDownloadEntry>& entries);
// A sense of "file not found" counts as clean here: the download loop tells the operator.
std::int32_t ReadLogFileBlock(LoggerLink& link, TlmTransferBlock& block);
std::int32_t ClearLogFiles(LoggerLink& link);
std::int32_t ReadDetonationMap(LoggerLink& link, TlmDetonationMap& map);
std::int32_t InitializeSensor(LoggerLink& link, std::int16_t kind);
std::int32_t ReadInitData(LoggerLink& link, std::int32_t index, TlmInitData& data);
std::int32_t SendSetting(LoggerLink& link, const TlmSettingData& setting);
std::int32_t ReadSetting(LoggerLink& link, TlmSettingData& setting);
std::int32_t ReadSignalCondition(LoggerLink& link, TlmSignalCondition& signal);
std::int32_t ReadSpecialData(LoggerLink& link, TlmSpecialData& special);
std::int32_t ReadSpecialDataRaw(LoggerLink& link, std::span<std::uint8_t> buffer);
std::int32_t ControlServiceMode(LoggerLink& link, std::int16_t code);
std::int32_t ReadErrorInfo(LoggerLink& link, std::span<std::uint8_t> buffer);
std::int32_t ResetLogger(LoggerLink& link);
// 1 stops acquisition so that other commands may run; 0 gives the logger back to acquisition.
std::int32_t ControlLogging(LoggerLink& link, std::int32_t value);

} // namespace torvane::logger
