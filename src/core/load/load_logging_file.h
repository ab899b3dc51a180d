#pragma once
// Loading a logging file into a graph window as its main file (layer 0).

#include "graph/display_set.h"
#include "load/window_view.h"
#include "logdata/deployment.h"
#include "shell/message_sink.h"

#include <filesystem>

namespace torvane::load {

// A run of this length or shorter cannot be opened anywhere, as main file or as layer.
inline constexpr double MinMeasureTime = 3000.0;

inline constexpr const char* ShortMeasurementMessage =
    "Can not open the specified file,Because of excessive short measurement time.";

// True when a deployed layer is too short to be shown; the operator has been told so.
bool RefuseShortMeasurement(const logdata::LayerRecord& record, shell::MessageSink& sink);

// Deploys the file as layer 0 and makes the window ready to show: the default display
// (record 0 of the layout store) and its scales, the lap marks, the item panel, the time scale,
// the lap bar, the scroll item and the selection of layer 0. On false the operator has been
// told why and the caller unloads the window, which removes its streams.
bool LoadLoggingFile(graph::GraphWindowState& files, const std::filesystem::path& logFile,
                     const graph::DisplaySet& defaultDisplay,
                     logdata::LogFileDecompressor& decompressor, shell::MessageSink& sink,
                     WindowView& view);

} // namespace torvane::load
