#pragma once
// Tool 7: marking a range of time with the mouse, or, in Delta mode, setting the reference of
// the Delta read-out. Both read the cursor time of layer 0.

#include "graph/window_state.h"

#include <cstdint>

namespace torvane::graph {

// The press: in Delta mode the reference; otherwise a new range starts unless one is being
// marked. The picture is rebuilt in either case.
void PressRangeTool(GraphWindowState& state);

// The release: the range closes at the cursor, its ends in order; released where it started it
// is cleared. True when the picture must be rebuilt.
bool ReleaseRangeTool(GraphWindowState& state);

// While a range is being marked, a cursor near either edge of a picture `width` wide scrolls.
bool RangeEdgeScrolls(const GraphWindowState& state, std::int32_t width);

} // namespace torvane::graph
