#pragma once
// How one layer of a graph window is shown: its copy of the display settings, the scale of each
// slot, and the display and scale of each computed item. The layer's data (LayerRecord) says
// what exists; this says how it looks.

#include "graph/display_set.h"
#include "graph/scale.h"
#include "logdata/layer.h"

#include <array>
#include <vector>

namespace torvane::graph {

// A computed item's own display and scale; the window keeps one beside each FormulaItem of the
// layer, in the same order.
struct ComputedItemView {
    ItemDisplay Display;
    ScaleRecord Scale;
};

struct LayerView {
    DisplaySet Display;
    std::array<ScaleRecord, logdata::SlotCount> ItemScale{};
    std::vector<ComputedItemView> Computed;
};

// Fills the scale of each of the twelve slots from its channel and the scale number that the
// layer's DisplaySet holds for that channel.
void FillItemScales(LayerView& view, const logdata::LayerRecord& record);

// A further layer starts with the main layer's display settings and slot scales, even when its
// channels differ; it has no computed items yet.
LayerView NewLayerView(const LayerView& main);

// The slot the scroll strip follows: TH when it exists, else Ne, else VFW, else -1 (none).
std::int32_t ChooseScrollItem(const logdata::LayerRecord& record);

// The display of item `index` of a layer (a slot, or 12 and up for computed items); null when
// the index names nothing.
const ItemDisplay* ItemDisplayOf(const LayerView& view, const logdata::LayerRecord& record,
                                 int index);
ItemDisplay* ItemDisplayOf(LayerView& view, const logdata::LayerRecord& record, int index);
// The scale of item `index` of a layer, from the same places; null when the index names nothing.
const ScaleRecord* ItemScaleOf(const LayerView& view, const logdata::LayerRecord& record,
                               int index);
ScaleRecord* ItemScaleOf(LayerView& view, const logdata::LayerRecord& record, int index);

} // namespace torvane::graph
