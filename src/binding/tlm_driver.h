#pragma once
// Core's logger driver carried out by libtlm's link entry points. The endpoint is libtlm's
// business (TORVANE_LOGGER, else this user's default socket).

#include "logger/driver.h"

namespace torvane::binding {

class TlmDriver : public logger::Driver {
public:
    std::int32_t Open(TlmStatus& status) override;
    std::int32_t Close(TlmStatus& status) override;
    std::int32_t Reset(TlmStatus& status) override;
    std::int32_t GetStatus(TlmStatus& status) override;
    std::int32_t GetTheNumberofFiles(TlmStatus& status) override;
    std::int32_t GetTheDownloadList(TlmStatus& status,
                                    std::span<TlmDownloadEntry> entries) override;
    std::int32_t GetTheLogFile_start(TlmStatus& status, TlmDownloadEntry& entry,
                                     const std::filesystem::path& file,
                                     TlmTransferBlock& block) override;
    std::int32_t GetTheLogFile_reading(TlmStatus& status, TlmTransferBlock& block) override;
    std::int32_t GetTheLogFile_end(TlmStatus& status, TlmTransferBlock& block) override;
    std::int32_t InitializeLogFile(TlmStatus& status) override;
    std::int32_t GetTheDetonationMap(TlmStatus& status, TlmDetonationMap& map) override;
    std::int32_t TSInitialize(TlmStatus& status, std::int16_t kind) override;
    std::int32_t GetTheInitData(TlmStatus& status, std::int32_t index, TlmInitData& data) override;
    std::int32_t SendTheSettingData(TlmStatus& status, const TlmSettingData& setting) override;
    std::int32_t GetTheSettingData(TlmStatus& status, TlmSettingData& setting) override;
    std::int32_t GetTheSignalCondition(TlmStatus& status, TlmSignalCondition& signal) override;
    std::int32_t GetTheSpecialData(TlmStatus& status, TlmSpecialData& special) override;
    std::int32_t GetTheSpecialData_raw(TlmStatus& status, std::span<std::uint8_t> buffer) override;
    std::int32_t GetTheErrorInfo(TlmStatus& status, std::span<std::uint8_t> buffer) override;
    std::int32_t LoggingControl(TlmStatus& status, std::int32_t value) override;
    std::int32_t ServiceModeCtrl(TlmStatus& status, std::int16_t code) override;
};

} // namespace torvane::binding
