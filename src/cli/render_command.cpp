// torvane-cli render: the same picture the desktop's graph window shows, drawn off screen.

#include "cli/cli_support.h"
#include "cli/commands.h"
#include "cli/deployed_run.h"
#include "cli/offscreen_gui.h"
#include "cli/render_page.h"

#include "binding/tlm_decompressor.h"
#include "graph/time_axis.h"
#include "layout/default_layout.h"
#include "layout/layout_file.h"
#include "load/layer_commands.h"
#include "load/load_logging_file.h"
#include "render/graph_renderer.h"
#include "render/png_bytes.h"
#include "shell/regular_file.h"
#include "shell/replacing_file.h"

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <limits>

namespace torvane::cli {
namespace {

// Record 0 of a layout file, repaired as the desktop repairs what it reads.
std::optional<graph::DisplaySet> ReadLayoutRecordZero(const std::filesystem::path& file) {
    std::error_code error;
    const auto bytes = shell::ReadRegularFile(file, layout::RecordOffset(1), error);
    if (!bytes || bytes->size() < layout::RecordOffset(1)) {
        return std::nullopt;
    }
    graph::DisplaySet record =
        layout::DecodeLayoutRecord(std::span<const std::uint8_t, layout::LayoutRecordSize>(
            bytes->data() + layout::LayoutHeadSize, layout::LayoutRecordSize));
    layout::RepairLayout(record);
    return record;
}

} // namespace

int Render(const RenderOptions& options) {
    if (options.Width <= graph::GraphLeft || options.Height <= graph::TimeBandHeight) {
        return Fail("--size must be wider than 100 and higher than 20 pixels");
    }
    if (const std::string refused = CheckLayersAndPage(options); !refused.empty()) {
        return Fail(refused);
    }
    graph::DisplaySet display = layout::DefaultLayout();
    if (options.Layout) {
        const auto record = ReadLayoutRecordZero(*options.Layout);
        if (!record) {
            return Fail("cannot read a layout record from " + options.Layout->string());
        }
        display = *record;
        // The layout store keeps any time scale without a zero; a negative one has no picture.
        if (display.Time.PixelsPerStep < 0 || display.Time.MsPerStep < 0) {
            return Fail("the time scale of " + options.Layout->string() + " cannot be drawn");
        }
    }

    StderrSink sink;
    const Environment environment = LoadEnvironment(sink);
    // The window's streams go to the private folder of a deployed run, removed at the end.
    DeployedRun folder;
    graph::GraphWindowState state;
    state.Layers.TempDir = folder.Layers().TempDir;
    binding::TlmDecompressor decompressor;
    load::NoWindowView view;
    if (!load::LoadLoggingFile(state, options.Input, display, decompressor, sink, view)) {
        return 1;
    }
    for (const std::filesystem::path& layer : options.Layers) {
        if (!load::OpenLayer(state, layer, decompressor, sink, view)) {
            return 1;
        }
    }
    if (options.PixelsPerStep || options.MsPerStep) {
        // main.cpp has held both to the layout file's ranges; the grid's ms are capped there too.
        state.Time.PixelsPerStep = static_cast<std::int16_t>(options.PixelsPerStep.value_or(1));
        state.Time.MsPerStep = options.MsPerStep.value_or(graph::BaseStepMs);
        const std::int64_t msPerGrid =
            std::int64_t{graph::GridColumns} / state.Time.PixelsPerStep * state.Time.MsPerStep;
        state.Time.MsPerGrid = static_cast<std::int32_t>(
            std::min<std::int64_t>(msPerGrid, std::numeric_limits<std::int32_t>::max()));
    }

    for (int layer = 0; layer <= state.LastLayer; ++layer) {
        state.Layers.Layer[static_cast<std::size_t>(layer)].TimeOffset = options.Offset;
    }

    const OffscreenGui gui(folder.Layers().TempDir);

    const QSize size(options.Width, options.Height);
    state.BandColor = render::GraphRenderer::SurfaceBandColor();
    render::GraphRenderer renderer(state, environment.Laf, size);
    if (!renderer.HasSurfaces()) {
        return Fail("not enough memory for a picture of " + std::to_string(size.width()) + "x" +
                    std::to_string(size.height()));
    }
    renderer.DrawScaleColumn();
    if (!renderer.RedrawGraph(render::RedrawMode::Rebuild)) {
        return Fail("cannot read the stream " + renderer.FailedStream().string());
    }
    if (IsPdfOutput(options.Output)) {
        return WritePdfOutput(options, renderer.Picture());
    }
    // The surfaces are made at the picture's size, so the surface is the picture. Encoded in
    // memory and written by us: Qt's writer does not see a failed write, and a full disk must
    // leave the old picture as it was.
    const QByteArray encoded = render::PngBytes(renderer.Picture());
    std::error_code error;
    if (encoded.isEmpty() ||
        !shell::ReplaceFileWith(
            options.Output,
            std::span(reinterpret_cast<const std::uint8_t*>(encoded.constData()),
                      static_cast<std::size_t>(encoded.size())),
            error)) {
        return Fail("cannot write " + options.Output.string());
    }
    return 0;
}

} // namespace torvane::cli
