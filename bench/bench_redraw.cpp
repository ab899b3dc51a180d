// The graph picture of a 1920 x 1080 window with three layers of a run and all twelve items of
// each shown: a full redraw, one step of held scrolling and one cursor move with its read-out,
// on the largest run the logger holds and on a 10-minute run (the cost must follow the width of
// the window, not the length of the run); and the rasteriser against QPainter::drawPolyline for
// one dense envelope.

#include "bench_runs.h"
#include "binding/tlm_decompressor.h"
#include "graph/read_out.h"
#include "graph/time_axis.h"
#include "layout/default_layout.h"
#include "load/layer_commands.h"
#include "load/load_logging_file.h"
#include "ratio_reporter.h"
#include "render/graph_renderer.h"
#include "render/raster.h"
#include "rlg_container.h"
#include "shell/message_sink.h"
#include "vehicle/demo_setting.h"
#include "vehicle/run_file.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPolygon>

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <map>
#include <memory>
#include <random>

namespace {

namespace fs = std::filesystem;
using namespace torvane;

using bench::LargestRunMinutes;
using bench::LargestRunSetting;

const QSize Picture(1920, 1080);

// Every channel shown in a band of its own down the picture.
graph::DisplaySet AllItemsShown() {
    graph::DisplaySet display = layout::DefaultLayout();
    for (int channel = 0; channel < logdata::ChannelCount; ++channel) {
        graph::ItemDisplay& item = display.Items[static_cast<std::size_t>(channel)];
        item.View = 1;
        item.Grid = 1;
        item.Max = 0;
        item.Min = 0;
        item.Bottom = static_cast<std::int16_t>(120 + channel % 12 * 80);
        item.Top = static_cast<std::int16_t>(item.Bottom - 80);
    }
    return display;
}

// A window with the run in all three layers, in the middle of the run.
class Window {
public:
    explicit Window(double minutes) {
        std::random_device entropy;
        folder_ = fs::temp_directory_path() / ("torvane-bench-" + std::to_string(entropy()));
        fs::create_directories(folder_);
        const fs::path file = folder_ / "RUN.rlg";
        rlg::WriteFileAtomically(file,
                                 sim::GenerateRunFile(LargestRunSetting(), minutes * 60000.0, 5));
        state_.Layers.TempDir = folder_;
        binding::TlmDecompressor decompressor;
        load::NoWindowView view;
        bool loaded =
            load::LoadLoggingFile(state_, file, AllItemsShown(), decompressor, sink_, view);
        loaded = loaded && load::OpenLayer(state_, file, decompressor, sink_, view) &&
                 load::OpenLayer(state_, file, decompressor, sink_, view);
        if (!loaded) {
            std::fprintf(stderr, "cannot load the %.0f-minute run\n", minutes);
            std::exit(1);
        }
        state_.BandColor = render::GraphRenderer::SurfaceBandColor();
        for (auto& layer : state_.Layers.Layer) {
            layer.TimeOffset = state_.Layers.Layer[0].MeasureTime / 2;
        }
        renderer_ = std::make_unique<render::GraphRenderer>(state_, laf_, Picture);
        renderer_->DrawScaleColumn();
    }
    ~Window() {
        renderer_.reset();
        std::error_code error;
        fs::remove_all(folder_, error);
    }

    graph::GraphWindowState& State() { return state_; }
    render::GraphRenderer& Renderer() { return *renderer_; }
    const logger::LafTable& Laf() const { return laf_; }

private:
    fs::path folder_;
    shell::RecordingSink sink_;
    logger::LafTable laf_;
    graph::GraphWindowState state_;
    std::unique_ptr<render::GraphRenderer> renderer_;
};

Window& Shared(double minutes) {
    static std::map<double, std::unique_ptr<Window>> windows;
    auto& window = windows[minutes];
    if (!window) {
        window = std::make_unique<Window>(minutes);
    }
    return *window;
}

void SetScale(graph::GraphWindowState& state, int pixels, int ms) {
    state.Time = {static_cast<std::int16_t>(pixels), graph::GridColumns / pixels * ms, ms};
}

// A full redraw at one column per `ms`: 20 ms gives four samples a column, 100 ms (the factory
// layout) twenty, 300 ms sixty (the longest envelope), 5 ms one sample a column.
void FullRedraw(benchmark::State& bench, double minutes, int ms) {
    Window& window = Shared(minutes);
    SetScale(window.State(), 1, ms);
    for (auto _ : bench) {
        if (!window.Renderer().RedrawGraph(render::RedrawMode::Rebuild)) {
            bench.SkipWithError("redraw failed");
        }
    }
    bench.SetLabel(std::to_string(static_cast<int>(minutes)) + " min, " + std::to_string(ms) +
                   " ms a column");
}

void RedrawLargestRun(benchmark::State& bench) {
    FullRedraw(bench, LargestRunMinutes, 20);
}
void RedrawTenMinuteRun(benchmark::State& bench) {
    FullRedraw(bench, 10, 20);
}
void RedrawLargestRunDefaultScale(benchmark::State& bench) {
    FullRedraw(bench, LargestRunMinutes, 100);
}
void RedrawLargestRunEnvelope(benchmark::State& bench) {
    FullRedraw(bench, LargestRunMinutes, 300);
}
void RedrawLargestRunSampleAColumn(benchmark::State& bench) {
    FullRedraw(bench, LargestRunMinutes, 5);
}

// One step of held scrolling: every layer moves on by a step and the graph is drawn straight
// into the picture.
void ScrollStep(benchmark::State& bench) {
    Window& window = Shared(LargestRunMinutes);
    SetScale(window.State(), 1, 20);
    const double start = window.State().Layers.Layer[0].TimeOffset;
    for (auto _ : bench) {
        for (auto& layer : window.State().Layers.Layer) {
            layer.TimeOffset += 5 * window.State().Time.MsPerStep;
        }
        window.Renderer().RedrawRect();
    }
    for (auto& layer : window.State().Layers.Layer) {
        layer.TimeOffset = start;
    }
}

// The cursor to another column: the picture composed again and every value read out.
void CursorMove(benchmark::State& bench) {
    Window& window = Shared(LargestRunMinutes);
    SetScale(window.State(), 1, 20);
    window.Renderer().RedrawGraph(render::RedrawMode::Rebuild);
    std::mt19937 random(7);
    for (auto _ : bench) {
        window.State().CursorX = 100 + static_cast<std::int32_t>(random() % 1800);
        window.Renderer().RedrawGraph(render::RedrawMode::Compose);
        graph::DispValues(window.State(), 1, window.Laf());
    }
}

// A full-height envelope across the picture: the worst a trace asks of the drawing.
std::vector<graph::TracePoint> DenseEnvelope() {
    std::vector<graph::TracePoint> points;
    for (int x = 100; x < Picture.width(); ++x) {
        points.push_back({x, 40});
        points.push_back({x, 1040});
    }
    return points;
}

void EnvelopeByPolyline(benchmark::State& bench) {
    QImage image(Picture, QImage::Format_RGB32);
    QPolygon polygon;
    for (const graph::TracePoint& point : DenseEnvelope()) {
        polygon << QPoint(point.X, point.Y);
    }
    for (auto _ : bench) {
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing, false);
        painter.setPen(QPen(Qt::red, 1));
        painter.drawPolyline(polygon);
    }
}

void EnvelopeByRaster(benchmark::State& bench) {
    QImage image(Picture, QImage::Format_RGB32);
    const std::vector<graph::TracePoint> points = DenseEnvelope();
    const render::Pen pen(render::PixelOf(0x0000FF), graph::PenStyle::Solid);
    for (auto _ : bench) {
        render::Raster(image, image.rect()).Polyline(points, pen);
        benchmark::ClobberMemory();
    }
}

BENCHMARK(RedrawLargestRun)->Unit(benchmark::kMillisecond);
BENCHMARK(RedrawTenMinuteRun)->Unit(benchmark::kMillisecond);
BENCHMARK(RedrawLargestRunDefaultScale)->Unit(benchmark::kMillisecond);
BENCHMARK(RedrawLargestRunEnvelope)->Unit(benchmark::kMillisecond);
BENCHMARK(RedrawLargestRunSampleAColumn)->Unit(benchmark::kMillisecond);
BENCHMARK(ScrollStep)->Unit(benchmark::kMillisecond);
BENCHMARK(CursorMove)->Unit(benchmark::kMicrosecond);
BENCHMARK(EnvelopeByPolyline)->Unit(benchmark::kMillisecond);
BENCHMARK(EnvelopeByRaster)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) {
    if (std::getenv("QT_QPA_PLATFORM") == nullptr) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    const QGuiApplication application(argc, argv);
    return bench::RunBenchmarks(
        argc, argv,
        {{"RedrawLargestRun", "RedrawTenMinuteRun"}, {"EnvelopeByPolyline", "EnvelopeByRaster"}});
}
