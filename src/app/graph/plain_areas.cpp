#include "graph/plain_areas.h"

#include <QMouseEvent>
#include <QPainter>

namespace torvane::app {

PlainArea::PlainArea(QWidget* parent)
    : QWidget(parent) {
    setAttribute(Qt::WA_OpaquePaintEvent);
}

bool PlainArea::RedrawGraph(int) {
    update();
    return true;
}

bool PlainArea::RedrawRect() {
    update();
    return true;
}

void PlainArea::DrawScaleColumn() {
    update();
}

std::uint32_t PlainArea::PixelAt(int x, int y) const {
    return rect().contains(x, y) ? 0xFFFFFFu : 0u;
}

void PlainArea::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), Qt::white);
    painter.setPen(QColor(0x80, 0x80, 0x80));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

void PlainArea::mousePressEvent(QMouseEvent* event) {
    emit Pressed(event->button(), event->position().toPoint());
}

} // namespace torvane::app
