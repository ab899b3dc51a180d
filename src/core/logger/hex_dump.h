#pragma once
// The service window's hexadecimal dump of a block of bytes: 16 a line, each line led by its
// offset and followed by the bytes as characters.

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace torvane::logger {

// The character shown for the bytes that would break the character column (0, 8, 9, 10, 13).
inline constexpr std::string_view DumpPlaceholder = "\xC2\xA5"; // ¥

// Lines end with "\r\n". The last line of a block whose length is one more than a multiple of
// 16 has no character column. An empty block dumps as nothing.
std::string HexDump(std::span<const std::uint8_t> bytes);

} // namespace torvane::logger
