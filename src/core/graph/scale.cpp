#include "graph/scale.h"

#include "logdata/channels.h"
#include "shell/rounding.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <utility>

namespace torvane::graph {
namespace {

struct ScaleRow {
    std::int32_t AxisMax;
    std::int32_t LabelStep;
    std::int32_t GridStep;
    std::int32_t Pitch;
};

struct ChannelScales {
    std::int32_t Divisor;
    std::int32_t FullScale;
    std::array<ScaleRow, MaxScaleNumber + 1> Rows;
};

// Channels that share a table: the two wheels, the two detonation counters, the four spare
// voltages, the two strokes and the two air/fuel sensors.
enum ScaleGroup : std::size_t {
    Engine,
    Throttle,
    Wheel,
    Deto,
    Battery,
    Volt,
    Stroke,
    AirFuel,
    Lap
};

// clang-format off
constexpr std::array<ScaleGroup, logdata::ChannelCount> GroupOfChannel{
    Engine, Throttle, Wheel, Wheel, Deto, Deto, Battery, Volt, Volt, Volt, Volt,
    Stroke, Stroke, AirFuel, AirFuel, Lap};

// Rows by scale number 0..9: AxisMax, LabelStep, GridStep, Pitch.
constexpr std::array<ChannelScales, 9> ScaleTable{{
    {1, 30000, {{{40000, 40000, 40000, 10}, {40000, 40000, 20000, 10}, {20000, 20000, 10000, 10},
                 {20000, 10000, 2000, 5}, {20000, 5000, 1000, 5}, {20000, 5000, 1000, 10},
                 {20000, 2000, 500, 10}, {20000, 1000, 500, 15}, {20000, 1000, 100, 5},
                 {20000, 500, 100, 10}}}},                                             // Engine
    {10, 200, {{{1000, 1000, 1000, 10}, {1000, 1000, 1000, 15}, {1000, 1000, 200, 5},
                {1000, 500, 100, 5}, {1000, 500, 100, 10}, {1000, 500, 100, 15},
                {1000, 200, 50, 10}, {1000, 200, 50, 15}, {1000, 200, 50, 20},
                {1000, 100, 20, 15}}}},                                                // Throttle
    {1, 400, {{{400, 400, 400, 10}, {400, 400, 400, 15}, {400, 400, 200, 10},
               {400, 200, 100, 10}, {400, 100, 50, 10}, {300, 50, 10, 5}, {300, 20, 10, 10},
               {300, 10, 5, 10}, {300, 10, 1, 5}, {300, 5, 1, 10}}}},                  // Wheel
    {1, 200, {{{50, 50, 50, 10}, {50, 50, 25, 10}, {50, 50, 10, 10}, {50, 25, 5, 8},
               {30, 10, 2, 5}, {20, 5, 1, 5}, {20, 5, 1, 10}, {20, 5, 1, 15}, {20, 5, 1, 20},
               {20, 5, 1, 25}}}},                                                      // Deto
    {10, 25, {{{300, 300, 300, 10}, {300, 300, 100, 5}, {300, 300, 50, 5}, {300, 100, 20, 5},
               {200, 100, 20, 10}, {200, 50, 10, 10}, {200, 50, 5, 10}, {200, 10, 2, 10},
               {200, 10, 1, 10}, {200, 10, 1, 15}}}},                                  // Battery
    {100, 5, {{{1000, 1000, 1000, 10}, {500, 500, 500, 10}, {500, 500, 100, 5},
               {500, 500, 50, 5}, {500, 100, 20, 5}, {500, 100, 10, 5}, {500, 100, 10, 10},
               {500, 100, 10, 15}, {500, 100, 10, 20}, {500, 100, 10, 25}}}},          // Volt
    {1, 200, {{{200, 200, 200, 10}, {200, 200, 100, 10}, {200, 100, 50, 10},
               {200, 100, 50, 15}, {200, 50, 25, 15}, {200, 50, 10, 10}, {200, 50, 10, 15},
               {200, 25, 5, 10}, {200, 10, 5, 15}, {200, 10, 5, 20}}}},                // Stroke
    {1, 100, {{{50, 50, 50, 10}, {50, 50, 25, 10}, {50, 50, 10, 10}, {50, 25, 5, 12},
               {30, 10, 2, 10}, {20, 5, 1, 10}, {20, 5, 1, 15}, {20, 5, 1, 20},
               {20, 5, 1, 25}, {20, 5, 1, 30}}}},                                      // AirFuel
    {1, 100, {{{300, 300, 300, 10}, {300, 300, 150, 10}, {300, 300, 100, 10},
               {300, 150, 50, 10}, {300, 100, 20, 10}, {200, 50, 10, 10}, {200, 25, 5, 10},
               {100, 10, 2, 10}, {50, 5, 1, 15}, {50, 5, 1, 25}}}},                    // Lap
}};
// clang-format on

constexpr std::array<int, logdata::ChannelCount> DefaultScaleNumbers{6, 4, 5, 5, 8, 8, 5, 4,
                                                                     4, 4, 4, 4, 4, 5, 5, 7};

bool IsChannel(int channel) {
    return channel >= 0 && channel < logdata::ChannelCount;
}
bool IsScaleNumber(int zoom) {
    return zoom >= 0 && zoom <= MaxScaleNumber;
}

// Rounded half to even and kept inside 32 bits; a value that is no number counts as 0.
std::int32_t RoundToInt32(double value) {
    if (std::isnan(value)) {
        return 0;
    }
    constexpr double lowest = std::numeric_limits<std::int32_t>::min();
    constexpr double highest = std::numeric_limits<std::int32_t>::max();
    return static_cast<std::int32_t>(std::clamp(shell::RoundHalfEven(value), lowest, highest));
}

struct FormulaBase {
    double Base;
    std::int32_t Divisor;
};

// A small maximum is shown on a fixed base of 1000 with the divisor that lifts it there; above
// 100 the maximum itself is the base.
FormulaBase BaseOf(double maxValue) {
    constexpr std::array<std::pair<double, std::int32_t>, 5> steps{
        {{0.01, 100000}, {0.1, 10000}, {1.0, 1000}, {10.0, 100}, {100.0, 10}}};
    for (const auto& [limit, divisor] : steps) {
        if (!(maxValue > limit)) { // a maximum that is no number takes the first row
            return {1000.0, divisor};
        }
    }
    return {static_cast<double>(RoundToInt32(maxValue)), 1};
}

struct FormulaRow {
    double LabelParts; // LabelStep = base / LabelParts
    double GridParts;  // GridStep = base / GridParts
    std::int32_t Pitch;
};

constexpr std::array<FormulaRow, MaxScaleNumber + 1> FormulaRows{{{1, 1, 10},
                                                                  {1, 2, 10},
                                                                  {1, 5, 10},
                                                                  {2, 10, 10},
                                                                  {2, 10, 15},
                                                                  {5, 25, 10},
                                                                  {5, 25, 15},
                                                                  {10, 50, 10},
                                                                  {10, 50, 15},
                                                                  {25, 100, 10}}};

} // namespace

bool ScaleFor(int channel, int zoom, ScaleRecord& scale) {
    if (!IsChannel(channel) || !IsScaleNumber(zoom)) {
        return false;
    }
    const ChannelScales& table = ScaleTable[GroupOfChannel[static_cast<std::size_t>(channel)]];
    const ScaleRow& row = table.Rows[static_cast<std::size_t>(zoom)];
    scale.Pitch = row.Pitch;
    scale.Divisor = table.Divisor;
    scale.AxisMax = row.AxisMax;
    scale.AxisMin = 0;
    scale.LabelStep = row.LabelStep;
    scale.GridStep = row.GridStep;
    scale.FullScale = table.FullScale;
    return true;
}

int DefaultScaleNumber(int channel) {
    return IsChannel(channel) ? DefaultScaleNumbers[static_cast<std::size_t>(channel)] : -1;
}

bool DefaultScale(int channel, ScaleRecord& scale, int& zoom) {
    if (!IsChannel(channel)) {
        return false;
    }
    zoom = DefaultScaleNumber(channel);
    return ScaleFor(channel, zoom, scale);
}

bool FormulaScale(double maxValue, int zoom, ScaleRecord& scale) {
    if (!IsScaleNumber(zoom)) {
        return false;
    }
    const FormulaBase base = BaseOf(maxValue);
    const FormulaRow& row = FormulaRows[static_cast<std::size_t>(zoom)];
    scale.Pitch = row.Pitch;
    scale.Divisor = base.Divisor;
    scale.AxisMax = RoundToInt32(base.Base);
    scale.AxisMin = 0;
    scale.LabelStep = RoundToInt32(base.Base / row.LabelParts);
    scale.GridStep = RoundToInt32(base.Base / row.GridParts);
    scale.FullScale = RoundToInt32(maxValue);
    return true;
}

bool DefaultFormulaScale(double maxValue, ScaleRecord& scale) {
    return FormulaScale(maxValue, DefaultFormulaScaleNumber, scale);
}

std::int32_t BandHeight(const ScaleRecord& scale, std::int32_t itemMax) {
    if (scale.GridStep == 0) {
        return 0;
    }
    // A Max read from a layout file can be any 32-bit number: the product is kept inside 32 bits.
    const std::int64_t top = itemMax >= 1 ? itemMax : scale.AxisMax;
    const std::int64_t height = top / scale.GridStep * scale.Pitch;
    return static_cast<std::int32_t>(
        std::clamp<std::int64_t>(height, std::numeric_limits<std::int32_t>::min(),
                                 std::numeric_limits<std::int32_t>::max()));
}

} // namespace torvane::graph
