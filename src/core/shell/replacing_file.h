#pragma once
// A file that takes the place of its target only once it is whole: it is written under a hidden
// name beside the target (so that the rename stays within one file system) and renamed over the
// target by Commit. Until then, and after any failure, the target is what it was.

#include <cstdint>
#include <filesystem>
#include <span>
#include <system_error>

namespace torvane::shell {

class ReplacingFile {
public:
    // Makes ".<target name>.<random>.part" beside target, exclusively, so that no file of
    // anyone else's is reused; Created() tells whether that worked and Error() why not.
    explicit ReplacingFile(const std::filesystem::path& target);
    // Removes the file unless it was committed.
    ~ReplacingFile();
    ReplacingFile(const ReplacingFile&) = delete;
    ReplacingFile& operator=(const ReplacingFile&) = delete;

    bool Created() const { return created_; }
    const std::error_code& Error() const { return error_; }
    // Where to write: an empty file once created.
    const std::filesystem::path& Path() const { return path_; }
    const std::filesystem::path& Target() const { return target_; }

    // Renames the written file over the target. False, with Error() set, when that fails; the
    // file is then removed and the target left as it was.
    bool Commit();

private:
    void Remove();

    std::filesystem::path target_;
    std::filesystem::path path_;
    std::error_code error_;
    bool created_ = false;
};

// Removes every ReplacingFile's file not yet committed or removed, for a process about to end
// by a signal; safe to call from another thread.
void RemoveUnfinishedReplacements();

// Writes bytes through a ReplacingFile: the target is then either the old file or all of bytes.
// False with error set when anything failed (a full disk shows in a write or in the close).
bool ReplaceFileWith(const std::filesystem::path& target, std::span<const std::uint8_t> bytes,
                     std::error_code& error);

} // namespace torvane::shell
