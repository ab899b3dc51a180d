#pragma once
// Pieces of the graph picture that follow from the window model alone: the vertical time grid
// with its labels, the band of a marked range, the Delta reference line and the fill value of
// the band.

#include "graph/window_geometry.h"
#include "graph/window_state.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace torvane::graph {

struct TextAt {
    std::int32_t X = 0;
    std::int32_t Y = 0; // top of the text
    std::string Text;

    friend bool operator==(const TextAt&, const TextAt&) = default;
};

// Vertical grid of a picture `width` columns wide whose left edge shows timeOffset: a black
// line every 100 columns, a grey half line between, and under each line its time.
struct TimeGrid {
    std::vector<std::int32_t> Lines;
    std::vector<std::int32_t> HalfLines;
    std::vector<TextAt> Labels; // Y is the offset above the picture's bottom
};
TimeGrid TimeGridOf(double timeOffset, const TimeScale& scale, std::int32_t width);

// Rows of the time band's labels above the picture's bottom.
inline constexpr std::int32_t TimeLabelRise = 15;

// The band of the marked range in a picture width x height; nullopt when none shows.
std::optional<PixelRect> RangeBandOf(const GraphWindowState& state, std::int32_t width,
                                     std::int32_t height);

// The column of the Delta reference while it is shown.
std::optional<std::int32_t> DeltaMarkColumn(const GraphWindowState& state, std::int32_t width);

// The range fill as a raw pixel value of a surface with these channel masks: three quarters
// of every mask, so 0xBFFFFF on a 32-bit 0xRRGGBB surface.
std::uint32_t BandColorOf(std::uint32_t redMask, std::uint32_t greenMask, std::uint32_t blueMask);

} // namespace torvane::graph
