#include "graph/picture_geometry.h"

#include "graph/time_axis.h"
#include "shell/rounding.h"

#include <algorithm>

namespace torvane::graph {
namespace {

double LeftEdgeTime(const GraphWindowState& state) {
    return state.Layers.Layer[0].TimeOffset;
}

std::int32_t ColumnOf(const GraphWindowState& state, double time) {
    return ColumnOfTime(time, LeftEdgeTime(state), state.Time);
}

} // namespace

TimeGrid TimeGridOf(double timeOffset, const TimeScale& scale, std::int32_t width) {
    TimeGrid grid;
    if (scale.MsPerGrid <= 0 || scale.MsPerStep <= 0) {
        return grid;
    }
    const std::int64_t r = shell::RoundToInt64(timeOffset) % scale.MsPerGrid;
    double gridTime = timeOffset - static_cast<double>(r);
    const std::int64_t first = GraphLeft + GridColumns - r / scale.MsPerStep * scale.PixelsPerStep;
    // A layout's grid can stand far wider than its steps; the lines left of the picture are
    // counted, not walked.
    std::int64_t x = first;
    if (x < 0) {
        const std::int64_t hidden = -x / GridColumns;
        x += hidden * GridColumns;
        gridTime += static_cast<double>(hidden) * scale.MsPerGrid;
    }
    for (; x <= width; x += GridColumns) {
        const auto column = static_cast<std::int32_t>(x);
        grid.Lines.push_back(column);
        if (x != first || x - GridColumns / 2 > GraphLeft) {
            grid.HalfLines.push_back(column - GridColumns / 2);
        }
        gridTime += scale.MsPerGrid;
        grid.Labels.push_back({column, TimeLabelRise, TimeLabel(shell::RoundToInt64(gridTime))});
    }
    return grid;
}

std::optional<PixelRect> RangeBandOf(const GraphWindowState& state, std::int32_t width,
                                     std::int32_t height) {
    const double leftEdge = LeftEdgeTime(state);
    const double rightEdge = RightEdgeTime(leftEdge, width, state.Time);
    std::int32_t left = GraphLeft;
    std::int32_t right = width;
    if (state.RangeState == RangeState::StartMarked) {
        if (state.RangeStart <= leftEdge) {
            right = state.CursorX;
        } else if (state.RangeStart > rightEdge) {
            left = state.CursorX;
        } else {
            const std::int32_t start = ColumnOf(state, state.RangeStart);
            left = std::min(start, state.CursorX);
            right = std::max(start, state.CursorX);
        }
    } else if (state.RangeState == RangeState::Complete) {
        const auto inside = [&](double t) {
            return t >= leftEdge && t <= rightEdge;
        };
        const bool covers = state.RangeStart <= leftEdge && state.RangeEnd >= rightEdge;
        if (!inside(state.RangeStart) && !inside(state.RangeEnd) && !covers) {
            return std::nullopt;
        }
        if (state.RangeStart > leftEdge) {
            left = ColumnOf(state, state.RangeStart);
        }
        if (state.RangeEnd < rightEdge) {
            right = ColumnOf(state, state.RangeEnd);
        }
    } else {
        return std::nullopt;
    }
    if (left >= right) {
        return std::nullopt;
    }
    const std::int32_t top = state.LapBarHeight;
    return PixelRect{left, top, right - left, height - TimeBandHeight - top};
}

std::optional<std::int32_t> DeltaMarkColumn(const GraphWindowState& state, std::int32_t width) {
    const double leftEdge = LeftEdgeTime(state);
    if (!state.DeltaMode || !(state.DeltaMark > 0.0) || !(state.DeltaMark > leftEdge) ||
        !(state.DeltaMark < RightEdgeTime(leftEdge, width, state.Time))) {
        return std::nullopt;
    }
    return ColumnOf(state, state.DeltaMark);
}

std::uint32_t BandColorOf(std::uint32_t redMask, std::uint32_t greenMask, std::uint32_t blueMask) {
    const double sum = 0.75 * redMask + 0.75 * greenMask + 0.75 * blueMask;
    return static_cast<std::uint32_t>(shell::RoundToInt64(sum));
}

} // namespace torvane::graph
