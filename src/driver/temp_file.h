#pragma once
// A file written under a fresh hidden name and moved into place only when it is complete. Until
// then the destructor removes it, so an error or an early return never leaves a partial file.

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <span>
#include <string_view>

namespace torvane::rlg {

class TempFile {
public:
    // Creates ".<stem>.<random>.part" in folder; IsOpen() tells whether that worked.
    TempFile(const std::filesystem::path& folder, std::string_view stem);
    ~TempFile();
    TempFile(TempFile&& other) noexcept;
    TempFile(const TempFile&) = delete;
    TempFile& operator=(const TempFile&) = delete;
    TempFile& operator=(TempFile&&) = delete;

    bool IsOpen() const { return file_ != nullptr; }
    bool Write(std::span<const std::uint8_t> bytes);
    // Flushes and closes; durable also waits until the bytes are on the disk. Write errors that
    // the library buffered (a full disk) show up here.
    bool Close(bool durable);
    // Moves the closed file to target, replacing a file there. From then on it is not ours.
    bool RenameTo(const std::filesystem::path& target);

private:
    std::filesystem::path path_;
    std::FILE* file_ = nullptr;
    bool owned_ = false;
};

} // namespace torvane::rlg
