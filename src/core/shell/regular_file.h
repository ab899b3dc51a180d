#pragma once
// Reading a file the operator or another program may have replaced by something else: only a
// regular file is opened (a link to one is followed), because opening a FIFO waits for a writer
// and a device such as /dev/zero never ends.

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <system_error>
#include <vector>

namespace torvane::shell {

// The first maxBytes bytes of file at most. nullopt with error set when it cannot be read:
// std::errc::is_a_directory for a folder, std::errc::invalid_argument for a FIFO or a device
// (opened without waiting, never read), else the error of the open or the read (a socket cannot
// be opened at all).
std::optional<std::vector<std::uint8_t>>
ReadRegularFile(const std::filesystem::path& file, std::size_t maxBytes, std::error_code& error);

} // namespace torvane::shell
