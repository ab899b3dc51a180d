#pragma once
// The arrow keys of a graph window: they walk the read-out by the finest sampling time while the
// cursor column stands still, and move the picture by L = lcm(MsPerStep, MinSampleTime) when
// the read-out has walked that far from the cursor column's time.

#include "graph/window_state.h"

#include <cstdint>

namespace torvane::graph {

enum class ArrowResult {
    Nothing, // at an end: nothing changed
    ReadOut, // the cursor times moved: write the read-out without recomputing them
    Shifted, // the picture moved by L: move the box, rebuild the picture, recompute the read-out
};

ArrowResult PressArrowRight(GraphWindowState& state, bool linkLayers, std::int32_t width);
ArrowResult PressArrowLeft(GraphWindowState& state, bool linkLayers);

} // namespace torvane::graph
