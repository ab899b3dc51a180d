#pragma once
// The scroll strip under the graph: one signal of the whole run drawn small, and the box on it
// that stands for the visible time. Box lefts are window columns: the strip itself starts at
// column 154 of the window, so the strip's own column c is the value c + 154.

#include "graph/window_state.h"

#include <cstdint>
#include <vector>

namespace torvane::graph {

inline constexpr std::int32_t StripLeft = 154;
// Rows of the strip that the trace uses.
inline constexpr std::int32_t StripTraceRows = 24;
inline constexpr std::int32_t MinBoxWidth = 10;
// 0xBBGGRR of the strip's trace; its ground is black.
inline constexpr std::uint32_t StripTraceColor = 0xFFFF00;

struct StripPoint {
    std::int32_t X = 0;
    std::int32_t Y = 0;
    friend bool operator==(const StripPoint&, const StripPoint&) = default;
};

// The samples of an n-sample stream that a strip `width` wide shows, at most one every 3
// columns: the first sample of each group, with its column. Fewer samples than that are spread
// over the whole width, the columns left over going one each to the first gaps.
struct StripSample {
    std::int64_t Sample = 0; // from 1
    std::int32_t X = 0;
};
std::vector<StripSample> StripSamples(std::int64_t sampleCount, std::int32_t width);

struct ScrollBox {
    std::int32_t Left = StripLeft; // window column
    std::int32_t Width = MinBoxWidth;
    friend bool operator==(const ScrollBox&, const ScrollBox&) = default;
};

struct ScrollStrip {
    std::int32_t ScrollSpan = 0; // ms the strip stands for
    std::vector<StripPoint> Points;
    ScrollBox Box; // where the box stands over the new strip
};
// Reads the active layer's ScrollItem stream and sets ScrollSpan; no points without an item.
// The box is only repainted where it stood, left and width kept: a zoom pulled with its edges
// survives a change of layer or item, even when the new strip stands for another run length.
ScrollStrip BuildScrollStrip(GraphWindowState& state, ScrollBox box, std::int32_t stripWidth);
// The strip and the box of a window that took a new size, a layout or its first file: the strip
// as above, the box placed again for the active layer's offset and the time the graph now shows,
// since both the strip's width and the visible time may have changed.
ScrollStrip RebuildStripAndBox(GraphWindowState& state, ScrollBox box, std::int32_t graphWidth,
                               std::int32_t stripWidth);

// The box moved to `left` (when at least 154) and, unless `width` is 0, that wide but at least
// 10.
ScrollBox MoveScrollBox(ScrollBox box, std::int32_t left, std::int32_t width);
// Where the active layer's offset and the visible time put the box.
ScrollBox DrawScrollBox(const GraphWindowState& state, ScrollBox box, std::int32_t graphWidth,
                        std::int32_t stripWidth);
// The left of the box for the active layer's offset: what every scroll moves, keeping the width.
std::int32_t ScrollBoxLeft(const GraphWindowState& state, std::int32_t stripWidth);

// What a press at `x` columns into a box `width` wide drags: one of its edges or the whole box.
// The edges take a third of the width, from 3 to 6 columns.
DragState BoxPressState(std::int32_t width, std::int32_t x);

} // namespace torvane::graph
