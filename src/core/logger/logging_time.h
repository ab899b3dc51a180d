#pragma once
// MT.DAT and the memory budget of a setting: how many bytes one sample of a channel takes in the
// logger's memory, by channel and sampling period, and how long the logger can record at the
// rate a choice of channels and periods costs.

#include "layout/file_image.h"
#include "logdata/log_header.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>

namespace torvane::logger {

inline constexpr std::size_t MemoryTableSize = 56;
// The logger's logging memory: 28 MiB.
inline constexpr std::int64_t LoggingMemoryBytes = 29'360'128;
using MemoryTable = std::array<std::uint8_t, MemoryTableSize>;

// The rows of the table, in its own order (not the setting record's word order).
enum class SampleRow : int { Ne, VFW, VRW, TH, VB, VM1, VM2, VM3, VM4 };
inline constexpr int SampleRowCount = 9;
// Columns of a row: the sampling periods 5, 10, 25, 50, 100 and 300 ms.
inline constexpr int PeriodCount = 6;
inline constexpr std::array<int, PeriodCount> SamplingPeriods{5, 10, 25, 50, 100, 300};
// The bytes of the two detonation counters, which sample every 300 ms.
inline constexpr std::size_t Deto1Byte = 54;
inline constexpr std::size_t Deto2Byte = 55;

// The column of a sampling period; -1 for a value that is no period.
int PeriodIndex(int periodMs);
int SamplesPer300Ms(int periodIndex);

// What the logger uses without MT.DAT: one byte a sample, nothing for detonation.
MemoryTable DefaultMemoryTable();

// MT.DAT as the window reads it: a missing file gives the default table; a short one fills what
// it holds and leaves the rest 0, as a plain read of the record would; a longer one gives its
// first 56 bytes. False, with the failure set, when the file is there but cannot be read (a folder,
// a FIFO, no permission).
bool LoadMemoryTable(const std::filesystem::path& file, MemoryTable& table,
                     layout::FileFailure& failure);

// The rows' chosen periods as column indices (-1: the row is off) and the two detonation
// switches.
struct SamplingChoice {
    std::array<int, SampleRowCount> Column{-1, -1, -1, -1, -1, -1, -1, -1, -1};
    bool Deto1 = false;
    bool Deto2 = false;
};

// The choice a setting record makes: each row's period word as its column (-1 for 0 or any value
// that is no period, which records nothing) and the two detonation words' switches.
SamplingChoice ChoiceOf(const logdata::LogHeader& setting);

// Bytes of logging memory the choice takes per 300 ms.
std::int64_t BytesPer300Ms(const MemoryTable& table, const SamplingChoice& choice);

// The logging time that 28 MiB of memory gives at that rate: "0h 00m" for nothing recorded,
// else hours (with thousands separators) and minutes, such as "50h 58m".
std::string LoggingTimeText(std::int64_t bytesPer300Ms);

} // namespace torvane::logger
