#include "graph/lap_list.h"

#include "shell/number_format.h"
#include "shell/rounding.h"

#include <algorithm>

namespace torvane::graph {
namespace {

constexpr std::int32_t LapRowHeight = 16;
constexpr std::int32_t GridBorders = 5;
constexpr int ScrollingRows = 20;
constexpr std::int32_t ScrollingGridHeight = 325;
// Caption bar, title line and margins around the grid.
constexpr std::int32_t FormAroundGrid = 56;

std::string Digits(std::int64_t value, std::string_view format) {
    return shell::FormatNumber(static_cast<double>(value), format);
}

} // namespace

std::string LapText(double time) {
    const std::int64_t total = shell::RoundToInt64(time);
    return Digits(total / 60000, shell::formats::TwoDigits) + "m" +
           Digits(total % 60000 / 1000, shell::formats::TwoDigits) + "s" +
           Digits(total % 1000, shell::formats::ThreeDigits);
}

std::int32_t LapGridHeight(int rows) {
    return rows < ScrollingRows ? rows * LapRowHeight + GridBorders : ScrollingGridHeight;
}

LapList LapListOf(const logdata::LapInfo& lap, std::string_view fileName) {
    LapList list;
    list.Caption = std::string(fileName);
    list.BestText = LapText(lap.BestLap);
    const int rows = static_cast<int>(std::min<std::size_t>(lap.LapTime.size(), MaxLapRows));
    list.Rows.push_back({"0", std::string(StartRowText)});
    for (int row = 1; row < rows; ++row) {
        const auto index = static_cast<std::size_t>(row);
        const double length = lap.LapTime[index] - lap.LapTime[index - 1];
        // Exactly equal: the best lap was computed from the same two marks.
        list.Rows.push_back({std::to_string(row), LapText(length),
                             length == lap.BestLap ? BestLapColor : LapTextColor});
    }
    list.GridHeight = LapGridHeight(static_cast<int>(list.Rows.size()));
    list.FormHeight = list.GridHeight + FormAroundGrid;
    return list;
}

bool MoveLapTime(GraphWindowState& state, int lapNo) {
    const auto layer = static_cast<std::size_t>(state.ActiveLayer);
    const std::vector<double>& marks = state.Layers.Lap.at(layer).LapTime;
    if (lapNo >= static_cast<int>(marks.size())) {
        return false;
    }
    state.Layers.Layer.at(layer).TimeOffset =
        lapNo >= 1 ? marks[static_cast<std::size_t>(lapNo - 1)] : 0.0;
    state.SingleFileState = SingleFileState::Cleared;
    return true;
}

} // namespace torvane::graph
