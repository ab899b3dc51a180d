#pragma once
// The read-out of a graph window: the value of every shown item at the cursor, written into its
// row, and the title time above the panel, either the cursor time or its distance to a Delta
// reference.

#include "graph/item_panel.h"
#include "graph/window_state.h"
#include "logger/laf_table.h"

#include <string>

namespace torvane::graph {

// Cursor times from the cursor column: t = ((CursorX - 100) / P) x S in whole steps; each open
// layer's CursorTime is t plus its TimeOffset, and CursorAxisTime is the active layer's, rounded.
// Before the mouse has moved over the graph CursorX is 0, so t lies before the start.
void RecomputeCursorTimes(GraphWindowState& state);

// The title time: " Time " and the cursor time of layer 0; in Delta mode "Delta " and its
// distance to the reference, with a sign place ("Delta  " ahead, "Delta -" behind or level).
std::string TitleTimeText(bool deltaMode, double deltaMark, double cursorTime);
// Writes TitleText from the state.
void DispTitleTime(GraphWindowState& state);
// A click on the title time: Delta mode on or off, the reference forgotten.
void ToggleDeltaMode(GraphWindowState& state);

// A value as its row shows it: the channel's number format with its unit right after it (the
// detonation counters bare), or a computed item's own decimals and unit.
std::string ItemValueText(const ItemRow& row, double value);

// Writes the title and the value of every row at its layer's cursor time, after recomputing the
// cursor times when `move` is 1. A throttle without a calibrated span keeps its old text.
bool DispValues(GraphWindowState& state, int move, const logger::LafTable& laf);

} // namespace torvane::graph
