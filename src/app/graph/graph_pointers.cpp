#include "graph/graph_pointers.h"

#include "graph/cursor.h"

#include <QPainter>
#include <QPainterPath>
#include <QPixmap>
#include <QPolygon>

#include <array>
#include <map>

namespace torvane::app {
namespace {

constexpr int Size = 32;
constexpr int Tip = graph::CursorHotSpot;
constexpr int Middle = 11;

enum class Pointer { Hand, Left, Right, ReducH, ExpanH, ReducV, ExpanV, Text, Delta };

void Arrow(QPainter& painter, QPoint from, QPoint to) {
    painter.drawLine(from, to);
    const QPoint along = (to - from) / std::max(1, (to - from).manhattanLength() / 4);
    const QPoint across(along.y(), -along.x());
    painter.drawPolygon(QPolygon({to, to - along + across, to - along - across}));
}

// The symbol of each pointer, right of and below its tip.
void DrawSymbol(QPainter& painter, Pointer pointer) {
    const int left = Tip + 3;
    const int top = Middle + 3;
    switch (pointer) {
    case Pointer::Hand:
        painter.drawRoundedRect(left, top + 4, 10, 9, 2, 2);
        for (int finger = 0; finger < 4; ++finger) {
            painter.drawRect(left + finger * 3, top, 1, 5);
        }
        break;
    case Pointer::Left:
        Arrow(painter, {left + 14, top + 6}, {left, top + 6});
        break;
    case Pointer::Right:
        Arrow(painter, {left, top + 6}, {left + 14, top + 6});
        break;
    case Pointer::ReducH:
        Arrow(painter, {left, top + 6}, {left + 6, top + 6});
        Arrow(painter, {left + 16, top + 6}, {left + 10, top + 6});
        break;
    case Pointer::ExpanH:
        Arrow(painter, {left + 6, top + 6}, {left, top + 6});
        Arrow(painter, {left + 10, top + 6}, {left + 16, top + 6});
        break;
    case Pointer::ReducV:
        Arrow(painter, {left + 6, top}, {left + 6, top + 6});
        Arrow(painter, {left + 6, top + 16}, {left + 6, top + 10});
        break;
    case Pointer::ExpanV:
        Arrow(painter, {left + 6, top + 6}, {left + 6, top});
        Arrow(painter, {left + 6, top + 10}, {left + 6, top + 16});
        break;
    case Pointer::Text:
        painter.drawLine(left, top, left + 10, top);
        painter.drawLine(left + 5, top, left + 5, top + 12);
        break;
    case Pointer::Delta:
        painter.drawPolygon(QPolygon({{left + 6, top}, {left, top + 11}, {left + 12, top + 11}}));
        break;
    }
}

QCursor MakePointer(Pointer pointer) {
    QPixmap picture(Size, Size);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing, false);
    // A white rim keeps the black marks visible over the traces.
    for (const auto& [color, grow] : std::array{std::pair{Qt::white, 1}, std::pair{Qt::black, 0}}) {
        painter.setPen(QPen(color, 1 + 2 * grow));
        painter.setBrush(Qt::NoBrush);
        painter.drawLine(Tip, 0, Tip, Size - 1);
        painter.drawLine(Tip - 4, Middle, Tip - 1, Middle);
        painter.setBrush(color);
        DrawSymbol(painter, pointer);
    }
    painter.end();
    return QCursor(picture, 0, Middle);
}

const QCursor& PointerOf(Pointer pointer) {
    static std::map<Pointer, QCursor> pointers;
    auto found = pointers.find(pointer);
    if (found == pointers.end()) {
        found = pointers.emplace(pointer, MakePointer(pointer)).first;
    }
    return found->second;
}

} // namespace

QCursor GraphPointer(int toolMode, bool rightOfMiddle) {
    static constexpr std::array<Pointer, 8> byTool{
        Pointer::Hand,   Pointer::Left,   Pointer::ReducH, Pointer::ExpanH,
        Pointer::ReducV, Pointer::ExpanV, Pointer::Text,   Pointer::Delta};
    if (toolMode == 1 && rightOfMiddle) {
        return PointerOf(Pointer::Right);
    }
    const auto index = static_cast<std::size_t>(toolMode);
    return PointerOf(index < byTool.size() ? byTool[index] : Pointer::Hand);
}

} // namespace torvane::app
