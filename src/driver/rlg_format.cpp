#include "rlg_format.h"

#include <algorithm>
#include <climits>

#include <zlib.h>

#include "byte_order.h"

namespace torvane::rlg::format {
namespace {

bool IsAsciiAlnum(char c) {
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

char AsciiLower(char c) {
    return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c;
}

// The name field is NUL-padded; every byte after the name must be NUL too, so that one name has
// exactly one encoding and a flipped padding byte counts as damage.
std::optional<std::string> DecodeName(std::span<const std::uint8_t> field) {
    const auto end = std::find(field.begin(), field.end(), std::uint8_t{0});
    if (std::any_of(end, field.end(), [](std::uint8_t byte) { return byte != 0; })) {
        return std::nullopt;
    }
    std::string name(field.begin(), end);
    if (!IsValidStreamName(name)) {
        return std::nullopt;
    }
    return name;
}

std::optional<StreamEntry> DecodeEntry(std::span<const std::uint8_t> entry) {
    auto name = DecodeName(entry.subspan(NameOffset, MaxNameLength));
    if (!name) {
        return std::nullopt;
    }
    StreamEntry stream;
    stream.Name = std::move(*name);
    stream.SampleCount = GetLittleEndian<std::uint64_t>(entry, SampleCountOffset);
    stream.StoredSize = GetLittleEndian<std::uint64_t>(entry, StoredSizeOffset);
    stream.Codec = entry[CodecOffset];
    stream.WordSize = entry[WordSizeOffset];
    stream.StoredCrc = GetLittleEndian<std::uint32_t>(entry, StoredCrcOffset);
    stream.DataCrc = GetLittleEndian<std::uint32_t>(entry, DataCrcOffset);
    if (stream.Codec != CodecDeltaZstd || stream.WordSize != WordSize16 ||
        GetLittleEndian<std::uint16_t>(entry, ReservedOffset) != 0 ||
        stream.SampleCount > MaxStreamBytes / stream.WordSize) {
        return std::nullopt;
    }
    return stream;
}

void EncodeEntry(const StreamEntry& stream, std::span<std::uint8_t> entry) {
    std::copy(stream.Name.begin(), stream.Name.end(), entry.begin() + NameOffset);
    PutLittleEndian(entry, SampleCountOffset, stream.SampleCount);
    PutLittleEndian(entry, StoredSizeOffset, stream.StoredSize);
    entry[CodecOffset] = stream.Codec;
    entry[WordSizeOffset] = stream.WordSize;
    PutLittleEndian(entry, StoredCrcOffset, stream.StoredCrc);
    PutLittleEndian(entry, DataCrcOffset, stream.DataCrc);
}

} // namespace

std::uint32_t UpdateCrc32(std::uint32_t crc, std::span<const std::uint8_t> bytes) {
    uLong value = crc;
    while (!bytes.empty()) {
        const auto part = std::min<std::size_t>(bytes.size(), UINT_MAX);
        value = crc32(value, bytes.data(), static_cast<uInt>(part));
        bytes = bytes.subspan(part);
    }
    return static_cast<std::uint32_t>(value);
}

bool IsValidStreamName(std::string_view name) {
    return !name.empty() && name.size() <= MaxNameLength &&
           std::all_of(name.begin(), name.end(), IsAsciiAlnum);
}

bool HasDuplicateNames(std::span<const std::string> names) {
    std::vector<std::string> folded;
    folded.reserve(names.size());
    for (const auto& name : names) {
        std::string lower(name.size(), '\0');
        std::transform(name.begin(), name.end(), lower.begin(), AsciiLower);
        folded.push_back(std::move(lower));
    }
    std::sort(folded.begin(), folded.end());
    return std::adjacent_find(folded.begin(), folded.end()) != folded.end();
}

std::vector<std::uint8_t> EncodeHead(std::span<const std::uint8_t, HeaderSize> header,
                                     std::span<const StreamEntry> streams) {
    std::vector<std::uint8_t> head(HeadSize(streams.size()), 0);
    std::span<std::uint8_t> bytes(head);
    std::copy(Magic.begin(), Magic.end(), head.begin());
    PutLittleEndian(bytes, VersionOffset, Version);
    PutLittleEndian(bytes, StreamCountOffset, static_cast<std::uint16_t>(streams.size()));
    std::copy(header.begin(), header.end(), head.begin() + HeaderOffset);
    for (std::size_t i = 0; i < streams.size(); ++i) {
        EncodeEntry(streams[i], bytes.subspan(FixedHeadSize + i * EntrySize, EntrySize));
    }
    const auto covered = bytes.first(head.size() - CrcSize);
    PutLittleEndian(bytes, covered.size(), UpdateCrc32(0, covered));
    return head;
}

std::optional<std::size_t> ReadStreamCount(std::span<const std::uint8_t> fixedHead) {
    if (fixedHead.size() < FixedHeadSize ||
        !std::equal(Magic.begin(), Magic.end(), fixedHead.begin()) ||
        GetLittleEndian<std::uint16_t>(fixedHead, VersionOffset) != Version) {
        return std::nullopt;
    }
    const std::size_t count = GetLittleEndian<std::uint16_t>(fixedHead, StreamCountOffset);
    if (count > MaxStreams) {
        return std::nullopt;
    }
    return count;
}

std::optional<Head> DecodeHead(std::span<const std::uint8_t> head, std::uint64_t fileSize) {
    const auto count = ReadStreamCount(head);
    if (!count || head.size() != HeadSize(*count) || fileSize < head.size()) {
        return std::nullopt;
    }
    const auto covered = head.first(head.size() - CrcSize);
    if (GetLittleEndian<std::uint32_t>(head, covered.size()) != UpdateCrc32(0, covered)) {
        return std::nullopt;
    }

    Head decoded;
    std::copy_n(head.begin() + HeaderOffset, HeaderSize, decoded.Header.begin());
    std::vector<std::string> names;
    std::uint64_t storedLeft = fileSize - head.size();
    std::uint64_t totalBytes = 0;
    for (std::size_t i = 0; i < *count; ++i) {
        auto stream = DecodeEntry(head.subspan(FixedHeadSize + i * EntrySize, EntrySize));
        if (!stream || stream->StoredSize > storedLeft ||
            stream->DataBytes() > MaxTotalBytes - totalBytes) {
            return std::nullopt;
        }
        storedLeft -= stream->StoredSize;
        totalBytes += stream->DataBytes();
        names.push_back(stream->Name);
        decoded.Streams.push_back(std::move(*stream));
    }
    // The frames fill the rest of the file exactly: a short file is truncated, a longer one has
    // lost or gained bytes somewhere.
    if (storedLeft != 0 || HasDuplicateNames(names)) {
        return std::nullopt;
    }
    return decoded;
}

} // namespace torvane::rlg::format
