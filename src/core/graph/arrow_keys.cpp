#include "graph/arrow_keys.h"

#include "graph/scrolling.h"
#include "shell/common.h"

#include <algorithm>

namespace torvane::graph {
namespace {

logdata::LayerRecord& RecordOf(GraphWindowState& state, int layer) {
    return state.Layers.Layer.at(static_cast<std::size_t>(layer));
}

double PageStep(const GraphWindowState& state) {
    return static_cast<double>(
        shell::LeastCommonMultiple(state.Time.MsPerStep, state.Layers.MinSampleTime));
}

// The layers that a shift moves: all of them when linked, else the active one.
std::pair<int, int> ShiftedLayers(const GraphWindowState& state, bool linkLayers) {
    if (linkLayers && state.LastLayer > 0) {
        return {0, state.LastLayer};
    }
    return {state.ActiveLayer, state.ActiveLayer};
}

} // namespace

ArrowResult PressArrowRight(GraphWindowState& state, bool linkLayers, std::int32_t width) {
    const double page = PageStep(state);
    const double fine = state.Layers.MinSampleTime;
    for (int layer = 0; layer <= state.LastLayer; ++layer) {
        if (RecordOf(state, layer).TimeOffset + page > MaxOffset(state, layer, width)) {
            return ArrowResult::Nothing;
        }
    }
    for (int layer = 0; layer <= state.LastLayer; ++layer) {
        logdata::LayerRecord& record = RecordOf(state, layer);
        if (record.CursorTime + fine <= record.MeasureTime) {
            record.CursorTime += fine;
        }
    }
    if (RecordOf(state, state.ActiveLayer).CursorTime - state.CursorAxisTime < page) {
        return ArrowResult::ReadOut;
    }
    const auto [first, last] = ShiftedLayers(state, linkLayers);
    for (int layer = first; layer <= last; ++layer) {
        logdata::LayerRecord& record = RecordOf(state, layer);
        if (record.TimeOffset + page <= MaxOffset(state, layer, width)) {
            record.TimeOffset += page;
        }
    }
    return ArrowResult::Shifted;
}

ArrowResult PressArrowLeft(GraphWindowState& state, bool linkLayers) {
    for (int layer = 0; layer <= state.LastLayer; ++layer) {
        if (RecordOf(state, layer).TimeOffset == 0.0) {
            return ArrowResult::Nothing;
        }
    }
    const double page = PageStep(state);
    for (int layer = 0; layer <= state.LastLayer; ++layer) {
        logdata::LayerRecord& record = RecordOf(state, layer);
        record.CursorTime = std::max(record.CursorTime - state.Layers.MinSampleTime, 0.0);
    }
    if (state.CursorAxisTime - RecordOf(state, state.ActiveLayer).CursorTime < page) {
        return ArrowResult::ReadOut;
    }
    const auto [first, last] = ShiftedLayers(state, linkLayers);
    for (int layer = first; layer <= last; ++layer) {
        logdata::LayerRecord& record = RecordOf(state, layer);
        record.TimeOffset = std::max(record.TimeOffset - page, 0.0);
    }
    return ArrowResult::Shifted;
}

} // namespace torvane::graph
