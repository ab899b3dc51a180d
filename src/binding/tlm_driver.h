#pragma once
// Core's logger driver carried out by libtlm's link entry points. The endpoint is libtlm's
// business (TORVANE_LOGGER, else this user's default socket).

#include "logger/driver.h"

namespace torvane::binding {

class TlmDriver : public logger::Driver {
public:
    std::int32_t Open(TlmStatus& status) override;
    std::int32_t Close(TlmStatus& status) override;
    TORVANE_DRIVER_PLAIN_OVERRIDES
    std::int32_t GetTheDownloadList(TlmStatus& status,
                                    std::span<TlmDownloadEntry> entries) override;
    std::int32_t GetTheLogFile_start(TlmStatus& status, TlmDownloadEntry& entry,
                                     const std::filesystem::path& file,
                                     TlmTransferBlock& block) override;
    std::int32_t GetTheLogFile_reading(TlmStatus& status, TlmTransferBlock& block) override;
    std::int32_t GetTheLogFile_end(TlmStatus& status, TlmTransferBlock& block) override;
    std::int32_t GetTheSpecialData_raw(TlmStatus& status, std::span<std::uint8_t> buffer) override;
    std::int32_t GetTheErrorInfo(TlmStatus& status, std::span<std::uint8_t> buffer) override;
};

} // namespace torvane::binding
