#include "logdata/forward_samples.h"

#include <algorithm>

namespace torvane::logdata {

double ForwardSamples::Sample(std::int64_t k) {
    if (k < 1) {
        return 0.0;
    }
    if (blockFirst_ < 1 || k < blockFirst_ ||
        k >= blockFirst_ + static_cast<std::int64_t>(ForwardBlockSamples)) {
        Fill(k);
    }
    return block_[static_cast<std::size_t>(k - blockFirst_)];
}

void ForwardSamples::Fill(std::int64_t first) {
    if (wordBytes_ == 2) {
        std::array<std::int16_t, ForwardBlockSamples> words{};
        reader_.ReadWords16(first, words);
        std::copy(words.begin(), words.end(), block_.begin());
    } else {
        reader_.ReadWords32(first, block_);
    }
    blockFirst_ = first;
}

} // namespace torvane::logdata
