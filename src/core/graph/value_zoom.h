#pragma once
// Tools 4 and 5: an item's value axis one scale number coarser or finer, with the axis value
// under the mouse kept on its row.

#include "graph/window_state.h"

namespace torvane::graph {

// Tool 5 (`expand`) or 4 on an item at mouse row y. False, with nothing changed, at the ends
// of the scale numbers (0 and 9) or for an item that does not exist.
bool ZoomItemValue(GraphWindowState& state, ItemRef item, bool expand, double mouseY);

} // namespace torvane::graph
