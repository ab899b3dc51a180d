#include "graph/range_tool.h"

namespace torvane::graph {
namespace {

double CursorTimeOfMain(const GraphWindowState& state) {
    return state.Layers.Layer[0].CursorTime;
}

bool MarkingRange(const GraphWindowState& state) {
    return !state.DeltaMode && state.RangeState == RangeState::StartMarked;
}

} // namespace

void PressRangeTool(GraphWindowState& state) {
    if (state.DeltaMode) {
        state.DeltaMark = CursorTimeOfMain(state);
    } else if (state.RangeState != RangeState::StartMarked) {
        state.RangeStart = CursorTimeOfMain(state);
        state.RangeEnd = 0.0;
        state.RangeState = RangeState::StartMarked;
    }
}

bool ReleaseRangeTool(GraphWindowState& state) {
    if (!MarkingRange(state)) {
        return false;
    }
    const double cursor = CursorTimeOfMain(state);
    if (state.RangeStart == cursor) {
        state.RangeState = RangeState::None;
    } else if (state.RangeStart > cursor) {
        state.RangeEnd = state.RangeStart;
        state.RangeStart = cursor;
        state.RangeState = RangeState::Complete;
    } else {
        state.RangeEnd = cursor;
        state.RangeState = RangeState::Complete;
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
