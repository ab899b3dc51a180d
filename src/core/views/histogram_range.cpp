#include "views/histogram_range.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <optional>

namespace torvane::views {
namespace {

std::string_view Trimmed(std::string_view text) {
    const auto space = [](char c) {
        return std::isspace(static_cast<unsigned char>(c)) != 0;
    };
    while (!text.empty() && space(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && space(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

// A plain decimal number (sign, digits, an optional point and decimals), as a box can hold
// after a paste; nullopt for anything else.
std::optional<double> NumberOf(std::string_view text) {
    text = Trimmed(text);
    if (!text.empty() && text.front() == '+') {
        text.remove_prefix(1);
    }
    const bool plain = !text.empty() && std::all_of(text.begin(), text.end(), [](char c) {
        return std::isdigit(static_cast<unsigned char>(c)) != 0 || c == '.' || c == '-';
    });
    double value = 0.0;
    const auto [ptr, ec] =
        std::from_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed);
    if (!plain || ec != std::errc{} || ptr != text.data() + text.size()) {
        return std::nullopt;
    }
    return value;
}

// Whole, not negative, and no non-zero digit behind a point.
std::optional<std::int32_t> WholeOf(std::string_view text, bool capped) {
    const auto value = NumberOf(text);
    const auto point = text.find('.');
    const bool fraction =
        point != std::string_view::npos &&
        text.substr(point + 1).find_first_not_of("0 \t") != std::string_view::npos;
    if (!value || *value < 0.0 || fraction || (capped && *value > NeRangeLimit)) {
        return std::nullopt;
    }
    return static_cast<std::int32_t>(std::min<double>(*value, NeRangeLimit));
}

NeRangeCheck Refused(NeRangeCheck check, std::string_view message, NeRangeBox focus) {
    check.Message = message;
    check.Focus = focus;
    return check;
}

} // namespace

std::string LeaveNeEnd(std::string_view endText) {
    const auto value = NumberOf(endText);
    return value && *value > NeRangeLimit ? std::to_string(NeRangeLimit) : std::string(endText);
}

NeRangeCheck CheckNeRange(std::string_view startText, std::string_view endText) {
    NeRangeCheck check;
    check.EndText = LeaveNeEnd(endText);
    const auto start = WholeOf(startText, true);
    if (!start) {
        return Refused(check, NeRangeNotCorrect, NeRangeBox::Start);
    }
    const auto end = WholeOf(check.EndText, false);
    if (!end) {
        return Refused(check, NeRangeNotCorrect, NeRangeBox::End);
    }
    if (*start >= *end) {
        return Refused(check, NeRangeNotCorrect, NeRangeBox::Start);
    }
    if (*end - *start < NeRangeMinimumSpan) {
        return Refused(check, NeRangeTooNarrow, NeRangeBox::End);
    }
    check.Accepted = true;
    check.Range = {*start, *end};
    return check;
}

} // namespace torvane::views
