#pragma once
// The logging file (*.rlg): the 82-byte log header and the recorded streams, each delta-coded
// and compressed with zstd. RlgWriter builds one from samples as they come; Deploy checks one
// and writes its streams out as the plain word files the analysis reads.
// docs/logging-file-format.md describes the layout byte by byte.
//
// Nothing here throws: failures come back as an empty result, false, or a result code of tlm.h.

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "tlm.h"

namespace torvane::rlg {

inline constexpr std::size_t HeaderSize = TLM_LOG_HEADER_SIZE;
using HeaderBytes = std::array<std::uint8_t, HeaderSize>;

// Builds a logging file in memory. Append may be called any number of times per stream, in any
// order between streams; each stream is compressed as it comes, so memory follows the compressed
// size (plus one zstd context per stream), never the raw samples.
// Stream names are 1 to 8 ASCII letters or digits, distinct regardless of case, at most 32.
// Levels are clamped to 1..9: above that a context costs tens of MB a stream for a gain of a few
// per cent on delta-coded words.
class RlgWriter {
public:
    RlgWriter(std::span<const std::uint8_t, HeaderSize> header,
              std::vector<std::string> streamNames, int level = 3);
    ~RlgWriter();
    RlgWriter(const RlgWriter&) = delete;
    RlgWriter& operator=(const RlgWriter&) = delete;

    void Append(std::size_t stream, std::span<const std::int16_t> samples);
    // The complete file. Empty when the writer could not make one: an invalid stream name, an
    // Append to a stream that does not exist or beyond the size limits, out of memory, or a
    // second call.
    std::vector<std::uint8_t> Finish();

private:
    struct Stream;

    bool Compress(Stream& stream, std::span<const std::uint8_t> bytes, bool end);

    HeaderBytes header_{};
    std::vector<std::unique_ptr<Stream>> streams_;
    std::vector<std::uint8_t> scratch_;
    int level_ = 3;
    bool failed_ = false;
    bool finished_ = false;
};

// Writes bytes to a fresh file beside target, flushes it to disk and renames it over target, so
// target is either the old file or the complete new one. False on failure; nothing is left.
bool WriteFileAtomically(const std::filesystem::path& target, std::span<const std::uint8_t> bytes);

struct DeployStats {
    std::int64_t BytesWritten = 0;
    std::int32_t StreamCount = 0;
};

// "<streamName>-<fileNumber>.tmp", the number with at least three digits: "Ne-010.tmp".
std::string StreamFileName(std::string_view streamName, int fileNumber);

// Deploys every stream of logFile into tempDir under StreamFileName(name, fileNumber) as plain
// signed 16-bit little-endian words, replacing files of the same names. Returns TLM_DECOMP_OK or
// TLM_DECOMP_NOT_FOUND, _NO_DATA, _WRITE_FAILED, _ACCESS_ERROR (see tlm.h). header and stats are
// set on success only. On failure no stream file of this call is left and existing files of the
// same names are kept, except when the final renames themselves fail.
int Deploy(const std::filesystem::path& logFile, const std::filesystem::path& tempDir,
           int fileNumber, HeaderBytes& header, DeployStats& stats);

} // namespace torvane::rlg
