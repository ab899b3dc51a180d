#pragma once
// The detonation map that the logger keeps, read over one short link.

#include "logger/logger_link.h"
#include "views/dto_file.h"

#include <filesystem>

namespace torvane::views {

// The logger's record in the file's form: run time to three bytes and distance to two, as
// LongToBytes writes them; presence bits 0 and 1 to the presence bytes.
DetonationBytes DetonationBytesOf(const TlmDetonationMap& map);

// Reads the logger's map, while it is idle or acquiring, and writes it to a fresh work file in
// tempDir. The path, or an empty path when the link failed, the logger was busy or the file could
// not be written (the operator has been told).
std::filesystem::path GetDetonationFromLogger(logger::LoggerLink& link,
                                              const std::filesystem::path& tempDir);

} // namespace torvane::views
