#pragma once
// The lap bar over the graph: one 14-row line per layer with lap marks, its file name in the
// scale column, one cell per lap between its marks, every odd lap filled, and the lap's number
// and time written in the cell when there is room.

#include "graph/picture_geometry.h"
#include "graph/window_state.h"

#include <cstdint>
#include <string>
#include <vector>

namespace torvane::graph {

// Rows of a lap cell; the row under them closes the line.
inline constexpr std::int32_t LapCellRows = 13;
inline constexpr std::size_t LapBarNameLength = 15;

struct LapBar {
    std::vector<PixelRect> Filled;    // odd laps, in BandColor
    std::vector<TextAt> Texts;        // file names and cell labels
    std::vector<std::int32_t> Closes; // rows of the closing lines, column 100 to the right edge
};

// The bar of a picture `width` columns wide.
LapBar LapBarOf(const GraphWindowState& state, std::int32_t width);

// A lap's time in the bar: hours only from an hour on, "01h02m05s500", "02m05s500".
std::string LapBarText(double milliseconds);

} // namespace torvane::graph
