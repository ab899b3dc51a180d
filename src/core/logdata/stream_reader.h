#pragma once
// Reads a deployed stream by position. Sample k (from 1) of a stream of w-byte little-endian
// words stands at byte offset (k - 1) * w. A read past the end yields 0 words, so callers need
// no length checks of their own; a missing file reads as an empty stream.

#include <cstdint>
#include <cstdio>
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
    bool IsOpen() const { return file_ != nullptr; }
    // Length in bytes; 0 for a stream that is not open.
    std::int64_t ByteLength() const { return length_; }

    // Fills out with the 16-bit samples from sample number `first` (from 1) on.
    void ReadWords16(std::int64_t first, std::span<std::int16_t> out);
    // The same for 32-bit samples (computed items).
    void ReadWords32(std::int64_t first, std::span<std::int32_t> out);

private:
    // Reads up to out.size() bytes at the offset; returns how many were read.
    std::size_t ReadBytes(std::int64_t offset, std::span<std::uint8_t> out);

    std::FILE* file_ = nullptr;
    std::int64_t length_ = 0;
};

} // namespace torvane::logdata
