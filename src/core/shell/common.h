#pragma once
// Small helpers that many windows share.

#include <cstdint>
#include <span>
#include <string>

namespace torvane::shell {

// Colour of a line colour index 1..14 as 0xBBGGRR; any other index gives red.
std::uint32_t ColorValue(int index);

// Aligns two intervals: Euclid's greatest common divisor, then b / gcd * a. Zero when either
// interval is zero (nothing to align). Two intervals of 32 bits can need 62 bits to align, and a
// layout file may hold any of them.
std::int64_t LeastCommonMultiple(std::int64_t a, std::int64_t b);

// Keyboard filter of number fields: backspace (8) and the digits '0'..'9' pass, anything else
// becomes 0 (swallowed).
void DigitKey(int& key);

// The bytes as a number with the first byte highest (big-endian), as the logger writes some of
// its numbers; four bytes fill all 32 bits, so FF FF FF FF reads as -1.
std::int32_t BytesToHex(std::span<const std::uint8_t> bytes);

// The reverse of BytesToHex: the value's lowest bytes, the last byte lowest, zero-padded.
void LongToBytes(std::int32_t value, std::span<std::uint8_t> bytes);

// Text up to the first NUL byte, in the local 8-bit encoding.
std::string BytesToString(std::span<const std::uint8_t> bytes);

} // namespace torvane::shell
