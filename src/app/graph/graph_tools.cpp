#include "graph/graph_tools.h"

#include "graph/arrow_keys.h"
#include "graph/comment_editor.h"
#include "graph/cursor.h"
#include "graph/graph_pointers.h"
#include "graph/range_tool.h"
#include "graph/read_out.h"
#include "graph/scroll_strip_view.h"
#include "graph/scrolling.h"
#include "graph/time_axis.h"
#include "graph/time_zoom.h"
#include "graph/value_zoom.h"
#include "shell/message_sink.h"
#include "shell/rounding.h"
#include "shell/tool_box.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPointer>
#include <QPushButton>

#include <cstdlib>

namespace torvane::app {
namespace {

constexpr int DragTickMs = 100;
// A hold waits this long after each pass, taking events meanwhile.
constexpr int HeldPassMs = 20;
// The ghost follows only moves of at least this many pixels.
constexpr int GhostStep = 3;
constexpr std::string_view GhostFailedMessage = "Error DirectX.";

enum Tool {
    DragTool,
    ScrollTool,
    ReduceTime,
    ExpandTime,
    ReduceValue,
    ExpandValue,
    TextTool,
    DeltaTool
};

int Round(double value) {
    return static_cast<int>(shell::RoundToInt64(value));
}

} // namespace

GraphTools::GraphTools(graph::GraphWindowState& state, GraphWindowContext& context,
                       Controls controls, QObject* parent)
    : QObject(parent)
    , state_(state)
    , context_(context)
    , controls_(controls)
    , comments_(new CommentEditor(
          state, controls.Picture, context.Sink, [this] { return mouse_; }, this)) {
    QWidget* picture = controls_.Picture.Widget();
    picture->setMouseTracking(true);
    picture->installEventFilter(this);
    controls_.Window.installEventFilter(this);
    controls_.Window.setFocusPolicy(Qt::StrongFocus);
    for (QPushButton* button : {&controls_.MoveLeft, &controls_.MoveRight}) {
        button->setFocusPolicy(Qt::NoFocus);
        button->installEventFilter(this);
    }
    tmrDrag_.setObjectName("tmrDrag");
    tmrDrag_.setInterval(DragTickMs);
    connect(&tmrDrag_, &QTimer::timeout, this, &GraphTools::FollowGhost);
    tmrHold_.setSingleShot(true);
    tmrHold_.setInterval(HeldPassMs);
    connect(&tmrHold_, &QTimer::timeout, this, &GraphTools::HoldPass);
    connect(&controls_.Strip, &ScrollStripView::DragStarted, this,
            [this](graph::DragState drag) { graph::BeginBoxDrag(state_, drag); });
    connect(&controls_.Strip, &ScrollStripView::DragEnded, this, &GraphTools::EndBoxDrag);
    connect(comments_, &CommentEditor::CommentsChanged, this,
            [this] { Redraw(render::RedrawMode::Rebuild); });
}

const ToolSettings& GraphTools::Tools() const {
    static const ToolSettings standalone;
    return context_.Tools != nullptr ? *context_.Tools : standalone;
}

int GraphTools::Width() const {
    return controls_.Picture.Widget()->width();
}

int GraphTools::Height() const {
    return controls_.Picture.Widget()->height();
}

bool GraphTools::eventFilter(QObject* watched, QEvent* event) {
    const QEvent::Type type = event->type();
    if (type == QEvent::KeyPress) {
        return PressKey(static_cast<QKeyEvent*>(event)->key());
    }
    if (type != QEvent::MouseMove && type != QEvent::MouseButtonPress &&
        type != QEvent::MouseButtonRelease && type != QEvent::MouseButtonDblClick) {
        return QObject::eventFilter(watched, event);
    }
    const auto* mouse = static_cast<QMouseEvent*>(event);
    const QPointF position = mouse->position();
    for (int index : {0, 1}) {
        QPushButton* button = index == 0 ? &controls_.MoveLeft : &controls_.MoveRight;
        if (watched != button) {
            continue;
        }
        buttonMouse_ = position.toPoint();
        if (type == QEvent::MouseButtonPress && mouse->button() == Qt::LeftButton) {
            HoldButton(index);
            return true;
        }
        if (type == QEvent::MouseButtonRelease && mouse->button() == Qt::LeftButton) {
            if (graph::Holding(state_)) {
                EndHold();
            }
            return true;
        }
        return false;
    }
    if (watched != controls_.Picture.Widget()) {
        return QObject::eventFilter(watched, event);
    }
    if (type == QEvent::MouseButtonPress || type == QEvent::MouseButtonDblClick) {
        // The picture takes no focus of its own, so a click in it ends the edit box here.
        comments_->EndEdit(graph::CommentEditKey::FocusLost);
    }
    if (type == QEvent::MouseMove) {
        MoveMouse(position, mouse->buttons().testFlag(Qt::LeftButton));
    } else if (type == QEvent::MouseButtonDblClick && mouse->button() == Qt::LeftButton) {
        DoubleClick(position);
    } else if (type == QEvent::MouseButtonPress && mouse->button() == Qt::LeftButton) {
        PressLeft(position);
    } else if (type == QEvent::MouseButtonPress && mouse->button() == Qt::RightButton) {
        PressRight(position);
    } else if (type == QEvent::MouseButtonRelease) {
        Release(position);
    }
    return true;
}

void GraphTools::MoveMouse(QPointF position, bool leftHeld) {
    mouse_ = position.toPoint();
    QWidget* picture = controls_.Picture.Widget();
    const QCursor pointer = GraphPointer(Tools().ToolMode, position.x() >= state_.GraphMidX);
    if (picture->cursor().pixmap().cacheKey() != pointer.pixmap().cacheKey()) {
        picture->setCursor(pointer);
    }
    const graph::CursorMove move = graph::MoveCursor(state_, position.x(), position.y(), Width());
    if (move.Redraw) {
        if (!Redraw(render::RedrawMode::Compose)) {
            return;
        }
        DispValues(1);
    }
    if (markingRange_ && leftHeld && Tools().ToolMode == DeltaTool) {
        const bool edge = graph::RangeEdgeScrolls(state_, Width());
        if (edge && state_.DragState == graph::DragState::None) {
            HoldToScroll();
        } else if (!edge && graph::Holding(state_)) {
            EndHold();
        }
    }
}

void GraphTools::PressLeft(QPointF position) {
    if (!graph::GraphTakesPress(state_, position.x(), position.y())) {
        return;
    }
    switch (Tools().ToolMode) {
    case DragTool:
        BeginTraceDrag(position);
        break;
    case ScrollTool:
        HoldToScroll();
        break;
    case ReduceTime:
    case ExpandTime:
        ZoomTime(Tools().ToolMode == ExpandTime, position.x());
        break;
    case ReduceValue:
    case ExpandValue:
        ZoomValue(Tools().ToolMode == ExpandValue, position);
        break;
    case TextTool:
        BeginComment(position);
        break;
    case DeltaTool:
        graph::PressRangeTool(state_);
        markingRange_ = true;
        Redraw(render::RedrawMode::Rebuild);
        break;
    default:
        break;
    }
}

void GraphTools::PressRight(QPointF position) {
    if (!graph::GraphTakesPress(state_, position.x(), position.y())) {
        return;
    }
    const auto popup = graph::PressGraphRight(state_, HitAt(position));
    emit LayerChanged();
    if (popup) {
        emit PopupRequested(*popup);
    }
}

void GraphTools::Release(QPointF position) {
    if (graph::Holding(state_)) {
        EndHold();
    } else if (state_.DragState == graph::DragState::TraceDrag) {
        EndTraceDrag(position.toPoint());
    } else if (state_.DragState == graph::DragState::CommentLeader) {
        mouse_ = position.toPoint();
        comments_->EndLeader();
    }
    if (markingRange_ && Tools().ToolMode == DeltaTool && graph::ReleaseRangeTool(state_)) {
        Redraw(render::RedrawMode::Rebuild);
    }
    markingRange_ = false;
}

void GraphTools::DoubleClick(QPointF position) {
    if (Tools().ToolMode == TextTool) {
        comments_->BeginEdit(position.toPoint());
    }
}

bool GraphTools::PressKey(int key) {
    if (comments_->Editing()) {
        return false;
    }
    if (key == Qt::Key_Escape) {
        if (state_.DragState != graph::DragState::TraceDrag) {
            return false;
        }
        DropGhost();
        return true;
    }
    if ((key != Qt::Key_Right && key != Qt::Key_Left) ||
        state_.DragState != graph::DragState::None) {
        return false;
    }
    const bool linked = Tools().LinkLayers == 1;
    const graph::ArrowResult result = key == Qt::Key_Right
                                          ? graph::PressArrowRight(state_, linked, Width())
                                          : graph::PressArrowLeft(state_, linked);
    if (result == graph::ArrowResult::ReadOut) {
        DispValues(0);
    } else if (result == graph::ArrowResult::Shifted) {
        MoveBoxToOffset();
        Redraw(render::RedrawMode::Rebuild);
        DispValues(1);
    }
    return true;
}

std::optional<graph::ItemRef> GraphTools::HitAt(QPointF position) const {
    const GraphPicture& picture = controls_.Picture;
    return graph::HitTestItem(
        state_, Round(position.x()), Round(position.y()),
        [&picture](int x, int y) { return picture.PixelAt(x, y); }, graph::DisplayedColors(),
        extent_);
}

void GraphTools::ZoomTime(bool expand, double mouseX) {
    graph::ZoomTime(state_, expand, mouseX, Width());
    if (graph::ScrollStripOf(state_).Shown) {
        controls_.Strip.PlaceBox(state_, Width());
    }
    controls_.Picture.DrawScaleColumn();
    Redraw(render::RedrawMode::Rebuild);
    DispValues(1);
    SaveLayout();
}

void GraphTools::ZoomValue(bool expand, QPointF position) {
    const std::optional<graph::ItemRef> hit = HitAt(position);
    if (!hit) {
        return;
    }
    state_.Panel.SelectItem(hit->Layer, hit->Position);
    emit ReadOutChanged();
    if (!graph::ZoomItemValue(state_, *hit, expand, position.y())) {
        return;
    }
    controls_.Picture.DrawScaleColumn();
    Redraw(render::RedrawMode::Rebuild);
    DispValues(0);
    SaveLayout();
}

void GraphTools::BeginComment(QPointF position) {
    const std::optional<graph::ItemRef> hit = HitAt(position);
    if (!hit) {
        return;
    }
    mouse_ = position.toPoint();
    comments_->BeginLeader(*hit, mouse_);
    emit ReadOutChanged();
}

void GraphTools::BeginTraceDrag(QPointF position) {
    const std::optional<graph::ItemRef> hit = HitAt(position);
    if (!hit) {
        return;
    }
    state_.Panel.SelectItem(hit->Layer, hit->Position);
    emit ReadOutChanged();
    if (!controls_.Picture.BeginItemDrag(hit->Layer, hit->Position)) {
        return;
    }
    dragStart_ = ghostAt_ = position.toPoint();
    graph::BeginTraceDrag(state_);
    tmrDrag_.start();
}

void GraphTools::FollowGhost() {
    const bool inside = mouse_.x() >= graph::GraphLeft && mouse_.x() <= Width() &&
                        mouse_.y() >= 0 && mouse_.y() <= Height() - graph::TimeBandHeight;
    const QPoint moved = mouse_ - ghostAt_;
    if (!inside || (std::abs(moved.x()) < GhostStep && std::abs(moved.y()) < GhostStep)) {
        return;
    }
    ghostAt_ = mouse_;
    if (!controls_.Picture.MoveGhost(mouse_ - dragStart_)) {
        shell::ShowMessage(context_.Sink, GhostFailedMessage, shell::buttons::Ok,
                           shell::icons::Stop);
        EndTraceDrag(mouse_);
    }
}

void GraphTools::EndTraceDrag(QPoint release) {
    tmrDrag_.stop();
    controls_.Picture.EndItemDrag();
    const QPoint offset = release - dragStart_;
    graph::ReleaseTraceDrag(state_, offset.x(), offset.y());
    controls_.Picture.DrawScaleColumn();
    Redraw(render::RedrawMode::Rebuild);
    SaveLayout();
    MoveBoxToOffset();
    DispValues(1);
}

void GraphTools::DropGhost() {
    graph::DropTraceDrag(state_);
    tmrDrag_.stop();
    controls_.Picture.EndItemDrag();
}

void GraphTools::HoldToScroll() {
    graph::BeginHold(state_);
    heldButton_ = nullptr;
    HoldPass();
}

void GraphTools::HoldButton(int index) {
    if (graph::Holding(state_)) {
        return;
    }
    heldButton_ = index == 0 ? &controls_.MoveLeft : &controls_.MoveRight;
    heldIndex_ = index;
    heldButton_->setDown(true);
    graph::BeginHold(state_);
    HoldPass();
}

void GraphTools::HoldPass() {
    if (!graph::Holding(state_)) {
        return;
    }
    bool goesOn = true;
    if (heldButton_ != nullptr) {
        goesOn = ButtonPass();
    } else {
        const graph::AutoScrollResult result =
            graph::AutoScrollStep(state_, Tools().LinkLayers == 1, Width(), Height());
        if (result == graph::AutoScrollResult::AskShift) {
            AskLayerShift();
            return;
        }
        goesOn = result == graph::AutoScrollResult::Waited || ShowScrolled();
    }
    if (goesOn) {
        tmrHold_.start();
    } else {
        EndHold();
    }
}

void GraphTools::AskLayerShift() {
    // The question waits for the operator, who may close the window meanwhile.
    const QPointer<GraphTools> alive(this);
    const bool shift =
        shell::ShowMessage(context_.Sink, graph::LayerShiftQuestion, shell::buttons::YesNo,
                           shell::icons::Information) == shell::answers::Yes;
    if (alive) {
        graph::AnswerLayerShift(state_, shift);
        EndHold();
    }
}

bool GraphTools::ButtonPass() {
    if (!heldButton_->rect().contains(buttonMouse_) ||
        !graph::ScrollButtonStep(state_, heldIndex_, Width())) {
        return false;
    }
    return ShowScrolled();
}

bool GraphTools::ShowScrolled() {
    MoveBoxToOffset();
    if (!graph::RecordRedraw(state_, controls_.Picture.RedrawRect())) {
        return false;
    }
    DispValues(1);
    return true;
}

void GraphTools::EndHold() {
    tmrHold_.stop();
    graph::EndHold(state_);
    if (heldButton_ != nullptr) {
        heldButton_->setDown(false);
        heldButton_ = nullptr;
    }
    // The short redraws of the hold left the comments out.
    Redraw(render::RedrawMode::Rebuild);
}

void GraphTools::EndBoxDrag(graph::DragState drag, std::int32_t mouseX) {
    const graph::ScrollBox box = graph::EndBoxDrag(state_, drag, controls_.Strip.Box(), mouseX,
                                                   controls_.Strip.width(), Width());
    if (drag != graph::DragState::BoxMove) {
        controls_.Strip.MoveBox(box.Left, box.Width);
    }
    if (Redraw(render::RedrawMode::Rebuild)) {
        DispValues(1);
        if (drag != graph::DragState::BoxMove) {
            SaveLayout();
        }
    }
}

bool GraphTools::Redraw(render::RedrawMode mode) {
    return graph::RecordRedraw(state_, controls_.Picture.RedrawGraph(mode));
}

void GraphTools::DispValues(int move) {
    graph::DispValues(state_, move, context_.Laf);
    emit ReadOutChanged();
}

void GraphTools::MoveBoxToOffset() {
    controls_.Strip.FollowOffset(state_);
}

void GraphTools::SaveLayout() {
    context_.Layouts.SetLayout(0, state_.Views[0].Display, state_.Time);
}

} // namespace torvane::app
