#include "graph/trace_item.h"

#include "graph/scale.h"
#include "logdata/channels.h"
#include "logdata/values.h"
#include "shell/common.h"
#include "shell/rounding.h"

#include <algorithm>
#include <iterator>

namespace torvane::graph {
namespace {

using logdata::SlotCount;

const logdata::LayerRecord& RecordOf(const GraphWindowState& state, int layer) {
    return state.Layers.Layer.at(static_cast<std::size_t>(layer));
}

bool IsShownLayer(const GraphWindowState& state, int layer) {
    return layer >= 0 && layer <= state.LastLayer && layer < logdata::LayerCount;
}

const logdata::FormulaItem* FormulaOf(const logdata::LayerRecord& record, int index) {
    const auto k = static_cast<std::size_t>(index - SlotCount);
    return index >= SlotCount && k < record.FormulaItems.size() ? &record.FormulaItems[k] : nullptr;
}

int ChannelOf(const logdata::LayerRecord& record, int index) {
    return record.ItemChannel.at(static_cast<std::size_t>(index));
}

} // namespace

const ScaleRecord* ItemScaleOf(const GraphWindowState& state, int layer, int index) {
    if (!IsShownLayer(state, layer) || index < 0) {
        return nullptr;
    }
    const LayerView& view = state.Views.at(static_cast<std::size_t>(layer));
    if (index < SlotCount) {
        return &view.ItemScale.at(static_cast<std::size_t>(index));
    }
    const auto k = static_cast<std::size_t>(index - SlotCount);
    return k < view.Computed.size() ? &view.Computed[k].Scale : nullptr;
}

PenStyle TracePenStyle(int result, int line) {
    if (result == TraceThinned) {
        return PenStyle::DashDotDot;
    }
    if (line == 2) {
        return PenStyle::Dot;
    }
    return line == 3 ? PenStyle::DashDot : PenStyle::Solid;
}

std::vector<const std::vector<TracePoint>*> ListsToDraw(const TraceLists& lists, int point) {
    if (point == 2) {
        return {&lists.Main, &lists.Lower};
    }
    if (point == 3) {
        return {&lists.Upper, &lists.Main, &lists.Lower};
    }
    return {&lists.Main};
}

bool ItemDrawn(const GraphWindowState& state, int layer, int index, std::int32_t height) {
    if (!IsShownLayer(state, layer)) {
        return false;
    }
    const logdata::LayerRecord& record = RecordOf(state, layer);
    const ItemDisplay* display =
        ItemDisplayOf(state.Views[static_cast<std::size_t>(layer)], record, index);
    if (display == nullptr || display->View != 1) {
        return false;
    }
    if (index < SlotCount && !record.ItemExists.at(static_cast<std::size_t>(index))) {
        return false;
    }
    const ScaleRecord* scale = ItemScaleOf(state, layer, index);
    if (scale == nullptr || scale->GridStep == 0 || scale->Pitch == 0 || scale->Divisor == 0) {
        return false;
    }
    const std::int64_t fullRows =
        std::int64_t{scale->FullScale} * scale->Divisor / scale->GridStep * scale->Pitch;
    if (display->Bottom - fullRows > height - 20) {
        return false;
    }
    return !(ChannelOf(record, index) == logdata::TH &&
             record.Header.ThOpen() - record.Header.ThClose() < 1);
}

std::optional<TraceParams> TraceParamsFor(const GraphWindowState& state, int layer, int index,
                                          std::int32_t left, std::int32_t width, double start) {
    if (!IsShownLayer(state, layer)) {
        return std::nullopt;
    }
    const logdata::LayerRecord& record = RecordOf(state, layer);
    const ItemDisplay* display =
        ItemDisplayOf(state.Views[static_cast<std::size_t>(layer)], record, index);
    const ScaleRecord* scale = ItemScaleOf(state, layer, index);
    if (display == nullptr || scale == nullptr || scale->Divisor == 0 || scale->Pitch == 0) {
        return std::nullopt;
    }
    TraceParams params;
    params.Channel = ChannelOf(record, index);
    if (const logdata::FormulaItem* formula = FormulaOf(record, index)) {
        params.Sampling = formula->Sampling;
        params.File = state.Layers.StreamPath(layer, formula->Name);
    } else {
        params.Sampling = logdata::ChannelSampleTime(record.Header, params.Channel);
        params.File = state.Layers.StreamPath(layer, logdata::ChannelFile(params.Channel));
    }
    params.Left = left;
    params.Width = width;
    params.Base = display->Bottom + state.LapBarHeight;
    params.Start = start;
    params.Unit = static_cast<double>(scale->GridStep) / scale->Divisor / scale->Pitch;
    if (params.Unit <= 0.0) {
        return std::nullopt;
    }
    return params;
}

int BuildItemTrace(const GraphWindowState& state, const logger::LafTable& laf, int layer, int index,
                   const TraceParams& params, TraceLists& lists) {
    const logdata::LayerRecord& record = RecordOf(state, layer);
    if (params.Channel == logdata::LAP) {
        return BuildLapTrace(state.Layers.Lap.at(static_cast<std::size_t>(layer)), params,
                             state.Time, lists);
    }
    if (const logdata::FormulaItem* formula = FormulaOf(record, index)) {
        return BuildFormulaTrace(params, state.Time, formula->Decimal, lists);
    }
    const RawConverter convert = [&record, &laf, channel = params.Channel](double raw) {
        // Traces convert a raw 0 as well; only the value below 0 is held at 0.
        return std::max(0.0, logdata::ConvertReading(record.Header, channel, raw, laf));
    };
    return BuildTrace(params, state.Time, convert, lists);
}

std::optional<ItemLook> ItemLookOf(const GraphWindowState& state, int layer, int index) {
    if (!IsShownLayer(state, layer)) {
        return std::nullopt;
    }
    const logdata::LayerRecord& record = RecordOf(state, layer);
    const ItemDisplay* display =
        ItemDisplayOf(state.Views[static_cast<std::size_t>(layer)], record, index);
    if (display == nullptr) {
        return std::nullopt;
    }
    ItemLook look;
    look.Color = shell::ColorValue(display->Color);
    look.Line = display->Line;
    look.Point = display->Point;
    const logdata::FormulaItem* formula = FormulaOf(record, index);
    look.Name = formula != nullptr ? formula->Name
                                   : std::string(logdata::ChannelName(ChannelOf(record, index)));
    return look;
}

std::optional<std::int32_t> TraceTagRow(const std::vector<TracePoint>& main) {
    // Detonation pulses step back to their left foot, so a point on the tag column may come after
    // one beyond it: the column itself is looked for over the whole list first.
    const auto onColumn = std::ranges::find(main, TagColumn, &TracePoint::X);
    if (onColumn != main.end()) {
        return onColumn->Y - TagSize;
    }
    const auto beyond =
        std::ranges::find_if(main, [](const TracePoint& point) { return point.X > TagColumn; });
    if (beyond == main.end()) {
        return std::nullopt;
    }
    if (beyond == main.begin()) {
        return beyond->Y - TagSize;
    }
    const TracePoint& previous = *std::prev(beyond);
    if (previous.Y == beyond->Y) {
        return previous.Y - TagSize;
    }
    const double along = static_cast<double>(TagColumn - previous.X) / (beyond->X - previous.X) *
                         (beyond->Y - previous.Y);
    return static_cast<std::int32_t>(shell::RoundToInt64(along + previous.Y - TagSize));
}

} // namespace torvane::graph
