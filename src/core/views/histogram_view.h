#pragma once
// What one view of the histogram window shows: its axes, its bars' tops in the 437 x 400
// picture, and the read-out under a held mouse button.

#include "views/histogram.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>

namespace torvane::views {

// The picture and where its bars stand, in pixels from its top left.
namespace histogram_geometry {
inline constexpr int PictureWidth = 437;
inline constexpr int PictureHeight = 400;
// A bar of 0 % is a line on this row; the bars stand on it.
inline constexpr int ZeroTop = 362;
inline constexpr int BarBottom = 363;
// Each of the five Y labels is one 61-pixel segment above the last.
inline constexpr int SegmentHeight = 61;
// The read-out answers inside these bounds (X up to, not including, ReadOutRight).
inline constexpr int ReadOutLeft = 60;
inline constexpr int ReadOutRight = 381;
inline constexpr int ReadOutTop = 58;
inline constexpr int BarPitch = 16;
// Bar i fills columns BarLeft(i) to BarRight(i) - 1, so neighbours share a border column.
constexpr int BarLeft(int bar) {
    return bar * BarPitch + 59;
}
constexpr int BarRight(int bar) {
    return (bar + 1) * BarPitch + 60;
}
// The row of Y label k (0 to 4).
constexpr int TickRow(int label) {
    return ZeroTop - SegmentHeight * (label + 1);
}
// The column under which X label i (0 to 10) stands.
constexpr int XLabelColumn(int label) {
    return ReadOutLeft + 2 * BarPitch * label;
}
} // namespace histogram_geometry

inline constexpr int YLabelCount = 5;
inline constexpr int XLabelCount = 11;

// `SetYIndex`: the values of lblYIndex(0) to (4) for the largest whole percentage.
std::array<std::int32_t, YLabelCount> YIndexFor(std::int32_t max);

struct XAxis {
    std::string Title; // lblX
    std::array<std::int32_t, XLabelCount> Values{};
    std::array<bool, XLabelCount> Visible{};
};
// `SetXIndex`: start and end both 0 is the TH axis; anything else an Ne range.
XAxis XIndexFor(std::int32_t start, std::int32_t end);

// The top row of a bar of that percentage against the Y labels.
std::int16_t BarTop(float percent, const std::array<std::int32_t, YLabelCount>& ticks);

// The TH shares in hundredths of a percent, made to add up to exactly 10000: the difference
// of the rounded shares goes to the largest one.
std::array<std::int32_t, BarCount> ThHundredths(const std::array<float, BarCount>& percent);

struct HistogramView {
    HistogramKind Kind = HistogramKind::Th;
    HistogramFigures Figures;
    NeRange Range;          // the Ne view's range; unused by TH
    std::int32_t Width = 0; // the Ne band width
    std::array<std::int32_t, YLabelCount> YIndex{};
    XAxis X;
    std::array<std::int16_t, BarCount> BarTops{};
    std::array<std::string, BarCount> Shares; // as the read-out shows them, without "%"
};

HistogramView MakeThView(const HistogramFigures& figures);
HistogramView MakeNeView(const HistogramFigures& figures, NeRange range);

// The band of engine speeds or throttle openings that a bar stands for, as the read-out names
// it from the X labels: bar 0 of TH is 0 to 4, bar 19 is 95 to 100.
struct Band {
    std::int32_t From = 0;
    std::int32_t To = 0;
};
Band BandOf(const HistogramView& view, int bar);

// The read-out for the mouse at (x, y) of the picture: "TH : 0 - 4", a line break and
// "12.34%"; nothing off the bars, on a bar's border or above its top.
std::optional<std::string> ReadOutAt(const HistogramView& view, int x, int y);

} // namespace torvane::views
