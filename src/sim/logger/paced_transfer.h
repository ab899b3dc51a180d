#pragma once
// Sends a file's bytes in blocks no faster than a link rate. The schedule is kept from the
// transfer's start, so a client that asks late gets its blocks at once until it is back on
// time, and the average never exceeds the rate.

#include "logger/monotonic_clock.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace torvane::sim {

class PacedTransfer {
public:
    // bytesPerSecond 0 is unlimited.
    PacedTransfer(std::shared_ptr<const std::vector<std::uint8_t>> bytes, std::size_t blockSize,
                  std::int64_t bytesPerSecond, MonotonicClock& clock);

    // Appends the next block to out once the link could have carried it; returns its length.
    std::size_t SendNext(std::vector<std::uint8_t>& out);
    bool Complete() const { return sent_ >= bytes_->size(); }
    std::size_t Sent() const { return sent_; }

    // The block size used at a rate: at a slow rate a block is made smaller, so that no single
    // block keeps the client waiting longer than LongestBlockWait.
    static std::size_t BlockSizeAt(std::size_t blockSize, std::int64_t bytesPerSecond);
    static constexpr MonotonicClock::Duration LongestBlockWait = std::chrono::milliseconds(250);

private:
    std::shared_ptr<const std::vector<std::uint8_t>> bytes_;
    std::size_t blockSize_;
    std::int64_t bytesPerSecond_;
    MonotonicClock& clock_;
    MonotonicClock::Duration start_;
    std::size_t sent_ = 0;
};

} // namespace torvane::sim
