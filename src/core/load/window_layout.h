#pragma once
// A window and the layout store: a saved layout or the factory one shown in a window
// (mnuLayout(n), mnuLayoutDef), and the window's display handed to the store, as the display new
// windows start with (record 0) or as the one the layout-save dialog writes.

#include "graph/display_set.h"
#include "graph/window_state.h"
#include "layout/layout_store.h"
#include "load/window_view.h"

namespace torvane::load {

// Shows the display in every open layer: each layer's items and slot scales follow it, the rows
// of the item panel are placed again, the window takes its time scale, and the scales, the graph
// and the read-out are drawn again. Computed items keep their own displays.
void ApplyLayout(graph::GraphWindowState& state, const graph::DisplaySet& display,
                 WindowView& view);

// mnuLayout(n): record `index` of the store, which then also becomes record 0. False for a record
// the store does not hold; the window is then left as it was.
bool ApplyStoredLayout(graph::GraphWindowState& state, layout::LayoutStore& store, int index,
                       WindowView& view);
// mnuLayoutDef: the factory layout, which then also becomes record 0.
void ApplyDefaultLayout(graph::GraphWindowState& state, layout::LayoutStore& store,
                        WindowView& view);

// Record 0 takes the main layer's display and the window's time scale.
void KeepAsLastDisplay(const graph::GraphWindowState& state, layout::LayoutStore& store);
// The display the layout-save dialog writes: the active layer's, with the window's time scale.
void PendActiveDisplay(const graph::GraphWindowState& state, layout::LayoutStore& store);

} // namespace torvane::load
