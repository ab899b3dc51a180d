#pragma once
// Tools 2 and 3: the time axis one rung coarser or finer, with the view moved so that the time
// under the cursor stays under the mouse.

#include "graph/window_state.h"

#include <cstdint>

namespace torvane::graph {

// One rung finer: one column per step with ever smaller steps down to 5 ms, then 5, 10, 25 and
// 50 columns per 5 ms, the finest view.
void ExpandTimeScale(TimeScale& scale);
// One rung coarser, up to steps beyond 1000000 ms.
void ReduceTimeScale(TimeScale& scale);

// A press of tool 3 (`expand`) or 2 at mouse x over a picture `width` wide: the new scale, and
// each layer's offset so that its cursor time stays near the mouse. A layer that fits the
// picture, or whose offset would fall outside the run, starts at 0.
void ZoomTime(GraphWindowState& state, bool expand, double mouseX, std::int32_t width);

} // namespace torvane::graph
