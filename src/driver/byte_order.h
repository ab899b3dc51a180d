#pragma once
// Little-endian fields of the logging file, read and written one at a time so that the layout on
// disk never depends on how the compiler lays out a struct.

#include <cstddef>
#include <cstdint>
#include <span>

namespace torvane::rlg {

template <typename Unsigned>
Unsigned GetLittleEndian(std::span<const std::uint8_t> bytes, std::size_t offset) {
    Unsigned value = 0;
    for (std::size_t i = 0; i < sizeof(Unsigned); ++i) {
        value = static_cast<Unsigned>(value | static_cast<Unsigned>(bytes[offset + i]) << (8 * i));
    }
    return value;
}

template <typename Unsigned>
void PutLittleEndian(std::span<std::uint8_t> bytes, std::size_t offset, Unsigned value) {
    for (std::size_t i = 0; i < sizeof(Unsigned); ++i) {
        bytes[offset + i] = static_cast<std::uint8_t>(value >> (8 * i));
    }
}

} // namespace torvane::rlg
