#include "graph/cursor.h"

#include "graph/time_axis.h"
#include "shell/rounding.h"

namespace torvane::graph {
namespace {

// While these drags run, a timer draws; the move only records the column.
bool TimerDraws(DragState drag) {
    return drag == DragState::TraceDrag || drag == DragState::CommentLeader ||
           drag == DragState::HeldScroll;
}

} // namespace

std::int32_t CursorColumn(double mouseX, std::int32_t width, const TimeScale& scale) {
    const std::int32_t pixels = scale.PixelsPerStep;
    const std::int32_t end = width / pixels * pixels;
    const auto x = static_cast<std::int32_t>(shell::RoundToInt64(mouseX + CursorHotSpot));
    if (x <= GraphLeft) {
        return GraphLeft;
    }
    if (x < end) {
        return (x - GraphLeft) / pixels * pixels + GraphLeft;
    }
    return end - pixels;
}

CursorMove MoveCursor(GraphWindowState& state, double mouseX, double mouseY, std::int32_t width) {
    state.MouseX = static_cast<std::int32_t>(shell::RoundToInt64(mouseX));
    state.MouseY = static_cast<std::int32_t>(shell::RoundToInt64(mouseY));
    const std::int32_t column = CursorColumn(mouseX, width, state.Time);
    if (column == state.CursorX) {
        return {};
    }
    state.CursorX = column;
    return {true, !TimerDraws(state.DragState)};
}

bool GraphTakesPress(const GraphWindowState& state, double mouseX, double mouseY) {
    return state.DragState == DragState::None && mouseX + CursorHotSpot >= GraphLeft &&
           mouseY >= state.LapBarHeight;
}

} // namespace torvane::graph
