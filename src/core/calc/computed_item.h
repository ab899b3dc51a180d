#pragma once
// A computed item joins a layer of a graph window (mnuCalcu): as a new position of kind 99, or,
// when the layer already has one of the same name, in that item's place, recalculated.

#include "graph/window_state.h"
#include "load/window_view.h"

#include <string>

namespace torvane::calc {

// What the formula dialog hands the window after a successful calculation.
struct ComputedItemRequest {
    std::string NewItemName;
    std::string UnitName;
    int DecimalPoint = 0;
    int SamplingTime = 5;
    double Max = 0.0; // the scale maximum
};

// Finds the layer's computed item named exactly NewItemName, or appends a new one, and fills
// its record, display and scale: shown in colour 1, solid and thin, without grid, at scale
// number 3, its zero on the bottom row above the time band. Returns the item's position.
int StoreComputedItem(graph::GraphWindowState& state, int layer, const ComputedItemRequest& request,
                      int pictureHeight);

// Every layer's rows placed again, then the scales, the picture and the read-out. False when
// the picture could not be drawn.
bool ShowComputedItems(graph::GraphWindowState& state, load::WindowView& view);

} // namespace torvane::calc
