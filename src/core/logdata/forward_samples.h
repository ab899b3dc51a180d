#pragma once
// A stream read forward in blocks, for the readers that walk a whole run (the CSV export, the
// formula): a block's buffer is all they hold, whatever the run's length.

#include "logdata/stream_reader.h"

#include <array>
#include <cstdint>
#include <filesystem>

namespace torvane::logdata {

// Samples read from a stream at a time.
inline constexpr std::size_t ForwardBlockSamples = 2048;

// Sample 0 stands for the 0 before the first sample, from which a channel ramps; samples past
// the end read as 0.
class ForwardSamples {
public:
    ForwardSamples(const std::filesystem::path& path, int wordBytes)
        : reader_(path)
        , wordBytes_(wordBytes) {}

    bool IsOpen() const { return reader_.IsOpen(); }
    std::int64_t ByteLength() const { return reader_.ByteLength(); }
    int WordBytes() const { return wordBytes_; }

    // Samples k and k + 1.
    std::array<double, 2> Pair(std::int64_t k) { return {Sample(k), Sample(k + 1)}; }

private:
    double Sample(std::int64_t k) {
        if (k < 1) {
            return 0.0;
        }
        if (blockFirst_ < 1 || k < blockFirst_ ||
            k >= blockFirst_ + static_cast<std::int64_t>(ForwardBlockSamples)) {
            Fill(k);
        }
        return block_[static_cast<std::size_t>(k - blockFirst_)];
    }
    void Fill(std::int64_t first);

    StreamReader reader_;
    int wordBytes_;
    std::array<std::int32_t, ForwardBlockSamples> block_{};
    std::int64_t blockFirst_ = 0;
};

} // namespace torvane::logdata
