#pragma once
// Laying further files over the main file of a window (mnuOpenLayer) and taking the highest
// one away again (mnuCloseLayer).

#include "load/window_view.h"
#include "logdata/deployment.h"
#include "shell/message_sink.h"

#include <filesystem>

namespace torvane::load {

// mnuOpenLayer is enabled while the window has room for a further layer.
bool CanOpenLayer(const graph::GraphWindowState& files);
// The layer a further file goes into.
int NextLayer(const graph::GraphWindowState& files);

// Deploys the file (chosen in the file dialog) as the next layer, aligned with the main file,
// with the main file's display settings and slot scales. False when the window is full, or
// when the file cannot be used (the operator has been told why): LastLayer is then as it was,
// and the next attempt deploys into the same layer number again.
bool OpenLayer(graph::GraphWindowState& files, const std::filesystem::path& logFile,
               logdata::LogFileDecompressor& decompressor, shell::MessageSink& sink,
               WindowView& view);

// mnuCloseLayer acts while a further layer is open.
bool CanCloseLayer(const graph::GraphWindowState& files);

// Closes the highest layer; if it was active, layer 0 becomes active. Its streams stay on disk
// until the layer number is deployed again or the window closes. False when only the main
// file is open.
bool CloseLayer(graph::GraphWindowState& files, WindowView& view);

} // namespace torvane::load
