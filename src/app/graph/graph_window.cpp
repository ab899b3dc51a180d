#include "graph/graph_window.h"

#include "calc/computed_item.h"
#include "calc/formula_items.h"
#include "calc/function_calculation_dialog.h"
#include "graph/display_item_dialog.h"
#include "graph/graph_tools.h"
#include "graph/graph_view.h"
#include "graph/grid_setup_dialog.h"
#include "graph/hit_test.h"
#include "graph/item_panel.h"
#include "graph/lap_list.h"
#include "graph/line_kind_dialog.h"
#include "graph/panel_controls.h"
#include "graph/read_out.h"
#include "graph/scroll_strip_view.h"
#include "graph/window_geometry.h"
#include "items/display_commands.h"
#include "items/scale_commands.h"
#include "load/layer_commands.h"
#include "load/load_logging_file.h"
#include "load/save_file.h"
#include "load/window_close.h"
#include "load/window_layout.h"
#include "shell/help_window.h"
#include "shell/wait_cursor.h"

#include <QCloseEvent>
#include <QFrame>
#include <QLabel>
#include <QMouseEvent>
#include <QPushButton>

namespace torvane::app {
namespace {

QRect ToQRect(const graph::PixelRect& rect) {
    return {rect.Left, rect.Top, rect.Width, rect.Height};
}

graph::MouseButton ToMouseButton(Qt::MouseButton button) {
    return button == Qt::RightButton ? graph::MouseButton::Right : graph::MouseButton::Left;
}

} // namespace

GraphWindow::GraphWindow(GraphWindowContext& context, int number, QWidget* parent)
    : QWidget(parent)
    , context_(context)
    , title_(new QLabel(QString::fromUtf8(graph::InitialTitleText.data(),
                                          static_cast<qsizetype>(graph::InitialTitleText.size())),
                        this))
    , graph_(new GraphView(state_, context.Laf, context.Sink, this))
    , strip_(new ScrollStripView(this))
    , moveLeft_(new QPushButton("<", this))
    , moveRight_(new QPushButton(">", this))
    , scrollTitle_(new TitleItem(this))
    , tools_(new GraphTools(state_, context, {*graph_, *strip_, *moveLeft_, *moveRight_, *this},
                            this)) {
    setObjectName("frmTLM0100");
    AnswerHelpKey(this, "graph.html");
    graph::NumberWindow(state_, number, context.TempDir);

    title_->setObjectName("lblTm");
    QFont titleFont = title_->font();
    titleFont.setPixelSize(11);
    title_->setFont(titleFont);
    title_->installEventFilter(this);
    graph_->setObjectName("picGraph");
    moveLeft_->setObjectName("cmdMove0");
    moveRight_->setObjectName("cmdMove1");
    scrollTitle_->setObjectName("ucnScroll");
    tools_->SetTraceExtent(graph::TraceExtentOf(state_, context.Laf));
    connect(tools_, &GraphTools::ReadOutChanged, this, &GraphWindow::SyncPanel);
    // A right press in the graph only makes the item's layer active: the strip keeps the signal
    // and the box it showed.
    connect(tools_, &GraphTools::LayerChanged, this, [this] {
        SyncPanel();
        emit MenusChanged();
    });
    connect(tools_, &GraphTools::PopupRequested, this, &GraphWindow::PopupRequested);
    ApplyGeometry();
    ApplyScrollStrip(StripBox::Placed);
}

bool GraphWindow::LoadLoggingFile(const std::filesystem::path& file) {
    setWindowTitle(QString::fromStdString(file.string()));
    graph::DisplaySet display;
    context_.Layouts.GetLayout(0, display);
    const bool loaded =
        load::LoadLoggingFile(state_, file, display, context_.Decompressor, context_.Sink, *this);
    ApplyGeometry();
    // The box of a window's first file stands for what the graph shows, as after any new size.
    if (loaded && graph::ResizeRebuildsStrip(state_)) {
        ApplyScrollStrip(StripBox::Placed);
    }
    emit MenusChanged();
    return loaded;
}

bool GraphWindow::OpenLayer(const std::filesystem::path& file) {
    const bool opened = load::OpenLayer(state_, file, context_.Decompressor, context_.Sink, *this);
    emit MenusChanged();
    return opened;
}

bool GraphWindow::CloseLayer() {
    const bool closed = load::CloseLayer(state_, *this);
    emit MenusChanged();
    return closed;
}

void GraphWindow::Save() {
    if (!context_.ChooseSaveOrExport) {
        return;
    }
    const auto choice =
        context_.ChooseSaveOrExport(this, state_.RangeState == graph::RangeState::Complete);
    if (!choice) {
        return;
    }
    // The area the dialog covered is painted again now, not after the copy or export that holds
    // the interface.
    window()->repaint();
    {
        const WaitCursor hourglass;
        load::SaveMainFile(state_, *choice, context_.Registry, context_.Laf, context_.Sink);
    }
    // Saved under a new name, the window shows the file its comments now go to.
    setWindowTitle(QString::fromStdString(state_.Layers.Layer[0].FilePath.string()));
    SyncPanel();
    emit MenusChanged();
}

void GraphWindow::Discard() {
    Unload();
}

void GraphWindow::Activated() {
    if (state_.SingleFileState == graph::SingleFileState::Loaded) {
        load::KeepAsLastDisplay(state_, context_.Layouts);
    }
    emit MenusChanged();
}

bool GraphWindow::MoveLapTime(int lapNo) {
    if (!graph::MoveLapTime(state_, lapNo) || !RedrawGraph()) {
        return false;
    }
    strip_->FollowOffset(state_);
    DispValues(true);
    return true;
}

bool GraphWindow::ApplyStoredLayout(int index) {
    if (!load::ApplyStoredLayout(state_, context_.Layouts, index, *this)) {
        return false;
    }
    ApplyScrollStrip(StripBox::Placed);
    emit MenusChanged();
    return true;
}

void GraphWindow::ApplyDefaultLayout() {
    load::ApplyDefaultLayout(state_, context_.Layouts, *this);
    ApplyScrollStrip(StripBox::Placed);
    emit MenusChanged();
}

void GraphWindow::ChooseScrollItem(int item) {
    if (!graph::FollowScrollItem(state_, item)) {
        return;
    }
    ApplyScrollStrip(StripBox::Kept);
    emit MenusChanged();
}

void GraphWindow::FunctionCalculation() {
    const int layer = state_.ActiveLayer;
    const logdata::LayerRecord& record = state_.Layers.Layer.at(static_cast<std::size_t>(layer));
    FunctionCalculationDialog dialog(calc::OfferedKinds(record),
                                     {&state_.Layers, layer, &context_.Laf}, context_.Sink, this);
    if (dialog.exec() != QDialog::Accepted || !dialog.Item()) {
        return;
    }
    calc::StoreComputedItem(state_, layer, *dialog.Item(), graph_->height());
    calc::ShowComputedItems(state_, *this);
    SyncPanel();
    emit MenusChanged();
}

void GraphWindow::ChooseDisplayItems() {
    DisplayItemDialog dialog(items::DisplayChoicesOf(state_), context_.Sink, this);
    if (dialog.exec() != QDialog::Accepted) {
        return;
    }
    items::ApplyDisplayChoice(state_, dialog.View(), context_.Layouts, *this);
    SyncPanel();
    emit MenusChanged();
}

void GraphWindow::ChooseLineKind() {
    const std::optional<items::LineCommand> command = items::LineCommandOf(state_);
    if (!command) {
        return;
    }
    LineKindDialog dialog(command->Start, this);
    if (dialog.exec() != QDialog::Accepted) {
        return;
    }
    items::ApplyLineKind(state_, *command, dialog.Kind(), context_.Layouts, *this);
    // The strip's title bar takes the colour of its item.
    ApplyScrollStrip(StripBox::Kept);
    SyncPanel();
}

void GraphWindow::SetUpGrid() {
    std::optional<items::GridRequest> request = items::GridRequestOf(state_);
    if (!Menus().GridEnabled || !request) {
        return;
    }
    GridSetupDialog dialog(std::move(*request), context_.Sink, this);
    if (dialog.exec() != QDialog::Accepted) {
        return;
    }
    items::ApplyGrid(state_, dialog.Result(), context_.Layouts, *this);
}

void GraphWindow::AlignLayers() {
    if (Menus().AlignEnabled) {
        items::AlignLayers(state_, *this);
    }
}

void GraphWindow::MoveCenter() {
    items::MoveCenter(state_, graph_->height(), context_.Layouts, *this);
}

bool GraphWindow::ShowLayerPanel(int layer) {
    const logdata::LayerRecord& record = state_.Layers.Layer.at(static_cast<std::size_t>(layer));
    state_.Panel.ShowLayerPanel(layer, graph::BareFileName(record.FilePath), record,
                                state_.Views.at(static_cast<std::size_t>(layer)));
    SyncPanel();
    return true;
}

void GraphWindow::CloseLayerPanel(int layer) {
    state_.Panel.CloseLayer(layer);
    SyncPanel();
}

bool GraphWindow::SelectLayer(int layer) {
    state_.Panel.MarkFile(layer);
    if (!graph::SelectLayer(state_, layer)) {
        return false;
    }
    ApplyScrollStrip(StripBox::Kept);
    SyncPanel();
    emit LayerSelected();
    return true;
}

bool GraphWindow::DrawScales() {
    graph_->DrawScaleColumn();
    return true;
}

bool GraphWindow::RedrawGraph() {
    return graph::RecordRedraw(state_, graph_->RedrawGraph(render::RedrawMode::Rebuild));
}

void GraphWindow::DispValues(bool recalculateCursor) {
    graph::DispValues(state_, recalculateCursor ? 1 : 0, context_.Laf);
    SyncPanel();
}

void GraphWindow::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    if (isMinimized()) {
        return;
    }
    // The picture itself follows its new size in GraphView, which learns it only when its own
    // resize arrives: later than this one while the window is being restored or maximised.
    ApplyGeometry();
    if (graph::ResizeRebuildsStrip(state_)) {
        ApplyScrollStrip(StripBox::Placed);
    }
}

bool GraphWindow::QueryUnload() {
    const load::ChooseSavePath chooseSavePath = [this] {
        return context_.ChooseSaveFile ? context_.ChooseSaveFile(this) : std::nullopt;
    };
    return load::QueryUnload(state_, context_.Registry, context_.Sink, chooseSavePath);
}

void GraphWindow::closeEvent(QCloseEvent* event) {
    if (!unloaded_) {
        if (!QueryUnload()) {
            event->ignore();
            return;
        }
        Unload();
    }
    event->accept();
}

bool GraphWindow::eventFilter(QObject* watched, QEvent* event) {
    if (watched == title_ && event->type() == QEvent::MouseButtonPress) {
        graph::ToggleDeltaMode(state_);
        SyncPanel();
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

void GraphWindow::ApplyGeometry() {
    const graph::WindowGeometry geometry = graph::ResizeWindow(state_, width(), height());
    title_->setGeometry(0, 0, graph::PanelWidth, graph::FirstFileCaptionTop);
    graph_->setGeometry(ToQRect(geometry.Graph));
    strip_->setGeometry(ToQRect(geometry.Strip));
    moveLeft_->setGeometry(ToQRect(geometry.MoveLeft));
    moveRight_->setGeometry(ToQRect(geometry.MoveRight));
    scrollTitle_->setGeometry(ToQRect(geometry.ScrollTitle));
}

void GraphWindow::ApplyScrollStrip(StripBox box) {
    const graph::ScrollStripState strip = graph::ScrollStripOf(state_);
    scrollTitle_->Show(QString::fromStdString(strip.Title), strip.LineColor);
    moveLeft_->setVisible(strip.Shown);
    moveRight_->setVisible(strip.Shown);
    if (!strip.Shown) {
        strip_->Clear();
    } else if (box == StripBox::Placed) {
        strip_->BuildAndPlaceBox(state_, graph_->width());
    } else {
        strip_->Build(state_);
    }
}

void GraphWindow::SyncPanel() {
    const int width = graph::PanelWidth;
    std::map<int, FileCaptionBox*> files;
    for (const graph::FileCaption& caption : state_.Panel.Files()) {
        FileCaptionBox* box = files_.contains(caption.Layer) ? files_[caption.Layer] : nullptr;
        if (box == nullptr) {
            box = new FileCaptionBox(this);
            box->setObjectName(QString("chkFile%1").arg(caption.Layer));
            const int layer = caption.Layer;
            connect(box, &FileCaptionBox::Pressed, this, [this, layer](Qt::MouseButton button) {
                PressPanel({graph::PanelControl::Kind::File, layer}, button);
            });
        }
        files_.erase(caption.Layer);
        box->Show(caption, width);
        box->show();
        files[caption.Layer] = box;
    }
    for (auto& [layer, box] : files_) {
        box->deleteLater();
        box->hide();
    }
    files_ = std::move(files);

    std::map<int, ItemRowControl*> rows;
    for (const graph::ItemRow& row : state_.Panel.Rows()) {
        ItemRowControl* control = rows_.contains(row.Index) ? rows_[row.Index] : nullptr;
        if (control == nullptr) {
            control = new ItemRowControl(this);
            control->setObjectName(QString("chkItem%1").arg(row.Index));
            const int index = row.Index;
            connect(control, &ItemRowControl::Pressed, this, [this, index](Qt::MouseButton button) {
                PressPanel({graph::PanelControl::Kind::Row, index}, button);
            });
        }
        rows_.erase(row.Index);
        control->Show(row, width);
        control->show();
        rows[row.Index] = control;
    }
    for (auto& [index, control] : rows_) {
        control->deleteLater();
        control->hide();
    }
    rows_ = std::move(rows);
    title_->setText(QString::fromStdString(state_.TitleText));
}

void GraphWindow::PressPanel(graph::PanelControl control, Qt::MouseButton button) {
    const graph::PanelPressResult result =
        graph::PressPanelControl(state_, control, ToMouseButton(button));
    if (result.LayerSelected) {
        ApplyScrollStrip(StripBox::Kept);
        emit LayerSelected();
    }
    SyncPanel();
    emit MenusChanged();
    if (result.Popup) {
        emit PopupRequested(*result.Popup);
    }
}

void GraphWindow::Unload() {
    if (unloaded_) {
        return;
    }
    unloaded_ = true;
    const layout::ToolBoxPlace toolBox =
        context_.CurrentToolBoxPlace ? context_.CurrentToolBoxPlace() : context_.Layouts.ToolBox();
    if (load::UnloadWindow(state_, context_.Registry, context_.Layouts, toolBox).LastWindow) {
        emit LastWindowUnloaded();
    }
}

} // namespace torvane::app
