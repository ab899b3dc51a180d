#include "shell/main_frame.h"

#include "graph/graph_window.h"
#include "graph/graph_window_context.h"
#include "graph/lap_list_window.h"
#include "layout/layout_save_dialog.h"
#include "load/link_command.h"
#include "load/memory_check.h"
#include "load/window_layout.h"
#include "shell/about_box.h"
#include "shell/frame_menu.h"
#include "shell/help_window.h"
#include "shell/service_door.h"
#include "shell/wait_cursor.h"
#include "views/detonation_windows.h"
#include "views/histogram_widget.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QCursor>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QShortcut>

#include <algorithm>

namespace torvane::app {
namespace {

// mnuScrollItem(0..2): the item the scroll strip follows.
constexpr int ScrollItemCount = 3;
QString ScrollItemEntry(int item) {
    return QString("mnuScrollItem%1").arg(item);
}

QString Text(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

QString LayoutEntryName(int index) {
    return QString("mnuLayout%1").arg(index);
}

// A new graph window opens at this size, or smaller where the frame is smaller.
constexpr QSize NewWindowSize(760, 480);
// Each further window steps this far down and right of the one before, as a cascade does.
constexpr int CascadeStep = 24;

// Where the window opened after `openWindows` others stands: it steps down the cascade, and
// starts again at the corner where a step would put part of it out of sight.
QRect NewWindowPlace(qsizetype openWindows, QSize area) {
    const QSize size = NewWindowSize.boundedTo(area).expandedTo(QSize(1, 1));
    const int room = std::min(area.width() - size.width(), area.height() - size.height());
    const qsizetype steps = room / CascadeStep + 1;
    const int step = static_cast<int>(openWindows % steps) * CascadeStep;
    return {QPoint(step, step), size};
}

GraphWindow* GraphWindowOf(const QMdiSubWindow* window) {
    return window == nullptr ? nullptr : qobject_cast<GraphWindow*>(window->widget());
}

} // namespace

MainFrame::MainFrame(QWidget* parent)
    : QMainWindow(parent)
    , area_(new QMdiArea(this)) {
    setObjectName("mdiTLM0010");
    setWindowTitle(ProgramTitle);
    setAcceptDrops(true);
    area_->setObjectName("mdiArea");
    setCentralWidget(area_);
    BuildMenu();
    WireHandlers();
    lapList_ = new LapListToggle(*this, *Action("mnuLap"), [this] { return ActiveGraphWindow(); });
    connect(area_, &QMdiArea::subWindowActivated, this, &MainFrame::WindowActivated);
    RefreshLayoutMenu();
    new ServiceDoor(this);
    resize(1024, 700);
}

MainFrame::~MainFrame() {
    // The windows go after the frame's own part: nothing they signal on the way may reach it.
    for (GraphWindow* window : GraphWindows()) {
        window->disconnect(this);
    }
    area_->disconnect(this);
    if (toolBox_ != nullptr) {
        toolBox_->disconnect(this);
    }
}

void MainFrame::BuildMenu() {
    const auto entries = FrameMenu();
    QMenu* menu = nullptr;
    QMenu* submenu = nullptr;
    for (std::size_t i = 0; i < entries.size(); ++i) {
        const MenuEntry& entry = entries[i];
        const QString name = Text(entry.Name);
        const QString caption = Text(entry.Caption);
        const bool opensSubmenu =
            entry.Level == 1 && i + 1 < entries.size() && entries[i + 1].Level == 2;
        if (entry.Level == 0 || opensSubmenu) {
            QMenu* opened = entry.Level == 0 ? menuBar()->addMenu(caption) : menu->addMenu(caption);
            opened->setObjectName(name);
            actions_.insert(name, opened->menuAction());
            (entry.Level == 0 ? menu : submenu) = opened;
            continue;
        }
        QAction* action = (entry.Level == 2 ? submenu : menu)->addAction(caption);
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
    Wire("mnuEnd", &MainFrame::End);
    Wire("mnuInfo", &MainFrame::ShowAbout);
    Wire("mnuHelpEx", &MainFrame::ShowHelp);
    Wire("mnuToolBox", &MainFrame::ToggleToolBox);
    Action("mnuToolBox")->setCheckable(true);
    Action("mnuHelpEx")->setShortcut(QKeySequence::HelpContents);
    // The entry shows F1, but the key itself opens the page of the window in use, while the
    // entry opens the contents.
    Action("mnuHelpEx")->setShortcutContext(Qt::WidgetShortcut);
    connect(new QShortcut(QKeySequence::HelpContents, this), &QShortcut::activated, this,
            &MainFrame::AnswerHelp);
    SetHelpPage(this, "frame.html");
}

void MainFrame::ToggleLapList() {
    lapList_->Toggle();
}

void MainFrame::OpenHistogram() {
    GraphWindow* window = ActiveGraphWindow();
    if (window == nullptr || !window->Menus().HistoEnabled ||
        !load::CheckMemory(context_->Memory, context_->Sink)) {
        return;
    }
    OpenHistogramWindow(views::HistogramRequestOf(window->State()), context_->Sink, this);
}

void MainFrame::ShowHelp() {
    auto* help = new HelpWindow(ManualPath(), this);
    help->show();
}

void MainFrame::AnswerHelp() {
    const QWidget* focus = QApplication::focusWidget();
    if (focus == nullptr) {
        focus = QApplication::activeWindow();
    }
    // The focus on the frame itself, or on a window's frame, stands for the current window.
    if (focus == nullptr || focus == this || qobject_cast<const QMdiSubWindow*>(focus) ||
        focus == area_) {
        focus = area_->currentSubWindow() != nullptr ? area_->currentSubWindow()->widget() : this;
    }
    (new HelpWindow(ManualPath(HelpPageOf(focus)), this))->show();
}

void MainFrame::Wire(const char* name, void (MainFrame::*handler)()) {
    QAction* action = Action(name);
    wired_.insert(name);
    action->setEnabled(true);
    connect(action, &QAction::triggered, this, handler);
}

void MainFrame::Attach(GraphWindowContext& context) {
    context_ = &context;
    context.Tools = &tools_;
    context.CurrentToolBoxPlace = [this] {
        return ToolBoxPlace();
    };
    Wire("mnuFileOpen", &MainFrame::FileOpen);
    if (context.DownloadFromLogger) {
        Wire("mnuLogger", &MainFrame::OpenFromLogger);
    }
    if (context.OpenSettingWindow) {
        Wire("mnuConf", &MainFrame::ShowSettingWindow);
    }
    if (context.ShowMonitor) {
        Wire("mnuMoniter", &MainFrame::ShowMonitorWindow);
    }
    if (auto* door = findChild<ServiceDoor*>()) {
        door->SetServiceMode(context.ShowServiceMode);
    }
    Wire("mnuOpenLayer", &MainFrame::OpenLayer);
    Wire("mnuFileClose", &MainFrame::FileClose);
    Wire("mnuLap", &MainFrame::ToggleLapList);
    Wire("mnuHisto", &MainFrame::OpenHistogram);
    Wire("mnuLaySave", &MainFrame::SaveLayout);
    Wire("mnuLayoutDef", &MainFrame::ApplyDefaultLayout);
    for (int index = 1; index <= graph::LayoutMenuCount; ++index) {
        const QString name = LayoutEntryName(index);
        wired_.insert(name);
        connect(Action(name), &QAction::triggered, this,
                [this, index] { ApplyStoredLayout(index); });
    }
    RefreshLayoutMenu();
    // The commands that the active graph window carries out alone.
    const std::pair<const char*, std::function<void(GraphWindow&)>> windowCommands[] = {
        {"mnuCloseLayer", &GraphWindow::CloseLayer},
        {"mnuSave", &GraphWindow::Save},
        {"mnuCalcu", &GraphWindow::FunctionCalculation},
        {"mnuDisp", &GraphWindow::ChooseDisplayItems},
        {"mnuLine", &GraphWindow::ChooseLineKind},
        {"mnuGrid", &GraphWindow::SetUpGrid},
        {"mnuAlign", &GraphWindow::AlignLayers},
        {"mnuMove", &GraphWindow::MoveCenter}};
    for (const auto& [name, command] : windowCommands) {
        wired_.insert(name);
        connect(Action(name), &QAction::triggered, this, [this, command] {
            if (GraphWindow* window = ActiveGraphWindow()) {
                command(*window);
            }
        });
    }
    Wire("mnuPrint", &MainFrame::Print);
    for (int item = 0; item < ScrollItemCount; ++item) {
        const QString name = ScrollItemEntry(item);
        wired_.insert(name);
        Action(name)->setCheckable(true);
        connect(Action(name), &QAction::triggered, this, [this, item] {
            if (GraphWindow* window = ActiveGraphWindow()) {
                window->ChooseScrollItem(item);
            }
            ApplyWindowMenus();
        });
    }
    ApplyWindowMenus();
}

void MainFrame::AttachDetonation(DetonationContext& context) {
    detonation_ = &context;
    for (int index = 1; index <= 3; ++index) {
        if (index == static_cast<int>(views::DetonationSource::Logger) &&
            context.Driver == nullptr) {
            continue;
        }
        const QString name = QString("mnuDspDeto%1").arg(index);
        wired_.insert(name);
        Action(name)->setEnabled(true);
        connect(Action(name), &QAction::triggered, this, [this, index] { ShowDetonation(index); });
    }
    ApplyWindowMenus();
}

void MainFrame::ShowDetonation(int index) {
    const GraphWindow* window = ActiveGraphWindow();
    app::ShowDetonation(*detonation_, static_cast<views::DetonationSource>(index),
                        window != nullptr ? &window->State() : nullptr, this);
}

DetonationWindow* MainFrame::OpenDetonationFile(const std::filesystem::path& path) {
    if (detonation_ == nullptr) {
        return nullptr;
    }
    return OpenDetonationWindow(*detonation_, views::DetonationSource::File, path, this);
}

QList<DetonationWindow*> MainFrame::DetonationWindows() const {
    return findChildren<DetonationWindow*>(Qt::FindDirectChildrenOnly);
}

GraphWindow* MainFrame::OpenLoggingWindow(LoggingFileSource source,
                                          const std::filesystem::path& path) {
    if (context_ == nullptr || !load::CheckMemory(context_->Memory, context_->Sink)) {
        return nullptr;
    }
    std::optional<std::filesystem::path> file;
    switch (source) {
    case LoggingFileSource::Chosen:
        file = context_->ChooseLoggingFile ? context_->ChooseLoggingFile(this) : std::nullopt;
        break;
    case LoggingFileSource::Downloaded:
        file = context_->DownloadFromLogger ? context_->DownloadFromLogger(this) : std::nullopt;
        break;
    case LoggingFileSource::Given:
        file = path;
        break;
    }
    if (!file) {
        return nullptr;
    }
    return ShowLoggingFile(*file, source == LoggingFileSource::Downloaded);
}

GraphWindow* MainFrame::ShowLoggingFile(const std::filesystem::path& path, bool fromLogger) {
    if (context_ == nullptr) {
        return nullptr;
    }
    const WaitCursor hourglass;
    const int number = context_->Registry.Claim();
    auto* window = new GraphWindow(*context_, number);
    connect(window, &GraphWindow::MenusChanged, this, &MainFrame::ApplyWindowMenus);
    connect(window, &GraphWindow::PopupRequested, this, &MainFrame::ShowPopup);
    connect(window, &GraphWindow::LayerSelected, this, [this, window] {
        if (window == ActiveGraphWindow()) {
            lapList_->Refill();
        }
    });
    connect(window, &GraphWindow::LastWindowUnloaded, lapList_, &LapListToggle::Close);
    const QRect place = NewWindowPlace(area_->subWindowList().size(), area_->viewport()->size());
    QMdiSubWindow* frame = area_->addSubWindow(window);
    frame->setGeometry(place);
    frame->show();
    const bool loaded = window->LoadLoggingFile(path);
    if (!loaded) {
        window->Discard();
        delete frame;
    }
    // Set even for a failed load: the mark stays on the free number until it is claimed again.
    if (fromLogger) {
        context_->Registry.SetLogger(number, 1);
    }
    ApplyWindowMenus();
    return loaded ? window : nullptr;
}

GraphWindow* MainFrame::ActiveGraphWindow() const {
    // The current window stays current while the frame itself is not the active window.
    return GraphWindowOf(area_->currentSubWindow());
}

QList<GraphWindow*> MainFrame::GraphWindows() const {
    QList<GraphWindow*> windows;
    for (QMdiSubWindow* window : area_->subWindowList()) {
        if (GraphWindow* graph = GraphWindowOf(window)) {
            windows << graph;
        }
    }
    return windows;
}

void MainFrame::closeEvent(QCloseEvent* event) {
    const GraphWindow* active = ActiveGraphWindow();
    activeWindowNumber_ = active != nullptr ? active->Number() : -1;
    // Every window answers its question before any goes: the first Cancel keeps the frame and
    // all of them open, and none is asked twice.
    const QList<GraphWindow*> windows = GraphWindows();
    if (!std::all_of(windows.begin(), windows.end(),
                     [](GraphWindow* window) { return window->QueryUnload(); })) {
        event->ignore();
        return;
    }
    for (GraphWindow* window : windows) {
        window->Discard();
    }
    area_->closeAllSubWindows();
    event->accept();
}

void MainFrame::dragEnterEvent(QDragEnterEvent* event) {
    if (event->mimeData()->hasUrls()) {
        event->acceptProposedAction();
    }
}

void MainFrame::dropEvent(QDropEvent* event) {
    const QList<QUrl> urls = event->mimeData()->urls();
    if (urls.isEmpty()) {
        return;
    }
    event->acceptProposedAction();
    // Only the first file counts; files that do not exist or are of another kind are ignored
    // without a word.
    const std::filesystem::path path = urls.front().toLocalFile().toStdString();
    std::error_code error;
    if (path.empty() || !std::filesystem::exists(path, error)) {
        return;
    }
    switch (load::FileKindOf(path.string())) {
    case load::FileKind::LoggingFile:
        OpenLoggingWindow(LoggingFileSource::Given, path);
        break;
    case load::FileKind::DetonationFile:
        OpenDetonationFile(path);
        break;
    case load::FileKind::Other:
        break;
    }
}

void MainFrame::End() {
    close();
}

void MainFrame::ShowAbout() {
    AboutBox about(this);
    about.exec();
}

void MainFrame::FileOpen() {
    OpenLoggingWindow(LoggingFileSource::Chosen);
}

void MainFrame::ShowSettingWindow() {
    if (!load::CheckMemory(context_->Memory, context_->Sink)) {
        return;
    }
    StepAsideWhile([this] { context_->OpenSettingWindow(this); });
}

void MainFrame::OpenFromLogger() {
    OpenLoggingWindow(LoggingFileSource::Downloaded);
}

void MainFrame::ShowMonitorWindow() {
    StepAsideWhile([this] { context_->ShowMonitor(this); });
}

void MainFrame::OpenLayer() {
    GraphWindow* window = ActiveGraphWindow();
    if (window == nullptr || !window->Menus().OpenLayerEnabled || !context_->ChooseLoggingFile) {
        return;
    }
    if (const auto file = context_->ChooseLoggingFile(this)) {
        window->OpenLayer(*file);
    }
}

void MainFrame::FileClose() {
    if (QMdiSubWindow* window = area_->currentSubWindow()) {
        window->close();
    }
    ApplyWindowMenus();
}

void MainFrame::SaveLayout() {
    GraphWindow* window = ActiveGraphWindow();
    if (window == nullptr || context_ == nullptr) {
        return;
    }
    load::PendActiveDisplay(window->State(), context_->Layouts);
    LayoutSaveDialog dialog(context_->Layouts, context_->Sink, this);
    const bool saved = dialog.exec() == QDialog::Accepted;
    // A layout deleted before Cancel is gone from the store all the same.
    RefreshLayoutMenu();
    if (saved) {
        load::KeepAsLastDisplay(window->State(), context_->Layouts);
    }
}

void MainFrame::ApplyStoredLayout(int index) {
    if (GraphWindow* window = ActiveGraphWindow()) {
        window->ApplyStoredLayout(index);
    }
}

void MainFrame::ApplyDefaultLayout() {
    if (GraphWindow* window = ActiveGraphWindow()) {
        window->ApplyDefaultLayout();
    }
}

void MainFrame::RefreshLayoutMenu() {
    const std::vector<std::string> names =
        context_ != nullptr ? context_->Layouts.GetLayoutNames() : std::vector<std::string>{};
    for (const graph::LayoutMenuEntry& entry : graph::RefreshLayoutMenu(names)) {
        QAction* action = Action(LayoutEntryName(entry.Index));
        // A name is no mnemonic: an "&" in it stands for itself.
        action->setText(QString::fromStdString(entry.Caption).replace('&', "&&"));
        action->setVisible(entry.Visible);
    }
}

void MainFrame::WindowActivated(QMdiSubWindow* window) {
    if (GraphWindow* graph = GraphWindowOf(window)) {
        graph->Activated();
        lapList_->Refill();
    }
    RefreshLayoutMenu();
    ApplyWindowMenus();
}

void MainFrame::SetEntry(const QString& name, bool enabled, bool visible) {
    if (QAction* action = Action(name)) {
        SetEnabled(name, enabled);
        action->setVisible(visible);
    }
}

void MainFrame::SetEnabled(const QString& name, bool enabled) {
    if (QAction* action = Action(name)) {
        action->setEnabled(enabled && wired_.contains(name));
    }
}

void MainFrame::ApplyWindowMenus() {
    const GraphWindow* window = ActiveGraphWindow();
    const graph::WindowMenuState menus =
        window != nullptr ? window->Menus() : graph::WindowMenuState{false, false};
    const bool open = window != nullptr;
    SetEntry("mnuFileClose", open);
    SetEntry("mnuSave", open);
    SetEntry("mnuPrint", open);
    SetEntry("mnuOpenLayer", open && menus.OpenLayerEnabled);
    SetEntry("mnuCloseLayer", open && menus.CloseLayerEnabled);
    SetEntry("mnuAlign", open && menus.AlignEnabled);
    SetEntry("mnuHisto", open && menus.HistoEnabled);
    SetEntry("mnuDspDeto2", open && menus.DspDeto2Enabled);
    SetEntry("mnuGrid", open && menus.GridEnabled);
    SetEntry("mnuDisp", open);
    SetEntry("mnuLine", open);
    SetEntry("mnuMove", open);
    SetEntry("mnuLap", open);
    SetEntry("mnuCalcu", open);
    SetEntry("mnuLaySave", open);
    SetEnabled("mnuLayoutDef", open);
    for (int index = 1; index <= graph::LayoutMenuCount; ++index) {
        SetEnabled(LayoutEntryName(index), open);
    }
    for (int item = 0; item < ScrollItemCount; ++item) {
        const auto i = static_cast<std::size_t>(item);
        SetEntry(ScrollItemEntry(item), open && menus.ScrollItemEnabled[i]);
        Action(ScrollItemEntry(item))->setChecked(open && menus.ScrollItemChecked[i]);
    }
}

void MainFrame::ShowPopup(const std::vector<graph::MenuEntryState>& entries) {
    QMenu* popup = Action("mnuVisible")->menu();
    struct Kept {
        QAction* Action;
        bool Enabled;
        bool Visible;
    };
    std::vector<Kept> kept;
    for (const graph::MenuEntryState& entry : entries) {
        const QString name = Text(entry.Name);
        if (QAction* action = Action(name)) {
            kept.push_back({action, action->isEnabled(), action->isVisible()});
            SetEntry(name, entry.Enabled, entry.Visible);
        }
    }
    popup->exec(QCursor::pos());
    // Closing the popup gives the bar back its entries as they were.
    for (const Kept& entry : kept) {
        entry.Action->setEnabled(entry.Enabled);
        entry.Action->setVisible(entry.Visible);
    }
}

} // namespace torvane::app
