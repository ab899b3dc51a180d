#pragma once
// Closing a graph window: the question about a downloaded file that has not been saved, and
// the unload that removes the window's streams and keeps its display as the default one.

#include "layout/layout_file.h"
#include "layout/layout_store.h"
#include "load/window_view.h"
#include "shell/message_sink.h"
#include "shell/window_registry.h"

#include <filesystem>
#include <functional>
#include <optional>

namespace torvane::load {

inline constexpr const char* NotSavedMessage = "This file is not saved.\r\nDoes it save?";

// The save dialog: the path the operator chose, or nothing when the dialog was cancelled.
using ChooseSavePath = std::function<std::optional<std::filesystem::path>()>;

// Asks before the window closes whether a downloaded, unsaved file is to be kept: Yes copies it
// to the chosen place and deletes it from TMP, No deletes it, Cancel keeps the window open.
// Files from the disk, and downloaded files that are gone already, are not asked about. False
// only when the window is to stay open.
bool QueryUnload(const graph::GraphWindowState& files, shell::WindowRegistry& registry,
                 shell::MessageSink& sink, const ChooseSavePath& chooseSavePath);

struct WindowUnloaded {
    // No graph window is left: the layout store has been saved, and the lap list goes.
    bool LastWindow = false;
};

// Gives up the window's number and removes the streams of its three layers; a window that
// still shows the single file it was loaded with writes its display back as the default one
// (record 0). When it was the last window, the layout store is saved to LAYOUT.DAT with the
// toolbox place given.
WindowUnloaded UnloadWindow(const graph::GraphWindowState& files, shell::WindowRegistry& registry,
                            layout::LayoutStore& store, const layout::ToolBoxPlace& toolBox);

} // namespace torvane::load
