#include "graph/hit_test.h"

#include "graph/layer_view.h"
#include "graph/time_axis.h"
#include "graph/trace_item.h"
#include "shell/common.h"

#include <algorithm>
#include <array>
#include <vector>

namespace torvane::graph {
namespace {

constexpr int ColorIndexCount = 14;
// After the trace colours come two greys and the cursor's colour, which the picture uses for
// its grid and cursor. A scan that meets one of them first stops there as on a trace; no colour
// index names them, so they give red.
constexpr std::array<std::uint32_t, 3> OtherDisplayedColors{0xC0C0C0, 0x808080, 0xFF8000};
static_assert(ColorIndexCount + OtherDisplayedColors.size() == DisplayedColorCount);
constexpr std::uint32_t Black = 0x000000;
constexpr std::uint32_t White = 0xFFFFFF;

// Whether the row's band, widened by the reach, covers row y.
bool BandCovers(const GraphWindowState& state, const ItemRow& row, int y) {
    const auto layer = static_cast<std::size_t>(row.Layer);
    const logdata::LayerRecord& record = state.Layers.Layer.at(layer);
    const ItemDisplay* display = ItemDisplayOf(state.Views.at(layer), record, row.Position);
    const ScaleRecord* scale = ItemScaleOf(state.Views.at(layer), record, row.Position);
    if (display == nullptr || scale == nullptr || scale->GridStep == 0) {
        return false;
    }
    const std::int32_t bottom = display->Bottom + state.LapBarHeight;
    const std::int32_t top =
        bottom - scale->FullScale * scale->Divisor / scale->GridStep * scale->Pitch;
    return y >= top - HitReach && y <= bottom + HitReach;
}

} // namespace

std::uint32_t ColorAtPoint(int x, int y, const PixelReader& pixels,
                           std::span<const std::uint32_t> displayed) {
    for (int dx = -HitReach; dx <= HitReach; ++dx) {
        for (int dy = -HitReach; dy <= HitReach; ++dy) {
            const std::uint32_t color = pixels(x + dx, y + dy);
            if (color == Black || color == White) {
                continue;
            }
            for (std::size_t i = 0; i < displayed.size(); ++i) {
                if (displayed[i] == color) {
                    return shell::ColorValue(static_cast<int>(i) + 1);
                }
            }
        }
    }
    return 0;
}

std::span<const std::uint32_t> DisplayedColors() {
    static const std::array<std::uint32_t, DisplayedColorCount> colors = [] {
        std::array<std::uint32_t, DisplayedColorCount> values{};
        for (int i = 0; i < ColorIndexCount; ++i) {
            values[static_cast<std::size_t>(i)] = shell::ColorValue(i + 1);
        }
        std::copy(OtherDisplayedColors.begin(), OtherDisplayedColors.end(),
                  values.begin() + ColorIndexCount);
        return values;
    }();
    return colors;
}

std::optional<ItemRef> HitTestItem(const GraphWindowState& state, int x, int y,
                                   const PixelReader& pixels,
                                   std::span<const std::uint32_t> displayed,
                                   const TraceExtent& extent) {
    const std::uint32_t color = ColorAtPoint(x, y, pixels, displayed);
    if (color == 0) {
        return std::nullopt;
    }
    std::vector<const ItemRow*> candidates;
    for (const ItemRow& row : state.Panel.Rows()) {
        if (row.LineColor == color) {
            candidates.push_back(&row);
        }
    }
    if (candidates.empty()) {
        return std::nullopt;
    }
    if (candidates.size() == 1) {
        return ItemRef{candidates.front()->Layer, candidates.front()->Position};
    }
    const std::int32_t pixelsPerStep = state.Time.PixelsPerStep;
    std::int32_t left = x - HitReach * pixelsPerStep;
    const std::int32_t width = 2 * HitReach * pixelsPerStep;
    // The window's first time counts its columns as steps, whatever the scale.
    double start = static_cast<double>(left - GraphLeft) * state.Time.MsPerStep;
    if (left < GraphLeft) {
        left = GraphLeft;
        start = 0.0;
    }
    for (const ItemRow* row : candidates) {
        if (!BandCovers(state, *row, y) || !extent) {
            continue;
        }
        const double offset =
            state.Layers.Layer.at(static_cast<std::size_t>(row->Layer)).TimeOffset;
        const std::optional<TraceRows> rows =
            extent(row->Layer, row->Position, left, width, start + offset);
        if (rows && y >= rows->Highest - HitReach && y <= rows->Lowest + HitReach) {
            return ItemRef{row->Layer, row->Position};
        }
    }
    return std::nullopt;
}

TraceExtent TraceExtentOf(const GraphWindowState& state, const logger::LafTable& laf) {
    return [&state, &laf](int layer, int position, std::int32_t left, std::int32_t width,
                          double start) -> std::optional<TraceRows> {
        const std::optional<TraceParams> params =
            TraceParamsFor(state, layer, position, left, width, start);
        if (!params) {
            return std::nullopt;
        }
        TraceLists lists;
        if (BuildItemTrace(state, laf, layer, position, *params, lists) == 0 ||
            lists.Main.empty()) {
            return std::nullopt;
        }
        const auto [highest, lowest] =
            std::minmax_element(lists.Main.begin(), lists.Main.end(),
                                [](const TracePoint& a, const TracePoint& b) { return a.Y < b.Y; });
        return TraceRows{.Highest = highest->Y, .Lowest = lowest->Y};
    };
}

} // namespace torvane::graph
