#include "views/histogram_view.h"

#include "shell/number_format.h"
#include "shell/rounding.h"

#include <algorithm>

namespace torvane::views {
namespace geometry = histogram_geometry;

namespace {

// Labels wider than three digits collide when all eleven stand.
constexpr std::int32_t NarrowLabelLimit = 999;

HistogramView ViewOf(HistogramKind kind, const HistogramFigures& figures) {
    HistogramView view;
    view.Kind = kind;
    view.Figures = figures;
    view.YIndex = YIndexFor(figures.Max);
    for (std::size_t i = 0; i < view.BarTops.size(); ++i) {
        view.BarTops[i] = BarTop(figures.Percent[i], view.YIndex);
    }
    return view;
}

std::string HundredthsText(std::int32_t hundredths) {
    return std::to_string(hundredths / 100) + "." +
           shell::FormatNumber(hundredths % 100, shell::formats::TwoDigits);
}

} // namespace

std::array<std::int32_t, YLabelCount> YIndexFor(std::int32_t max) {
    // The first scale is uneven (1, 3, 5, 10, 15) so that small shares still show.
    if (max < 15) {
        return {1, 3, 5, 10, 15};
    }
    if (max < 25) {
        return {5, 10, 15, 20, 25};
    }
    if (max < 50) {
        return {10, 20, 30, 40, 50};
    }
    return {20, 40, 60, 80, 100};
}

XAxis XIndexFor(std::int32_t start, std::int32_t end) {
    XAxis axis;
    std::int32_t step = 10;
    if (start == 0 && end == 0) {
        axis.Title = "TH[%]";
    } else {
        axis.Title = "Ne[r/min]";
        step = 2 * NeBandWidth({start, end});
    }
    const bool narrow = (end == 0 || start <= NarrowLabelLimit) && step <= NarrowLabelLimit;
    for (int i = 0; i < XLabelCount; ++i) {
        const auto index = static_cast<std::size_t>(i);
        axis.Values[index] = start + i * step;
        axis.Visible[index] = narrow || i % 2 == 0;
    }
    return axis;
}

std::int16_t BarTop(float percent, const std::array<std::int32_t, YLabelCount>& ticks) {
    if (percent == 0.0F) {
        return geometry::ZeroTop;
    }
    const auto whole = shell::RoundHalfEven(percent);
    int segment = YLabelCount - 1;
    for (int k = 0; k < YLabelCount - 1; ++k) {
        if (ticks[static_cast<std::size_t>(k)] > whole) {
            segment = k;
            break;
        }
    }
    const auto tick = [&ticks](int k) {
        return static_cast<double>(ticks[static_cast<std::size_t>(k)]);
    };
    // The height inside the segment uses the share itself; only the choice of segment is
    // made with the whole number, so a bar can end a little below its segment's floor.
    const double fraction =
        segment == 0 ? percent / tick(0)
                     : (percent - tick(segment - 1)) / (tick(segment) - tick(segment - 1));
    const auto height = static_cast<int>(shell::RoundHalfEven(fraction * 60.0));
    return static_cast<std::int16_t>(geometry::ZeroTop -
                                     (geometry::SegmentHeight * segment + height));
}

std::array<std::int32_t, BarCount> ThHundredths(const std::array<float, BarCount>& percent) {
    std::array<std::int32_t, BarCount> hundredths{};
    for (std::size_t i = 0; i < percent.size(); ++i) {
        hundredths[i] = static_cast<std::int32_t>(shell::RoundHalfEven(percent[i] * 100.0F));
    }
    std::int32_t sum = 0;
    for (const std::int32_t share : hundredths) {
        sum += share;
        if (sum >= 10000) {
            break;
        }
    }
    if (sum != 10000) {
        // max_element gives the earliest of equal ones.
        *std::max_element(hundredths.begin(), hundredths.end()) += 10000 - sum;
    }
    return hundredths;
}

HistogramView MakeThView(const HistogramFigures& figures) {
    HistogramView view = ViewOf(HistogramKind::Th, figures);
    view.X = XIndexFor(0, 0);
    const auto hundredths = ThHundredths(figures.Percent);
    for (std::size_t i = 0; i < hundredths.size(); ++i) {
        view.Shares[i] = HundredthsText(hundredths[i]);
    }
    return view;
}

HistogramView MakeNeView(const HistogramFigures& figures, NeRange range) {
    HistogramView view = ViewOf(HistogramKind::Ne, figures);
    view.Range = range;
    view.Width = NeBandWidth(range);
    view.X = XIndexFor(range.Start, range.End);
    for (std::size_t i = 0; i < figures.Percent.size(); ++i) {
        view.Shares[i] = shell::FormatNumber(figures.Percent[i], shell::formats::TwoDecimals);
    }
    return view;
}

Band BandOf(const HistogramView& view, int bar) {
    const auto label = [&view](int i) {
        return view.X.Values[static_cast<std::size_t>(i)];
    };
    const auto half = static_cast<std::int32_t>(shell::RoundHalfEven((label(1) - label(0)) / 2.0));
    const int j = bar / 2;
    if (bar == BarCount - 1) {
        return {label(9) + half, label(10)};
    }
    if (bar % 2 == 1) {
        return {label(j) + half, label(j + 1) - 1};
    }
    return {label(j), label(j) + half - 1};
}

std::optional<std::string> ReadOutAt(const HistogramView& view, int x, int y) {
    if (x < geometry::ReadOutLeft || x >= geometry::ReadOutRight || y < geometry::ReadOutTop ||
        y > geometry::ZeroTop || (x - geometry::ReadOutLeft) % geometry::BarPitch == 0) {
        return std::nullopt;
    }
    const int bar = (x - geometry::ReadOutLeft) / geometry::BarPitch;
    if (y < view.BarTops[static_cast<std::size_t>(bar)]) {
        return std::nullopt;
    }
    const Band band = BandOf(view, bar);
    const std::string prefix = view.Kind == HistogramKind::Ne ? "Ne : " : "TH : ";
    return prefix + std::to_string(band.From) + " - " + std::to_string(band.To) + "\n" +
           view.Shares[static_cast<std::size_t>(bar)] + "%";
}

} // namespace torvane::views
