#include "shell/desktop.h"

#include "graph/file_choice.h"
#include "load/link_command.h"
#include "logger/download_dialog.h"
#include "logger/monitor_window.h"
#include "logger/service_window.h"
#include "logger/setting_window.h"
#include "output/hard_copy.h"
#include "shell/temp_files.h"

#include <QApplication>
#include <QDir>
#include <QScreen>
#include <QStringList>
#include <QTimer>

namespace torvane::app {

bool ScreenIsLargeEnough(int width, int height, int depth) {
    return width >= 800 && height >= 600 && depth >= 8;
}

bool ScreenIsLargeEnough(const QScreen& screen) {
    const QSize size = screen.size();
    return ScreenIsLargeEnough(size.width(), size.height(), screen.depth());
}

QString WholeCommandLine(int argc, char** argv) {
    QStringList words;
    for (int i = 1; i < argc; ++i) {
        words << QString::fromLocal8Bit(argv[i]);
    }
    const QString whole = words.join(' ');
    return whole.isEmpty() || QDir::isAbsolutePath(whole)
               ? whole
               : QDir::cleanPath(QDir::current().absoluteFilePath(whole));
}

Desktop::Desktop(shell::AppPaths paths)
    : paths_(std::move(paths))
    , sink_(&frame_)
    , layouts_(paths_, sink_)
    , fileDialogs_{.Memory = lastPlace_,
                   .DataDir = paths_.DataDir(),
                   .DesktopPath = DesktopFolder(),
                   .Sink = sink_}
    , windows_{
          .TempDir = paths_.TempDir(),
          .Registry = registry_,
          .Layouts = layouts_,
          .Laf = laf_,
          .Decompressor = decompressor_,
          .Sink = sink_,
          .Memory = memory_,
          .ChooseLoggingFile =
              [this](QWidget* owner) { return ChooseLoggingFile(fileDialogs_, owner); },
          .ChooseSaveFile = [this](QWidget* owner) { return ChooseSaveFile(fileDialogs_, owner); },
          .ChooseSaveOrExport =
              [this](QWidget* owner, bool rangeMarked) {
                  return ChooseSaveOrExport(fileDialogs_, owner, rangeMarked);
              },
          .DownloadFromLogger = [this](QWidget* owner) { return DownloadFromLogger(owner); },
          .OpenSettingWindow =
              [this](QWidget* owner) {
                  SettingWindow::Run(driver_, sink_, paths_.InitDir(), owner);
              },
          .ShowMonitor =
              [this](QWidget* owner) { MonitorWindow::Run(driver_, sink_, laf_, owner); },
          .ShowServiceMode =
              [this](QWidget* owner) {
                  ServiceWindow::Run(driver_, sink_, paths_.TempDir(), fileDialogs_, owner);
              }}
    , detonation_{.TempDir = paths_.TempDir(),
                  .Sink = sink_,
                  .Memory = memory_,
                  .Driver = &driver_,
                  .ChooseDetonationFile =
                      [this](QWidget* owner) { return ChooseDetonationFile(fileDialogs_, owner); },
                  .ChooseDetonationSave =
                      [this](QWidget* owner) {
                          return ChooseDetonationSave(fileDialogs_, owner);
                      }}
    , printing_{.Memory = printMemory_, .Sink = sink_, .ChoosePdfFile = [this](QWidget* owner) {
                    return ChoosePdfFile(fileDialogs_, owner);
                }} {
    InstallPrintContext(&printing_);
    frame_.Attach(windows_);
    frame_.AttachDetonation(detonation_);
}

Desktop::~Desktop() {
    InstallPrintContext(nullptr);
}

std::optional<std::filesystem::path> Desktop::DownloadFromLogger(QWidget* owner) {
    const DownloadResult result =
        DownloadDialog::Run(driver_, sink_, awake_, DownloadRequest{paths_.TempDir()}, owner);
    if (result.Cancelled) {
        return std::nullopt;
    }
    return result.File;
}

void Desktop::Start(const QString& commandLine) {
    paths_.MakeFolders();
    shell::DeleteTempFiles(paths_.TempDir(), 0);
    layouts_.LoadLayouts();
    logger::LoadLafTable(laf_, paths_.InitDir(), sink_);
    frame_.show();
    if (const QScreen* screen = QGuiApplication::primaryScreen()) {
        frame_.SetToolBoxPlace(LimitToScreen(layouts_.ToolBox(), screen->size()));
    }
    QWidget* opened = OpenPath(commandLine);
    frame_.ShowToolBox();
    // Once the event loop has shown the frame and the toolbox, so that the frame (or a map
    // window the command line opened) ends up the active window rather than the toolbox shown
    // after it.
    QWidget* focus = opened != nullptr ? opened : &frame_;
    QTimer::singleShot(0, focus, [focus] { focus->activateWindow(); });
}

void Desktop::Shutdown() {
    shell::DeleteTempFiles(paths_.TempDir(), 0);
    layouts_.SaveLastLayout(frame_.ToolBoxPlace());
}

void Desktop::Raise() {
    QWidget* target = QApplication::activeModalWidget();
    if (target == nullptr) {
        target = &frame_;
        frame_.showNormal();
    }
    target->raise();
    target->activateWindow();
}

void Desktop::LinkExecute(const QString& command) {
    const load::LinkAction action = load::LinkExecute(command.toStdString());
    if (action.Accepted) {
        OpenPath(QString::fromStdString(action.Path));
    }
}

QWidget* Desktop::OpenPath(const QString& path) {
    const std::string whole = path.toStdString();
    switch (load::FileKindOf(whole)) {
    case load::FileKind::LoggingFile:
        frame_.OpenLoggingWindow(LoggingFileSource::Given, whole);
        break;
    case load::FileKind::DetonationFile:
        return frame_.OpenDetonationFile(whole);
    case load::FileKind::Other:
        break;
    }
    return nullptr;
}

} // namespace torvane::app
