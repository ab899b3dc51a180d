#include "output/print_dialog_rules.h"

#include "shell/rounding.h"

#include <charconv>
#include <optional>

namespace torvane::output {
namespace {

std::string_view Trimmed(std::string_view text) {
    const auto first = text.find_first_not_of(' ');
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

// A decimal number with an optional sign and point; blanks around it are allowed. Words that
// a general number parser takes ("inf", "nan", exponents) are not numbers to the operator.
std::optional<double> NumberOf(std::string_view text) {
    std::string_view digits = Trimmed(text);
    const bool negative = digits.starts_with('-');
    if (negative || digits.starts_with('+')) {
        digits.remove_prefix(1);
    }
    if (digits.empty() || digits.find_first_not_of("0123456789.") != std::string_view::npos ||
        digits.find_first_of("0123456789") == std::string_view::npos) {
        return std::nullopt;
    }
    double value = 0.0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value,
                                              std::chars_format::fixed);
    if (error != std::errc() || end != digits.data() + digits.size()) {
        return std::nullopt;
    }
    return negative ? -value : value;
}

PrintEntryCheck Refused(std::string_view message, PrintEntry focus) {
    return {.Passed = false, .Message = message, .Focus = focus};
}

} // namespace

bool ListsPrinter(std::string_view name) {
    return !name.starts_with("Rendering Subsystem");
}

PrintEntryCheck CheckPrintEntries(std::string_view copies, std::string_view zoom) {
    constexpr std::string_view NotNumeric = "Input numerical value.";
    if (Trimmed(copies).empty()) {
        return Refused("Input Copies.", PrintEntry::Copies);
    }
    const auto copyCount = NumberOf(copies);
    if (!copyCount) {
        return Refused(NotNumeric, PrintEntry::Copies);
    }
    if (*copyCount < 1.0) {
        return Refused("Input value beyond 1.", PrintEntry::Copies);
    }
    if (Trimmed(zoom).empty()) {
        return Refused("Input Zoom.", PrintEntry::Zoom);
    }
    const auto percent = NumberOf(zoom);
    if (!percent) {
        return Refused(NotNumeric, PrintEntry::Zoom);
    }
    if (*percent < MinZoom || *percent > MaxZoom) {
        return Refused("Input value from 50 to 200.", PrintEntry::Zoom);
    }
    // Three characters hold at most 999 copies; a fraction is rounded as every value is.
    return {.Passed = true,
            .Message = {},
            .Focus = PrintEntry::Copies,
            .Copies = static_cast<int>(shell::RoundToInt64(*copyCount)),
            .Zoom = static_cast<int>(shell::RoundToInt64(*percent))};
}

} // namespace torvane::output
