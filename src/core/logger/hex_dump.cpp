#include "logger/hex_dump.h"

#include <cstdio>

namespace torvane::logger {
namespace {

std::string PadHex(std::size_t value, int width) {
    char text[24];
    std::snprintf(text, sizeof text, "%0*zX", width, value);
    return text;
}

// Bytes as the system's 8-bit code page shows them: here UTF-8, so a byte that is not ASCII is
// shown as the Latin-1 character of the same number.
void AppendCharacters(std::string& out, std::span<const std::uint8_t> bytes) {
    for (const std::uint8_t byte : bytes) {
        if (byte == 0 || byte == 8 || byte == 9 || byte == 10 || byte == 13) {
            out += DumpPlaceholder;
        } else if (byte < 0x80) {
            out += static_cast<char>(byte);
        } else {
            out += static_cast<char>(0xC0 | (byte >> 6));
            out += static_cast<char>(0x80 | (byte & 0x3F));
        }
    }
}

} // namespace

std::string HexDump(std::span<const std::uint8_t> bytes) {
    if (bytes.empty()) {
        return {};
    }
    const std::size_t n = bytes.size() - 1;
    std::string out = PadHex(0, 6) + "  " + PadHex(bytes[0], 2);
    for (std::size_t i = 1; i <= n; ++i) {
        if (i % 16 == 0) {
            out += "  ";
            AppendCharacters(out, bytes.subspan(i - 16, 16));
            out += "\r\n" + PadHex(i, 6) + " ";
        }
        out += (i % 8 == 0 && i % 16 != 0) ? " - " : " ";
        out += PadHex(bytes[i], 2);
    }
    const std::size_t r = n % 16;
    if (r >= 1) {
        out.append(3 * (15 - r), ' ');
        out.append(r < 9 ? 5 : 2, ' ');
        AppendCharacters(out, bytes.subspan(n - r, r + 1));
    }
    return out;
}

} // namespace torvane::logger
