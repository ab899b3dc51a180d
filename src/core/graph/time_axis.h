#pragma once
// How time maps to the columns of the graph. The scale column takes columns 0 to 99 and the
// graph starts at column 100; the last rows are the time band with the grid times. Columns fall
// on the step grid: a time between two steps stands on the column of the earlier one.

#include "graph/display_set.h"

#include <cstdint>
#include <string>

namespace torvane::graph {

// Columns 0..99 hold the scales; 100 is the axis line and the graph's first column.
inline constexpr std::int32_t GraphLeft = 100;
// The time band under the traces, where the grid times are written.
inline constexpr std::int32_t TimeBandHeight = 20;
// A vertical grid line stands every this many columns, whatever the scale.
inline constexpr std::int32_t GridColumns = 100;
// Every stream is sampled at a multiple of this.
inline constexpr std::int32_t BaseStepMs = 5;

// The column of time t in a window whose left edge shows timeOffset.
std::int32_t ColumnOfTime(double time, double timeOffset, const TimeScale& scale);

// The time shown at the right edge of a picture `width` columns wide.
double RightEdgeTime(double timeOffset, std::int32_t width, const TimeScale& scale);

// The fixed zoom levels: 2 to 5 give 5, 10, 25 and 50 columns per 5 ms; any other level one
// column per 5 ms.
void SetTimeZoom(TimeScale& scale, int level);

// The label of a grid time in whole milliseconds: "1h", " 1m", " 1m30s500", "  5s", "100".
// Each part is written only when it is above 0.
std::string TimeLabel(std::int64_t milliseconds);

} // namespace torvane::graph
