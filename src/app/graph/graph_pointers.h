#pragma once
// The mouse pointers of the graph, one per tool. Each points at the column 11 pixels right of
// its hot spot, where the cursor line stands, so the offset that the cursor adds to every mouse
// x is what the operator sees.

#include <QCursor>

namespace torvane::app {

// The pointer of tool `toolMode`; tool 1 points left of the graph's middle and right from it.
QCursor GraphPointer(int toolMode, bool rightOfMiddle);

} // namespace torvane::app
