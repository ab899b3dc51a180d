#include "load/layer_commands.h"

#include "load/comment_file.h"
#include "load/load_logging_file.h"
#include "load/run_time_guard.h"
#include "logdata/laps.h"

namespace torvane::load {
namespace {

bool AddLayer(graph::GraphWindowState& files, const std::filesystem::path& logFile,
              logdata::LogFileDecompressor& decompressor, shell::MessageSink& sink,
              WindowView& view) {
    const int layer = NextLayer(files);
    const auto index = static_cast<std::size_t>(layer);
    logdata::LayerRecord& record = files.Layers.Layer[index];
    const logdata::LayerRecord& main = files.Layers.Layer[0];
    record.FilePath = logFile;
    record.TimeOffset = main.TimeOffset;
    record.CursorTime = main.CursorTime;
    if (!logdata::DeployLoggingFile(files.Layers, layer, logFile, decompressor, sink)) {
        return false;
    }
    if (RefuseShortMeasurement(record, sink)) {
        return false;
    }
    // A layer starts with the main file's display even when its channels differ.
    files.Views[index] = graph::NewLayerView(files.Views[0]);
    logdata::ReadLapFile(files.Layers, layer);
    if (!view.ShowLayerPanel(layer)) {
        return false;
    }
    record.ScrollItem = graph::ChooseScrollItem(record);
    files.LastLayer = layer;
    // A layer without marks adds no row, so the height is only counted again for one with.
    if (record.ItemExists[logdata::LapSlot]) {
        files.LapBarHeight = LapBarHeight(files.Layers, files.LastLayer);
    }
    ReadLayerComments(files, layer, sink);
    view.DrawScales();
    view.RedrawGraph();
    view.DispValues(false);
    files.SingleFileState = graph::SingleFileState::Cleared;
    return true;
}

} // namespace

bool CanOpenLayer(const graph::GraphWindowState& files) {
    return files.LastLayer < HighestLayer;
}

int NextLayer(const graph::GraphWindowState& files) {
    return files.LastLayer + 1;
}

bool OpenLayer(graph::GraphWindowState& files, const std::filesystem::path& logFile,
               logdata::LogFileDecompressor& decompressor, shell::MessageSink& sink,
               WindowView& view) {
    if (!CanOpenLayer(files)) {
        return false;
    }
    return RunReportingErrors(sink,
                              [&] { return AddLayer(files, logFile, decompressor, sink, view); });
}

bool CanCloseLayer(const graph::GraphWindowState& files) {
    return files.LastLayer > 0;
}

bool CloseLayer(graph::GraphWindowState& files, WindowView& view) {
    if (!CanCloseLayer(files)) {
        return false;
    }
    view.CloseLayerPanel(files.LastLayer);
    graph::FreeLayerComments(files.Comments, files.LastLayer);
    if (files.ActiveLayer == files.LastLayer) {
        files.ActiveLayer = 0;
        view.SelectLayer(0);
    }
    --files.LastLayer;
    files.LapBarHeight = LapBarHeight(files.Layers, files.LastLayer);
    view.DrawScales();
    view.RedrawGraph();
    files.SingleFileState = graph::SingleFileState::Cleared;
    return true;
}

} // namespace torvane::load
