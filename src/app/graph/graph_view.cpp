#include "graph/graph_view.h"

#include <QGuiApplication>
#include <QPainter>
#include <QScreen>

#include <utility>

namespace torvane::app {
namespace {

// The surfaces are made once for a window as large as the screen less the window's frame and
// panel, so that growing the window needs no new ones.
QSize SurfaceSize() {
    const QScreen* screen = QGuiApplication::primaryScreen();
    const QSize screenSize = screen != nullptr ? screen->size() : QSize(800, 600);
    return screenSize - QSize(130, 40);
}

} // namespace

GraphView::GraphView(graph::GraphWindowState& state, const logger::LafTable& laf,
                     shell::MessageSink& sink, QWidget* parent)
    : QWidget(parent)
    , state_(state)
    , sink_(sink)
    , renderer_(state, laf, SurfaceSize()) {
    setAttribute(Qt::WA_OpaquePaintEvent);
    graph::SetBandColor(state_, render::GraphRenderer::SurfaceBandColor());
}

bool GraphView::Report(bool drawn) {
    if (!drawn) {
        shell::ShowRunTimeError(sink_,
                                {53, "File not found: " + renderer_.FailedStream().string()});
    }
    ShowPicture();
    return drawn;
}

void GraphView::ShowPicture() {
    // A hidden widget gets no paint for update(), so nothing would clear the mark.
    if (isVisible()) {
        paintRequested_ = true;
        update();
    }
}

bool GraphView::RedrawGraph(render::RedrawMode mode) {
    return Report(renderer_.RedrawGraph(mode));
}

bool GraphView::RedrawRect() {
    return Report(renderer_.RedrawRect());
}

void GraphView::DrawScaleColumn() {
    renderer_.DrawScaleColumn();
}

bool GraphView::BeginItemDrag(int layer, int position) {
    return renderer_.BeginItemDrag(layer, position);
}

bool GraphView::MoveGhost(QPoint offset) {
    renderer_.MoveGhost(offset);
    ShowPicture();
    return true;
}

void GraphView::EndItemDrag() {
    renderer_.EndItemDrag();
    ShowPicture();
}

void GraphView::ShowOverlayLine(std::optional<QLine> line) {
    overlay_ = line;
    ShowPicture();
}

std::uint32_t GraphView::PixelAt(int x, int y) const {
    return renderer_.PixelAt(x, y);
}

void GraphView::paintEvent(QPaintEvent*) {
    // A freshly loaded window rebuilds its picture when it is uncovered, not when it only shows
    // what the program has just drawn; a failure is not retried for ever.
    const bool requested = std::exchange(paintRequested_, false);
    if (!requested && state_.SingleFileState == graph::SingleFileState::Loaded &&
        !renderer_.Dragging()) {
        graph::RecordRedraw(state_, renderer_.RedrawGraph(render::RedrawMode::Rebuild));
    }
    QPainter painter(this);
    painter.drawImage(QPoint(0, 0), renderer_.Picture(), rect());
    if (overlay_) {
        // Inverted, so that the line shows on white, black and trace colours alike.
        painter.setCompositionMode(QPainter::RasterOp_SourceXorDestination);
        painter.setPen(QPen(Qt::white, 1));
        painter.drawLine(*overlay_);
    }
}

void GraphView::resizeEvent(QResizeEvent* event) {
    renderer_.SetPictureSize(size());
    // The picture drawn before no longer fits: the paint that follows is not the program's.
    paintRequested_ = false;
    QWidget::resizeEvent(event);
    // A freshly loaded window rebuilds on that paint; one whose layers or place changed no
    // longer does, so its picture follows the new size here.
    if (state_.SingleFileState == graph::SingleFileState::Cleared &&
        state_.Layers.Layer[0].MeasureTime > 0.0) {
        RedrawGraph(render::RedrawMode::Rebuild);
    }
}

} // namespace torvane::app
