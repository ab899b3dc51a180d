#pragma once
// A frame as the desktop's tests use it: its own folders under a temporary home, a recording
// sink, memory figures set by the test and scripted file choices; runs of the vehicle model are
// written into its data folder.

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
#include "shell/message_sink.h"
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
        Paths.MakeFolders();
        Layouts.LoadLayouts();
        Frame.Attach(Context);
        Frame.show();
    }
    ~Desk() { Frame.Area()->closeAllSubWindows(); }

    fs::path Run(const std::string& name, double durationMs, std::uint64_t seed = 1) const {
        const fs::path file = Paths.DataDir() / name;
        if (!WriteGeneratedRun(file, durationMs, seed)) {
            qFatal("cannot write %s", file.string().c_str());
        }
        return file;
    }
    // Streams in the temporary folder whose names end in `tail`.
    std::size_t TempFiles(const std::string& tail = "") const {
        std::size_t count = 0;
        for (const auto& entry : fs::directory_iterator(Paths.TempDir())) {
            count += entry.path().filename().string().ends_with(tail) ? 1 : 0;
        }
        return count;
    }
    QString Caption() const {
        return Frame.GraphWindows().front()->findChild<app::FileCaptionBox*>("chkFile0")->Caption();
    }

    testing::TempFolder Home;
    shell::AppPaths Paths{Home.Path()};
    shell::RecordingSink Sink;
    layout::LayoutStore Layouts{Paths, Sink};
    logger::LafTable Laf;
    shell::WindowRegistry Registry;
    binding::TlmDecompressor Decompressor;
    FixedMemory Memory;
    std::deque<fs::path> Choices; // answers of the file dialog, in order; empty = cancel
    app::GraphWindowContext Context{
        .TempDir = Paths.TempDir(),
        .Registry = Registry,
        .Layouts = Layouts,
        .Laf = Laf,
        .Decompressor = Decompressor,
        .Sink = Sink,
        .Memory = Memory,
        .ChooseLoggingFile = [this](QWidget*) -> std::optional<fs::path> {
            if (Choices.empty()) {
                return std::nullopt;
            }
            fs::path next = Choices.front();
            Choices.pop_front();
            return next;
        },
        .ChooseSaveFile = [](QWidget*) { return std::optional<fs::path>(); },
        .ChooseSaveOrExport = {},
        .DownloadFromLogger = {},
        .OpenSettingWindow = {},
        .ShowMonitor =
            [this](QWidget*) {
                LoggerWindowRan();
            }};
    // What the monitor entry's window does here, while the frame has stepped aside.
    std::function<void()> LoggerWindowRan = [] {
    };
    app::MainFrame Frame;
};

} // namespace torvane::testing
