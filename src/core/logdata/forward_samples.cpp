#include "logdata/forward_samples.h"

#include <algorithm>

namespace torvane::logdata {

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
