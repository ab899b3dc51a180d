#pragma once
// Numbers in the byte order of a format, whatever the host's: the logging file, the link's
// frames, LAYOUT.DAT and the log header are little-endian; the logger writes a few numbers of its
// records highest byte first. Fields are read and written one at a time, so a layout on disk or
// on the wire never depends on how a compiler lays out a struct.
//
// Callers check lengths: offset + the value's size must lie within bytes.

#include <algorithm>
#include <array>
#include <bit>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <span>

namespace torvane {

template <std::integral Value>
constexpr Value GetLittleEndian(std::span<const std::uint8_t> bytes, std::size_t offset = 0) {
    std::array<std::uint8_t, sizeof(Value)> raw{};
    std::copy_n(bytes.begin() + static_cast<std::ptrdiff_t>(offset), raw.size(), raw.begin());
    if constexpr (std::endian::native == std::endian::big) {
        std::ranges::reverse(raw);
    }
    return std::bit_cast<Value>(raw);
}

template <std::integral Value>
constexpr void PutLittleEndian(std::span<std::uint8_t> bytes, std::size_t offset, Value value) {
    auto raw = std::bit_cast<std::array<std::uint8_t, sizeof(Value)>>(value);
    if constexpr (std::endian::native == std::endian::big) {
        std::ranges::reverse(raw);
    }
    std::ranges::copy(raw, bytes.begin() + static_cast<std::ptrdiff_t>(offset));
}

// All of bytes as one number, the first byte highest. Fields narrower than the result are
// zero-extended; of a wider one only the lowest bytes of the result survive.
template <std::unsigned_integral Unsigned>
constexpr Unsigned GetBigEndian(std::span<const std::uint8_t> bytes) {
    Unsigned value = 0;
    for (const std::uint8_t byte : bytes) {
        value = static_cast<Unsigned>(static_cast<Unsigned>(value << 8) | byte);
    }
    return value;
}

// Fills all of bytes with the value's lowest bytes, the last byte lowest, zero-padded in front.
template <std::unsigned_integral Unsigned>
constexpr void PutBigEndian(std::span<std::uint8_t> bytes, Unsigned value) {
    for (auto byte = bytes.rbegin(); byte != bytes.rend(); ++byte) {
        *byte = static_cast<std::uint8_t>(value & 0xFFu);
        value = static_cast<Unsigned>(value >> 8);
    }
}

} // namespace torvane
