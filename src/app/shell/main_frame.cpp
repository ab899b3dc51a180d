#include "shell/main_frame.h"

#include "shell/about_box.h"
#include "shell/frame_menu.h"

#include <QAction>
#include <QMdiArea>
#include <QMenuBar>

namespace torvane::app {
namespace {

QString Text(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

} // namespace

MainFrame::MainFrame(QWidget* parent)
    : QMainWindow(parent)
    , area_(new QMdiArea(this)) {
    setObjectName("mdiTLM0010");
    setWindowTitle(ProgramTitle);
    area_->setObjectName("mdiArea");
    setCentralWidget(area_);
    BuildMenu();
    WireHandlers();
    resize(1024, 700);
}

void MainFrame::BuildMenu() {
    const auto entries = FrameMenu();
    QMenu* menu = nullptr;
    QMenu* submenu = nullptr;
    for (std::size_t i = 0; i < entries.size(); ++i) {
        const MenuEntry& entry = entries[i];
        const QString name = Text(entry.name);
        const QString caption = Text(entry.caption);
        const bool opensSubmenu =
            entry.level == 1 && i + 1 < entries.size() && entries[i + 1].level == 2;
        if (entry.level == 0 || opensSubmenu) {
            QMenu* opened = entry.level == 0 ? menuBar()->addMenu(caption) : menu->addMenu(caption);
            opened->setObjectName(name);
            actions_.insert(name, opened->menuAction());
            (entry.level == 0 ? menu : submenu) = opened;
            continue;
        }
        QAction* action = (entry.level == 2 ? submenu : menu)->addAction(caption);
        action->setObjectName(name);
        actions_.insert(name, action);
    }
}

void MainFrame::WireHandlers() {
    // Everything below the bar starts disabled; the handlers that exist enable their entries.
    for (QAction* action : std::as_const(actions_)) {
        if (action->menu() == nullptr) {
            action->setEnabled(false);
        }
    }
    const auto wire = [this](const char* name, auto handler) {
        QAction* action = Action(name);
        action->setEnabled(true);
        connect(action, &QAction::triggered, this, handler);
    };
    wire("mnuEnd", &MainFrame::close);
    wire("mnuInfo", &MainFrame::ShowAbout);
}

void MainFrame::ShowAbout() {
    AboutBox about(this);
    about.exec();
}

} // namespace torvane::app
