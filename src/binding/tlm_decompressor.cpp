#include "binding/tlm_decompressor.h"

#include "tlm.h"

namespace torvane::binding {

int TlmDecompressor::Decompress(const std::filesystem::path& logFile,
                                const std::filesystem::path& tempDir, int fileNumber,
                                logdata::LogHeader::Bytes& header, std::int32_t& deployCount) {
    std::int32_t bytesWritten = 0;
    return decomp_logfile(logFile.string().c_str(), tempDir.string().c_str(),
                          static_cast<std::int16_t>(fileNumber), header.data(), &bytesWritten,
                          &deployCount);
}

} // namespace torvane::binding
