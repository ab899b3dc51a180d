#pragma once
// MT.DAT as the virtual logger takes it: the table and the memory budget are the program's own
// (logger/logging_time.h); the logger is given its table on the command line and budgets the
// setting it holds.

#include "logdata/log_header.h"
#include "logger/logging_time.h"

#include <cstdint>
#include <filesystem>
#include <optional>

namespace torvane::sim {

using logger::DefaultMemoryTable;
using logger::LoggingMemoryBytes;
using logger::MemoryTable;

// The first 56 bytes of the file; nullopt when it cannot be read or is shorter, which the
// command line refuses.
std::optional<MemoryTable> LoadMemoryTable(const std::filesystem::path& file);

// Memory the setting's channels take per 300 ms. A sampling word that is not one of the six
// periods records nothing and costs nothing.
std::int64_t BytesPer300Ms(const MemoryTable& table, const logdata::LogHeader& setting);

} // namespace torvane::sim
