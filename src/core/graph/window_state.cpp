#include "graph/window_state.h"

#include "graph/window_menus.h"
#include "logdata/channels.h"
#include "shell/common.h"

#include <utility>

namespace torvane::graph {
namespace {

bool IsOpenLayer(const GraphWindowState& state, int layer) {
    return layer >= 0 && layer <= state.LastLayer && layer < logdata::LayerCount;
}

} // namespace

void NumberWindow(GraphWindowState& state, int number, std::filesystem::path tempDir) {
    state.Layers.WindowNumber = number;
    state.Layers.TempDir = std::move(tempDir);
}

void SetBandColor(GraphWindowState& state, std::uint32_t color) {
    state.BandColor = color;
}

bool RecordRedraw(GraphWindowState& state, bool drawn) {
    if (!drawn) {
        state.SingleFileState = SingleFileState::Cleared;
    }
    return drawn;
}

bool SelectLayer(GraphWindowState& state, int layer) {
    if (!IsOpenLayer(state, layer)) {
        return false;
    }
    state.ActiveLayer = layer;
    return true;
}

ScrollStripState ScrollStripOf(const GraphWindowState& state) {
    const auto layer = static_cast<std::size_t>(state.ActiveLayer);
    const logdata::LayerRecord& record = state.Layers.Layer.at(layer);
    ScrollStripState strip;
    if (record.ScrollItem < 0) {
        return strip;
    }
    strip.Shown = true;
    strip.Kinds = record.ScrollItem;
    strip.Title = std::string(logdata::ChannelName(strip.Kinds));
    if (const ItemDisplay* display = ItemDisplayOf(state.Views[layer], record, record.ScrollItem)) {
        strip.LineColor = shell::ColorValue(display->Color);
    }
    return strip;
}

bool FollowScrollItem(GraphWindowState& state, int item) {
    logdata::LayerRecord& active =
        state.Layers.Layer.at(static_cast<std::size_t>(state.ActiveLayer));
    if (active.ScrollItem == item) {
        return false;
    }
    active.ScrollItem = item;
    return true;
}

bool ResizeRebuildsStrip(const GraphWindowState& state) {
    return state.Layers.Layer.at(static_cast<std::size_t>(state.ActiveLayer)).ScrollItem >= 0;
}

PanelPressResult PressPanelControl(GraphWindowState& state, PanelControl control,
                                   MouseButton button) {
    const bool isFile = control.Type == PanelControl::Kind::File;
    int layer = 0;
    bool marked = false;
    if (isFile) {
        const FileCaption* file = state.Panel.File(control.Index);
        if (file == nullptr) {
            return {};
        }
        layer = file->Layer;
        marked = file->CheckMark;
    } else {
        const ItemRow* row = state.Panel.Row(control.Index);
        if (row == nullptr) {
            return {};
        }
        layer = row->Layer;
        marked = row->CheckMark;
    }

    if (!marked) {
        if (isFile) {
            state.Panel.MarkFile(layer);
        } else {
            state.Panel.MarkRow(control.Index);
            // The first press only selects the row.
            if (layer == state.ActiveLayer) {
                return {};
            }
        }
    }

    PanelPressResult result;
    result.LayerSelected = SelectLayer(state, layer);
    // A caption's control index is its layer; a row's is never 0, so a row always disables it.
    state.GridEnabled = isFile && layer == 0;
    if (button == MouseButton::Right) {
        result.Popup = PopupEntries(isFile ? PopupSource::FileCaption : PopupSource::ItemRow, layer,
                                    MenuStateOf(state));
    }
    return result;
}

std::optional<std::vector<MenuEntryState>> PressGraphRight(GraphWindowState& state,
                                                           std::optional<ItemRef> hit) {
    if (!hit) {
        const ItemRow* marked = state.Panel.MarkedRow();
        if (marked == nullptr) {
            return std::nullopt;
        }
        hit = ItemRef{marked->Layer, marked->Position};
    } else {
        state.Panel.SelectItem(hit->Layer, hit->Position);
    }
    if (!IsOpenLayer(state, hit->Layer)) {
        return std::nullopt;
    }
    state.ActiveLayer = hit->Layer;
    return PopupEntries(PopupSource::Graph, hit->Layer, MenuStateOf(state));
}

} // namespace torvane::graph
