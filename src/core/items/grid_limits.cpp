#include "items/grid_limits.h"

#include "logdata/channels.h"
#include "shell/message_sink.h"

#include <array>
#include <charconv>
#include <cmath>

namespace torvane::items {
namespace {

// clang-format off
constexpr std::array<AxisLimits, logdata::ChannelCount> DefaultLimitTable{{
    {15000, 5000}, {1000, 0}, {300, 50}, {300, 50}, {5, 0}, {5, 0}, {150, 100},
    {500, 0}, {500, 0}, {500, 0}, {500, 0}, {150, 0}, {150, 0}, {15, 5}, {15, 5}, {300, 0}}};
// clang-format on

bool IsComputed(const GridItem& item) {
    return item.Kinds == logdata::ComputedChannel;
}

std::string Shortest(double value) {
    std::array<char, 32> text{};
    const auto result = std::to_chars(text.data(), text.data() + text.size(), value);
    return {text.data(), result.ptr};
}

std::string InEngineeringUnits(std::int32_t axisValue, std::int32_t divisor) {
    return Shortest(divisor != 0 ? static_cast<double>(axisValue) / divisor : 0.0);
}

// Digits with at most one "." among them and at least one digit: what the boxes' key filter
// lets through. Anything else (a pasted sign or letter, a bare ".") is not a number here.
std::optional<double> LimitNumber(std::string_view text) {
    bool digit = false;
    bool point = false;
    for (const char c : text) {
        if (c >= '0' && c <= '9') {
            digit = true;
        } else if (c == '.' && !point) {
            point = true;
        } else {
            return std::nullopt;
        }
    }
    if (!digit) {
        return std::nullopt;
    }
    double value = 0.0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    if (result.ec != std::errc{} || result.ptr != text.data() + text.size() ||
        !std::isfinite(value)) {
        return std::nullopt;
    }
    return value;
}

} // namespace

std::optional<AxisLimits> DefaultLimits(int channel) {
    if (channel < 0 || channel >= logdata::ChannelCount) {
        return std::nullopt;
    }
    return DefaultLimitTable[static_cast<std::size_t>(channel)];
}

graph::ScaleRecord LimitScaleOf(const GridItem& item, bool widest) {
    graph::ScaleRecord scale;
    if (IsComputed(item)) {
        graph::FormulaScale(item.MaxValue, widest ? 0 : graph::DefaultFormulaScaleNumber, scale);
    } else if (widest) {
        graph::ScaleFor(item.Kinds, 0, scale);
    } else {
        int zoom = 0;
        graph::DefaultScale(item.Kinds, scale, zoom);
    }
    return scale;
}

LimitTexts LimitBoxesOf(const GridItem& item) {
    const graph::ScaleRecord scale = LimitScaleOf(item);
    if (item.Max != 0 || item.Min != 0) {
        return {InEngineeringUnits(item.Max, scale.Divisor),
                InEngineeringUnits(item.Min, scale.Divisor)};
    }
    return {InEngineeringUnits(scale.AxisMax, scale.Divisor),
            InEngineeringUnits(scale.AxisMin, scale.Divisor)};
}

LimitTexts DefaultLimitBoxes(const GridItem& item) {
    const graph::ScaleRecord scale = LimitScaleOf(item);
    if (IsComputed(item)) {
        return {InEngineeringUnits(scale.AxisMax, scale.Divisor),
                InEngineeringUnits(scale.AxisMin, scale.Divisor)};
    }
    const AxisLimits limits = DefaultLimits(item.Kinds).value_or(AxisLimits{});
    return {InEngineeringUnits(limits.Max, scale.Divisor),
            InEngineeringUnits(limits.Min, scale.Divisor)};
}

bool AcceptLimitKey(std::string_view keptText, char key) {
    if (key == '\b' || (key >= '0' && key <= '9')) {
        return true;
    }
    return key == '.' && keptText.find('.') == std::string_view::npos;
}

GridConfirmation ConfirmGrid(const GridItem& item, bool grid, std::string_view maxText,
                             std::string_view minText) {
    using shell::icons::Information;
    using shell::icons::Warning;
    GridConfirmation confirmation;
    const auto refuse = [&](std::string_view text, int icon, LimitBox focus) {
        confirmation.Refusal = GridRefusal{text, icon, focus};
        return confirmation;
    };
    if (maxText.empty()) {
        return refuse(InputValueText, Warning, LimitBox::Max);
    }
    const std::optional<double> max = LimitNumber(maxText);
    if (!max) {
        return refuse(IncorrectDataText, Warning, LimitBox::Max);
    }
    if (minText.empty()) {
        return refuse(InputValueText, Warning, LimitBox::Min);
    }
    const std::optional<double> min = LimitNumber(minText);
    if (!min) {
        return refuse(IncorrectDataText, Warning, LimitBox::Min);
    }
    const graph::ScaleRecord widest = LimitScaleOf(item, true);
    const double divisor = widest.Divisor != 0 ? widest.Divisor : 1.0;
    if (*min < widest.AxisMin / divisor || *max > widest.AxisMax / divisor) {
        return refuse(IncorrectDataText, Information, LimitBox::None);
    }
    if (!(*max > *min)) {
        return refuse(IncorrectDataText, Information, LimitBox::None);
    }
    const graph::ScaleRecord scale = LimitScaleOf(item);
    confirmation.Result = {item.Position, item.FormulaIndex, grid, *max * scale.Divisor,
                           *min * scale.Divisor};
    return confirmation;
}

} // namespace torvane::items
