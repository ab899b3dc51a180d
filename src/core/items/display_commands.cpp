#include "items/display_commands.h"

#include "graph/layer_view.h"
#include "load/window_layout.h"
#include "shell/common.h"

namespace torvane::items {
namespace {

std::uint8_t Flag(bool value) {
    return value ? 1 : 0;
}

void SetLineKind(graph::ItemDisplay& display, const LineKind& kind) {
    display.Color = static_cast<std::uint8_t>(kind.Color);
    display.Line = static_cast<std::uint8_t>(kind.Line);
    display.Point = static_cast<std::uint8_t>(kind.Point);
}

LineKind LineKindOf(const graph::ItemDisplay& display) {
    return {display.Color, display.Line, display.Point};
}

} // namespace

std::vector<ItemChoice> DisplayChoicesOf(const graph::GraphWindowState& state) {
    const auto layer = static_cast<std::size_t>(state.ActiveLayer);
    const logdata::LayerRecord& record = state.Layers.Layer.at(layer);
    const graph::LayerView& view = state.Views.at(layer);
    std::vector<ItemChoice> choices;
    for (std::size_t position = 0; position < record.ItemChannel.size(); ++position) {
        ItemChoice choice;
        choice.Kinds = record.ItemChannel[position];
        const graph::ItemDisplay* display =
            graph::ItemDisplayOf(view, record, static_cast<int>(position));
        const bool shown = display != nullptr && display->View == 1;
        if (position < static_cast<std::size_t>(logdata::SlotCount)) {
            choice.Extant = record.ItemExists[position];
            choice.View = choice.Extant && shown;
        } else {
            const std::size_t k = position - static_cast<std::size_t>(logdata::SlotCount);
            choice.Extant = shown && k < record.FormulaItems.size();
            choice.View = choice.Extant;
            if (choice.Extant) {
                choice.ItemName = record.FormulaItems[k].Name;
            }
        }
        choices.push_back(std::move(choice));
    }
    return choices;
}

void ApplyDisplayChoice(graph::GraphWindowState& state, const std::vector<bool>& view,
                        layout::LayoutStore& store, load::WindowView& window) {
    const int layer = state.ActiveLayer;
    const logdata::LayerRecord& record = state.Layers.Layer.at(static_cast<std::size_t>(layer));
    graph::LayerView& layerView = state.Views.at(static_cast<std::size_t>(layer));
    for (std::size_t position = 0; position < view.size(); ++position) {
        if (graph::ItemDisplay* display =
                graph::ItemDisplayOf(layerView, record, static_cast<int>(position))) {
            display->View = Flag(view[position]);
        }
    }
    if (layer == 0) {
        load::KeepAsLastDisplay(state, store);
    }
    state.Panel.RemoveLayerItems(layer, record, layerView);
    window.DrawScales();
    window.RedrawGraph();
    window.DispValues(false);
}

std::optional<LineCommand> LineCommandOf(const graph::GraphWindowState& state) {
    if (const graph::ItemRow* marked = state.Panel.MarkedRow()) {
        const auto layer = static_cast<std::size_t>(marked->Layer);
        const graph::ItemDisplay* display = graph::ItemDisplayOf(
            state.Views.at(layer), state.Layers.Layer.at(layer), marked->Position);
        if (display != nullptr) {
            return LineCommand{marked->Layer, marked->Position, LineKindOf(*display)};
        }
    }
    // Rows stand in position order, slots before computed items.
    const auto layer = static_cast<std::size_t>(state.ActiveLayer);
    for (const graph::ItemRow& row : state.Panel.Rows()) {
        if (row.Layer != state.ActiveLayer) {
            continue;
        }
        if (const graph::ItemDisplay* display = graph::ItemDisplayOf(
                state.Views.at(layer), state.Layers.Layer.at(layer), row.Position)) {
            return LineCommand{state.ActiveLayer, -1, LineKindOf(*display)};
        }
    }
    return std::nullopt;
}

void ApplyLineKind(graph::GraphWindowState& state, const LineCommand& command, const LineKind& kind,
                   layout::LayoutStore& store, load::WindowView& window) {
    const auto layer = static_cast<std::size_t>(command.Layer);
    const logdata::LayerRecord& record = state.Layers.Layer.at(layer);
    graph::LayerView& view = state.Views.at(layer);
    const bool all = command.Position < 0;
    for (graph::ItemRow& row : state.Panel.Rows()) {
        if (row.Layer == command.Layer && (all || row.Position == command.Position)) {
            row.LineColor = shell::ColorValue(kind.Color);
        }
    }
    if (all) {
        for (std::size_t position = 0; position < record.ItemChannel.size(); ++position) {
            if (graph::ItemDisplay* display =
                    graph::ItemDisplayOf(view, record, static_cast<int>(position))) {
                SetLineKind(*display, kind);
            }
        }
    } else if (graph::ItemDisplay* display = graph::ItemDisplayOf(view, record, command.Position)) {
        SetLineKind(*display, kind);
    }
    if (command.Layer == 0) {
        load::KeepAsLastDisplay(state, store);
    }
    window.RedrawGraph();
}

} // namespace torvane::items
