#pragma once
// The file that a transfer writes: created (or truncated) at the caller's path and left there as
// written, complete or not. Whether to keep a partial file is the caller's choice, so unlike the
// deployer's TempFile this never removes anything.

#include <cstdint>
#include <cstdio>
#include <span>

namespace torvane::tlm {

class DownloadFile {
public:
    DownloadFile() = default;
    ~DownloadFile() { Finish(); }
    DownloadFile(const DownloadFile&) = delete;
    DownloadFile& operator=(const DownloadFile&) = delete;

    bool Create(const char* path);
    // A failed write is remembered and reported by Finish().
    void Write(std::span<const std::uint8_t> bytes);
    // Flushes and closes. False if any write, the flush or the close failed, or nothing was open.
    bool Finish();

private:
    std::FILE* file_ = nullptr;
    bool failed_ = false;
};

} // namespace torvane::tlm
