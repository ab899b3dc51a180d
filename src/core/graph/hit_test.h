#pragma once
// Which item the mouse points at in the graph: the colour of a trace near the mouse names the
// rows drawn in that colour, and when several share it, the one whose trace comes near the
// mouse wins.

#include "graph/window_state.h"
#include "logger/laf_table.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <span>

namespace torvane::graph {

inline constexpr int HitReach = 10; // pixels around the mouse that count

// The colour (0xBBGGRR) at a point of the picture as the operator sees it.
using PixelReader = std::function<std::uint32_t(int x, int y)>;

// Highest and lowest row of an item's trace over `width` columns from column `left`, the first
// column showing time `start`; nothing when the trace cannot be built.
struct TraceRows {
    std::int32_t Highest = 0;
    std::int32_t Lowest = 0;
};
using TraceExtent = std::function<std::optional<TraceRows>(
    int layer, int position, std::int32_t left, std::int32_t width, double start)>;

// ColorValue(i + 1) of the first pixel within 10 pixels of (x, y), column by column, that shows
// displayed[i]; black and white are passed over, and so is any colour not in the table. 0 when
// no pixel matches. A matched entry past the trace colours gives red, as ColorValue does for
// any index it does not know.
std::uint32_t ColorAtPoint(int x, int y, const PixelReader& pixels,
                           std::span<const std::uint32_t> displayed);

inline constexpr int DisplayedColorCount = 17;

// The colours as the screen shows them: those of the colour indices 1 to 14, then the two greys
// of the grid and the cursor's colour. On this platform each shows as itself.
std::span<const std::uint32_t> DisplayedColors();

// The extent of an item's trace as the trace builder draws it over the given columns.
TraceExtent TraceExtentOf(const GraphWindowState& state, const logger::LafTable& laf);

std::optional<ItemRef> HitTestItem(const GraphWindowState& state, int x, int y,
                                   const PixelReader& pixels,
                                   std::span<const std::uint32_t> displayed,
                                   const TraceExtent& extent);

} // namespace torvane::graph
