#include "graph/lap_bar.h"

#include "graph/item_panel.h"
#include "graph/time_axis.h"
#include "logdata/channels.h"
#include "logdata/laps.h"
#include "shell/number_format.h"
#include "shell/rounding.h"

namespace torvane::graph {
namespace {

std::string Digits(std::int64_t value, std::string_view format) {
    return shell::FormatNumber(static_cast<double>(value), format);
}

// The label of a cell `cellWidth` columns wide; the last cell of a row, cut by the right
// edge, has its own widths, and between 20 and 50 columns it stays empty.
std::string CellLabel(std::size_t lap, const std::string& lapText, std::int64_t cellWidth,
                      bool lastCell) {
    const std::string number = std::to_string(lap) + "L";
    if (cellWidth < 10) {
        return {};
    }
    if (lastCell) {
        if (cellWidth < 20) {
            return number;
        }
        return cellWidth > 50 ? number + " " + lapText : std::string();
    }
    return cellWidth <= 80 ? number : number + " " + lapText;
}

void AddRow(LapBar& bar, const GraphWindowState& state, int layer, std::int32_t width) {
    const logdata::LapInfo& lap = state.Layers.Lap[static_cast<std::size_t>(layer)];
    const double offset = state.Layers.Layer[static_cast<std::size_t>(layer)].TimeOffset;
    const std::int32_t top = lap.LapBarTop;
    bar.Closes.push_back(top + LapCellRows);
    // Without marks LapTime holds only its start entry, which would make the whole row one
    // filled lap.
    if (logdata::LapMarkCount(lap) == 0) {
        return;
    }
    std::int64_t left = GraphLeft;
    std::size_t j = 0;
    std::string lapText;
    const auto cell = [&](std::int64_t right, bool lastCell) {
        if (j % 2 == 1) {
            bar.Filled.push_back({static_cast<std::int32_t>(left), top,
                                  static_cast<std::int32_t>(right - left), LapCellRows});
        }
        std::string label = CellLabel(j, lapText, right - left, lastCell);
        if (!label.empty()) {
            bar.Texts.push_back({static_cast<std::int32_t>(left + 2), top + 1, std::move(label)});
        }
    };
    for (; j < lap.LapTime.size(); ++j) {
        const double t = lap.LapTime[j];
        if (!(t > offset)) {
            continue;
        }
        const std::int64_t x = shell::RoundToInt64(
            (t - offset) / state.Time.MsPerStep * state.Time.PixelsPerStep + GraphLeft);
        lapText = j > 0 ? LapBarText(t - lap.LapTime[j - 1]) : std::string();
        if (x >= width) {
            break;
        }
        cell(x, false);
        left = x;
    }
    cell(width, true);
}

} // namespace

std::string LapBarText(double milliseconds) {
    const std::int64_t t = shell::RoundToInt64(milliseconds);
    std::string text;
    if (t >= 3'600'000) {
        text = Digits(t / 3'600'000, shell::formats::TwoDigits) + "h";
    }
    text += Digits(t / 60'000 % 60, shell::formats::TwoDigits) + "m";
    text += Digits(t / 1000 % 60, shell::formats::TwoDigits) + "s";
    return text + Digits(t % 1000, shell::formats::ThreeDigits);
}

LapBar LapBarOf(const GraphWindowState& state, std::int32_t width) {
    LapBar bar;
    for (int layer = 0; layer <= state.LastLayer && layer < logdata::LayerCount; ++layer) {
        if (!state.Layers.Layer[static_cast<std::size_t>(layer)].ItemExists[logdata::LapSlot]) {
            continue;
        }
        std::string name =
            BareFileName(state.Layers.Layer[static_cast<std::size_t>(layer)].FilePath);
        name.resize(std::min(name.size(), LapBarNameLength));
        bar.Texts.push_back(
            {4, state.Layers.Lap[static_cast<std::size_t>(layer)].LapBarTop + 1, std::move(name)});
        AddRow(bar, state, layer, width);
    }
    return bar;
}

} // namespace torvane::graph
