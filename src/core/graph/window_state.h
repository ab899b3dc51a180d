#pragma once
// The state of one graph window: its layers and how each is shown, the item panel, the time
// scale, the cursor and the title time. The desktop window is a shell over this record; the
// operations here decide what changes, the window applies it to its widgets.

#include "graph/comment_list.h"
#include "graph/display_set.h"
#include "graph/item_panel.h"
#include "graph/layer_view.h"
#include "logdata/layer.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace torvane::graph {

inline constexpr std::string_view InitialTitleText = " Time 00h00m00s000";

struct GraphWindowState {
    logdata::LayerSet Layers;
    std::array<LayerView, logdata::LayerCount> Views;
    ItemPanel Panel;

    int LastLayer = 0;
    int ActiveLayer = 0;
    // 1 after a load; 0 after a layer was opened or closed and after a failed redraw.
    int SingleFileState = 0;
    TimeScale Time;

    bool DeltaMode = false;
    double DeltaMark = 0.0; // reference of the Delta display, 0 = none
    bool ShiftAccepted = false;
    int RangeState = 0; // 0 no range, 1 start marked, 2 range complete
    double RangeStart = 0.0;
    double RangeEnd = 0.0;
    int DragState = 0;
    int EditComment = -1; // index of the comment in the edit box, -1 none
    CommentList Comments = NewCommentList();
    // The comments as they were before the operator changed or removed them, each with the
    // FileName of its layer, so that a write of that file's side file does not take them back
    // from what it finds there.
    std::vector<CommentRecord> ReplacedComments;
    CommentLeader Leader; // the text tool's leader, kept until its edit box ends

    // 0 until the mouse first moves over the graph.
    std::int32_t CursorX = 0;
    // CursorTime of the active layer, rounded to a whole millisecond.
    std::int32_t CursorAxisTime = 0;
    std::int32_t ScrollSpan = 0;
    std::int32_t LapBarHeight = 0;
    std::int32_t GraphMidX = 0;
    std::uint32_t BandColor = 0;
    std::int32_t MouseX = 0;
    std::int32_t MouseY = 0;

    // mnuGrid acts on layer 0 only; a press in the panel decides it.
    bool GridEnabled = true;
    std::string TitleText{InitialTitleText};
};

// Makes a layer active; false for a layer that is not open.
bool SelectLayer(GraphWindowState& state, int layer);

// The scroll strip of the active layer: shown with its box and move buttons when the layer has
// a ScrollItem, otherwise cleared and hidden; ucnScroll names the item in its colour.
struct ScrollStripState {
    bool Shown = false;
    int Kinds = -1;    // the followed slot, which is also its channel (slots 0..2)
    std::string Title; // ChannelName, empty when there is none
    std::uint32_t LineColor = 0;
};
ScrollStripState ScrollStripOf(const GraphWindowState& state);

// After a resize the strip and its box are rebuilt whenever the active layer has something to
// follow: the picture follows the window's new width, and the strip keeps in step with it.
bool ResizeRebuildsStrip(const GraphWindowState& state);

// A control of the item panel: a layer's file caption, or a row by its control index.
struct PanelControl {
    enum class Kind { File, Row };
    Kind Type = Kind::File;
    int Index = 0; // the layer for a file caption, the control index for a row
};

enum class MouseButton { Left, Right };

// Visibility and enabled state of one menu entry, by its object name.
struct MenuEntryState {
    std::string_view Name;
    bool Visible = true;
    bool Enabled = true;

    friend bool operator==(const MenuEntryState&, const MenuEntryState&) = default;
};

struct PanelPressResult {
    // The pressed control's layer was made active: the lap list, if open, is refilled for it.
    bool LayerSelected = false;
    // The popup to open, with the entries as they stand while it is open.
    std::optional<std::vector<MenuEntryState>> Popup;
};

// A press on a caption or row. The first press on an unmarked row of the active layer only
// marks it: even a right press opens no menu until the row is pressed again.
PanelPressResult PressPanelControl(GraphWindowState& state, PanelControl control,
                                   MouseButton button);

// A right press in the graph on the item found under the mouse, or, when none was found, on the
// marked row. The item's layer becomes active. No popup when there is neither.
struct ItemRef {
    int Layer = 0;
    int Position = 0;
};
std::optional<std::vector<MenuEntryState>> PressGraphRight(GraphWindowState& state,
                                                           std::optional<ItemRef> hit);

} // namespace torvane::graph
