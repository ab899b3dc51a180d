#pragma once
// mnuGrid, mnuAlign and mnuMove of a graph window: an item's scale limits and grid, the bands of
// the overlaid layers lined up with the main layer's, and items brought back to their default
// scale in the middle of the graph.

#include "graph/window_state.h"
#include "items/grid_limits.h"
#include "layout/layout_store.h"
#include "load/window_view.h"

#include <optional>

namespace torvane::items {

// mnuGrid, for layer 0 only: the items of layer 0 on show, the marked one chosen, or failing
// that the one with the lowest channel number. None when layer 0 shows nothing.
std::optional<GridRequest> GridRequestOf(const graph::GraphWindowState& state);
// The dialog's grid flag and limits (rounded to whole axis units) go into the item's display,
// which is kept as the last-used layout; the scales and the picture are drawn again.
void ApplyGrid(graph::GraphWindowState& state, const GridResult& result, layout::LayoutStore& store,
               load::WindowView& window);

// mnuAlign: every further layer takes the main layer's Zoom, Top and Bottom for each channel.
// Limits, slot scales and computed items stay as they are.
void AlignLayers(graph::GraphWindowState& state, load::WindowView& window);

// Center: the item back at its default scale (which sets its scale number and its scale
// record), its band placed in the middle of a graph `graphHeight` pixels high above the lap bar.
// False for a position that names no item.
bool CenterItem(graph::GraphWindowState& state, int layer, int position, int graphHeight);

// mnuMove: with a file caption marked every item on show of that layer is centred, otherwise
// the marked row's item of the active layer. With neither nothing happens (false); otherwise
// the display is kept as the last-used layout and the scales and picture are drawn again.
bool MoveCenter(graph::GraphWindowState& state, int graphHeight, layout::LayoutStore& store,
                load::WindowView& window);

} // namespace torvane::items
