#pragma once
// The logger driver as core sees it: one call per link entry point of libtlm, with the driver's
// own records and codes (tlm.h). Core never links libtlm; the program hands it a driver that
// does (src/binding), and tests hand it a scripted one.
//
// Every call fills `status` and returns the driver's code: TLM_OK, a negative TLM_ERR_..., or,
// for GetTheNumberofFiles, the number of files. The logging-file decompressor is not here: it
// needs no link and has its own interface (logdata::LogFileDecompressor).

#include "tlm.h"

#include <cstdint>
#include <filesystem>
#include <span>

namespace torvane::logger {

class Driver {
public:
    virtual ~Driver() = default;

    virtual std::int32_t Open(TlmStatus& status) = 0;
    virtual std::int32_t Close(TlmStatus& status) = 0;
    virtual std::int32_t Reset(TlmStatus& status) = 0;
    virtual std::int32_t GetStatus(TlmStatus& status) = 0;
    virtual std::int32_t GetTheNumberofFiles(TlmStatus& status) = 0;
    // Fills every element of entries; their number is the count asked for.
    virtual std::int32_t GetTheDownloadList(TlmStatus& status,
                                            std::span<TlmDownloadEntry> entries) = 0;
    virtual std::int32_t GetTheLogFile_start(TlmStatus& status, TlmDownloadEntry& entry,
                                             const std::filesystem::path& file,
                                             TlmTransferBlock& block) = 0;
    virtual std::int32_t GetTheLogFile_reading(TlmStatus& status, TlmTransferBlock& block) = 0;
    virtual std::int32_t GetTheLogFile_end(TlmStatus& status, TlmTransferBlock& block) = 0;
    virtual std::int32_t InitializeLogFile(TlmStatus& status) = 0;
    virtual std::int32_t GetTheDetonationMap(TlmStatus& status, TlmDetonationMap& map) = 0;
    virtual std::int32_t TSInitialize(TlmStatus& status, std::int16_t kind) = 0;
    virtual std::int32_t GetTheInitData(TlmStatus& status, std::int32_t index,
                                        TlmInitData& data) = 0;
    virtual std::int32_t SendTheSettingData(TlmStatus& status, const TlmSettingData& setting) = 0;
    virtual std::int32_t GetTheSettingData(TlmStatus& status, TlmSettingData& setting) = 0;
    virtual std::int32_t GetTheSignalCondition(TlmStatus& status, TlmSignalCondition& signal) = 0;
    virtual std::int32_t GetTheSpecialData(TlmStatus& status, TlmSpecialData& special) = 0;
    // The buffer's size is the length given to the driver.
    virtual std::int32_t GetTheSpecialData_raw(TlmStatus& status,
                                               std::span<std::uint8_t> buffer) = 0;
    virtual std::int32_t GetTheErrorInfo(TlmStatus& status, std::span<std::uint8_t> buffer) = 0;
    virtual std::int32_t LoggingControl(TlmStatus& status, std::int32_t value) = 0;
    virtual std::int32_t ServiceModeCtrl(TlmStatus& status, std::int16_t code) = 0;
};

} // namespace torvane::logger
