#include "graph/scroll_strip_view.h"

#include "graph/panel_controls.h"

#include <QMouseEvent>
#include <QPainter>

#include <algorithm>
#include <utility>

namespace torvane::app {

// picBox: shows the strip under it inverted, and takes the presses that drag it.
class ScrollBoxView : public QWidget {
public:
    explicit ScrollBoxView(ScrollStripView& strip)
        : QWidget(&strip)
        , strip_(strip) {
        setObjectName("picBox");
        setMouseTracking(true);
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QImage negative = strip_.picture_.copy(geometry());
        negative.invertPixels();
        QPainter(this).drawImage(0, 0, negative);
    }
    void mousePressEvent(QMouseEvent* event) override {
        if (event->button() == Qt::LeftButton) {
            strip_.PressBox(event->position().toPoint());
        }
    }
    void mouseMoveEvent(QMouseEvent* event) override {
        const QPoint at = event->position().toPoint();
        if (strip_.Dragging()) {
            strip_.FollowMouse(mapToParent(at).x());
            return;
        }
        const bool edge = graph::BoxPressState(width(), at.x()) != graph::DragState::BoxMove;
        setCursor(edge ? Qt::SizeHorCursor : Qt::ArrowCursor);
    }
    void mouseReleaseEvent(QMouseEvent* event) override {
        if (event->button() == Qt::LeftButton) {
            strip_.FollowMouse(mapToParent(event->position().toPoint()).x());
            strip_.ReleaseBox();
        }
    }

private:
    ScrollStripView& strip_;
};

// The band over the strip and its box while an edge is pulled: drawn last, over both.
class BandView : public QWidget {
public:
    explicit BandView(ScrollStripView& strip)
        : QWidget(&strip)
        , strip_(strip) {
        setAttribute(Qt::WA_TransparentForMouseEvents);
    }

protected:
    void paintEvent(QPaintEvent*) override { strip_.PaintBand(*this); }

private:
    ScrollStripView& strip_;
};

namespace {

constexpr int ScrollTickMs = 100;
constexpr int BandPen = 3;
// Within this many columns of the other edge a pulled edge stops following the mouse.
constexpr int EdgeKeep = 10;

} // namespace

ScrollStripView::ScrollStripView(QWidget* parent)
    : QWidget(parent)
    , boxView_(new ScrollBoxView(*this))
    , bandView_(new BandView(*this)) {
    setObjectName("picScroll");
    setAttribute(Qt::WA_OpaquePaintEvent);
    tmrScroll_.setObjectName("tmrScroll");
    tmrScroll_.setInterval(ScrollTickMs);
    connect(&tmrScroll_, &QTimer::timeout, this, &ScrollStripView::Tick);
    Clear();
}

void ScrollStripView::Build(graph::GraphWindowState& state) {
    ShowStrip(graph::BuildScrollStrip(state, box_, width()));
}

void ScrollStripView::BuildAndPlaceBox(graph::GraphWindowState& state, int graphWidth) {
    ShowStrip(graph::RebuildStripAndBox(state, box_, graphWidth, width()));
}

void ScrollStripView::ShowStrip(const graph::ScrollStrip& strip) {
    picture_ = QImage(std::max(width(), 1), std::max(height(), 1), QImage::Format_RGB32);
    picture_.fill(Qt::black);
    QPainter painter(&picture_);
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.setPen(QPen(ToQColor(graph::StripTraceColor), 0));
    QPolygon line;
    for (const graph::StripPoint& point : strip.Points) {
        line << QPoint(point.X, point.Y);
    }
    painter.drawPolyline(line);
    painter.end();
    update();
    MoveBox(strip.Box.Left, strip.Box.Width);
    boxView_->show();
}

void ScrollStripView::PlaceBox(const graph::GraphWindowState& state, int graphWidth) {
    const graph::ScrollBox box = graph::DrawScrollBox(state, box_, graphWidth, width());
    MoveBox(box.Left, box.Width);
}

void ScrollStripView::FollowOffset(const graph::GraphWindowState& state) {
    if (graph::ScrollStripOf(state).Shown) {
        MoveBox(graph::ScrollBoxLeft(state, width()), 0);
    }
}

void ScrollStripView::Clear() {
    picture_ = QImage(std::max(width(), 1), std::max(height(), 1), QImage::Format_RGB32);
    picture_.fill(Qt::white);
    boxView_->hide();
    update();
}

void ScrollStripView::MoveBox(std::int32_t left, std::int32_t width) {
    box_ = graph::MoveScrollBox(box_, left, width);
    boxView_->setGeometry(box_.Left - graph::StripLeft, 0, box_.Width, height());
    boxView_->update();
}

void ScrollStripView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    // Between a resize and the rebuild that follows it the picture may be narrower.
    if (picture_.width() < width() || picture_.height() < height()) {
        painter.fillRect(rect(), Qt::white);
    }
    painter.drawImage(0, 0, picture_);
}

void ScrollStripView::resizeEvent(QResizeEvent*) {
    bandView_->setGeometry(rect());
}

void ScrollStripView::PaintBand(QWidget& band) const {
    if (bandEdge_ < 0) {
        return;
    }
    // The box with the pulled edge at the mouse, inverting what lies under its pen.
    QRect outline = boxView_->geometry();
    if (dragState_ == graph::DragState::BoxLeftEdge) {
        outline.setLeft(bandEdge_);
    } else {
        outline.setRight(bandEdge_);
    }
    QPainter painter(&band);
    painter.setCompositionMode(QPainter::RasterOp_NotSourceXorDestination);
    painter.setPen(QPen(ToQColor(graph::StripTraceColor), BandPen));
    painter.drawRect(outline.adjusted(1, 1, -1, -1));
}

void ScrollStripView::PressBox(QPoint inBox) {
    if (tmrScroll_.isActive()) {
        return;
    }
    dragState_ = graph::BoxPressState(box_.Width, inBox.x());
    mouseX_ = lastX_ = boxView_->x() + inBox.x();
    if (dragState_ != graph::DragState::BoxMove) {
        boxView_->setCursor(Qt::SizeHorCursor);
        bandEdge_ = dragState_ == graph::DragState::BoxLeftEdge ? boxView_->x()
                                                                : boxView_->geometry().right();
        bandView_->raise();
        bandView_->update();
    }
    tmrScroll_.start();
    emit DragStarted(dragState_);
}

void ScrollStripView::FollowMouse(int stripX) {
    mouseX_ = std::clamp(stripX, 0, std::max(width() - 1, 0));
}

void ScrollStripView::Tick() {
    const int difference = mouseX_ - lastX_;
    if (difference == 0) {
        return;
    }
    const QRect box = boxView_->geometry();
    if (dragState_ == graph::DragState::BoxMove) {
        const int left =
            std::clamp(box_.Left + difference, graph::StripLeft,
                       std::max(graph::StripLeft, width() + graph::StripLeft - box_.Width));
        MoveBox(left, 0);
    } else if ((dragState_ == graph::DragState::BoxLeftEdge && mouseX_ < box.right() - EdgeKeep) ||
               (dragState_ == graph::DragState::BoxRightEdge && mouseX_ > box.left() + EdgeKeep)) {
        bandEdge_ = mouseX_;
        bandView_->update();
    }
    lastX_ = mouseX_;
}

void ScrollStripView::ReleaseBox() {
    if (dragState_ == graph::DragState::None) {
        return;
    }
    Tick();
    tmrScroll_.stop();
    const graph::DragState drag = std::exchange(dragState_, graph::DragState::None);
    bandEdge_ = -1;
    boxView_->unsetCursor();
    bandView_->update();
    // The mouse, not the band: a band stops short of the other edge, while an edge pulled onto
    // or past it makes the narrowest box.
    emit DragEnded(drag, mouseX_ + graph::StripLeft);
}

} // namespace torvane::app
