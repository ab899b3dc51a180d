#include "layout/file_image.h"

#include "shell/regular_file.h"

#include <cerrno>
#include <cstdio>
#include <memory>

#if __has_include(<unistd.h>)
#include <unistd.h>
#endif

namespace torvane::layout {
namespace fs = std::filesystem;
namespace {

struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using FileHandle = std::unique_ptr<std::FILE, FileCloser>;

bool Fail(FileFailure& failure, const fs::path& path) {
    failure = {std::error_code(errno, std::generic_category()), path};
    return false;
}

bool WriteAll(const fs::path& file, std::span<const std::uint8_t> bytes, FileFailure& failure) {
    FileHandle handle(std::fopen(file.c_str(), "wb"));
    if (!handle) {
        return Fail(failure, file);
    }
    if (std::fwrite(bytes.data(), 1, bytes.size(), handle.get()) != bytes.size() ||
        std::fflush(handle.get()) != 0) {
        return Fail(failure, file);
    }
#if __has_include(<unistd.h>)
    // The new name must not point at bytes that are not yet on the disk.
    if (::fsync(::fileno(handle.get())) != 0) {
        return Fail(failure, file);
    }
#endif
    if (std::fclose(handle.release()) != 0) {
        return Fail(failure, file);
    }
    return true;
}

// Only a file of ours goes: whatever else stands under the temporary name is not touched.
void RemoveTemporary(const fs::path& temporaryFile) {
    std::error_code ignored;
    if (fs::is_regular_file(fs::symlink_status(temporaryFile, ignored))) {
        fs::remove(temporaryFile, ignored);
    }
}

} // namespace

std::optional<std::vector<std::uint8_t>> ReadFileImage(const fs::path& file, std::size_t maxBytes,
                                                       FileFailure& failure) {
    std::error_code error;
    auto bytes = shell::ReadRegularFile(file, maxBytes, error);
    if (!bytes) {
        failure = {error, file};
    }
    return bytes;
}

bool ReplaceFileImage(const fs::path& file, const fs::path& temporaryFile,
                      std::span<const std::uint8_t> bytes, FileFailure& failure) {
    if (!WriteAll(temporaryFile, bytes, failure)) {
        RemoveTemporary(temporaryFile);
        return false;
    }
    std::error_code error;
    fs::rename(temporaryFile, file, error);
    if (error) {
        failure = {error, file};
        RemoveTemporary(temporaryFile);
        return false;
    }
    return true;
}

shell::RunTimeError DescribeFailure(const FileFailure& failure) {
    const std::error_code& error = failure.Error;
    const std::string where = ": " + failure.Path.string();
    if (error == std::errc::no_such_file_or_directory || error == std::errc::not_a_directory) {
        std::error_code ignored;
        if (fs::is_directory(failure.Path.parent_path(), ignored)) {
            return {53, "File not found" + where};
        }
        return {76, "Path not found" + where};
    }
    if (error == std::errc::permission_denied || error == std::errc::operation_not_permitted ||
        error == std::errc::read_only_file_system) {
        return {70, "Permission denied" + where};
    }
    if (error == std::errc::no_space_on_device || error == std::errc::file_too_large) {
        return {61, "Disk full" + where};
    }
    // A FIFO or a device where a file belongs is refused unopened (std::errc::invalid_argument).
    if (error == std::errc::is_a_directory || error == std::errc::invalid_argument ||
        error == std::errc::file_exists || error == std::errc::directory_not_empty) {
        return {75, "Path/File access error" + where};
    }
    return {57, "Device I/O error" + where};
}

} // namespace torvane::layout
