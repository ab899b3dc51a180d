#include "graph/scroll_strip.h"

#include "logdata/channels.h"
#include "logdata/stream_reader.h"
#include "logdata/values.h"
#include "shell/rounding.h"

#include <algorithm>
#include <array>

namespace torvane::graph {
namespace {

constexpr std::int32_t SampleColumns = 3;

// Raw value that reaches the top of the strip, for Ne, TH and VFW.
constexpr std::array<double, 3> StripFullScale{1500.0, 255.0, 400.0};

std::int32_t Round32(double value) {
    return static_cast<std::int32_t>(shell::RoundToInt64(value));
}

const logdata::LayerRecord& ActiveRecord(const GraphWindowState& state) {
    return state.Layers.Layer.at(static_cast<std::size_t>(state.ActiveLayer));
}

} // namespace

std::vector<StripSample> StripSamples(std::int64_t sampleCount, std::int32_t width) {
    std::int64_t count = width / SampleColumns;
    std::int64_t group = 1;
    std::int32_t gap = SampleColumns;
    std::int64_t spare = 0;
    if (sampleCount > count) {
        group = count > 0 ? sampleCount / count : 0;
    } else if (sampleCount < count) {
        count = sampleCount;
        if (count > 0) {
            gap = static_cast<std::int32_t>(width / count);
            spare = width % count;
        }
    }
    std::vector<StripSample> samples;
    if (group == 0) {
        return samples;
    }
    samples.reserve(static_cast<std::size_t>(count));
    std::int32_t x = 0;
    for (std::int64_t k = 0; k < count; ++k) {
        samples.push_back({k * group + 1, x});
        x += gap + (k < spare ? 1 : 0);
    }
    return samples;
}

ScrollStrip BuildScrollStrip(GraphWindowState& state, ScrollBox box, std::int32_t stripWidth) {
    ScrollStrip strip;
    strip.Box = MoveScrollBox(box, 0, 0);
    const logdata::LayerRecord& record = ActiveRecord(state);
    const int channel = record.ScrollItem;
    if (channel < 0 || channel >= static_cast<int>(StripFullScale.size())) {
        return strip;
    }
    logdata::StreamReader reader(state.Layers.StreamPath(
        state.ActiveLayer,
        logdata::StreamNames.at(static_cast<std::size_t>(logdata::ChannelStream(channel)))));
    const std::int64_t sampleCount = reader.ByteLength() / 2;
    state.ScrollSpan =
        static_cast<std::int32_t>(logdata::ChannelSampleTime(record.Header, channel) * sampleCount);
    strip.ScrollSpan = state.ScrollSpan;
    const double fullScale = StripFullScale.at(static_cast<std::size_t>(channel));
    for (const StripSample& sample : StripSamples(sampleCount, stripWidth)) {
        std::int16_t raw = 0;
        reader.ReadWords16(sample.Sample, std::span(&raw, 1));
        strip.Points.push_back(
            {sample.X, StripTraceRows - Round32(raw / fullScale * StripTraceRows)});
    }
    return strip;
}

ScrollBox MoveScrollBox(ScrollBox box, std::int32_t left, std::int32_t width) {
    if (left >= StripLeft) {
        box.Left = left;
    }
    if (width != 0) {
        box.Width = std::max(width, MinBoxWidth);
    }
    return box;
}

std::int32_t ScrollBoxLeft(const GraphWindowState& state, std::int32_t stripWidth) {
    if (state.ScrollSpan <= 0) {
        return StripLeft;
    }
    return Round32(ActiveRecord(state).TimeOffset / state.ScrollSpan * stripWidth + StripLeft);
}

ScrollBox DrawScrollBox(const GraphWindowState& state, ScrollBox box, std::int32_t graphWidth,
                        std::int32_t stripWidth) {
    const TimeScale& time = state.Time;
    const double span =
        static_cast<double>((graphWidth - 100) / time.PixelsPerStep + 1) * time.MsPerStep;
    std::int32_t width = stripWidth;
    if (state.ScrollSpan > 0 && span < state.ScrollSpan) {
        width = Round32(static_cast<double>(stripWidth) / state.ScrollSpan * span);
    }
    return MoveScrollBox(box, ScrollBoxLeft(state, stripWidth), width);
}

ScrollStrip RebuildStripAndBox(GraphWindowState& state, ScrollBox box, std::int32_t graphWidth,
                               std::int32_t stripWidth) {
    ScrollStrip strip = BuildScrollStrip(state, box, stripWidth);
    strip.Box = DrawScrollBox(state, strip.Box, graphWidth, stripWidth);
    return strip;
}

DragState BoxPressState(std::int32_t width, std::int32_t x) {
    const std::int32_t edge = std::clamp(width / 3, 3, 6);
    if (x < edge) {
        return DragState::BoxLeftEdge;
    }
    if (x >= width - edge) {
        return DragState::BoxRightEdge;
    }
    return DragState::BoxMove;
}

} // namespace torvane::graph
