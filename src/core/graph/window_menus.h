#pragma once
// The menu entries of a graph window that follow its state, as plain values the window applies:
// the layer commands, the scroll, histogram and detonation entries of the active layer, the
// popup of a right press, and the list of saved layouts.

#include "graph/window_state.h"

#include <array>
#include <string>
#include <string_view>
#include <vector>

namespace torvane::graph {

struct WindowMenuState {
    bool OpenLayerEnabled = true;   // mnuOpenLayer: while a fourth file would still fit
    bool CloseLayerEnabled = false; // mnuCloseLayer, mnuAlign: once a second file stands
    bool AlignEnabled = false;
    std::array<bool, 3> ScrollItemEnabled{}; // mnuScrollItem(0..2)
    std::array<bool, 3> ScrollItemChecked{};
    bool HistoEnabled = false;    // mnuHisto: Ne or TH
    bool DspDeto2Enabled = false; // mnuDspDeto(2): Ne and a detonation counter
    bool GridEnabled = true;      // mnuGrid

    friend bool operator==(const WindowMenuState&, const WindowMenuState&) = default;
};

WindowMenuState MenuStateOf(const GraphWindowState& state);

// Where a right press came from: it decides which entries of the popup are hidden.
enum class PopupSource { FileCaption, ItemRow, Graph };

// The entries of the popup mnuVisible, in menu order, as they stand while it is open for an item
// of `layer`. The layout and toolbox entries are hidden (and mnuScroll for a row); mnuGrid is
// enabled for layer 0 only, and never from a row. Closing the popup restores the menus.
std::vector<MenuEntryState> PopupEntries(PopupSource source, int layer,
                                         const WindowMenuState& menus);

// mnuLayout(n) for the records 1..10 of the layout store: captioned with the record's name and
// shown only when it has one.
struct LayoutMenuEntry {
    int Index = 0;
    std::string Caption;
    bool Visible = false;

    friend bool operator==(const LayoutMenuEntry&, const LayoutMenuEntry&) = default;
};
inline constexpr int LayoutMenuCount = 10;
// `names` are the store's names from record 0 up, as GetLayoutNames gives them.
std::vector<LayoutMenuEntry> RefreshLayoutMenu(const std::vector<std::string>& names);

} // namespace torvane::graph
