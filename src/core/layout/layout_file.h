#pragma once
// LAYOUT.DAT, byte for byte: a 12-byte head (toolbox shown, top, left), then 318-byte layout
// records of sixteen 18-byte items, the time scale and a 20-byte name. Little-endian, no
// padding; every field is written on its own.

#include "graph/display_set.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace torvane::layout {

inline constexpr const char* LayoutFileName = "LAYOUT.DAT";
inline constexpr std::size_t LayoutHeadSize = 12;
inline constexpr std::size_t StoredItemSize = 18;
inline constexpr std::size_t LayoutRecordSize = 318;
inline constexpr std::size_t LayoutNameSize = 20;
// Record 0 (the last used display) and the operator's ten named layouts.
inline constexpr int MaxLayouts = 11;

// Where the toolbox stood when the program last saved; twips.
struct ToolBoxPlace {
    bool Shown = false;
    std::int32_t Top = 0;
    std::int32_t Left = 0;

    friend bool operator==(const ToolBoxPlace&, const ToolBoxPlace&) = default;
};

void EncodeLayoutHead(const ToolBoxPlace& toolBox, std::span<std::uint8_t, LayoutHeadSize> out);
// Shown only when the first value is exactly 1.
ToolBoxPlace DecodeLayoutHead(std::span<const std::uint8_t, LayoutHeadSize> bytes);

// The name goes through LayoutNameBytes; nothing is repaired here.
void EncodeLayoutRecord(const graph::DisplaySet& record,
                        std::span<std::uint8_t, LayoutRecordSize> out);
// The stored values as they are, and the name up to its first NUL with blanks trimmed.
graph::DisplaySet DecodeLayoutRecord(std::span<const std::uint8_t, LayoutRecordSize> bytes);

// The name without the blanks at its ends: how a name is read from the file and how the operator's
// typed name is taken.
std::string TrimBlanks(std::string_view text);

// The part of a name that the file keeps: at most 20 bytes of the local 8-bit encoding. A
// character of several bytes that would be cut in two is left out whole.
std::string StoredLayoutName(std::string_view name);

// Number of whole records in a file of this length (0 for a file shorter than its head).
std::int64_t RecordCount(std::uintmax_t fileLength);
inline constexpr std::size_t RecordOffset(std::size_t index) {
    return LayoutHeadSize + LayoutRecordSize * index;
}

} // namespace torvane::layout
