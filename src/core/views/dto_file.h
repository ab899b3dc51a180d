#pragma once
// The detonation map file (*.dto): 807 bytes at fixed places, no header. Map 1 (DETO1) and map 2
// (DETO2) hold one count a cell, the cell of engine speed row r and throttle column c at
// r * 20 + c; then the run time in seconds (three bytes) and the run distance in km (two
// bytes), each highest byte first; then one presence byte a map. An older form stops before
// the presence bytes (805 bytes) and has both maps.

#include "shell/message_sink.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>
#include <system_error>

namespace torvane::views {

inline constexpr int MapRows = 20;
inline constexpr int MapColumns = 20;
inline constexpr int MapCells = MapRows * MapColumns;
inline constexpr int MapCount = 2;
inline constexpr int MaxCellCount = 255;

inline constexpr std::size_t DetonationFileSize = 807;
inline constexpr std::size_t OlderDetonationFileSize = 805;
inline constexpr std::size_t RunTimeOffset = 800;
inline constexpr std::size_t RunTimeBytes = 3;
inline constexpr std::size_t RunDistanceOffset = 803;
inline constexpr std::size_t RunDistanceBytes = 2;
inline constexpr std::size_t PresenceOffset = 805;

using DetonationBytes = std::array<std::uint8_t, DetonationFileSize>;
using MapCounts = std::array<std::uint8_t, MapCells>;

// Offset of map 0 or 1 in the file.
constexpr std::size_t MapOffset(int map) {
    return static_cast<std::size_t>(map) * MapCells;
}

// The bytes joined into one number, the first byte highest; unsigned for up to four bytes.
std::uint32_t BytesToLong(std::span<const std::uint8_t> bytes);

// The value in hexadecimal, padded on the left with zeros to two digits a byte, byte i taking
// digit pair i from the left. A value with more digits than the bytes hold keeps its high
// digits: 0x12345 in two bytes gives 12 34. A negative value is its 32-bit two's complement.
void LongToBytes(std::int64_t value, std::span<std::uint8_t> bytes);

// What a detonation file holds, in file order.
struct DetonationContent {
    std::array<MapCounts, MapCount> Maps{};
    std::int64_t RunTime = 0;     // seconds
    std::int64_t RunDistance = 0; // km
    std::array<bool, MapCount> Present{};
};

DetonationBytes EncodeDetonation(const DetonationContent& content);

enum class DtoReadResult {
    Read,
    NotFound,    // nothing there
    WrongLength, // neither 805 nor 807 bytes
    Unreadable,  // a folder, a FIFO or a device in its place, or a failed read: see error
};

// Reads a detonation file as it stands, never more than one byte past the longest form. A file
// of the older form comes back as 807 bytes with both presence bytes set to 1.
DtoReadResult ReadDtoFile(const std::filesystem::path& file, DetonationBytes& bytes,
                          std::error_code& error);

// Writes the 807 bytes to file through a temporary file beside it, renamed over it. On false
// error says why and file is as it was.
bool WriteDtoFile(const std::filesystem::path& file, const DetonationBytes& bytes,
                  std::error_code& error);

// A fresh work file in the temporary folder: "DETO" + four digits one above the highest
// "DETOnnnn.dto" found there + ".dto".
std::filesystem::path GetDetonationFileName(const std::filesystem::path& tempDir);

// Writes the bytes to a fresh work file; the path, or an empty path after telling the operator
// why it could not be written.
std::filesystem::path WriteDetonationWorkFile(const std::filesystem::path& tempDir,
                                              const DetonationBytes& bytes,
                                              shell::MessageSink& sink);

} // namespace torvane::views
