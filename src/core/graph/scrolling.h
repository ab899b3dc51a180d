#pragma once
// Moving the layers in time: the drags of the scroll box and of a trace, the holds that scroll
// (tool 1, tool 7 at an edge, the cmdMove buttons) and one pass of each, and the limits they
// share. Each routine changes DragState and the layers' TimeOffset; the window redraws and moves
// the box.

#include "graph/scroll_strip.h"
#include "graph/window_state.h"

#include <cstdint>
#include <string_view>

namespace torvane::graph {

// Asked when linked layers would drift apart because some of them reach their end.
inline constexpr std::string_view LayerShiftQuestion = "A layer will shift. Is it very well?";

// Milliseconds shown right of the scale column of a picture `width` wide.
double VisibleSpan(std::int32_t width, const TimeScale& scale);
// The largest offset of a layer at which its end still fills the picture.
double MaxOffset(const GraphWindowState& state, int layer, std::int32_t width);

// The end of a box move: every layer shifts by the distance that brings the active layer's
// offset, on the step grid, to the box's place; none goes below 0, so the layers keep their
// distance.
void EndBoxMove(GraphWindowState& state, std::int32_t boxLeft, std::int32_t stripWidth);

// The end of pulling an edge of the box (BoxLeftEdge or BoxRightEdge) to window column mouseX:
// the new box, at least 10 wide with the other edge kept; the time scale that shows its span
// across the picture; then the offsets as in a box move. Returns the new box.
ScrollBox EndBoxZoom(GraphWindowState& state, DragState edge, ScrollBox box, std::int32_t mouseX,
                     std::int32_t stripWidth, std::int32_t graphWidth);

// A press on the scroll box starts the drag that BoxPressState chose.
void BeginBoxDrag(GraphWindowState& state, DragState drag);
// The release of a box drag, the box where the strip left it: a move shifts the layers
// (EndBoxMove) and leaves the window no longer as loaded; an edge zooms (EndBoxZoom). The drag is
// over; returns the box to show.
ScrollBox EndBoxDrag(GraphWindowState& state, DragState drag, ScrollBox box, std::int32_t mouseX,
                     std::int32_t stripWidth, std::int32_t graphWidth);

// The end of a trace drag by (dx, dy): the item's band moves by dy, and all layers move by dx
// in whole steps, so a trace drag never shifts one layer against another.
void EndTraceDrag(GraphWindowState& state, ItemRef item, std::int32_t dx, std::int32_t dy);

// A trace drag runs from a press on a trace whose ghost could be built.
void BeginTraceDrag(GraphWindowState& state);
// The release (or a ghost that could not be shown): the marked row's trace moves as in
// EndTraceDrag, and the window no longer shows its file as loaded.
void ReleaseTraceDrag(GraphWindowState& state, std::int32_t dx, std::int32_t dy);
// Escape: the ghost goes and nothing moves.
void DropTraceDrag(GraphWindowState& state);

// A hold runs a pass of AutoScrollStep or ScrollButtonStep at a steady pace while it lasts. It
// ends on the release, when the mouse leaves an edge of tool 7, when a pass cannot go on, and
// when a redraw fails.
void BeginHold(GraphWindowState& state);
bool Holding(const GraphWindowState& state);
void EndHold(GraphWindowState& state);
// The operator's answer to LayerShiftQuestion ends the hold; a yes lets linked layers drift
// apart in every hold that follows.
void AnswerLayerShift(GraphWindowState& state, bool shift);

// One pass of the scroll loop of tool 1 (and of tool 7 at the edges).
enum class AutoScrollResult {
    Waited,   // the mouse is outside the graph: nothing moved
    Scrolled, // offsets moved (possibly by 0): redraw
    AskShift, // linked layers would drift apart: ask the operator, then stop
};
AutoScrollResult AutoScrollStep(GraphWindowState& state, bool linkLayers, std::int32_t width,
                                std::int32_t height);

// One pass of a held cmdMove: index 1 forward, 0 back, linking ignored. False when the loop
// ends: going back with the active layer already at the start.
bool ScrollButtonStep(GraphWindowState& state, int index, std::int32_t width);

} // namespace torvane::graph
