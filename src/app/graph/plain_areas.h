#pragma once
// The graph (picGraph) and the scroll strip (picScroll) as plain areas: white with a thin
// frame. The traces and the strip's overview are painted into them by the renderer later; until
// then they only hold their place in the window's geometry.

#include <QWidget>

namespace torvane::app {

class PlainArea : public QWidget {
    Q_OBJECT
public:
    explicit PlainArea(QWidget* parent = nullptr);

signals:
    void Pressed(Qt::MouseButton button, QPoint position);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
};

} // namespace torvane::app
