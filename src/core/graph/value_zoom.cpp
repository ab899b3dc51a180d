#include "graph/value_zoom.h"

#include "graph/layer_view.h"
#include "graph/scale.h"
#include "logdata/channels.h"
#include "shell/rounding.h"

namespace torvane::graph {

bool ZoomItemValue(GraphWindowState& state, ItemRef item, bool expand, double mouseY) {
    const logdata::LayerRecord& record =
        state.Layers.Layer.at(static_cast<std::size_t>(item.Layer));
    LayerView& view = state.Views.at(static_cast<std::size_t>(item.Layer));
    ItemDisplay* display = ItemDisplayOf(view, record, item.Position);
    ScaleRecord* scale = ItemScaleOf(view, record, item.Position);
    if (display == nullptr || scale == nullptr || scale->Pitch == 0 || scale->GridStep == 0) {
        return false;
    }
    const int zoom = display->Zoom + (expand ? 1 : -1);
    if (zoom < 0 || zoom > MaxScaleNumber) {
        return false;
    }
    // The axis value under the mouse, in whole grid steps.
    const std::int64_t under =
        shell::RoundToInt64(display->Bottom - mouseY) / scale->Pitch * scale->GridStep;

    ScaleRecord next = *scale;
    const bool filled =
        item.Position >= logdata::SlotCount
            ? FormulaScale(record.FormulaItems
                               .at(static_cast<std::size_t>(item.Position - logdata::SlotCount))
                               .Max,
                           zoom, next)
            : ScaleFor(record.ItemChannel.at(static_cast<std::size_t>(item.Position)), zoom, next);
    if (!filled || next.GridStep == 0) {
        return false;
    }
    display->Zoom = static_cast<std::uint8_t>(zoom);
    *scale = next;
    display->Bottom = static_cast<std::int16_t>(
        shell::RoundToInt64(mouseY + static_cast<double>(under) / next.GridStep * next.Pitch));
    display->Top =
        static_cast<std::int16_t>(display->Bottom - next.AxisMax / next.GridStep * next.Pitch);
    return true;
}

} // namespace torvane::graph
