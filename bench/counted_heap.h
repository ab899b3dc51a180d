#pragma once
// The heap a benchmark program uses: counted_heap.cpp replaces operator new and delete of the
// program it is linked into, so that a benchmark can read the peak above what it held before.

#include <atomic>
#include <cstdint>

namespace torvane::bench {

extern std::atomic<std::int64_t> heapInUse;
extern std::atomic<std::int64_t> heapPeak;

} // namespace torvane::bench
