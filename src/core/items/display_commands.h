#pragma once
// mnuDisp and mnuLine of a graph window: which items of a layer are on show, and the colour,
// style and thickness their traces are drawn with. Each command is taken in two halves around its
// dialog: what the dialog is handed, and what its answer changes in the window.

#include "graph/window_state.h"
#include "items/item_choice.h"
#include "items/line_palette.h"
#include "layout/layout_store.h"
#include "load/window_view.h"

#include <optional>
#include <vector>

namespace torvane::items {

// mnuDisp: every position of the active layer's ItemChannel. A slot exists when it holds data;
// a computed item only while it is on show, so one taken off the display is not offered again.
std::vector<ItemChoice> DisplayChoicesOf(const graph::GraphWindowState& state);
// The dialog's View flags, by position, go into the active layer's displays; layer 0's become
// the last-used layout. The layer's rows are placed again, and the scales, picture and read-out
// follow.
void ApplyDisplayChoice(graph::GraphWindowState& state, const std::vector<bool>& view,
                        layout::LayoutStore& store, load::WindowView& window);

// mnuLine: the item the command acts on (Position -1: every item of Layer) and the values the
// dialog starts from: the marked row's, else those of the first item on show of the active
// layer. None when the active layer shows nothing and no row is marked.
struct LineCommand {
    int Layer = 0;
    int Position = -1;
    LineKind Start;

    friend bool operator==(const LineCommand&, const LineCommand&) = default;
};
std::optional<LineCommand> LineCommandOf(const graph::GraphWindowState& state);
// The dialog's answer goes into the item or into every item of the layer, computed ones
// included, and into their rows' colour bars; with layer 0 in play the display is kept as the
// last-used layout. Then the picture is drawn again.
void ApplyLineKind(graph::GraphWindowState& state, const LineCommand& command, const LineKind& kind,
                   layout::LayoutStore& store, load::WindowView& window);

} // namespace torvane::items
