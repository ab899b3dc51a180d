#pragma once
// The logging-file decompressor of core, carried out by the driver library's decomp_logfile.

#include "logdata/deployment.h"

namespace torvane::binding {

class TlmDecompressor : public logdata::LogFileDecompressor {
public:
    int Decompress(const std::filesystem::path& logFile, const std::filesystem::path& tempDir,
                   int fileNumber, logdata::LogHeader::Bytes& header,
                   std::int32_t& deployCount) override;
};

} // namespace torvane::binding
