#pragma once
// Point lists of one trace, read from its stream by position. The reading itself thins the data:
// only the samples of the visible time are read, and at most 60 of them per column.

#include "graph/display_set.h"
#include "logdata/layer.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <vector>

namespace torvane::graph {

struct TracePoint {
    std::int32_t X = 0;
    std::int32_t Y = 0;

    friend bool operator==(const TracePoint&, const TracePoint&) = default;
};

// Upper lies one row above Main and Lower one below, at the same columns.
struct TraceLists {
    std::vector<TracePoint> Upper;
    std::vector<TracePoint> Main;
    std::vector<TracePoint> Lower;

    void Clear();
};

// What a trace is drawn from and where.
struct TraceParams {
    int Sampling = 0;       // ms between two samples of the stream
    std::int32_t Left = 0;  // column of the start time
    std::int32_t Width = 0; // columns to fill
    std::int32_t Base = 0;  // row of the value 0
    int Channel = 0;        // 0..15, or ComputedChannel
    double Start = 0.0;     // time at column Left, the layer's TimeOffset
    double Unit = 1.0;      // engineering units per pixel row
    std::filesystem::path File;
};

// Results of the builders: nothing to draw, or how the list came about. Thinned lists skipped
// samples and are drawn dash-dot-dotted.
enum TraceResult : int {
    TraceFailed = -1, // the stream cannot be read
    TraceNone = 0,
    TracePlain = 1,
    TraceEnvelope = 2,
    TraceThinned = 3,
};

// A raw 16-bit reading to its engineering value (the channel's conversion, raw 0 included).
using RawConverter = std::function<double(double raw)>;

// The trace of a channel stream of 16-bit words. Detonation channels (4, 5) draw pulses.
int BuildTrace(const TraceParams& params, const TimeScale& scale, const RawConverter& convert,
               TraceLists& lists);

// The trace of a computed item: 32-bit words, each divided by 10 to the decimalPoint.
int BuildFormulaTrace(const TraceParams& params, const TimeScale& scale, int decimalPoint,
                      TraceLists& lists);

// The staircase of the lap count; TraceNone when there is no lap mark.
int BuildLapTrace(const logdata::LapInfo& laps, const TraceParams& params, const TimeScale& scale,
                  TraceLists& lists);

// The row of an engineering value: values below 0 stand on the base line.
std::int32_t RowOfValue(const TraceParams& params, double value);

} // namespace torvane::graph
