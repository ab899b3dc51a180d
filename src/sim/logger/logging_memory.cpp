#include "logger/logging_memory.h"

#include <algorithm>
#include <limits>

namespace torvane::sim {

TlmDownloadEntry LoggedFile::Entry() const {
    TlmDownloadEntry entry{};
    entry.intNumber = Number;
    entry.intDone = static_cast<std::int16_t>(Done ? 1 : 0);
    entry.lngSeconds = Seconds;
    entry.lngSize = static_cast<std::int32_t>(Bytes ? Bytes->size() : 0);
    return entry;
}

LoggingMemory::LoggingMemory(std::int64_t capacity)
    : capacity_(std::max<std::int64_t>(capacity, 0)) {
}

bool LoggingMemory::Reserve(std::int64_t bytes) {
    if (bytes > Free()) {
        return false;
    }
    used_ += bytes;
    return true;
}

void LoggingMemory::Release(std::int64_t bytes) {
    used_ = std::max<std::int64_t>(used_ - bytes, 0);
}

std::int16_t LoggingMemory::Keep(std::int32_t seconds, std::int64_t memoryBytes,
                                 std::vector<std::uint8_t> bytes) {
    LoggedFile file;
    file.Number = nextNumber_;
    file.Seconds = seconds;
    file.MemoryBytes = memoryBytes;
    file.Bytes = std::make_shared<const std::vector<std::uint8_t>>(std::move(bytes));
    files_.push_back(std::move(file));
    // Numbers are file names on the operator's side ("000"); they wrap rather than go negative.
    nextNumber_ = nextNumber_ == std::numeric_limits<std::int16_t>::max()
                      ? std::int16_t{1}
                      : static_cast<std::int16_t>(nextNumber_ + 1);
    return files_.back().Number;
}

LoggedFile* LoggingMemory::Find(std::int16_t number) {
    const auto found = std::find_if(files_.begin(), files_.end(), [number](const LoggedFile& file) {
        return file.Number == number;
    });
    return found == files_.end() ? nullptr : &*found;
}

bool LoggingMemory::AnyNotDownloaded() const {
    return std::any_of(files_.begin(), files_.end(),
                       [](const LoggedFile& file) { return !file.Done; });
}

void LoggingMemory::Clear() {
    files_.clear();
    used_ = 0;
    nextNumber_ = 1;
}

} // namespace torvane::sim
