#pragma once

namespace torvane::render {

// How much of a graph picture a redraw builds again.
enum class RedrawMode {
    Rebuild, // the graph surface (grid, traces, tags, time band, comments, lap bar), then compose
    Compose, // range band, graph and cursor only: all a cursor move needs
};

} // namespace torvane::render
