#pragma once
// One shown item as a trace: whether it is drawn at all, the parameters its trace is built from,
// the builder it takes, its pen, and the tag that names it in the main layer.

#include "graph/trace_builder.h"
#include "graph/window_state.h"
#include "logger/laf_table.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace torvane::graph {

enum class PenStyle { Solid, Dot, DashDot, DashDotDot };

// A thinned trace is dash-dot-dotted whatever its Line says.
PenStyle TracePenStyle(int result, int line);

// The lists a trace of thickness `point` draws, in drawing order.
std::vector<const std::vector<TracePoint>*> ListsToDraw(const TraceLists& lists, int point);

// True when item `index` of `layer` is drawn in a picture `height` rows high: shown, existing,
// its full range not wholly below the graph, and TH only with a calibrated span. An item that
// is not drawn costs no read.
bool ItemDrawn(const GraphWindowState& state, int layer, int index, std::int32_t height);

// The parameters of an item's trace drawn from column `left`, `width` columns wide, starting at
// time `start`; nullopt for an index that names nothing.
std::optional<TraceParams> TraceParamsFor(const GraphWindowState& state, int layer, int index,
                                          std::int32_t left, std::int32_t width, double start);

// The scale of item `index` of a layer; null when the index names nothing.
const ScaleRecord* ItemScaleOf(const GraphWindowState& state, int layer, int index);

// Builds the item's trace with the builder of its kind: laps, computed item or stream.
int BuildItemTrace(const GraphWindowState& state, const logger::LafTable& laf, int layer, int index,
                   const TraceParams& params, TraceLists& lists);

// How an item's trace looks: colour (0xBBGGRR), line style index, thickness and tag name.
struct ItemLook {
    std::uint32_t Color = 0;
    int Line = 1;
    int Point = 1;
    std::string Name;
};
std::optional<ItemLook> ItemLookOf(const GraphWindowState& state, int layer, int index);

// The tag at column 151 names a main-layer trace: its 15-pixel picture stands 15 rows above
// the trace there; the name follows to its right.
inline constexpr std::int32_t TagColumn = 151;
inline constexpr std::int32_t TagSize = 15;
// The top row of the tag picture; nullopt when the trace never reaches the tag column.
std::optional<std::int32_t> TraceTagRow(const std::vector<TracePoint>& main);

} // namespace torvane::graph
