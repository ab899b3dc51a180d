#include "graph/scale_column.h"

#include "graph/scale.h"
#include "logdata/channels.h"
#include "shell/number_format.h"

namespace torvane::graph {
namespace {

std::string ItemLabel(const logdata::LayerRecord& record, int index) {
    if (index >= logdata::SlotCount) {
        const auto& formula =
            record.FormulaItems.at(static_cast<std::size_t>(index) - logdata::SlotCount);
        return formula.Name + "[" + formula.Unit + "]";
    }
    return std::string(
        logdata::ChannelLabel(record.ItemChannel.at(static_cast<std::size_t>(index))));
}

void AddItemScale(ScaleColumn& column, const ItemDisplay& display, const ScaleRecord& scale,
                  std::int32_t lapBarHeight, std::string name) {
    if (scale.GridStep <= 0) {
        return;
    }
    const bool maxOnGrid = display.Max != 0 && display.Max % scale.GridStep == 0;
    const bool minOnGrid = display.Min >= 1 && display.Min % scale.GridStep == 0;
    const std::int32_t end = maxOnGrid ? display.Max : scale.AxisMax;
    const std::int32_t begin = minOnGrid ? display.Min : scale.AxisMin;
    std::int32_t y = display.Bottom + lapBarHeight;
    for (std::int32_t a = 0; a <= end; a += scale.GridStep, y -= scale.Pitch) {
        if (a < begin) {
            continue;
        }
        const bool labelled =
            a == begin || a == end || (scale.LabelStep != 0 && a % scale.LabelStep == 0);
        column.Lines.push_back({y, labelled});
        if (labelled) {
            const std::string value = shell::ShortestText(static_cast<double>(a) / scale.Divisor);
            column.Labels.push_back(
                {ScaleValueColumn, y - 8, shell::FormatText(value, shell::formats::FivePlaces)});
        }
    }
    column.Labels.push_back({ScaleNameColumn, y + scale.Pitch - 20, std::move(name)});
}

} // namespace

ScaleColumn ScaleColumnOf(const GraphWindowState& state) {
    ScaleColumn column;
    const logdata::LayerRecord& record = state.Layers.Layer[0];
    const LayerView& view = state.Views[0];
    for (std::size_t i = 0; i < record.ItemChannel.size(); ++i) {
        const int index = static_cast<int>(i);
        const ItemDisplay* display = ItemDisplayOf(view, record, index);
        if (display == nullptr || display->View != 1 || display->Grid != 1) {
            continue;
        }
        if (index < logdata::SlotCount) {
            if (!record.ItemExists[i]) {
                continue;
            }
            AddItemScale(column, *display, view.ItemScale[i], state.LapBarHeight,
                         ItemLabel(record, index));
        } else if (i - logdata::SlotCount < view.Computed.size() &&
                   i - logdata::SlotCount < record.FormulaItems.size()) {
            AddItemScale(column, *display, view.Computed[i - logdata::SlotCount].Scale,
                         state.LapBarHeight, ItemLabel(record, index));
        }
    }
    return column;
}

} // namespace torvane::graph
