#include "calc/computed_item.h"

#include "graph/scale.h"

namespace torvane::calc {

// The 20 rows of the time band stand below every band.
constexpr int TimeBandHeight = 20;

int StoreComputedItem(graph::GraphWindowState& state, int layer, const ComputedItemRequest& request,
                      int pictureHeight) {
    const auto index = static_cast<std::size_t>(layer);
    logdata::LayerRecord& record = state.Layers.Layer.at(index);
    graph::LayerView& view = state.Views.at(index);
    std::size_t k = 0;
    while (k < record.FormulaItems.size() && record.FormulaItems[k].Name != request.NewItemName) {
        ++k;
    }
    if (k == record.FormulaItems.size()) {
        record.ItemChannel.push_back(logdata::ComputedChannel);
        record.FormulaItems.emplace_back();
    }
    if (view.Computed.size() < record.FormulaItems.size()) {
        view.Computed.resize(record.FormulaItems.size());
    }
    logdata::FormulaItem& item = record.FormulaItems[k];
    item.Decimal = static_cast<std::int16_t>(request.DecimalPoint);
    item.Sampling = static_cast<std::int16_t>(request.SamplingTime);
    item.Max = request.Max;
    item.Name = request.NewItemName;
    item.Unit = request.UnitName;

    graph::ComputedItemView& shown = view.Computed[k];
    graph::DefaultFormulaScale(item.Max, shown.Scale);
    graph::ItemDisplay& display = shown.Display;
    display.View = 1;
    display.Color = 1;
    display.Line = 1;
    display.Point = 1;
    display.Grid = 0;
    display.Zoom = graph::DefaultFormulaScaleNumber;
    const int bottom = pictureHeight - TimeBandHeight - state.LapBarHeight;
    const int steps = shown.Scale.GridStep > 0 ? shown.Scale.AxisMax / shown.Scale.GridStep : 0;
    display.Bottom = static_cast<std::int16_t>(bottom);
    display.Top = static_cast<std::int16_t>(bottom - steps * shown.Scale.Pitch);
    display.Max = shown.Scale.AxisMax;
    display.Min = shown.Scale.AxisMin;
    return logdata::SlotCount + static_cast<int>(k);
}

bool ShowComputedItems(graph::GraphWindowState& state, load::WindowView& view) {
    for (int layer = 0; layer <= state.LastLayer; ++layer) {
        const auto index = static_cast<std::size_t>(layer);
        state.Panel.RemoveLayerItems(layer, state.Layers.Layer.at(index), state.Views.at(index));
    }
    view.DrawScales();
    const bool drawn = view.RedrawGraph();
    view.DispValues(false);
    return drawn;
}

} // namespace torvane::calc
