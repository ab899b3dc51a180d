#pragma once
// Where the parts of a graph window stand for a given client size. The item panel takes the
// left 130 pixels, the graph the rest, and the scroll strip runs along the bottom between its
// two move buttons. Below 200 x 100 the window is laid out as if it were that size.

namespace torvane::graph {

inline constexpr int MinWindowWidth = 200;
inline constexpr int MinWindowHeight = 100;
inline constexpr int PanelWidth = 130;
inline constexpr int StripHeight = 24;

struct PixelRect {
    int Left = 0;
    int Top = 0;
    int Width = 0;
    int Height = 0;

    friend bool operator==(const PixelRect&, const PixelRect&) = default;
};

struct WindowGeometry {
    PixelRect Graph;       // picGraph
    PixelRect Strip;       // picScroll
    PixelRect MoveLeft;    // cmdMove(0)
    PixelRect MoveRight;   // cmdMove(1)
    PixelRect ScrollTitle; // ucnScroll
    int GraphMidX = 0;     // (graph width + 100) / 2

    friend bool operator==(const WindowGeometry&, const WindowGeometry&) = default;
};

WindowGeometry GeometryFor(int width, int height);

struct GraphWindowState;
// The geometry of a window resized to width x height; the window keeps the graph's middle, on
// which the tools' pointers and the direction of held scrolling turn.
WindowGeometry ResizeWindow(GraphWindowState& state, int width, int height);

} // namespace torvane::graph
