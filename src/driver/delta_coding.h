#pragma once
// The delta coding of stream words: every 16-bit word is stored as its difference to the word
// before it (the first to zero), wrapping modulo 2^16. Sensor words change slowly from sample to
// sample, so the differences are small and repeat, which is what zstd compresses well.
// Both directions work in place on little-endian bytes and carry the previous word across calls,
// so a stream can be coded in chunks of any even length.

#include <cstddef>
#include <cstdint>
#include <span>

#include "byte_order.h"

namespace torvane::rlg {

inline void SamplesToLittleEndian(std::span<const std::int16_t> samples,
                                  std::span<std::uint8_t> bytes) {
    for (std::size_t i = 0; i < samples.size(); ++i) {
        PutLittleEndian(bytes, 2 * i, static_cast<std::uint16_t>(samples[i]));
    }
}

inline void EncodeDeltasInPlace(std::span<std::uint8_t> words, std::uint16_t& previous) {
    for (std::size_t offset = 0; offset + 1 < words.size(); offset += 2) {
        const auto word = GetLittleEndian<std::uint16_t>(words, offset);
        PutLittleEndian(words, offset, static_cast<std::uint16_t>(word - previous));
        previous = word;
    }
}

inline void DecodeDeltasInPlace(std::span<std::uint8_t> words, std::uint16_t& previous) {
    for (std::size_t offset = 0; offset + 1 < words.size(); offset += 2) {
        previous =
            static_cast<std::uint16_t>(previous + GetLittleEndian<std::uint16_t>(words, offset));
        PutLittleEndian(words, offset, previous);
    }
}

} // namespace torvane::rlg
