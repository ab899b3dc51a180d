#pragma once
// The memory check asked before any new window opens: when physical memory and swap together
// are 80 % or more in use, no window opens.

#include "shell/message_sink.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string_view>

namespace torvane::load {

inline constexpr const char* MemoryShortMessage =
    "A memory is extremely insufficient,Please end application.";
// Told when the figures cannot be read at all.
inline constexpr const char* PlatformUnknownMessage = "Windows Platform is unknown.";

inline constexpr int MemoryLoadLimit = 80;

// Bytes of physical memory and swap, and how much of each is free.
struct MemoryFigures {
    std::uint64_t PhysicalTotal = 0;
    std::uint64_t PhysicalFree = 0;
    std::uint64_t SwapTotal = 0;
    std::uint64_t SwapFree = 0;
};

class MemoryStatus {
public:
    virtual ~MemoryStatus() = default;
    // Nothing when the figures cannot be read.
    virtual std::optional<MemoryFigures> Read() = 0;
};

// The figures of the running system from /proc/meminfo (or a file of the same form).
class ProcMemInfo : public MemoryStatus {
public:
    explicit ProcMemInfo(std::filesystem::path file = "/proc/meminfo")
        : file_(std::move(file)) {}
    std::optional<MemoryFigures> Read() override;

private:
    std::filesystem::path file_;
};

// Free physical memory is MemAvailable (memory the system hands out without swapping,
// reclaimable caches included), else MemFree on kernels that do not report it. Nothing when
// MemTotal, SwapTotal or SwapFree is missing.
std::optional<MemoryFigures> ParseMemInfo(std::string_view text);

// Percentage of physical memory and swap in use, rounded half to even; -1 for no memory.
int MemoryLoadPercent(const MemoryFigures& figures);

// False, after telling the operator, when the memory is short or cannot be read.
bool CheckMemory(MemoryStatus& status, shell::MessageSink& sink);

} // namespace torvane::load
