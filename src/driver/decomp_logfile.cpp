// decomp_logfile: the C entry point of the logging-file codec. It only checks the arguments and
// translates between C and the container's deployer.

#include <algorithm>
#include <exception>
#include <limits>

#include "rlg_container.h"
#include "tlm.h"

extern "C" TLM_API int16_t decomp_logfile(const char* logPath, const char* tempPath,
                                          int16_t fileNumber, uint8_t* header, int32_t* byteCount,
                                          int32_t* deployCount) {
    if (byteCount != nullptr) {
        *byteCount = 0;
    }
    if (deployCount != nullptr) {
        *deployCount = 0;
    }
    if (logPath == nullptr) {
        return TLM_DECOMP_NOT_FOUND;
    }
    if (header == nullptr) {
        return TLM_DECOMP_ACCESS_ERROR;
    }
    if (tempPath == nullptr) {
        return TLM_DECOMP_WRITE_FAILED;
    }
    try {
        torvane::rlg::HeaderBytes bytes{};
        torvane::rlg::DeployStats stats;
        const int result = torvane::rlg::Deploy(logPath, tempPath, fileNumber, bytes, stats);
        if (result != TLM_DECOMP_OK) {
            return static_cast<int16_t>(result);
        }
        std::copy(bytes.begin(), bytes.end(), header);
        if (byteCount != nullptr) {
            *byteCount = static_cast<int32_t>(
                std::min<std::int64_t>(stats.BytesWritten, std::numeric_limits<int32_t>::max()));
        }
        if (deployCount != nullptr) {
            *deployCount = stats.StreamCount;
        }
        return TLM_DECOMP_OK;
    } catch (const std::exception&) {
        // Building the paths can run out of memory; nothing else here throws.
        return TLM_DECOMP_ACCESS_ERROR;
    }
}
