#pragma once
// Where detonation map windows come from: the frame's "Detonation(&D)" entries (the logger, the
// active graph window's layer, a chosen file), a path on the command line, handed over by a
// later start or dropped on the frame.

#include "load/memory_check.h"
#include "logger/driver.h"
#include "shell/message_sink.h"
#include "views/detonation_window.h"

#include <filesystem>
#include <functional>
#include <optional>

class QWidget;

namespace torvane::graph {
struct GraphWindowState;
}

namespace torvane::app {

// What the map windows work with and do not own; the desktop holds one, tests their own.
struct DetonationContext {
    std::filesystem::path TempDir;
    shell::MessageSink& Sink;
    load::MemoryStatus& Memory;
    // The logger; without one the frame offers no map from it.
    logger::Driver* Driver = nullptr;
    // The file dialog in mode 3 (a .dto file to open) and in mode 4 (where to save one).
    std::function<std::optional<std::filesystem::path>(QWidget* owner)> ChooseDetonationFile;
    DetonationSaveChoice ChooseDetonationSave;
};

// ShowDetonation: after the memory check, the map of the source (the logger's, the active
// layer's of `active`, or a file the operator chooses) in a new window. Null when nothing
// opened: memory short, no map read, the dialog cancelled, or the file refused.
DetonationWindow* ShowDetonation(DetonationContext& context, views::DetonationSource source,
                                 const graph::GraphWindowState* active, QWidget* parent);

// A new window on a file, as source 3 with the path already known. Null when the file was
// refused (the operator has been told).
DetonationWindow* OpenDetonationWindow(DetonationContext& context, views::DetonationSource source,
                                       const std::filesystem::path& path, QWidget* parent);

} // namespace torvane::app
