#pragma once
// MT.DAT: how many bytes one sample of a channel takes in the logger's memory, by channel and
// sampling period. Nine rows of six bytes (Ne, VFW, VRW, TH, VB, VM1..VM4; one column per period
// 5, 10, 25, 50, 100, 300 ms), then one byte each for DETO1 and DETO2, which sample every 300 ms.
// The logger's memory is budgeted in 300 ms periods: a setting costs BytesPer300Ms of it for
// every period it records.

#include "logdata/log_header.h"

#include <array>
#include <cstdint>
#include <filesystem>
#include <optional>

namespace torvane::sim {

inline constexpr std::size_t MemoryTableSize = 56;
// 28 MiB of logging memory.
inline constexpr std::int64_t LoggingMemoryBytes = 29'360'128;

using MemoryTable = std::array<std::uint8_t, MemoryTableSize>;

// The table a logger uses when no MT.DAT is given: one byte a sample, nothing for detonation.
MemoryTable DefaultMemoryTable();

// The first 56 bytes of the file; nullopt when it cannot be read or is shorter.
std::optional<MemoryTable> LoadMemoryTable(const std::filesystem::path& file);

// Memory the setting's channels take per 300 ms. A sampling word that is not one of the six
// periods records nothing and costs nothing.
std::int64_t BytesPer300Ms(const MemoryTable& table, const logdata::LogHeader& setting);

} // namespace torvane::sim
