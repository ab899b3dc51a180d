#pragma once
// The heap a benchmark program uses: counted_heap.cpp replaces operator new and delete of the
// program it is linked into, so that a benchmark can read the peak above what it held before.

#include <atomic>
#include <cstdint>

namespace torvane::bench {

extern std::atomic<std::int64_t> heapInUse;
extern std::atomic<std::int64_t> heapPeak;

// The peak heap that `work` takes above what was held before it.
template <class Work> std::int64_t PeakHeapOf(Work&& work) {
    const std::int64_t before = heapInUse;
    heapPeak = before;
    work();
    return heapPeak - before;
}

} // namespace torvane::bench
