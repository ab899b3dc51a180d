#include "load/memory_check.h"

#include "shell/rounding.h"

#include <charconv>
#include <fstream>
#include <iterator>
#include <string>

namespace torvane::load {
namespace {

constexpr std::uint64_t KiB = 1024;

// The value of "Key:   1234 kB" in bytes.
std::optional<std::uint64_t> MemInfoField(std::string_view text, std::string_view key) {
    std::size_t at = 0;
    while (at < text.size()) {
        const std::size_t end = std::min(text.find('\n', at), text.size());
        const std::string_view line = text.substr(at, end - at);
        at = end + 1;
        if (!line.starts_with(key) || line.size() <= key.size() || line[key.size()] != ':') {
            continue;
        }
        std::string_view value = line.substr(key.size() + 1);
        value.remove_prefix(std::min(value.find_first_not_of(' '), value.size()));
        std::uint64_t number = 0;
        const auto [rest, error] =
            std::from_chars(value.data(), value.data() + value.size(), number);
        if (error != std::errc{}) {
            return std::nullopt;
        }
        const bool inKiB = std::string_view(rest, value.data() + value.size()).find("kB") !=
                           std::string_view::npos;
        return inKiB ? number * KiB : number;
    }
    return std::nullopt;
}

} // namespace

std::optional<MemoryFigures> ParseMemInfo(std::string_view text) {
    const auto total = MemInfoField(text, "MemTotal");
    auto available = MemInfoField(text, "MemAvailable");
    if (!available) {
        available = MemInfoField(text, "MemFree");
    }
    const auto swapTotal = MemInfoField(text, "SwapTotal");
    const auto swapFree = MemInfoField(text, "SwapFree");
    if (!total || !available || !swapTotal || !swapFree) {
        return std::nullopt;
    }
    return MemoryFigures{*total, *available, *swapTotal, *swapFree};
}

std::optional<MemoryFigures> ProcMemInfo::Read() {
    std::ifstream in(file_, std::ios::binary);
    if (!in) {
        return std::nullopt;
    }
    const std::string text(std::istreambuf_iterator<char>(in), {});
    return ParseMemInfo(text);
}

int MemoryLoadPercent(const MemoryFigures& figures) {
    const double total =
        static_cast<double>(figures.PhysicalTotal) + static_cast<double>(figures.SwapTotal);
    if (total <= 0.0) {
        return -1;
    }
    const double free =
        static_cast<double>(figures.PhysicalFree) + static_cast<double>(figures.SwapFree);
    return static_cast<int>(shell::RoundToInt64((total - free) / total * 100.0));
}

bool CheckMemory(MemoryStatus& status, shell::MessageSink& sink) {
    const std::optional<MemoryFigures> figures = status.Read();
    const int load = figures ? MemoryLoadPercent(*figures) : -1;
    if (load < 0) {
        shell::ShowMessage(sink, PlatformUnknownMessage, shell::buttons::Ok, shell::icons::Stop);
        return false;
    }
    if (load >= MemoryLoadLimit) {
        shell::ShowMessage(sink, MemoryShortMessage, shell::buttons::Ok, shell::icons::Stop);
        return false;
    }
    return true;
}

} // namespace torvane::load
