#include "graph/scale_column.h"

#include "graph/scale.h"
#include "logdata/channels.h"
#include "shell/number_format.h"

#include <algorithm>

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

// Rows that any picture can show, with room for a label's height: a band whose Max lies a
// billion grid steps up walks only the steps that fall in here.
constexpr std::int64_t FirstVisibleRow = -32;
constexpr std::int64_t LastVisibleRow = 32767 + 32;

std::int64_t FloorDiv(std::int64_t a, std::int64_t b) {
    return a >= 0 ? a / b : -((-a + b - 1) / b);
}

void AddItemScale(ScaleColumn& column, const ItemDisplay& display, const ScaleRecord& scale,
                  std::int32_t lapBarHeight, std::string name) {
    if (scale.GridStep <= 0) {
        return;
    }
    const bool maxOnGrid = display.Max != 0 && display.Max % scale.GridStep == 0;
    const bool minOnGrid = display.Min >= 1 && display.Min % scale.GridStep == 0;
    const std::int64_t end = maxOnGrid ? display.Max : scale.AxisMax;
    const std::int64_t begin = minOnGrid ? display.Min : scale.AxisMin;
    const std::int64_t step = scale.GridStep;
    const std::int64_t pitch = scale.Pitch;
    const std::int64_t base = std::int64_t{display.Bottom} + lapBarHeight;
    // Grid lines stand at a = i * step for 0 <= a <= end, on row base - i * pitch; those below
    // begin are not drawn.
    const std::int64_t count = end >= 0 ? end / step + 1 : 0;
    std::int64_t first = begin > 0 ? -FloorDiv(-begin, step) : 0;
    std::int64_t last = count - 1;
    if (pitch > 0) {
        first = std::max(first, -FloorDiv(LastVisibleRow - base, pitch));
        last = std::min(last, FloorDiv(base - FirstVisibleRow, pitch));
    } else {
        last = std::min(last, first + (LastVisibleRow - FirstVisibleRow));
    }
    for (std::int64_t i = first; i <= last; ++i) {
        const std::int64_t a = i * step;
        const auto y = static_cast<std::int32_t>(base - i * pitch);
        const bool labelled =
            a == begin || a == end || (scale.LabelStep != 0 && a % scale.LabelStep == 0);
        column.Lines.push_back({y, labelled});
        if (labelled) {
            const std::string value = shell::ShortestText(static_cast<double>(a) / scale.Divisor);
            column.Labels.push_back(
                {ScaleValueColumn, y - 8, shell::FormatText(value, shell::formats::FivePlaces)});
        }
    }
    const std::int64_t nameRow = base - (count - 1) * pitch - 20;
    column.Labels.push_back({ScaleNameColumn,
                             static_cast<std::int32_t>(std::clamp<std::int64_t>(
                                 nameRow, FirstVisibleRow - 1000, LastVisibleRow + 1000)),
                             std::move(name)});
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
