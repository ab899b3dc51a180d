#include "download_file.h"

namespace torvane::tlm {

bool DownloadFile::Create(const char* path) {
    Finish();
    file_ = std::fopen(path, "wb");
    failed_ = false;
    return file_ != nullptr;
}

void DownloadFile::Write(std::span<const std::uint8_t> bytes) {
    if (file_ == nullptr || bytes.empty()) {
        return;
    }
    if (std::fwrite(bytes.data(), 1, bytes.size(), file_) != bytes.size()) {
        failed_ = true;
    }
}

bool DownloadFile::Finish() {
    if (file_ == nullptr) {
        return false;
    }
    // Buffered bytes meet a full disk only here, so both results count.
    const bool flushed = std::fflush(file_) == 0;
    const bool closed = std::fclose(file_) == 0;
    file_ = nullptr;
    return flushed && closed && !failed_;
}

} // namespace torvane::tlm
