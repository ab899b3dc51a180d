#include "graph/scrolling.h"

#include "graph/layer_view.h"
#include "graph/time_axis.h"
#include "shell/rounding.h"

#include <algorithm>
#include <cmath>

namespace torvane::graph {
namespace {

logdata::LayerRecord& RecordOf(GraphWindowState& state, int layer) {
    return state.Layers.Layer.at(static_cast<std::size_t>(layer));
}

// Moves every layer by d; a layer that would go below 0 stops at 0.
void ShiftAll(GraphWindowState& state, double d) {
    for (int layer = 0; layer <= state.LastLayer; ++layer) {
        logdata::LayerRecord& record = RecordOf(state, layer);
        record.TimeOffset = std::max(record.TimeOffset + d, 0.0);
    }
}

// Moves a layer back by `step`; at or before the start it stands at 0.
void ShiftBack(logdata::LayerRecord& record, double step) {
    const double offset = record.TimeOffset - step;
    record.TimeOffset = offset > 0.0 ? offset : 0.0;
}

} // namespace

double VisibleSpan(std::int32_t width, const TimeScale& scale) {
    return static_cast<double>(width - 100) / scale.PixelsPerStep * scale.MsPerStep;
}

double MaxOffset(const GraphWindowState& state, int layer, std::int32_t width) {
    return state.Layers.Layer.at(static_cast<std::size_t>(layer)).MeasureTime -
           VisibleSpan(width, state.Time);
}

void EndBoxMove(GraphWindowState& state, std::int32_t boxLeft, std::int32_t stripWidth) {
    if (stripWidth <= 0 || state.ActiveLayer < 0 || state.ActiveLayer > state.LastLayer) {
        return;
    }
    const double v = static_cast<double>(boxLeft - StripLeft) / stripWidth * state.ScrollSpan;
    // The offset lands on the step grid so that columns keep their times.
    const double onGrid = v - static_cast<double>(shell::RoundToInt64(v) % state.Time.MsPerStep);
    ShiftAll(state, onGrid - RecordOf(state, state.ActiveLayer).TimeOffset);
}

ScrollBox EndBoxZoom(GraphWindowState& state, DragState edge, ScrollBox box, std::int32_t mouseX,
                     std::int32_t stripWidth, std::int32_t graphWidth) {
    if (edge == DragState::BoxLeftEdge) {
        const std::int32_t right = box.Left + box.Width;
        box.Width = std::max(right - mouseX, MinBoxWidth);
        box.Left = right - box.Width;
    } else {
        box.Width = std::max(mouseX - box.Left, MinBoxWidth);
    }
    if (stripWidth <= 0 || graphWidth <= 100) {
        return box;
    }
    const double msPerPixel = std::min(static_cast<double>(state.ScrollSpan) / stripWidth *
                                           box.Width / (graphWidth - 100),
                                       1'000'000.0);
    if (msPerPixel <= 1.0) {
        SetTimeZoom(state.Time, 2);
    } else if (msPerPixel >= 2.0 && msPerPixel < 5.0) {
        SetTimeZoom(state.Time, 1);
    } else {
        const auto q = static_cast<std::int32_t>(shell::RoundToInt64(msPerPixel) / 5);
        state.Time = {1, (q + 1) * 500, (q + 1) * 5};
    }
    EndBoxMove(state, box.Left, stripWidth);
    return box;
}

void EndTraceDrag(GraphWindowState& state, ItemRef item, std::int32_t dx, std::int32_t dy) {
    LayerView& view = state.Views.at(static_cast<std::size_t>(item.Layer));
    if (ItemDisplay* display = ItemDisplayOf(view, RecordOf(state, item.Layer), item.Position)) {
        display->Top = static_cast<std::int16_t>(display->Top + dy);
        display->Bottom = static_cast<std::int16_t>(display->Bottom + dy);
    }
    const double e = static_cast<double>(dx / state.Time.PixelsPerStep * state.Time.MsPerStep);
    for (int layer = 0; layer <= state.LastLayer; ++layer) {
        logdata::LayerRecord& record = RecordOf(state, layer);
        record.TimeOffset = record.TimeOffset <= e ? 0.0 : record.TimeOffset - e;
    }
}

void BeginBoxDrag(GraphWindowState& state, DragState drag) {
    state.DragState = drag;
}

ScrollBox EndBoxDrag(GraphWindowState& state, DragState drag, ScrollBox box, std::int32_t mouseX,
                     std::int32_t stripWidth, std::int32_t graphWidth) {
    state.DragState = DragState::None;
    if (drag != DragState::BoxMove) {
        return EndBoxZoom(state, drag, box, mouseX, stripWidth, graphWidth);
    }
    EndBoxMove(state, box.Left, stripWidth);
    state.SingleFileState = SingleFileState::Cleared;
    return box;
}

void BeginTraceDrag(GraphWindowState& state) {
    state.DragState = DragState::TraceDrag;
}

void ReleaseTraceDrag(GraphWindowState& state, std::int32_t dx, std::int32_t dy) {
    if (const ItemRow* row = state.Panel.MarkedRow()) {
        EndTraceDrag(state, {row->Layer, row->Position}, dx, dy);
    }
    state.DragState = DragState::None;
    state.SingleFileState = SingleFileState::Cleared;
}

void DropTraceDrag(GraphWindowState& state) {
    state.DragState = DragState::None;
}

void BeginHold(GraphWindowState& state) {
    state.DragState = DragState::HeldScroll;
}

bool Holding(const GraphWindowState& state) {
    return state.DragState == DragState::HeldScroll;
}

void EndHold(GraphWindowState& state) {
    state.DragState = DragState::None;
}

void AnswerLayerShift(GraphWindowState& state, bool shift) {
    if (shift) {
        state.ShiftAccepted = true;
    }
    EndHold(state);
}

AutoScrollResult AutoScrollStep(GraphWindowState& state, bool linkLayers, std::int32_t width,
                                std::int32_t height) {
    if (state.MouseX < 100 || state.MouseX > width || state.MouseY < 0 ||
        state.MouseY > height - 20) {
        return AutoScrollResult::Waited;
    }
    // The further from the middle, the faster: one step per 10 columns.
    const double step =
        static_cast<double>(std::abs(state.MouseX - state.GraphMidX) / 10) * state.Time.MsPerStep;
    const bool forward = state.MouseX >= state.GraphMidX;
    const bool linked = linkLayers && state.LastLayer > 0;
    const auto atEnd = [&](int layer) {
        const double offset = RecordOf(state, layer).TimeOffset;
        return forward ? offset + step >= MaxOffset(state, layer, width) : step >= offset;
    };
    const auto move = [&](int layer) {
        logdata::LayerRecord& record = RecordOf(state, layer);
        if (!forward) {
            ShiftBack(record, step);
        } else if (!atEnd(layer)) {
            record.TimeOffset += step;
        }
    };
    if (!linked) {
        move(state.ActiveLayer);
        return AutoScrollResult::Scrolled;
    }
    if (!state.ShiftAccepted) {
        int stopping = 0;
        for (int layer = 0; layer <= state.LastLayer; ++layer) {
            stopping += atEnd(layer) ? 1 : 0;
        }
        // Some stop and others go on: that changes their distance, which the operator decides.
        if (stopping >= 1 && stopping <= state.LastLayer) {
            return AutoScrollResult::AskShift;
        }
    }
    for (int layer = 0; layer <= state.LastLayer; ++layer) {
        move(layer);
    }
    return AutoScrollResult::Scrolled;
}

bool ScrollButtonStep(GraphWindowState& state, int index, std::int32_t width) {
    const double step =
        static_cast<double>(state.Time.PixelsPerStep == 1 ? 5 : 1) * state.Time.MsPerStep;
    if (index == 1) {
        for (int layer = 0; layer <= state.LastLayer; ++layer) {
            logdata::LayerRecord& record = RecordOf(state, layer);
            if (record.TimeOffset + step >= MaxOffset(state, layer, width)) {
                break;
            }
            record.TimeOffset += step;
        }
        return true;
    }
    if (RecordOf(state, state.ActiveLayer).TimeOffset <= 0.0) {
        return false;
    }
    for (int layer = 0; layer <= state.LastLayer; ++layer) {
        ShiftBack(RecordOf(state, layer), step);
    }
    return true;
}

} // namespace torvane::graph
