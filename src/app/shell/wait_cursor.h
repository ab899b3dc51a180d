#pragma once
// The hourglass for as long as a blocking piece of work runs, put back on every way out.

#include <QApplication>

namespace torvane::app {

class WaitCursor {
public:
    WaitCursor() { QApplication::setOverrideCursor(Qt::WaitCursor); }
    ~WaitCursor() { QApplication::restoreOverrideCursor(); }
    WaitCursor(const WaitCursor&) = delete;
    WaitCursor& operator=(const WaitCursor&) = delete;
};

} // namespace torvane::app
