#pragma once
// The mouse and the keys over a graph window's picture: the cursor that follows the mouse, the
// left press by the toolbox's tool (trace drag, hold to scroll, time and value zoom, comments,
// range and Delta reference), the text tool's double click, the right press's popup, the arrow keys
// and Escape, the held cmdMove buttons and the drags of the scroll box. Every decision is core's;
// this applies it and asks the picture to redraw. A hold is a pass at a time from a timer, so the
// release that ends it arrives as an ordinary event.

#include "graph/graph_picture.h"
#include "graph/graph_window_context.h"
#include "graph/hit_test.h"
#include "graph/window_state.h"

#include <QObject>
#include <QPoint>
#include <QTimer>

#include <optional>
#include <vector>

class QPushButton;
class QWidget;

namespace torvane::app {

class CommentEditor;
class ScrollStripView;
struct ToolSettings;

class GraphTools : public QObject {
    Q_OBJECT
public:
    struct Controls {
        GraphPicture& Picture;
        ScrollStripView& Strip;
        QPushButton& MoveLeft;  // cmdMove(0)
        QPushButton& MoveRight; // cmdMove(1)
        QWidget& Window;        // takes the keys before its controls
    };
    GraphTools(graph::GraphWindowState& state, GraphWindowContext& context, Controls controls,
               QObject* parent = nullptr);

    // How the nearness test finds the rows of an item's trace; without it only the colour
    // decides.
    void SetTraceExtent(graph::TraceExtent extent) { extent_ = std::move(extent); }

signals:
    // The read-out or the panel's marks changed.
    void ReadOutChanged();
    // Another layer became active.
    void LayerChanged();
    void PopupRequested(const std::vector<graph::MenuEntryState>& entries);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    const ToolSettings& Tools() const;
    int Width() const;
    int Height() const;

    void MoveMouse(QPointF position, bool leftHeld);
    void PressLeft(QPointF position);
    void PressRight(QPointF position);
    void Release(QPointF position);
    void DoubleClick(QPointF position);
    bool PressKey(int key);

    std::optional<graph::ItemRef> HitAt(QPointF position) const;
    void ZoomTime(bool expand, double mouseX);
    void ZoomValue(bool expand, QPointF position);
    void BeginComment(QPointF position);
    void BeginTraceDrag(QPointF position);
    void FollowGhost();
    void EndTraceDrag(QPoint release);
    void DropGhost();
    // Holds run one pass now and then one on each tick of tmrHold until they end.
    void HoldToScroll();
    void HoldButton(int index);
    void HoldPass();
    void AskLayerShift();
    bool ButtonPass();
    bool ShowScrolled();
    void EndHold();
    void EndBoxDrag(graph::DragState drag, std::int32_t mouseX);

    bool Redraw(render::RedrawMode mode);
    void DispValues(int move);
    void MoveBoxToOffset();
    void SaveLayout();

    graph::GraphWindowState& state_;
    GraphWindowContext& context_;
    Controls controls_;
    graph::TraceExtent extent_;

    QTimer tmrDrag_;
    QTimer tmrHold_;
    QPushButton* heldButton_ = nullptr; // the cmdMove being held, none for the mouse tools
    int heldIndex_ = 0;
    CommentEditor* comments_;
    QPoint mouse_;       // last mouse position over the graph
    QPoint dragStart_;   // where a trace drag began
    QPoint ghostAt_;     // where the ghost was last shown
    QPoint buttonMouse_; // last mouse position over a held cmdMove
    bool markingRange_ = false;
};

} // namespace torvane::app
