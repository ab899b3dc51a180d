#include "graph/read_out.h"

#include "logdata/channels.h"
#include "logdata/values.h"
#include "shell/number_format.h"
#include "shell/rounding.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace torvane::graph {
namespace {

std::int32_t RoundToInt32(double value) {
    constexpr double lowest = std::numeric_limits<std::int32_t>::min();
    constexpr double highest = std::numeric_limits<std::int32_t>::max();
    return static_cast<std::int32_t>(std::clamp(shell::RoundHalfEven(value), lowest, highest));
}

std::string DecimalFormat(int decimals) {
    return decimals <= 0 ? std::string("0")
                         : "0." + std::string(static_cast<std::size_t>(decimals), '0');
}

bool ThrottleUncalibrated(const logdata::LogHeader& header) {
    return header.ThOpen() - header.ThClose() < 1;
}

} // namespace

void RecomputeCursorTimes(GraphWindowState& state) {
    const int pixels = std::max<int>(state.Time.PixelsPerStep, 1);
    // Whole steps: the division truncates, also left of the scale column.
    const double t = static_cast<double>((state.CursorX - 100) / pixels) * state.Time.MsPerStep;
    for (int layer = 0; layer <= state.LastLayer; ++layer) {
        logdata::LayerRecord& record = state.Layers.Layer.at(static_cast<std::size_t>(layer));
        record.CursorTime = t + record.TimeOffset;
    }
    state.CursorAxisTime =
        RoundToInt32(state.Layers.Layer.at(static_cast<std::size_t>(state.ActiveLayer)).CursorTime);
}

std::string TitleTimeText(bool deltaMode, double deltaMark, double cursorTime) {
    if (!deltaMode) {
        return " Time " + shell::FormatTime(cursorTime);
    }
    if (deltaMark == 0.0) {
        return "Delta  00h00m00s000";
    }
    const double distance = cursorTime - deltaMark;
    if (distance > 0.0) {
        return "Delta  " + shell::FormatTime(distance);
    }
    return "Delta -" + shell::FormatTime(std::fabs(distance));
}

void DispTitleTime(GraphWindowState& state) {
    state.TitleText =
        TitleTimeText(state.DeltaMode, state.DeltaMark, state.Layers.Layer[0].CursorTime);
}

void ToggleDeltaMode(GraphWindowState& state) {
    state.DeltaMode = !state.DeltaMode;
    state.DeltaMark = 0.0;
    DispTitleTime(state);
}

std::string ItemValueText(const ItemRow& row, double value) {
    if (row.Kinds == logdata::ComputedChannel) {
        return shell::FormatNumber(value, DecimalFormat(row.DecimalPoint)) + row.Unit;
    }
    return shell::FormatNumber(value, logdata::ChannelFormat(row.Kinds)) +
           std::string(logdata::ChannelUnit(row.Kinds));
}

bool DispValues(GraphWindowState& state, int move, const logger::LafTable& laf) {
    if (move == 1) {
        RecomputeCursorTimes(state);
    }
    DispTitleTime(state);
    const logdata::ValueReader reader(state.Layers, laf);
    const logdata::TimeScale scale{state.Time.PixelsPerStep, state.Time.MsPerStep};
    for (ItemRow& row : state.Panel.Rows()) {
        if (row.Layer < 0 || row.Layer > state.LastLayer) {
            continue;
        }
        const logdata::LayerRecord& record =
            state.Layers.Layer[static_cast<std::size_t>(row.Layer)];
        if (row.Kinds == logdata::TH && ThrottleUncalibrated(record.Header)) {
            continue;
        }
        const double value = reader.ValueAt(row.Layer, row.Position, record.CursorTime, scale);
        row.ValueText = ItemValueText(row, value);
    }
    return true;
}

} // namespace torvane::graph
