#include "graph/window_menus.h"

#include "logdata/channels.h"

namespace torvane::graph {

WindowMenuState MenuStateOf(const GraphWindowState& state) {
    WindowMenuState menus;
    menus.OpenLayerEnabled = state.LastLayer < logdata::LayerCount - 1;
    menus.CloseLayerEnabled = state.LastLayer > 0;
    menus.AlignEnabled = state.LastLayer > 0;
    menus.GridEnabled = state.GridEnabled;

    const logdata::LayerRecord& active =
        state.Layers.Layer.at(static_cast<std::size_t>(state.ActiveLayer));
    if (active.ScrollItem < 0) {
        return menus;
    }
    const auto exists = [&](int slot) {
        return active.ItemExists[static_cast<std::size_t>(slot)];
    };
    for (std::size_t i = 0; i < menus.ScrollItemEnabled.size(); ++i) {
        menus.ScrollItemEnabled[i] = exists(static_cast<int>(i));
        menus.ScrollItemChecked[i] = static_cast<std::int32_t>(i) == active.ScrollItem;
    }
    menus.HistoEnabled = exists(logdata::Ne) || exists(logdata::TH);
    menus.DspDeto2Enabled =
        exists(logdata::Ne) && (exists(logdata::DETO1) || exists(logdata::DETO2));
    return menus;
}

std::vector<MenuEntryState> PopupEntries(PopupSource source, int layer,
                                         const WindowMenuState& menus) {
    const bool gridEnabled = source != PopupSource::ItemRow && layer == 0;
    return {
        {"mnuLaySave", false, true},
        {"mnuLayReapp", false, true},
        {"mnuToolBox", false, true},
        {"mnuDisp", true, true},
        {"mnuLine", true, true},
        {"mnuGrid", true, gridEnabled},
        {"mnuScroll", source != PopupSource::ItemRow, true},
        {"mnuAlign", true, menus.AlignEnabled},
        {"mnuMove", true, true},
    };
}

std::vector<LayoutMenuEntry> RefreshLayoutMenu(const std::vector<std::string>& names) {
    std::vector<LayoutMenuEntry> entries;
    for (int index = 1; index <= LayoutMenuCount; ++index) {
        LayoutMenuEntry entry{index, {}, false};
        if (static_cast<std::size_t>(index) < names.size()) {
            entry.Caption = names[static_cast<std::size_t>(index)];
            entry.Visible = !entry.Caption.empty();
        }
        entries.push_back(std::move(entry));
    }
    return entries;
}

} // namespace torvane::graph
