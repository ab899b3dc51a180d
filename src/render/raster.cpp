#include "render/raster.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <vector>

namespace torvane::render {
namespace {

// Runs of drawn and skipped pixels of the one-pixel dash styles, drawn run first.
std::vector<int> RunsOf(graph::PenStyle style) {
    switch (style) {
    case graph::PenStyle::Dot:
        return {3, 3};
    case graph::PenStyle::DashDot:
        return {9, 6, 3, 6};
    case graph::PenStyle::DashDotDot:
        return {9, 3, 3, 3, 3, 3};
    case graph::PenStyle::Solid:
        break;
    }
    return {};
}

} // namespace

Pen::Pen(QRgb color, graph::PenStyle style)
    : color_(color) {
    bool draw = true;
    for (const int run : RunsOf(style)) {
        for (int i = 0; i < run; ++i, ++period_) {
            if (draw) {
                mask_ |= 1U << period_;
            }
        }
        draw = !draw;
    }
}

Raster::Raster(QImage& image, QRect clip)
    : bits_(image.bits())
    , stride_(image.bytesPerLine())
    , clip_(clip.intersected(image.rect())) {
}

void Raster::Line(int x1, int y1, int x2, int y2, const Pen& pen, std::int64_t& phase) {
    const std::int64_t dx = std::int64_t{x2} - x1;
    const std::int64_t dy = std::int64_t{y2} - y1;
    const std::int64_t n = std::max(std::abs(dx), std::abs(dy));
    if (n == 0) {
        return;
    }
    const bool yMajor = std::abs(dy) >= std::abs(dx);
    const std::int64_t step = (yMajor ? dy : dx) > 0 ? 1 : -1;
    const std::int64_t start = yMajor ? y1 : x1;
    const std::int64_t low = yMajor ? clip_.top() : clip_.left();
    const std::int64_t high = yMajor ? clip_.bottom() : clip_.right();
    // Only the steps whose major coordinate lies inside the clip are walked.
    Walk walk;
    walk.First = std::max<std::int64_t>(step > 0 ? low - start : start - high, 0);
    walk.Last = std::min(step > 0 ? high - start : start - low, n - 1);
    if (walk.First <= walk.Last) {
        // The minor coordinate is round(i * d / n), halves away from the start, kept as a
        // running remainder instead of a division a pixel.
        const std::int64_t dMinor = yMajor ? dx : dy;
        const std::int64_t minorStep = dMinor > 0 ? 1 : -1;
        walk.TwiceMinor = 2 * std::abs(dMinor);
        walk.TwiceN = 2 * n;
        const std::int64_t numerator = walk.TwiceMinor * walk.First + n;
        walk.Numerator = numerator % walk.TwiceN;
        walk.Minor = (yMajor ? x1 : y1) + minorStep * (numerator / walk.TwiceN);
        walk.MinorStep = minorStep;
        walk.MinorLow = yMajor ? clip_.left() : clip_.top();
        walk.MinorHigh = yMajor ? clip_.right() : clip_.bottom();
        const std::int64_t pixel = sizeof(QRgb);
        walk.MajorBytes = yMajor ? step * stride_ : step * pixel;
        walk.MinorBytes = yMajor ? minorStep * pixel : minorStep * stride_;
        const std::int64_t major = start + step * walk.First;
        walk.At =
            yMajor ? major * stride_ + walk.Minor * pixel : walk.Minor * stride_ + major * pixel;
        if (pen.Solid()) {
            Draw<false>(walk, pen, phase);
        } else {
            Draw<true>(walk, pen, phase);
        }
    }
    phase += n;
}

template <bool Patterned> void Raster::Draw(Walk walk, const Pen& pen, std::int64_t phase) {
    const QRgb color = pen.Color();
    bool inside = walk.Minor >= walk.MinorLow && walk.Minor <= walk.MinorHigh;
    for (std::int64_t i = walk.First; i <= walk.Last; ++i) {
        if (inside && (!Patterned || pen.Draws(phase + i))) {
            *reinterpret_cast<QRgb*>(bits_ + walk.At) = color;
        }
        walk.At += walk.MajorBytes;
        walk.Numerator += walk.TwiceMinor;
        if (walk.Numerator >= walk.TwiceN) {
            walk.Numerator -= walk.TwiceN;
            walk.Minor += walk.MinorStep;
            walk.At += walk.MinorBytes;
            inside = walk.Minor >= walk.MinorLow && walk.Minor <= walk.MinorHigh;
        }
    }
}

void Raster::Polyline(std::span<const graph::TracePoint> points, const Pen& pen) {
    std::int64_t phase = 0;
    for (std::size_t i = 1; i < points.size(); ++i) {
        Line(points[i - 1].X, points[i - 1].Y, points[i].X, points[i].Y, pen, phase);
    }
}

void Raster::VerticalLine(int x, int top, int bottom, const Pen& pen) {
    std::int64_t phase = 0;
    Line(x, top, x, bottom, pen, phase);
}

void Raster::HorizontalLine(int y, int left, int right, const Pen& pen) {
    std::int64_t phase = 0;
    Line(left, y, right, y, pen, phase);
}

QRgb PixelOf(std::uint32_t bgr) {
    return qRgb(static_cast<int>(bgr & 0xFF), static_cast<int>((bgr >> 8) & 0xFF),
                static_cast<int>((bgr >> 16) & 0xFF));
}

std::uint32_t BgrOf(QRgb pixel) {
    return static_cast<std::uint32_t>(qRed(pixel)) |
           static_cast<std::uint32_t>(qGreen(pixel)) << 8 |
           static_cast<std::uint32_t>(qBlue(pixel)) << 16;
}

} // namespace torvane::render
