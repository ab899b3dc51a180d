#pragma once
// picScroll: the strip of one signal of the whole run, drawn in cyan on black, and picBox, the
// box on it that shows the strip inverted and stands for the visible time. A left press on the
// box starts a drag of the box or of one of its edges; tmrScroll follows the mouse every 100 ms
// and the release reports where the box or the pulled edge ended. What that does to the view
// is the tools' business.

#include "graph/scroll_strip.h"

#include <QImage>
#include <QTimer>
#include <QWidget>

namespace torvane::app {

class BandView;
class ScrollBoxView;

class ScrollStripView : public QWidget {
    Q_OBJECT
public:
    explicit ScrollStripView(QWidget* parent = nullptr);

    // Draws the strip of the active layer's ScrollItem (setting ScrollSpan) and shows the box
    // where it stood.
    void Build(graph::GraphWindowState& state);
    // The same, with the box placed again for the view; `graphWidth` is the width of picGraph.
    void BuildAndPlaceBox(graph::GraphWindowState& state, int graphWidth);
    // No item to follow: an empty strip and no box.
    void Clear();
    // The box of the core's geometry (lefts are window columns, from 154).
    graph::ScrollBox Box() const { return box_; }
    void MoveBox(std::int32_t left, std::int32_t width);
    // The box moved to the active layer's offset, its width kept, when the strip has an item.
    void FollowOffset(const graph::GraphWindowState& state);
    // The box where the active layer's offset and the visible time put it.
    void PlaceBox(const graph::GraphWindowState& state, int graphWidth);
    bool Dragging() const { return dragState_ != graph::DragState::None; }

    const QImage& Picture() const { return picture_; }

signals:
    // A drag of the box began: 1 the box, 2 its left edge, 3 its right edge.
    void DragStarted(graph::DragState drag);
    // The mouse was released; `mouseX` is where it was held last, in window columns.
    void DragEnded(graph::DragState drag, std::int32_t mouseX);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    friend class BandView;
    friend class ScrollBoxView;
    void ShowStrip(const graph::ScrollStrip& strip);
    void PaintBand(QWidget& band) const;
    void PressBox(QPoint inBox);
    void FollowMouse(int stripX);
    void ReleaseBox();
    void Tick();

    QImage picture_;
    ScrollBoxView* boxView_;
    BandView* bandView_;
    graph::ScrollBox box_;
    QTimer tmrScroll_;
    graph::DragState dragState_ = graph::DragState::None;
    int mouseX_ = 0;    // strip column of the mouse, held within the strip
    int lastX_ = 0;     // where tmrScroll saw it last
    int bandEdge_ = -1; // strip column of the pulled edge while a band is shown
};

} // namespace torvane::app
