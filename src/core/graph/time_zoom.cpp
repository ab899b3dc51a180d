#include "graph/time_zoom.h"

#include "graph/scrolling.h"
#include "graph/time_axis.h"
#include "shell/rounding.h"

#include <array>
#include <span>

namespace torvane::graph {
namespace {

struct Rung {
    std::int32_t UpTo; // highest MsPerStep of the rung
    std::int32_t Next; // MsPerStep after the zoom
};

// At one column per step, the steps of expansion up to 600 ms and of reduction below 300 ms.
constexpr std::array<Rung, 6> ExpandRungs{
    {{10, 5}, {25, 10}, {50, 25}, {100, 50}, {300, 100}, {600, 300}}};
constexpr std::array<Rung, 5> ReduceRungs{{{9, 10}, {24, 25}, {49, 50}, {99, 100}, {299, 300}}};
constexpr std::int32_t CoarsestStep = 1'000'000;

void SetStep(TimeScale& scale, std::int32_t msPerStep) {
    scale.PixelsPerStep = 1;
    scale.MsPerStep = msPerStep;
    scale.MsPerGrid = GridColumns * msPerStep;
}

std::int32_t RungAfter(std::span<const Rung> rungs, std::int32_t msPerStep) {
    for (const Rung& rung : rungs) {
        if (msPerStep <= rung.UpTo) {
            return rung.Next;
        }
    }
    return 0;
}

} // namespace

void ExpandTimeScale(TimeScale& scale) {
    switch (scale.PixelsPerStep) {
    case 1:
        if (scale.MsPerStep <= BaseStepMs) {
            SetTimeZoom(scale, 2);
        } else if (const std::int32_t next = RungAfter(ExpandRungs, scale.MsPerStep)) {
            SetStep(scale, next);
        } else {
            SetStep(scale, scale.MsPerStep / 2 / BaseStepMs * BaseStepMs);
        }
        break;
    case 5:
        SetTimeZoom(scale, 3);
        break;
    case 10:
        SetTimeZoom(scale, 4);
        break;
    case 25:
        SetTimeZoom(scale, 5);
        break;
    default:
        break;
    }
}

void ReduceTimeScale(TimeScale& scale) {
    switch (scale.PixelsPerStep) {
    case 1:
        if (const std::int32_t next = RungAfter(ReduceRungs, scale.MsPerStep)) {
            SetStep(scale, next);
        } else if (scale.MsPerStep <= CoarsestStep) {
            SetStep(scale, scale.MsPerStep * 2 / BaseStepMs * BaseStepMs);
        }
        break;
    case 5:
        SetTimeZoom(scale, 1);
        break;
    case 10:
        SetTimeZoom(scale, 2);
        break;
    case 25:
        SetTimeZoom(scale, 3);
        break;
    default:
        if (scale.PixelsPerStep >= 50) {
            SetTimeZoom(scale, 4);
        }
        break;
    }
}

void ZoomTime(GraphWindowState& state, bool expand, double mouseX, std::int32_t width) {
    if (expand) {
        ExpandTimeScale(state.Time);
    } else {
        ReduceTimeScale(state.Time);
    }
    const TimeScale& time = state.Time;
    const double span = VisibleSpan(width, time);
    for (int layer = 0; layer <= state.LastLayer; ++layer) {
        logdata::LayerRecord& record = state.Layers.Layer.at(static_cast<std::size_t>(layer));
        record.TimeOffset = 0.0;
        if (record.MeasureTime <= span) {
            continue;
        }
        std::int64_t e =
            shell::RoundToInt64((mouseX - GraphLeft) / time.PixelsPerStep * time.MsPerStep);
        e = e / BaseStepMs * BaseStepMs;
        double offset = record.CursorTime - static_cast<double>(e);
        offset -= static_cast<double>(shell::RoundToInt64(offset) % time.MsPerStep);
        // Also a zoom near the end of the run jumps to its start.
        if (offset >= 0.0 && offset <= record.MeasureTime - span) {
            record.TimeOffset = offset;
        }
    }
}

} // namespace torvane::graph
