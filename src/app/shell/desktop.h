#pragma once
// The running desktop: the program's folders, the stores it loads at start and saves at the end,
// the frame, and the commands that reach it from the command line or a later start.

#include "binding/tlm_decompressor.h"
#include "binding/tlm_driver.h"
#include "graph/graph_window_context.h"
#include "layout/layout_store.h"
#include "load/memory_check.h"
#include "logger/laf_table.h"
#include "output/file_dialog.h"
#include "output/print_dialog.h"
#include "shell/app_paths.h"
#include "shell/main_frame.h"
#include "shell/message_box_sink.h"
#include "shell/session_sleep_inhibitor.h"
#include "shell/window_registry.h"
#include "views/detonation_windows.h"

#include <QObject>
#include <QString>

class QScreen;

namespace torvane::app {

// The display the program needs: at least 800 × 600 pixels at 8 bits.
bool ScreenIsLargeEnough(int width, int height, int depth);
bool ScreenIsLargeEnough(const QScreen& screen);

// argv[1..] joined by blanks: the command line is used whole, as one path that may hold blanks.
// A relative path is made absolute against the current folder, because a later start hands it
// to a first program that was started elsewhere, and a save compares paths as written.
QString WholeCommandLine(int argc, char** argv);

class Desktop : public QObject {
    Q_OBJECT
public:
    explicit Desktop(shell::AppPaths paths);
    ~Desktop() override;
    Desktop(const Desktop&) = delete;
    Desktop& operator=(const Desktop&) = delete;

    // Empties the temporary folder, loads the layouts and the air/fuel table, shows the frame
    // and acts on the command line.
    void Start(const QString& commandLine);
    // Empties the temporary folder and saves the last layout; the frame has closed.
    void Shutdown();

    // Brings the program to the front: its topmost dialog when one is open, else the frame.
    void Raise();
    // A command handed over by a later start ("LOAD" + its command line).
    void LinkExecute(const QString& command);

    MainFrame& Frame() { return frame_; }
    layout::LayoutStore& Layouts() { return layouts_; }

private:
    // A path handed to the program: an "RLG" file opens in a graph window, a "DTO" file in a
    // detonation map window, which is returned.
    QWidget* OpenPath(const QString& path);
    // The logger's download dialog over libtlm: the downloaded file, or nothing.
    std::optional<std::filesystem::path> DownloadFromLogger(QWidget* owner);

    shell::AppPaths paths_;
    MainFrame frame_;
    MessageBoxSink sink_;
    layout::LayoutStore layouts_;
    logger::LafTable laf_;
    shell::WindowRegistry registry_;
    binding::TlmDecompressor decompressor_;
    load::ProcMemInfo memory_;
    binding::TlmDriver driver_;
    SessionSleepInhibitor awake_;        // held while a download moves blocks
    output::FileDialogMemory lastPlace_; // the file dialog's last folder and name
    FileDialogContext fileDialogs_;
    GraphWindowContext windows_;
    DetonationContext detonation_;
    output::PrintDialogMemory printMemory_; // the print dialog's values for its next opening
    PrintContext printing_;
};

} // namespace torvane::app
