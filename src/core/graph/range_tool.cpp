#include "graph/range_tool.h"

namespace torvane::graph {
namespace {

double CursorTimeOfMain(const GraphWindowState& state) {
    return state.Layers.Layer[0].CursorTime;
}

bool MarkingRange(const GraphWindowState& state) {
    return !state.DeltaMode && state.RangeState == 1;
}

} // namespace

void PressRangeTool(GraphWindowState& state) {
    if (state.DeltaMode) {
        state.DeltaMark = CursorTimeOfMain(state);
    } else if (state.RangeState != 1) {
        state.RangeStart = CursorTimeOfMain(state);
        state.RangeEnd = 0.0;
        state.RangeState = 1;
    }
}

bool ReleaseRangeTool(GraphWindowState& state) {
    if (!MarkingRange(state)) {
        return false;
    }
    const double cursor = CursorTimeOfMain(state);
    if (state.RangeStart == cursor) {
        state.RangeState = 0;
    } else if (state.RangeStart > cursor) {
        state.RangeEnd = state.RangeStart;
        state.RangeStart = cursor;
        state.RangeState = 2;
    } else {
        state.RangeEnd = cursor;
        state.RangeState = 2;
    }
    return true;
}

bool RangeEdgeScrolls(const GraphWindowState& state, std::int32_t width) {
    if (!MarkingRange(state)) {
        return false;
    }
    const std::int32_t pixels = state.Time.PixelsPerStep;
    const std::int32_t end = width / pixels * pixels;
    return state.CursorX > end - pixels - 20 || state.CursorX < 120;
}

} // namespace torvane::graph
