#pragma once
// What every graph window works with and does not own: the temporary folder of its streams,
// the window numbers, the layout store, the air/fuel table, the decompressor of logging files,
// where messages go and where the operator picks files. The desktop holds one; tests build
// their own with a recording sink and scripted file choices.

#include "layout/layout_store.h"
#include "load/memory_check.h"
#include "logdata/deployment.h"
#include "logger/laf_table.h"
#include "output/save_choice.h"
#include "shell/message_sink.h"
#include "shell/window_registry.h"

#include <filesystem>
#include <functional>
#include <optional>

class QWidget;

namespace torvane::app {

struct ToolSettings;

using FileChoice = std::function<std::optional<std::filesystem::path>(QWidget* owner)>;
// The save dialog of a graph window; `rangeMarked` offers the export of the marked range only.
using SaveOrExportChoice =
    std::function<std::optional<output::SaveChoice>(QWidget* owner, bool rangeMarked)>;

struct GraphWindowContext {
    std::filesystem::path TempDir;
    shell::WindowRegistry& Registry;
    layout::LayoutStore& Layouts;
    const logger::LafTable& Laf;
    logdata::LogFileDecompressor& Decompressor;
    shell::MessageSink& Sink;
    load::MemoryStatus& Memory;
    FileChoice ChooseLoggingFile;          // a file to open as a window or a layer
    FileChoice ChooseSaveFile;             // where a downloaded file is kept when its window closes
    SaveOrExportChoice ChooseSaveOrExport; // where mnuSave saves the main file or writes CSV
    // The logger's download dialog: the downloaded file, or nothing when it was cancelled or
    // failed. Without it the frame offers no download.
    FileChoice DownloadFromLogger;
    // The setting window, run modally over the owner. Without it the frame offers no setting.
    std::function<void(QWidget* owner)> OpenSettingWindow = {};
    // The real-time monitor and service mode, each shown modally; without them the frame offers
    // neither.
    std::function<void(QWidget* owner)> ShowMonitor = {};
    std::function<void(QWidget* owner)> ShowServiceMode = {};
    // The toolbox's choices, shared by all windows; the frame fills it in when it attaches.
    ToolSettings* Tools = nullptr;
    // Where the toolbox stands now, and whether it is shown: the layout file's head when the
    // last window closes. The frame fills it in; without a frame, the place the file held.
    std::function<layout::ToolBoxPlace()> CurrentToolBoxPlace = {};
};

} // namespace torvane::app
