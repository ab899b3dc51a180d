#pragma once
// Work files in TMP: deployed streams, numbered work files, and their removal.

#include <filesystem>
#include <string>
#include <string_view>

namespace torvane::shell {

// Window 0 empties the folder; a window number w removes, for layers 0 to 2, every file whose
// name ends in (w * 10 + layer as "000") + ".tmp", which are that window's streams. Returns the
// number of files removed; files that cannot be removed are left and not counted.
int DeleteTempFiles(const std::filesystem::path& tempDir, int window);

// The file number of a window's layer: window 1, layer 0 gives 10; its streams end "-010.tmp".
int StreamFileNumber(int window, int layer);

// "<stream>-<file number as 000>.tmp", e.g. "Ne-010.tmp".
std::string StreamFileName(std::string_view stream, int fileNumber);

// The next free numbered work file: prefix + four digits one above the highest found in the
// folder (from 1) + extension, e.g. "LGGR0003.rlg".
std::filesystem::path NextNumberedFile(const std::filesystem::path& folder, std::string_view prefix,
                                       std::string_view extension);

} // namespace torvane::shell
