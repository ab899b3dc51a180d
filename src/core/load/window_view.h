#pragma once
// What loading needs beyond the window model (graph::GraphWindowState, whose layers, layer views,
// time scale, SingleFileState and lap bar height it sets): the window's widgets, reached through
// WindowView so that the rules run without them.

#include "graph/display_set.h"
#include "graph/layer_view.h"
#include "graph/window_state.h"
#include "logdata/layer.h"

#include <array>
#include <cstdint>

namespace torvane::load {

// The highest layer index: a window holds layers 0 to 2.
inline constexpr int HighestLayer = logdata::LayerCount - 1;

// The lap bar gives each open layer with lap marks a row of this height.
inline constexpr std::int32_t LapBarRowHeight = 14;

// The window's widget side of loading: the item panel, the layer selection, the drawing and the
// read-out. The desktop window implements it; tests and batch work use NoWindowView.
class WindowView {
public:
    virtual ~WindowView() = default;
    // Captions the layer's file control with the bare file name and places its item rows.
    virtual bool ShowLayerPanel(int layer) = 0;
    // Unloads the layer's item rows and its file control.
    virtual void CloseLayerPanel(int layer) = 0;
    // Marks the layer's file control and makes it the layer the commands act on.
    virtual bool SelectLayer(int layer) = 0;
    virtual bool DrawScales() = 0;
    // Rebuilds the picture; false when it could not be drawn.
    virtual bool RedrawGraph() = 0;
    // Fills the read-out; with recalculateCursor the cursor time is found again first.
    virtual void DispValues(bool recalculateCursor) = 0;
};

// A window without widgets: every step succeeds and nothing is drawn.
class NoWindowView : public WindowView {
public:
    bool ShowLayerPanel(int) override { return true; }
    void CloseLayerPanel(int) override {}
    bool SelectLayer(int) override { return true; }
    bool DrawScales() override { return true; }
    bool RedrawGraph() override { return true; }
    void DispValues(bool) override {}
};

// LapBarRowHeight for each layer from 0 to lastLayer that has lap marks.
std::int32_t LapBarHeight(const logdata::LayerSet& layers, int lastLayer);

} // namespace torvane::load
