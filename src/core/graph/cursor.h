#pragma once
// The cursor of a graph window: the column it stands on for a mouse position, and whether the
// graph takes a press there. The mouse pointers of the graph have their hot spot 11 pixels left
// of the point they show, so every mouse x is read 11 pixels further right.

#include "graph/window_state.h"

#include <cstdint>

namespace torvane::graph {

inline constexpr int CursorHotSpot = 11;

// The cursor column for mouse x over a picture `width` wide: on the step grid, never left of
// the graph, and one step short of the last full step at the right edge.
std::int32_t CursorColumn(double mouseX, std::int32_t width, const TimeScale& scale);

// What a mouse move over the graph asks of the window.
struct CursorMove {
    bool Moved = false;  // CursorX changed
    bool Redraw = false; // compose the picture and write the read-out (not while a loop runs)
};
// Stores the mouse position and moves the cursor to its column.
CursorMove MoveCursor(GraphWindowState& state, double mouseX, double mouseY, std::int32_t width);

// A press counts while nothing is dragged, right of the scale column and below the lap bar.
bool GraphTakesPress(const GraphWindowState& state, double mouseX, double mouseY);

} // namespace torvane::graph
