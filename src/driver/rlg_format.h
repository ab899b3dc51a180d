#pragma once
// Layout of the logging file (*.rlg) and the checks of its head. docs/logging-file-format.md
// describes the same layout for readers who do not read C++; keep the two in step.
//
//   fixed head   magic, version, stream count, the 82-byte log header
//   table        one entry per stream
//   head CRC     CRC-32 of everything before it
//   streams      one zstd frame per stream, in table order, nothing after the last

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "rlg_container.h"

namespace torvane::rlg::format {

inline constexpr std::array<std::uint8_t, 8> Magic{0x89, 'R', 'L', 'G', '\r', '\n', 0x1A, '\n'};
inline constexpr std::uint16_t Version = 1;

inline constexpr std::size_t VersionOffset = 8;
inline constexpr std::size_t StreamCountOffset = 10;
inline constexpr std::size_t HeaderOffset = 12;
inline constexpr std::size_t FixedHeadSize = HeaderOffset + HeaderSize;

// A table entry.
inline constexpr std::size_t EntrySize = 36;
inline constexpr std::size_t NameOffset = 0;
inline constexpr std::size_t SampleCountOffset = 8;
inline constexpr std::size_t StoredSizeOffset = 16;
inline constexpr std::size_t CodecOffset = 24;
inline constexpr std::size_t WordSizeOffset = 25;
inline constexpr std::size_t ReservedOffset = 26;
inline constexpr std::size_t StoredCrcOffset = 28;
inline constexpr std::size_t DataCrcOffset = 32;

inline constexpr std::size_t CrcSize = 4;

inline constexpr std::uint8_t CodecDeltaZstd = 1;
// Only 16-bit words are written today; the field lets 32-bit streams come without a new version.
inline constexpr std::uint8_t WordSize16 = 2;

inline constexpr std::size_t MaxNameLength = 8;
// Limits far above any real run (12 streams; 4.5 hours at 5 ms is 6.5 MB a stream), so that a
// damaged or hostile size field can never make the reader fill a disk.
inline constexpr std::size_t MaxStreams = 32;
inline constexpr std::uint64_t MaxStreamBytes = std::uint64_t{256} << 20;
inline constexpr std::uint64_t MaxTotalBytes = std::uint64_t{1} << 30;
// The writer's zstd window, and the largest the reader accepts: the reader's memory is the
// window plus two fixed buffers, whatever the file says.
inline constexpr int WriterWindowLog = 20;
inline constexpr int ReaderMaxWindowLog = 23;

struct StreamEntry {
    std::string Name;
    std::uint64_t SampleCount = 0;
    std::uint64_t StoredSize = 0;
    std::uint8_t Codec = CodecDeltaZstd;
    std::uint8_t WordSize = WordSize16;
    std::uint32_t StoredCrc = 0; // of the zstd frame as stored
    std::uint32_t DataCrc = 0;   // of the decoded little-endian words

    std::uint64_t DataBytes() const { return SampleCount * WordSize; }
};

struct Head {
    HeaderBytes Header{};
    std::vector<StreamEntry> Streams;
};

std::uint32_t UpdateCrc32(std::uint32_t crc, std::span<const std::uint8_t> bytes);

// 1 to 8 ASCII letters or digits: a stream name becomes part of a file name.
bool IsValidStreamName(std::string_view name);
// Stream names must differ even on a file system that ignores case.
bool HasDuplicateNames(std::span<const std::string> names);

constexpr std::size_t HeadSize(std::size_t streamCount) {
    return FixedHeadSize + streamCount * EntrySize + CrcSize;
}

// Fixed head, table and head CRC.
std::vector<std::uint8_t> EncodeHead(std::span<const std::uint8_t, HeaderSize> header,
                                     std::span<const StreamEntry> streams);

// The stream count of a fixed head whose magic and version are right, or nothing.
std::optional<std::size_t> ReadStreamCount(std::span<const std::uint8_t> fixedHead);

// Decodes a complete head of HeadSize(count) bytes and checks it against the size of the file it
// came from; nothing when any field is wrong.
std::optional<Head> DecodeHead(std::span<const std::uint8_t> head, std::uint64_t fileSize);

} // namespace torvane::rlg::format
