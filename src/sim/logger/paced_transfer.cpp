#include "logger/paced_transfer.h"

#include <algorithm>

namespace torvane::sim {
namespace {

constexpr std::int64_t NanosecondsPerSecond = 1'000'000'000;

} // namespace

std::size_t PacedTransfer::BlockSizeAt(std::size_t blockSize, std::int64_t bytesPerSecond) {
    blockSize = std::max<std::size_t>(blockSize, 1);
    if (bytesPerSecond <= 0) {
        return blockSize;
    }
    const auto inLongestWait =
        static_cast<std::size_t>(bytesPerSecond * LongestBlockWait.count() / NanosecondsPerSecond);
    return std::clamp<std::size_t>(inLongestWait, 1, blockSize);
}

PacedTransfer::PacedTransfer(std::shared_ptr<const std::vector<std::uint8_t>> bytes,
                             std::size_t blockSize, std::int64_t bytesPerSecond,
                             MonotonicClock& clock)
    : bytes_(std::move(bytes))
    , blockSize_(BlockSizeAt(blockSize, bytesPerSecond))
    , bytesPerSecond_(std::max<std::int64_t>(bytesPerSecond, 0))
    , clock_(clock)
    , start_(clock.Now()) {
}

std::size_t PacedTransfer::SendNext(std::vector<std::uint8_t>& out) {
    const std::size_t length = std::min(blockSize_, bytes_->size() - sent_);
    const auto from = bytes_->begin() + static_cast<std::ptrdiff_t>(sent_);
    out.insert(out.end(), from, from + static_cast<std::ptrdiff_t>(length));
    sent_ += length;
    if (bytesPerSecond_ > 0) {
        // The due time is worked out from all bytes so far, not added up block by block: each
        // block's share would be rounded down to a whole nanosecond and the error would grow
        // with the file. sent_ is at most 1 GiB, so the product stays far inside 64 bits.
        const auto due = start_ + MonotonicClock::Duration(static_cast<std::int64_t>(sent_) *
                                                           NanosecondsPerSecond / bytesPerSecond_);
        clock_.SleepUntil(due);
    }
    return length;
}

} // namespace torvane::sim
