#pragma once
// The graph (picGraph) and the scroll strip (picScroll) as plain areas: white with a thin
// frame. They hold their place in the window's geometry until the picture and the strip draw
// there; as a GraphPicture the graph area draws nothing and every redraw succeeds.

#include "graph/graph_picture.h"

#include <QWidget>

namespace torvane::app {

class PlainArea : public QWidget, public GraphPicture {
    Q_OBJECT
public:
    explicit PlainArea(QWidget* parent = nullptr);

    bool RedrawGraph(int) override;
    bool RedrawRect() override;
    void DrawScaleColumn() override;
    bool BeginItemDrag(int, int) override { return true; }
    bool MoveGhost(QPoint) override { return true; }
    void EndItemDrag() override {}
    std::uint32_t PixelAt(int x, int y) const override;
    QWidget* Widget() override { return this; }

signals:
    void Pressed(Qt::MouseButton button, QPoint position);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
};

} // namespace torvane::app
