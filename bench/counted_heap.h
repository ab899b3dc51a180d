#pragma once
// Every allocation through operator new counted, with its size kept in front of it, so that a
// benchmark can report the peak heap of what it measures. The operators replace the program's
// own: include this header in exactly one source file of a benchmark program.

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <new>

namespace {

std::atomic<std::int64_t> heapInUse{0};
std::atomic<std::int64_t> heapPeak{0};
constexpr std::size_t SizeHeader = alignof(std::max_align_t);

void* CountedAllocate(std::size_t size) {
    auto* block = static_cast<unsigned char*>(std::malloc(size + SizeHeader));
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    *reinterpret_cast<std::size_t*>(block) = size;
    const std::int64_t now = heapInUse += static_cast<std::int64_t>(size);
    for (std::int64_t peak = heapPeak; now > peak && !heapPeak.compare_exchange_weak(peak, now);) {
    }
    return block + SizeHeader;
}

void CountedFree(void* pointer) noexcept {
    if (pointer == nullptr) {
        return;
    }
    auto* block = static_cast<unsigned char*>(pointer) - SizeHeader;
    heapInUse -= static_cast<std::int64_t>(*reinterpret_cast<std::size_t*>(block));
    std::free(block);
}

} // namespace

void* operator new(std::size_t size) {
    return CountedAllocate(size);
}
void* operator new[](std::size_t size) {
    return CountedAllocate(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    try {
        return CountedAllocate(size);
    } catch (...) {
        return nullptr;
    }
}
void* operator new[](std::size_t size, const std::nothrow_t& tag) noexcept {
    return operator new(size, tag);
}
void operator delete(void* pointer) noexcept {
    CountedFree(pointer);
}
void operator delete[](void* pointer) noexcept {
    CountedFree(pointer);
}
void operator delete(void* pointer, std::size_t) noexcept {
    CountedFree(pointer);
}
void operator delete[](void* pointer, std::size_t) noexcept {
    CountedFree(pointer);
}
void operator delete(void* pointer, const std::nothrow_t&) noexcept {
    CountedFree(pointer);
}
void operator delete[](void* pointer, const std::nothrow_t&) noexcept {
    CountedFree(pointer);
}
