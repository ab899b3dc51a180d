#pragma once
// picGraph: the graph of a window as the operator sees it. The picture is drawn off screen by
// render::GraphRenderer; this widget shows it, rebuilds it when it is uncovered while the window
// is freshly loaded, and tells the operator when a stream cannot be read.

#include "graph/graph_picture.h"
#include "graph/window_state.h"
#include "logger/laf_table.h"
#include "render/graph_renderer.h"
#include "shell/message_sink.h"

#include <QWidget>

namespace torvane::app {

class GraphView : public QWidget, public GraphPicture {
    Q_OBJECT
public:
    GraphView(graph::GraphWindowState& state, const logger::LafTable& laf, shell::MessageSink& sink,
              QWidget* parent = nullptr);

    bool RedrawGraph(render::RedrawMode mode) override;
    bool RedrawRect() override;
    void DrawScaleColumn() override;
    bool BeginItemDrag(int layer, int position) override;
    bool MoveGhost(QPoint offset) override;
    void EndItemDrag() override;
    void ShowOverlayLine(std::optional<QLine> line) override;
    std::uint32_t PixelAt(int x, int y) const override;
    QWidget* Widget() override { return this; }

    const render::GraphRenderer& Renderer() const { return renderer_; }

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    bool Report(bool drawn);
    // Shows the picture as drawn; the paint this asks for is the program's own.
    void ShowPicture();

    graph::GraphWindowState& state_;
    shell::MessageSink& sink_;
    render::GraphRenderer renderer_;
    std::optional<QLine> overlay_;
    bool paintRequested_ = false;
};

} // namespace torvane::app
