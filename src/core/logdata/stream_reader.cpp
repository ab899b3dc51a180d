#include "logdata/stream_reader.h"

#include <algorithm>
#include <array>
#include <system_error>
#include <utility>

namespace torvane::logdata {
namespace {

// Words are decoded in chunks of this many bytes, so a long read needs no heap.
constexpr std::size_t ChunkBytes = 4096;

template <typename Word>
void DecodeLittleEndian(std::span<const std::uint8_t> bytes, std::span<Word> words) {
    for (std::size_t i = 0; i < words.size(); ++i) {
        std::uint32_t value = 0;
        for (std::size_t b = 0; b < sizeof(Word); ++b) {
            value |= static_cast<std::uint32_t>(bytes[i * sizeof(Word) + b]) << (8 * b);
        }
        words[i] = static_cast<Word>(value);
    }
}

template <typename Word, typename ReadFn>
void ReadWords(std::int64_t first, std::span<Word> out, ReadFn&& readBytes) {
    std::array<std::uint8_t, ChunkBytes> chunk{};
    constexpr std::size_t wordsPerChunk = ChunkBytes / sizeof(Word);
    std::int64_t offset = (first - 1) * static_cast<std::int64_t>(sizeof(Word));
    for (std::size_t done = 0; done < out.size();) {
        const std::size_t count = std::min(wordsPerChunk, out.size() - done);
        const std::span<std::uint8_t> bytes(chunk.data(), count * sizeof(Word));
        std::fill(bytes.begin(), bytes.end(), std::uint8_t{0});
        if (offset >= 0) {
            readBytes(offset, bytes);
        }
        DecodeLittleEndian<Word>(bytes, out.subspan(done, count));
        done += count;
        offset += static_cast<std::int64_t>(bytes.size());
    }
}

} // namespace

StreamReader::~StreamReader() { Close(); }

StreamReader::StreamReader(StreamReader&& other) noexcept
    : file_(std::exchange(other.file_, nullptr)), length_(std::exchange(other.length_, 0)) {}

StreamReader& StreamReader::operator=(StreamReader&& other) noexcept {
    if (this != &other) {
        Close();
        file_ = std::exchange(other.file_, nullptr);
        length_ = std::exchange(other.length_, 0);
    }
    return *this;
}

bool StreamReader::Open(const std::filesystem::path& path) {
    Close();
    std::error_code error;
    const auto size = std::filesystem::file_size(path, error);
    if (error) {
        return false;
    }
    file_ = std::fopen(path.string().c_str(), "rb");
    if (file_ == nullptr) {
        return false;
    }
    // Reads are positional and small; the stdio buffer would only double the copying.
    std::setvbuf(file_, nullptr, _IONBF, 0);
    length_ = static_cast<std::int64_t>(size);
    return true;
}

void StreamReader::Close() {
    if (file_ != nullptr) {
        std::fclose(file_);
        file_ = nullptr;
    }
    length_ = 0;
}

std::size_t StreamReader::ReadBytes(std::int64_t offset, std::span<std::uint8_t> out) {
    if (file_ == nullptr || offset >= length_) {
        return 0;
    }
    if (std::fseek(file_, static_cast<long>(offset), SEEK_SET) != 0) {
        return 0;
    }
    return std::fread(out.data(), 1, out.size(), file_);
}

void StreamReader::ReadWords16(std::int64_t first, std::span<std::int16_t> out) {
    ReadWords(first, out, [this](std::int64_t offset, std::span<std::uint8_t> bytes) {
        return ReadBytes(offset, bytes);
    });
}

void StreamReader::ReadWords32(std::int64_t first, std::span<std::int32_t> out) {
    ReadWords(first, out, [this](std::int64_t offset, std::span<std::uint8_t> bytes) {
        return ReadBytes(offset, bytes);
    });
}

} // namespace torvane::logdata
