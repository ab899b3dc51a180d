#include "load/load_logging_file.h"

#include "load/comment_file.h"
#include "load/run_time_guard.h"
#include "logdata/laps.h"

namespace torvane::load {

bool RefuseShortMeasurement(const logdata::LayerRecord& record, shell::MessageSink& sink) {
    if (record.MeasureTime > MinMeasureTime) {
        return false;
    }
    shell::ShowMessage(sink, ShortMeasurementMessage, shell::buttons::Ok, shell::icons::Warning);
    return true;
}

namespace {

bool LoadMainFile(graph::GraphWindowState& files, const std::filesystem::path& logFile,
                  const graph::DisplaySet& defaultDisplay,
                  logdata::LogFileDecompressor& decompressor, shell::MessageSink& sink,
                  WindowView& view) {
    logdata::LayerRecord& main = files.Layers.Layer[0];
    // The path is kept before deployment: the query before closing looks for the file there.
    main.FilePath = logFile;
    if (!logdata::DeployLoggingFile(files.Layers, 0, logFile, decompressor, sink)) {
        return false;
    }
    if (RefuseShortMeasurement(main, sink)) {
        return false;
    }
    graph::LayerView& mainView = files.Views[0];
    mainView = {};
    mainView.Display = defaultDisplay;
    graph::FillItemScales(mainView, main);
    logdata::ReadLapFile(files.Layers, 0);
    if (!view.ShowLayerPanel(0)) {
        return false;
    }
    files.Time = mainView.Display.Time;
    if (main.ItemExists[logdata::LapSlot]) {
        files.LapBarHeight = LapBarRowHeight;
    }
    if (!view.DrawScales()) {
        return false;
    }
    main.ScrollItem = graph::ChooseScrollItem(main);
    files.ActiveLayer = 0;
    if (!view.SelectLayer(0)) {
        files.SingleFileState = graph::SingleFileState::Cleared;
        return false;
    }
    files.SingleFileState = graph::SingleFileState::Loaded;
    ReadLayerComments(files, 0, sink);
    view.DispValues(true);
    return true;
}

} // namespace

bool LoadLoggingFile(graph::GraphWindowState& files, const std::filesystem::path& logFile,
                     const graph::DisplaySet& defaultDisplay,
                     logdata::LogFileDecompressor& decompressor, shell::MessageSink& sink,
                     WindowView& view) {
    const bool loaded = RunReportingErrors(sink, [&] {
        return LoadMainFile(files, logFile, defaultDisplay, decompressor, sink, view);
    });
    if (!loaded) {
        files.SingleFileState = graph::SingleFileState::Cleared;
    }
    return loaded;
}

} // namespace torvane::load
