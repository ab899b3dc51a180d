#include "graph/layer_view.h"

#include <utility>

namespace torvane::graph {

void FillItemScales(LayerView& view, const logdata::LayerRecord& record) {
    for (std::size_t slot = 0; slot < view.ItemScale.size() && slot < record.ItemChannel.size();
         ++slot) {
        const int channel = record.ItemChannel[slot];
        if (channel >= 0 && channel < logdata::ChannelCount) {
            ScaleFor(channel, view.Display.Items[static_cast<std::size_t>(channel)].Zoom,
                     view.ItemScale[slot]);
        }
    }
}

LayerView NewLayerView(const LayerView& main) {
    LayerView view;
    view.Display = main.Display;
    view.ItemScale = main.ItemScale;
    return view;
}

std::int32_t ChooseScrollItem(const logdata::LayerRecord& record) {
    for (const int slot : {logdata::TH, logdata::Ne, logdata::VFW}) {
        if (record.ItemExists[static_cast<std::size_t>(slot)]) {
            return slot;
        }
    }
    return -1;
}

const ItemDisplay* ItemDisplayOf(const LayerView& view, const logdata::LayerRecord& record,
                                 int index) {
    if (index < 0 || static_cast<std::size_t>(index) >= record.ItemChannel.size()) {
        return nullptr;
    }
    if (index >= logdata::SlotCount) {
        const auto k = static_cast<std::size_t>(index - logdata::SlotCount);
        return k < view.Computed.size() ? &view.Computed[k].Display : nullptr;
    }
    const int channel = record.ItemChannel[static_cast<std::size_t>(index)];
    if (channel < 0 || channel >= logdata::ChannelCount) {
        return nullptr;
    }
    return &view.Display.Items[static_cast<std::size_t>(channel)];
}

ItemDisplay* ItemDisplayOf(LayerView& view, const logdata::LayerRecord& record, int index) {
    return const_cast<ItemDisplay*>(ItemDisplayOf(std::as_const(view), record, index));
}

const ScaleRecord* ItemScaleOf(const LayerView& view, const logdata::LayerRecord& record,
                               int index) {
    if (index < 0 || static_cast<std::size_t>(index) >= record.ItemChannel.size()) {
        return nullptr;
    }
    if (index >= logdata::SlotCount) {
        const auto k = static_cast<std::size_t>(index - logdata::SlotCount);
        return k < view.Computed.size() ? &view.Computed[k].Scale : nullptr;
    }
    return &view.ItemScale[static_cast<std::size_t>(index)];
}

ScaleRecord* ItemScaleOf(LayerView& view, const logdata::LayerRecord& record, int index) {
    return const_cast<ScaleRecord*>(ItemScaleOf(std::as_const(view), record, index));
}

} // namespace torvane::graph
