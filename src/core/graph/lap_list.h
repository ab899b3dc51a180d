#pragma once
// The lap list of a layer as plain content (frmTLM0090: the best lap, a row per lap with its
// length, the laps as short as the best in red, the grid's height), and the jump of the active
// layer to the start of a lap.

#include "graph/window_state.h"
#include "logdata/layer.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace torvane::graph {

// The grid holds row 0 and at most 254 laps, however many marks the run has.
inline constexpr int MaxLapRows = 255;
inline constexpr std::string_view StartRowText = "---------------";
inline constexpr std::uint32_t BestLapColor = 0x0000FF; // red, as 0xBBGGRR
inline constexpr std::uint32_t LapTextColor = 0x000000;

// "00m00s000" of a lap length in milliseconds: no hour part, so a lap of over an hour reads
// 62m05s500.
std::string LapText(double time);

struct LapRow {
    std::string Number; // column 0
    std::string Time;   // column 1
    std::uint32_t TextColor = LapTextColor;

    friend bool operator==(const LapRow&, const LapRow&) = default;
};

struct LapList {
    std::string Caption;  // the file name, without folder and extension
    std::string BestText; // lblTime
    std::vector<LapRow> Rows;
    std::int32_t GridHeight = 0; // pixels
    std::int32_t FormHeight = 0; // pixels, the caption bar included
};

// Grid height for a number of rows: 16 pixels a row and 5 for the borders below 20 rows, then
// 325 with the rest reached by scrolling.
std::int32_t LapGridHeight(int rows);

// The list of one layer: row 0 stands for the start, row r for lap r, from mark r − 1 to mark r.
LapList LapListOf(const logdata::LapInfo& lap, std::string_view fileName);

// The jump to lap `lapNo` of the list: the active layer's TimeOffset becomes the start of that
// lap (row 0 and below: 0). Only the active layer moves, whatever LinkLayers says and wherever
// its file ends; this is how two layers are brought to the same lap. The window no longer shows
// its file as loaded. False, with nothing changed, for a lap the layer does not have.
bool MoveLapTime(GraphWindowState& state, int lapNo);

} // namespace torvane::graph
