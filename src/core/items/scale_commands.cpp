#include "items/scale_commands.h"

#include "graph/layer_view.h"
#include "load/window_layout.h"
#include "shell/rounding.h"

#include <algorithm>
#include <limits>

namespace torvane::items {
namespace {

// Limits come from the dialog's checked boxes, but a display may also hold what a layout file
// held: a value is kept inside 32 bits.
std::int32_t AxisUnits(double value) {
    constexpr double lowest = std::numeric_limits<std::int32_t>::min();
    constexpr double highest = std::numeric_limits<std::int32_t>::max();
    return static_cast<std::int32_t>(std::clamp(shell::RoundHalfEven(value), lowest, highest));
}

std::int16_t PixelRow(std::int64_t row) {
    return static_cast<std::int16_t>(std::clamp<std::int64_t>(
        row, std::numeric_limits<std::int16_t>::min(), std::numeric_limits<std::int16_t>::max()));
}

int MarkedFileLayer(const graph::ItemPanel& panel) {
    for (const graph::FileCaption& file : panel.Files()) {
        if (file.CheckMark) {
            return file.Layer;
        }
    }
    return -1;
}

GridItem GridItemOf(const graph::ItemRow& row, const logdata::LayerRecord& record,
                    const graph::ItemDisplay& display) {
    GridItem item;
    item.Position = row.Position;
    item.Kinds = row.Kinds;
    item.FormulaIndex = row.FormulaIndex;
    item.Name = row.Name;
    if (row.FormulaIndex >= 0 &&
        static_cast<std::size_t>(row.FormulaIndex) < record.FormulaItems.size()) {
        item.MaxValue = record.FormulaItems[static_cast<std::size_t>(row.FormulaIndex)].Max;
    }
    item.Max = display.Max;
    item.Min = display.Min;
    return item;
}

} // namespace

std::optional<GridRequest> GridRequestOf(const graph::GraphWindowState& state) {
    const logdata::LayerRecord& record = state.Layers.Layer[0];
    const graph::LayerView& view = state.Views[0];
    GridRequest request;
    int marked = -1;
    int lowest = -1;
    for (const graph::ItemRow& row : state.Panel.Rows()) {
        const graph::ItemDisplay* display = graph::ItemDisplayOf(view, record, row.Position);
        if (row.Layer != 0 || display == nullptr) {
            continue;
        }
        const int index = static_cast<int>(request.Items.size());
        if (row.CheckMark) {
            marked = index;
        }
        if (lowest < 0 || row.Kinds < request.Items[static_cast<std::size_t>(lowest)].Kinds) {
            lowest = index;
        }
        request.Items.push_back(GridItemOf(row, record, *display));
    }
    if (request.Items.empty()) {
        return std::nullopt;
    }
    request.Item = marked >= 0 ? marked : lowest;
    const GridItem& chosen = request.Items[static_cast<std::size_t>(request.Item)];
    request.Grid = graph::ItemDisplayOf(view, record, chosen.Position)->Grid != 0;
    return request;
}

void ApplyGrid(graph::GraphWindowState& state, const GridResult& result, layout::LayoutStore& store,
               load::WindowView& window) {
    graph::ItemDisplay* display =
        graph::ItemDisplayOf(state.Views[0], state.Layers.Layer[0], result.Position);
    if (display == nullptr) {
        return;
    }
    display->Grid = result.Grid ? 1 : 0;
    display->Max = AxisUnits(result.Max);
    display->Min = AxisUnits(result.Min);
    load::KeepAsLastDisplay(state, store);
    window.DrawScales();
    window.RedrawGraph();
}

void AlignLayers(graph::GraphWindowState& state, load::WindowView& window) {
    const graph::DisplaySet& main = state.Views[0].Display;
    for (int layer = 1; layer <= state.LastLayer; ++layer) {
        graph::DisplaySet& display = state.Views.at(static_cast<std::size_t>(layer)).Display;
        for (std::size_t channel = 0; channel < display.Items.size(); ++channel) {
            display.Items[channel].Zoom = main.Items[channel].Zoom;
            display.Items[channel].Top = main.Items[channel].Top;
            display.Items[channel].Bottom = main.Items[channel].Bottom;
        }
    }
    window.RedrawGraph();
}

bool CenterItem(graph::GraphWindowState& state, int layer, int position, int graphHeight) {
    const logdata::LayerRecord& record = state.Layers.Layer.at(static_cast<std::size_t>(layer));
    graph::LayerView& view = state.Views.at(static_cast<std::size_t>(layer));
    graph::ItemDisplay* display = graph::ItemDisplayOf(view, record, position);
    graph::ScaleRecord* itemScale = graph::ItemScaleOf(view, record, position);
    if (display == nullptr || itemScale == nullptr) {
        return false;
    }
    graph::ScaleRecord scale;
    int zoom = graph::DefaultFormulaScaleNumber;
    if (position >= logdata::SlotCount) {
        const auto k = static_cast<std::size_t>(position - logdata::SlotCount);
        graph::DefaultFormulaScale(record.FormulaItems.at(k).Max, scale);
    } else if (!graph::DefaultScale(record.ItemChannel[static_cast<std::size_t>(position)], scale,
                                    zoom)) {
        return false;
    }
    display->Zoom = static_cast<std::uint8_t>(zoom);
    const std::int64_t band = graph::BandHeight(scale, display->Max);
    const std::int64_t top =
        (static_cast<std::int64_t>(graphHeight) - 20 - state.LapBarHeight - band) / 2;
    display->Top = PixelRow(top);
    display->Bottom = PixelRow(display->Top + band);
    *itemScale = scale;
    return true;
}

bool MoveCenter(graph::GraphWindowState& state, int graphHeight, layout::LayoutStore& store,
                load::WindowView& window) {
    const int fileLayer = MarkedFileLayer(state.Panel);
    if (fileLayer >= 0) {
        for (const graph::ItemRow& row : state.Panel.Rows()) {
            if (row.Layer == fileLayer) {
                CenterItem(state, fileLayer, row.Position, graphHeight);
            }
        }
    } else {
        const graph::ItemRow* marked = state.Panel.MarkedRow();
        if (marked == nullptr || marked->Layer != state.ActiveLayer) {
            return false;
        }
        CenterItem(state, marked->Layer, marked->Position, graphHeight);
    }
    load::KeepAsLastDisplay(state, store);
    window.DrawScales();
    window.RedrawGraph();
    return true;
}

} // namespace torvane::items
