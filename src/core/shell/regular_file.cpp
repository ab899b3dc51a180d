#include "shell/regular_file.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <memory>

namespace torvane::shell {
namespace fs = std::filesystem;
namespace {

struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

std::optional<std::vector<std::uint8_t>> Errno(std::error_code& error) {
    error = std::error_code(errno, std::generic_category());
    return std::nullopt;
}

} // namespace

std::optional<std::vector<std::uint8_t>> ReadRegularFile(const fs::path& file, std::size_t maxBytes,
                                                         std::error_code& error) {
    const fs::file_status status = fs::status(file, error);
    if (error) {
        return std::nullopt;
    }
    if (fs::is_directory(status)) {
        error = std::make_error_code(std::errc::is_a_directory);
        return std::nullopt;
    }
    if (!fs::is_regular_file(status)) {
        error = std::make_error_code(std::errc::invalid_argument);
        return std::nullopt;
    }
    const std::unique_ptr<std::FILE, FileCloser> handle(std::fopen(file.c_str(), "rb"));
    if (!handle) {
        return Errno(error);
    }
    std::vector<std::uint8_t> bytes;
    constexpr std::size_t chunk = 4096;
    while (bytes.size() < maxBytes) {
        const std::size_t start = bytes.size();
        bytes.resize(start + std::min(chunk, maxBytes - start));
        const std::size_t count =
            std::fread(bytes.data() + start, 1, bytes.size() - start, handle.get());
        bytes.resize(start + count);
        if (count == 0) {
            break;
        }
    }
    if (std::ferror(handle.get()) != 0) {
        return Errno(error);
    }
    return bytes;
}

} // namespace torvane::shell
