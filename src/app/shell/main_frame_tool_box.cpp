// The frame's toolbox: shown and hidden by mnuToolBox, its place kept in twips, and put away
// while a window that must not have it in front runs or a picture is printed.

#include "shell/main_frame.h"

#include "graph/graph_window.h"
#include "graph/lap_list_window.h"
#include "output/hard_copy.h"
#include "shell/tool_box.h"

#include <QAction>
#include <QMdiArea>
#include <QMdiSubWindow>

namespace torvane::app {

void MainFrame::ToggleToolBox() {
    // The entry's check has already flipped when this runs: it says what the operator wants.
    if (Action("mnuToolBox")->isChecked()) {
        ShowToolBox();
    } else {
        HideToolBox();
    }
}

void MainFrame::ShowToolBox() {
    if (toolBox_ == nullptr) {
        toolBox_ = new ToolBox(tools_, this);
        toolBox_->move(toolBoxPlace_.Left / TwipsPerPixel, toolBoxPlace_.Top / TwipsPerPixel);
        connect(toolBox_, &ToolBox::SettingsChanged, this, [this] {
            if (QMdiSubWindow* active = area_->activeSubWindow()) {
                active->setFocus();
            }
        });
        connect(toolBox_, &ToolBox::Closing, this, &MainFrame::KeepToolBoxPlace);
        // Closed from its own window: the entry follows.
        connect(toolBox_, &QObject::destroyed, this, [this] {
            toolBoxPlace_.Shown = false;
            Action("mnuToolBox")->setChecked(false);
        });
    }
    toolBox_->show();
    toolBoxPlace_.Shown = true;
    Action("mnuToolBox")->setChecked(true);
    activateWindow();
}

void MainFrame::HideToolBox() {
    if (toolBox_ != nullptr) {
        toolBox_->close();
    }
    toolBoxPlace_.Shown = false;
    Action("mnuToolBox")->setChecked(false);
}

void MainFrame::KeepToolBoxPlace() {
    toolBoxPlace_ = ToolBoxPlace();
}

void MainFrame::SetToolBoxPlace(const layout::ToolBoxPlace& place) {
    toolBoxPlace_ = place;
    if (toolBox_ != nullptr) {
        toolBox_->move(place.Left / TwipsPerPixel, place.Top / TwipsPerPixel);
    }
}

layout::ToolBoxPlace MainFrame::ToolBoxPlace() const {
    layout::ToolBoxPlace place = toolBoxPlace_;
    // Pixels are coarser than twips: the kept twips stand unless the toolbox was moved.
    const QPoint kept(place.Left / TwipsPerPixel, place.Top / TwipsPerPixel);
    if (toolBox_ != nullptr && toolBox_->pos() != kept) {
        place.Left = toolBox_->x() * TwipsPerPixel;
        place.Top = toolBox_->y() * TwipsPerPixel;
    }
    return place;
}

void MainFrame::WithToolBoxAway(const std::function<void()>& work) {
    // Hidden, not closed: its entry stays checked and it comes back where it stood.
    const bool shown = Action("mnuToolBox")->isChecked() && toolBox_ != nullptr;
    if (shown) {
        toolBox_->hide();
    }
    work();
    if (shown && toolBox_ != nullptr) {
        toolBox_->show();
    }
}

void MainFrame::StepAsideWhile(const std::function<void()>& window) {
    // Setting mode and the monitor work on the logger alone: the frame, its toolbox and the lap
    // list step out of the way while they run.
    WithToolBoxAway([&] {
        lapList_->StepAside(true);
        hide();
        window();
        show();
        lapList_->StepAside(false);
    });
    activateWindow();
}

void MainFrame::Print() {
    GraphWindow* window = ActiveGraphWindow();
    QMdiSubWindow* frame = area_->currentSubWindow();
    if (window == nullptr || frame->isMinimized()) {
        return;
    }
    // A shown toolbox leaves the picture whole (-1).
    const int mode = Action("mnuToolBox")->isChecked() ? -1 : 0;
    WithToolBoxAway([&] { PrintWindow(*window, mode); });
    if (area_->subWindowList().contains(frame)) {
        frame->setFocus();
    }
}

} // namespace torvane::app
