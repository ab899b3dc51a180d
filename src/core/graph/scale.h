#pragma once
// The scales of an item's band: the fixed table of the sixteen channels by scale number, and the
// scale of a computed item, which follows from the largest value its formula can give.

#include <cstdint>

namespace torvane::graph {

inline constexpr int MaxScaleNumber = 9;

struct ScaleRecord {
    std::int32_t Pitch = 0;     // pixels between two grid lines
    std::int32_t Divisor = 0;   // axis value = engineering value * Divisor
    std::int32_t AxisMax = 0;   // highest axis value of the scale
    std::int32_t AxisMin = 0;   // always 0
    std::int32_t LabelStep = 0; // axis distance between labelled lines
    std::int32_t GridStep = 0;  // axis distance between grid lines
    std::int32_t FullScale = 0; // largest engineering value the channel can take

    friend bool operator==(const ScaleRecord&, const ScaleRecord&) = default;
};

// Fills the scale of a channel 0..15 at scale number 0..9. Any other channel or number leaves
// the record as it was and gives false.
bool ScaleFor(int channel, int zoom, ScaleRecord& scale);

// The scale number a channel starts with; -1 for a number that is no channel.
int DefaultScaleNumber(int channel);

// The channel's default scale number into zoom, then its scale; false for no channel.
bool DefaultScale(int channel, ScaleRecord& scale, int& zoom);

// Scale of a computed item whose values reach maxValue, at scale number 0..9; a number above 9
// leaves the record as it was and gives false.
bool FormulaScale(double maxValue, int zoom, ScaleRecord& scale);

// The scale a new computed item starts with: scale number 3.
inline constexpr int DefaultFormulaScaleNumber = 3;
bool DefaultFormulaScale(double maxValue, ScaleRecord& scale);

// Height of a band in pixels: whole grid steps up to the scale's top, or up to the item's own
// Max when that is 1 or more, times the pitch.
std::int32_t BandHeight(const ScaleRecord& scale, std::int32_t itemMax = 0);

} // namespace torvane::graph
