#pragma once
// What the window's tools ask of its picture (picGraph): the two kinds of redraw, the short
// redraw of held scrolling, the scale column, the ghost of a dragged trace, a rubber line and the
// colour under the mouse. The tools change the window model and call these; the picture draws the
// model.

#include "render/redraw_mode.h"

#include <QLine>
#include <QPoint>

#include <cstdint>
#include <optional>

class QWidget;

namespace torvane::app {

class GraphPicture {
public:
    virtual ~GraphPicture() = default;

    // False when it failed.
    virtual bool RedrawGraph(render::RedrawMode mode) = 0;
    // One step of held scrolling: the graph from column 100 drawn straight into the composed
    // picture, leaving the rebuilt graph alone (comments return with the next rebuild).
    virtual bool RedrawRect() = 0;
    // Rebuilds the scale column after a scale changed.
    virtual void DrawScaleColumn() = 0;

    // The ghost of a dragged trace: item `position` of `layer`, drawn dotted; false when its
    // trace cannot be built.
    virtual bool BeginItemDrag(int layer, int position) = 0;
    // Shows the graph with the ghost moved by `offset`, kept inside the graph area.
    virtual bool MoveGhost(QPoint offset) = 0;
    // Drops the ghost and shows the graph as it stands.
    virtual void EndItemDrag() = 0;

    // A rubber line shown over the picture (the leader of a comment being pulled) until replaced
    // or taken away with nothing; it never reaches the surfaces.
    virtual void ShowOverlayLine(std::optional<QLine> line) = 0;

    // Colour (0xBBGGRR) of the picture the operator sees at (x, y); 0 outside it.
    virtual std::uint32_t PixelAt(int x, int y) const = 0;

    // The widget: its events, mouse pointer and size.
    virtual QWidget* Widget() = 0;
};

} // namespace torvane::app
