#include "binding/tlm_driver.h"

#include <limits>

namespace torvane::binding {
namespace {

// The C calls take their lengths as narrow integers; a span longer than that is refused as the
// library refuses a bad length, rather than cut short.
template <typename Length> bool FitsIn(std::size_t size) {
    return size <= static_cast<std::size_t>(std::numeric_limits<Length>::max());
}

} // namespace

std::int32_t TlmDriver::Open(TlmStatus& status) {
    return TLM_Open(&status);
}

std::int32_t TlmDriver::Close(TlmStatus& status) {
    return TLM_Close(&status);
}

std::int32_t TlmDriver::Reset(TlmStatus& status) {
    return TLM_Reset(&status);
}

std::int32_t TlmDriver::GetStatus(TlmStatus& status) {
    return ::GetStatus(&status);
}

std::int32_t TlmDriver::GetTheNumberofFiles(TlmStatus& status) {
    return ::GetTheNumberofFiles(&status);
}

std::int32_t TlmDriver::GetTheDownloadList(TlmStatus& status, std::span<TlmDownloadEntry> entries) {
    if (!FitsIn<std::int16_t>(entries.size())) {
        return TLM_ERR_ARGUMENT;
    }
    return ::GetTheDownloadList(&status, static_cast<std::int16_t>(entries.size()), entries.data());
}

std::int32_t TlmDriver::GetTheLogFile_start(TlmStatus& status, TlmDownloadEntry& entry,
                                            const std::filesystem::path& file,
                                            TlmTransferBlock& block) {
    return ::GetTheLogFile_start(&status, &entry, file.c_str(), &block);
}

std::int32_t TlmDriver::GetTheLogFile_reading(TlmStatus& status, TlmTransferBlock& block) {
    return ::GetTheLogFile_reading(&status, &block);
}

std::int32_t TlmDriver::GetTheLogFile_end(TlmStatus& status, TlmTransferBlock& block) {
    return ::GetTheLogFile_end(&status, &block);
}

std::int32_t TlmDriver::InitializeLogFile(TlmStatus& status) {
    return ::InitializeLogFile(&status);
}

std::int32_t TlmDriver::GetTheDetonationMap(TlmStatus& status, TlmDetonationMap& map) {
    return ::GetTheDetonationMap(&status, &map);
}

std::int32_t TlmDriver::TSInitialize(TlmStatus& status, std::int16_t kind) {
    return ::TSInitialize(&status, kind);
}

std::int32_t TlmDriver::GetTheInitData(TlmStatus& status, std::int32_t index, TlmInitData& data) {
    return ::GetTheInitData(&status, index, &data);
}

std::int32_t TlmDriver::SendTheSettingData(TlmStatus& status, const TlmSettingData& setting) {
    return ::SendTheSettingData(&status, &setting);
}

std::int32_t TlmDriver::GetTheSettingData(TlmStatus& status, TlmSettingData& setting) {
    return ::GetTheSettingData(&status, &setting);
}

std::int32_t TlmDriver::GetTheSignalCondition(TlmStatus& status, TlmSignalCondition& signal) {
    return ::GetTheSignalCondition(&status, &signal);
}

std::int32_t TlmDriver::GetTheSpecialData(TlmStatus& status, TlmSpecialData& special) {
    return ::GetTheSpecialData(&status, &special);
}

std::int32_t TlmDriver::GetTheSpecialData_raw(TlmStatus& status, std::span<std::uint8_t> buffer) {
    if (!FitsIn<std::int32_t>(buffer.size())) {
        return TLM_ERR_ARGUMENT;
    }
    return ::GetTheSpecialData_raw(&status, buffer.data(),
                                   static_cast<std::int32_t>(buffer.size()));
}

std::int32_t TlmDriver::GetTheErrorInfo(TlmStatus& status, std::span<std::uint8_t> buffer) {
    if (!FitsIn<std::int32_t>(buffer.size())) {
        return TLM_ERR_ARGUMENT;
    }
    return ::GetTheErrorInfo(&status, buffer.data(), static_cast<std::int32_t>(buffer.size()));
}

std::int32_t TlmDriver::LoggingControl(TlmStatus& status, std::int32_t value) {
    return ::LoggingControl(&status, value);
}

std::int32_t TlmDriver::ServiceModeCtrl(TlmStatus& status, std::int16_t code) {
    return ::ServiceModeCtrl(&status, code);
}

} // namespace torvane::binding
