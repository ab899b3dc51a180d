#pragma once
// Reads a deployed stream by position. Sample k (from 1) of a stream of w-byte little-endian
// words stands at byte offset (k - 1) * w. A read past the end yields 0 words, so callers need
// no length checks of their own; a missing file reads as an empty stream.
//
// Small reads (a cursor's pair of samples, an export's block) are positional reads of the file.
// Readers that scan many samples (the traces) take the words in place instead: the stream is
// mapped into memory on the first such call, so only the pages of the samples looked at are
// read and nothing is copied or decoded.

#include <cstdint>
#include <filesystem>
#include <span>

namespace torvane::logdata {

class StreamReader {
public:
    StreamReader() = default;
    explicit StreamReader(const std::filesystem::path& path) { Open(path); }
    ~StreamReader();
    StreamReader(const StreamReader&) = delete;
    StreamReader& operator=(const StreamReader&) = delete;
    StreamReader(StreamReader&& other) noexcept;
    StreamReader& operator=(StreamReader&& other) noexcept;

    bool Open(const std::filesystem::path& path);
    void Close();
    bool IsOpen() const { return file_ >= 0; }
    // Length in bytes; 0 for a stream that is not open.
    std::int64_t ByteLength() const { return length_; }

    // Fills out with the 16-bit samples from sample number `first` (from 1) on.
    void ReadWords16(std::int64_t first, std::span<std::int16_t> out);
    // The same for 32-bit samples (computed items).
    void ReadWords32(std::int64_t first, std::span<std::int32_t> out);

    // Every whole sample of the stream in place, sample k at index k - 1; empty when the stream
    // is not open, is empty or cannot be mapped. Valid until the reader closes.
    std::span<const std::int16_t> MappedWords16();
    std::span<const std::int32_t> MappedWords32();

private:
    // Fills out with the bytes from the offset on; bytes past the end read as 0.
    void ReadBytes(std::int64_t offset, std::span<std::byte> out) const;
    // The whole stream in memory; null when it cannot be mapped.
    const void* Map();

    int file_ = -1;
    std::int64_t length_ = 0;
    void* map_ = nullptr;
};

} // namespace torvane::logdata
