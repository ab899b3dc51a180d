#include "graph/window_geometry.h"

#include "graph/window_state.h"

#include <algorithm>

namespace torvane::graph {

WindowGeometry GeometryFor(int width, int height) {
    const int w = std::max(width, MinWindowWidth);
    const int h = std::max(height, MinWindowHeight);
    const int stripTop = h - StripHeight;
    constexpr int buttonWidth = StripHeight;
    WindowGeometry geometry;
    geometry.Graph = {PanelWidth, 0, w - PanelWidth, stripTop};
    geometry.MoveLeft = {PanelWidth, stripTop, buttonWidth, StripHeight};
    geometry.Strip = {PanelWidth + buttonWidth, stripTop, w - PanelWidth - 2 * buttonWidth,
                      StripHeight};
    geometry.MoveRight = {w - buttonWidth, stripTop, buttonWidth, StripHeight};
    geometry.ScrollTitle = {0, stripTop, PanelWidth, StripHeight};
    geometry.GraphMidX = (geometry.Graph.Width + 100) / 2;
    return geometry;
}

WindowGeometry ResizeWindow(GraphWindowState& state, int width, int height) {
    const WindowGeometry geometry = GeometryFor(width, height);
    state.GraphMidX = geometry.GraphMidX;
    return geometry;
}

} // namespace torvane::graph
