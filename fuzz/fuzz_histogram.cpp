// libFuzzer target of the histogram: a stream of any words, any throttle calibration and any
// text in the range dialog's boxes.
//
// Input: ThOpen and ThClose (two little-endian words), then the start box's text up to a
// newline, the end box's text up to a newline, and the rest as the stream. A range the dialog
// refuses leaves the whole range.
//
// Beyond the sanitizers, the harness checks what the histogram promises: no bar holds more
// samples than the stream, the bars never hold more than all of them, and every bar top stands
// between the scale's top and the zero row.

#include "views/histogram.h"
#include "views/histogram_range.h"
#include "views/histogram_view.h"

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <numeric>
#include <string_view>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;
using namespace torvane;

std::string_view TakeLine(std::string_view& rest) {
    const auto end = rest.find('\n');
    const std::string_view line = rest.substr(0, end);
    rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
    return line;
}

void Check(const views::HistogramView& view) {
    const std::int64_t counted =
        std::accumulate(view.Figures.Counts.begin(), view.Figures.Counts.end(), std::int64_t{0});
    if (counted > view.Figures.Total) {
        std::abort();
    }
    for (const std::int16_t top : view.BarTops) {
        if (top < views::histogram_geometry::ReadOutTop ||
            top > views::histogram_geometry::ZeroTop) {
            std::abort();
        }
    }
    for (int x = 0; x < views::histogram_geometry::PictureWidth; x += 7) {
        (void)views::ReadOutAt(view, x, views::histogram_geometry::ZeroTop);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 4) {
        return 0;
    }
    const auto word = [data](std::size_t at) {
        return static_cast<std::int16_t>(data[at] | (data[at + 1] << 8));
    };
    const views::ThCalibration calibration{word(0), word(2)};
    std::string_view rest(reinterpret_cast<const char*>(data) + 4, size - 4);
    const std::string_view start = TakeLine(rest);
    const std::string_view end = TakeLine(rest);
    const views::NeRangeCheck check = views::CheckNeRange(start, end);
    const views::NeRange range = check.Accepted ? check.Range : views::NeRange{};

    static const fs::path stream =
        fs::temp_directory_path() / ("fuzz-histogram-" + std::to_string(::getpid()) + ".tmp");
    std::ofstream(stream, std::ios::binary | std::ios::trunc)
        .write(rest.data(), static_cast<std::streamsize>(rest.size()));

    shell::RecordingSink sink;
    views::HistogramFigures figures;
    if (views::MakeThHistogram(stream, calibration, figures, sink)) {
        Check(views::MakeThView(figures));
    }
    if (views::MakeNeHistogram(stream, range, figures, sink)) {
        Check(views::MakeNeView(figures, range));
    }
    fs::remove(stream);
    return 0;
}
