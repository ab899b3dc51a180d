#pragma once
// Whole-file reads and replacements for the small settings files. A replacement is written to a
// temporary file beside the target and renamed over it, so a failure at any step leaves the file
// that was there as it was.

#include "shell/message_sink.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <system_error>
#include <vector>

namespace torvane::layout {

// What went wrong, and with which file.
struct FileFailure {
    std::error_code Error;
    std::filesystem::path Path;
};

// The first maxBytes bytes of a regular file at most; anything else is refused unopened.
std::optional<std::vector<std::uint8_t>> ReadFileImage(const std::filesystem::path& file,
                                                       std::size_t maxBytes, FileFailure& failure);

// Writes bytes to temporaryFile, flushes them to the disk and renames temporaryFile over file.
// On failure the temporary file is removed and file is untouched.
bool ReplaceFileImage(const std::filesystem::path& file, const std::filesystem::path& temporaryFile,
                      std::span<const std::uint8_t> bytes, FileFailure& failure);

// The failure as the operator is told of it: the run-time error number and text of its kind,
// and the file's path.
shell::RunTimeError DescribeFailure(const FileFailure& failure);

} // namespace torvane::layout
