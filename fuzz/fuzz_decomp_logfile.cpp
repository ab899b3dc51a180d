// libFuzzer target of the logging-file deployer.
//
// Input: one control byte, then the logging file. Its low bit asks the harness to make the
// file's CRCs agree with its content before deploying it, so that mutations get past the head
// and stream checks and exercise the table and the zstd decoding behind them; without it the
// checks themselves are fuzzed. The other seven bits are the file number.
//
// Beyond the sanitizers, the harness checks what the deployer promises: a known result code, an
// empty deploy folder after any failure, one file per stream after success, and a logging file
// that is never changed.

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

#include <zstd.h>

#include "byte_order.h"
#include "delta_coding.h"
#include "rlg_container.h"
#include "rlg_format.h"

namespace {

namespace fs = std::filesystem;
namespace format = torvane::rlg::format;
using torvane::GetLittleEndian;
using torvane::PutLittleEndian;

// Larger frames keep their wrong data CRC; decoding them for the repair would only slow the run.
constexpr std::uint64_t MaxRepairedBytes = std::uint64_t{1} << 22;

class Workspace {
public:
    Workspace() {
        std::string pattern = (fs::temp_directory_path() / "fuzz-rlg-XXXXXX").string();
        if (::mkdtemp(pattern.data()) == nullptr) {
            std::perror("mkdtemp");
            std::abort();
        }
        root_ = pattern;
        fs::create_directory(DeployDir());
    }
    ~Workspace() {
        std::error_code ignored;
        fs::remove_all(root_, ignored);
    }
    fs::path LogFile() const { return root_ / "input.rlg"; }
    fs::path DeployDir() const { return root_ / "deploy"; }

private:
    fs::path root_;
};

std::uint32_t DataCrc(std::span<const std::uint8_t> frame, std::uint64_t dataBytes) {
    std::vector<std::uint8_t> words(dataBytes);
    const std::size_t size =
        ZSTD_decompress(words.data(), words.size(), frame.data(), frame.size());
    if (ZSTD_isError(size)) {
        return 0;
    }
    words.resize(size);
    std::uint16_t previous = 0;
    torvane::rlg::DecodeDeltasInPlace(words, previous);
    return format::UpdateCrc32(0, words);
}

void RepairCrcs(std::vector<std::uint8_t>& file) {
    const std::span bytes(file);
    if (file.size() < format::FixedHeadSize) {
        return;
    }
    const std::size_t count = GetLittleEndian<std::uint16_t>(bytes, format::StreamCountOffset);
    const std::size_t headSize = format::HeadSize(count);
    if (count > format::MaxStreams || file.size() < headSize) {
        return;
    }
    std::uint64_t offset = headSize;
    for (std::size_t i = 0; i < count; ++i) {
        const auto entry =
            bytes.subspan(format::FixedHeadSize + i * format::EntrySize, format::EntrySize);
        const auto storedSize = GetLittleEndian<std::uint64_t>(entry, format::StoredSizeOffset);
        if (storedSize > file.size() - offset) {
            break;
        }
        const auto frame = bytes.subspan(offset, storedSize);
        PutLittleEndian(entry, format::StoredCrcOffset, format::UpdateCrc32(0, frame));
        const auto dataBytes =
            GetLittleEndian<std::uint64_t>(entry, format::SampleCountOffset) * format::WordSize16;
        if (dataBytes <= MaxRepairedBytes) {
            PutLittleEndian(entry, format::DataCrcOffset, DataCrc(frame, dataBytes));
        }
        offset += storedSize;
    }
    const auto covered = bytes.first(headSize - format::CrcSize);
    PutLittleEndian(bytes, covered.size(), format::UpdateCrc32(0, covered));
}

std::vector<std::uint8_t> ReadBack(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

void Require(bool condition, const char* promise) {
    if (!condition) {
        std::fprintf(stderr, "broken promise: %s\n", promise);
        std::abort();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const Workspace workspace;
    if (size == 0) {
        return 0;
    }
    std::vector<std::uint8_t> file(data + 1, data + size);
    if ((data[0] & 1) != 0) {
        RepairCrcs(file);
    }
    {
        std::ofstream out(workspace.LogFile(), std::ios::binary | std::ios::trunc);
        out.write(reinterpret_cast<const char*>(file.data()),
                  static_cast<std::streamsize>(file.size()));
    }

    torvane::rlg::HeaderBytes header{};
    torvane::rlg::DeployStats stats;
    const int result = torvane::rlg::Deploy(workspace.LogFile(), workspace.DeployDir(),
                                            data[0] >> 1, header, stats);

    Require(result >= TLM_DECOMP_ACCESS_ERROR && result <= TLM_DECOMP_OK, "a known result code");
    Require(ReadBack(workspace.LogFile()) == file, "the logging file is never changed");
    const auto deployed = static_cast<std::int64_t>(
        std::distance(fs::directory_iterator(workspace.DeployDir()), fs::directory_iterator()));
    if (result != TLM_DECOMP_OK) {
        Require(deployed == 0, "nothing is left behind after a failure");
        return 0;
    }
    Require(deployed == stats.StreamCount, "one file per stream");
    for (const auto& entry : fs::directory_iterator(workspace.DeployDir())) {
        fs::remove(entry.path());
    }
    return 0;
}
