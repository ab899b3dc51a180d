#pragma once
// The logger's logging memory: the files it holds and the bytes they take of its 28 MiB. A
// file's memory is what its setting costs per 300 ms (MT.DAT) times the periods it recorded;
// its size on the link is the length of its logging file, which is a different number.

#include "tlm.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace torvane::sim {

struct LoggedFile {
    std::int16_t Number = 0;
    bool Done = false; // downloaded at least once
    std::int32_t Seconds = 0;
    std::int64_t MemoryBytes = 0;
    std::shared_ptr<const std::vector<std::uint8_t>> Bytes; // the *.rlg file

    TlmDownloadEntry Entry() const;
};

class LoggingMemory {
public:
    explicit LoggingMemory(std::int64_t capacity);

    std::int64_t Capacity() const { return capacity_; }
    std::int64_t Used() const { return used_; }
    std::int64_t Free() const { return capacity_ - used_; }
    // Takes bytes for a recording in progress; false (and nothing taken) when they do not fit.
    bool Reserve(std::int64_t bytes);
    // Gives back bytes reserved for a recording that did not become a file.
    void Release(std::int64_t bytes);

    // Keeps a finished recording whose memory was reserved; numbers it and returns the number.
    std::int16_t Keep(std::int32_t seconds, std::int64_t memoryBytes,
                      std::vector<std::uint8_t> bytes);
    const std::vector<LoggedFile>& Files() const { return files_; }
    LoggedFile* Find(std::int16_t number);
    bool AnyNotDownloaded() const;
    // Every file gone, the memory empty, numbering from 1 again.
    void Clear();

private:
    std::int64_t capacity_;
    std::int64_t used_ = 0;
    std::int16_t nextNumber_ = 1;
    std::vector<LoggedFile> files_;
};

} // namespace torvane::sim
