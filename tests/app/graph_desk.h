#pragma once
// A desktop frame for the graph window tests: its own folders, layouts, a recording sink,
// scripted file choices and a memory figure set by the test, with runs of the vehicle model
// written on demand.

#include "binding/tlm_decompressor.h"
#include "generated_run.h"
#include "graph/graph_window.h"
#include "graph/graph_window_context.h"
#include "graph/panel_controls.h"
#include "layout/layout_store.h"
#include "load/memory_check.h"
#include "logger/laf_table.h"
#include "shell/app_paths.h"
#include "shell/main_frame.h"
#include "shell/window_registry.h"
#include "support/temp_folder.h"

#include <QMdiArea>

#include <deque>
#include <filesystem>
#include <string>

namespace torvane::testing {

namespace fs = std::filesystem;

// Memory figures set by the test: `usedPercent` of physical memory in use, no swap.
class FixedMemory : public load::MemoryStatus {
public:
    std::optional<load::MemoryFigures> Read() override {
        return load::MemoryFigures{100, 100 - usedPercent, 0, 0};
    }
    std::uint64_t usedPercent = 40;
};

// A frame with its own folders, a recording sink and scripted file choices.
struct Desk {
    Desk() {
        paths.MakeFolders();
        layouts.LoadLayouts();
        frame.Attach(context);
        frame.show();
    }
    ~Desk() { frame.Area()->closeAllSubWindows(); }

    fs::path Run(const std::string& name, double durationMs, std::uint64_t seed = 1) const {
        const fs::path file = paths.DataDir() / name;
        if (!WriteGeneratedRun(file, durationMs, seed)) {
            qFatal("cannot write %s", file.string().c_str());
        }
        return file;
    }
    // Streams in the temporary folder whose names end in `tail`.
    std::size_t TempFiles(const std::string& tail = "") const {
        std::size_t count = 0;
        for (const auto& entry : fs::directory_iterator(paths.TempDir())) {
            count += entry.path().filename().string().ends_with(tail) ? 1 : 0;
        }
        return count;
    }
    QString Caption() const {
        return frame.GraphWindows().front()->findChild<app::FileCaptionBox*>("chkFile0")->Caption();
    }

    testing::TempFolder home;
    shell::AppPaths paths{home.Path()};
    shell::RecordingSink sink;
    layout::LayoutStore layouts{paths, sink};
    logger::LafTable laf;
    shell::WindowRegistry registry;
    binding::TlmDecompressor decompressor;
    FixedMemory memory;
    std::deque<fs::path> choices; // answers of the file dialog, in order; empty = cancel
    app::GraphWindowContext context{
        .TempDir = paths.TempDir(),
        .Registry = registry,
        .Layouts = layouts,
        .Laf = laf,
        .Decompressor = decompressor,
        .Sink = sink,
        .Memory = memory,
        .ChooseLoggingFile = [this](QWidget*) -> std::optional<fs::path> {
            if (choices.empty()) {
                return std::nullopt;
            }
            fs::path next = choices.front();
            choices.pop_front();
            return next;
        },
        .ChooseSaveFile = [](QWidget*) { return std::optional<fs::path>(); },
        .ChooseSaveOrExport = {},
        .DownloadFromLogger = {}};
    app::MainFrame frame;
};

} // namespace torvane::testing
