#pragma once
// The scale column at the left of the graph and the horizontal grid that runs from it: for each
// shown main-layer item with its grid on, a line per grid step of its band (black where
// labelled, grey between), the labels, and the item's name above the band.

#include "graph/picture_geometry.h"
#include "graph/window_state.h"

#include <cstdint>
#include <vector>

namespace torvane::graph {

struct ScaleLine {
    std::int32_t Row = 0;
    bool Labelled = false; // black; grey when false

    friend bool operator==(const ScaleLine&, const ScaleLine&) = default;
};

struct ScaleColumn {
    std::vector<ScaleLine> Lines; // from column 100 to the right edge
    std::vector<TextAt> Labels;   // values and item names
};

ScaleColumn ScaleColumnOf(const GraphWindowState& state);

// Column where the scale values are written, right-aligned in five places.
inline constexpr std::int32_t ScaleValueColumn = 60;
inline constexpr std::int32_t ScaleNameColumn = 5;

} // namespace torvane::graph
