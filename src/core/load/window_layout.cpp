#include "load/window_layout.h"

#include "graph/layer_view.h"
#include "layout/default_layout.h"

namespace torvane::load {

void ApplyLayout(graph::GraphWindowState& state, const graph::DisplaySet& display,
                 WindowView& view) {
    for (int layer = 0; layer <= state.LastLayer; ++layer) {
        const auto index = static_cast<std::size_t>(layer);
        const logdata::LayerRecord& record = state.Layers.Layer.at(index);
        graph::LayerView& layerView = state.Views.at(index);
        layerView.Display = display;
        graph::FillItemScales(layerView, record);
        // Layer by layer from the top, so that each layer's rows start below those above it.
        state.Panel.RemoveLayerItems(layer, record, layerView);
    }
    state.Time = display.Time;
    view.DrawScales();
    view.RedrawGraph();
    // The same column now stands for another time.
    view.DispValues(true);
}

bool ApplyStoredLayout(graph::GraphWindowState& state, layout::LayoutStore& store, int index,
                       WindowView& view) {
    graph::DisplaySet display;
    if (!store.GetLayout(index, display)) {
        return false;
    }
    ApplyLayout(state, display, view);
    KeepAsLastDisplay(state, store);
    return true;
}

void ApplyDefaultLayout(graph::GraphWindowState& state, layout::LayoutStore& store,
                        WindowView& view) {
    ApplyLayout(state, layout::DefaultLayout(), view);
    KeepAsLastDisplay(state, store);
}

void KeepAsLastDisplay(const graph::GraphWindowState& state, layout::LayoutStore& store) {
    store.SetLayout(0, state.Views[0].Display, state.Time);
}

void PendActiveDisplay(const graph::GraphWindowState& state, layout::LayoutStore& store) {
    store.SetPendingLayout(state.Views.at(static_cast<std::size_t>(state.ActiveLayer)).Display,
                           state.Time);
}

} // namespace torvane::load
