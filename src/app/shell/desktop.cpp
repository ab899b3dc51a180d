#include "shell/desktop.h"

#include "shell/temp_files.h"

#include <QApplication>
#include <QScreen>
#include <QStringList>

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
    return words.join(' ');
}

Desktop::Desktop(shell::AppPaths paths)
    : paths_(std::move(paths))
    , sink_(&frame_)
    , layouts_(paths_, sink_) {}

void Desktop::Start(const QString& commandLine) {
    paths_.MakeFolders();
    shell::DeleteTempFiles(paths_.TempDir(), 0);
    layouts_.LoadLayouts();
    logger::LoadLafTable(laf_, paths_.InitDir(), sink_);
    frame_.show();
    OpenFromCommandLine(commandLine);
    QApplication::processEvents();
    frame_.activateWindow();
}

void Desktop::Shutdown() {
    shell::DeleteTempFiles(paths_.TempDir(), 0);
    layouts_.SaveLastLayout(layouts_.ToolBox());
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
    // Only "LOAD" commands are taken; the rest of the text is a command line like the program's
    // own.
    if (command.left(4) == "LOAD") {
        OpenFromCommandLine(command.mid(4));
    }
}

void Desktop::OpenFromCommandLine(const QString& path) {
    // The last three characters decide, upper-cased, without looking for a dot. Graph windows
    // and detonation maps open files once they exist; until then a file named on the command
    // line is accepted and the frame stays as it is.
    const QString kind = path.right(3).toUpper();
    if (kind == "RLG" || kind == "DTO") {
        return;
    }
}

} // namespace torvane::app
