#pragma once
// The histogram window's picture (picHist, 437 x 400): axes, grid, axis labels and the twenty
// bars of one view, for the window and for torvane-cli alike.

#include "views/histogram_view.h"

#include <QImage>

namespace torvane::render {

// The bars' fill, RGB(0, 128, 255); each bar is framed in black.
inline constexpr QRgb HistogramBarColor = 0xFF0080FF;

QImage DrawHistogramPicture(const views::HistogramView& view);

} // namespace torvane::render
