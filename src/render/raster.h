#pragma once
// One-pixel lines written straight into the scanlines of a 32-bit QImage. A dense envelope is
// thousands of short vertical spans; drawn this way it costs what its pixels cost, which a
// general-purpose painter does not come near. Lines leave out their last pixel and a polyline
// carries its dash pattern on from one segment to the next, so the picture is the same whatever
// the segments.

#include "graph/trace_builder.h"
#include "graph/trace_item.h"

#include <QImage>
#include <QRect>

#include <cstdint>
#include <span>

namespace torvane::render {

// A pen: colour as a pixel value of the image, and its dash pattern.
class Pen {
public:
    Pen(QRgb color, graph::PenStyle style);
    QRgb Color() const { return color_; }
    bool Solid() const { return period_ == 0; }
    // Whether the pattern draws pixel `count` of a line, counting along the whole polyline.
    bool Draws(std::int64_t count) const {
        return period_ == 0 || ((mask_ >> (count % period_)) & 1U) != 0;
    }

private:
    QRgb color_;
    std::uint32_t mask_ = 0; // bit i: pixel i of the period is drawn
    int period_ = 0;         // 0: solid
};

class Raster {
public:
    // Draws into `image` (Format_RGB32 or ARGB32), only inside `clip`.
    Raster(QImage& image, QRect clip);

    // Draws from (x1, y1) towards (x2, y2), leaving out the last pixel. `phase` counts the
    // pattern's pixels so far and is advanced by the length of the line.
    void Line(int x1, int y1, int x2, int y2, const Pen& pen, std::int64_t& phase);
    void Polyline(std::span<const graph::TracePoint> points, const Pen& pen);
    // Column x from row top to row bottom - 1.
    void VerticalLine(int x, int top, int bottom, const Pen& pen);
    // Row y from column left to column right - 1.
    void HorizontalLine(int y, int left, int right, const Pen& pen);

private:
    // One line's walk along its major axis: steps First..Last, the minor coordinate and the
    // running remainder of its rounding, and the byte offset of the pixel in the image.
    struct Walk {
        std::int64_t First = 0;
        std::int64_t Last = 0;
        std::int64_t Minor = 0;
        std::int64_t MinorStep = 0;
        std::int64_t MinorLow = 0;
        std::int64_t MinorHigh = 0;
        std::int64_t Numerator = 0;
        std::int64_t TwiceMinor = 0;
        std::int64_t TwiceN = 0;
        std::int64_t At = 0;
        std::int64_t MajorBytes = 0;
        std::int64_t MinorBytes = 0;
    };
    // A dash pattern is looked up a pixel only when the pen has one.
    template <bool Patterned> void Draw(Walk walk, const Pen& pen, std::int64_t phase);

    uchar* bits_;
    qsizetype stride_;
    QRect clip_;
};

// 0xBBGGRR to a pixel value of a 32-bit image.
QRgb PixelOf(std::uint32_t bgr);
// A pixel value back to 0xBBGGRR.
std::uint32_t BgrOf(QRgb pixel);

} // namespace torvane::render
