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
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace torvane::graph {

inline constexpr std::string_view InitialTitleText = " Time 00h00m00s000";

// What the mouse holds in the window. While any of these runs the graph takes no press.
enum class DragState {
    None = 0,
    BoxMove = 1,      // the scroll box itself
    BoxLeftEdge = 2,  // the box's left edge, zooming
    BoxRightEdge = 3, // the box's right edge, zooming
    TraceDrag = 4,    // a trace's ghost, until the release moves the trace
    CommentLeader = 5,
    HeldScroll = 6, // tool 1, tool 7 at an edge, or a held cmdMove: a pass every HeldPassMs
};

enum class RangeState {
    None = 0,
    StartMarked = 1,
    Complete = 2,
};

// Loaded: the window shows one file just as it was loaded, so its picture is rebuilt when
// uncovered and its layout may be kept as the last display. Cleared by anything that changes
// what the window shows, and by a failed redraw.
enum class SingleFileState {
    Cleared = 0,
    Loaded = 1,
};

struct GraphWindowState {
    logdata::LayerSet Layers;
    std::array<LayerView, logdata::LayerCount> Views;
    ItemPanel Panel;

    int LastLayer = 0;
    int ActiveLayer = 0;
    graph::SingleFileState SingleFileState = graph::SingleFileState::Cleared;
    TimeScale Time;

    bool DeltaMode = false;
    double DeltaMark = 0.0; // reference of the Delta display, 0 = none
    bool ShiftAccepted = false;
    graph::RangeState RangeState = graph::RangeState::None;
    double RangeStart = 0.0;
    double RangeEnd = 0.0;
    graph::DragState DragState = graph::DragState::None;
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

// A window's number and the folder its streams are deployed to, given once when it is made.
void NumberWindow(GraphWindowState& state, int number, std::filesystem::path tempDir);
// The raw surface value the range band is filled with, which only the picture's format knows.
void SetBandColor(GraphWindowState& state, std::uint32_t color);

// Every redraw's result passes here: a failed one clears SingleFileState, so that a picture
// that cannot be drawn is not rebuilt again on every uncovering. Returns `drawn`.
bool RecordRedraw(GraphWindowState& state, bool drawn);

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
// The active layer's strip follows `item` (-1 none); false when it already did.
bool FollowScrollItem(GraphWindowState& state, int item);

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
