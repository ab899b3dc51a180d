#pragma once
// A graph window of 640 x 400 (a graph of 510 x 376, a strip of 462 columns) on a generated run,
// with the mouse and pixel helpers that the tool tests share.

#include "graph/graph_picture.h"
#include "graph/graph_window.h"
#include "graph/hit_test.h"
#include "graph_desk.h"
#include "shell/tool_box.h"

#include <QLabel>
#include <QtTest>

#include <filesystem>

namespace torvane::testing {

// The window on a run of durationMs, 60 s unless told.
struct ToolWindow {
    explicit ToolWindow(double durationMs = 60000.0)
        : File(Desk.Run("RUN.rlg", durationMs)) {
        Open();
    }
    // The run in a new window, 640 x 400.
    void Open() {
        Window = Desk.Frame.OpenLoggingWindow(app::LoggingFileSource::Given, File);
        if (Window == nullptr || !QTest::qWaitForWindowExposed(&Desk.Frame)) {
            qFatal("no window");
        }
        Window->resize(640, 400);
        Graph = Window->findChild<QWidget*>("picGraph");
        Strip = Window->findChild<QWidget*>("picScroll");
        Box = Window->findChild<QWidget*>("picBox");
        // The picture as drawn at that size.
        Graph->repaint();
    }
    // Closes the window and opens the run again.
    void Reopen() {
        Desk.Frame.Area()->closeAllSubWindows();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        Open();
    }
    const graph::GraphWindowState& State() const { return Window->State(); }
    double Offset(int layer = 0) const {
        return State().Layers.Layer[std::size_t(layer)].TimeOffset;
    }
    QString Title() const { return Window->findChild<QLabel*>("lblTm")->text(); }
    void Tool(int mode) { Desk.Frame.Tools().ToolMode = mode; }
    // A point of the graph where the hit test's scan meets (or does not meet) a colour of its
    // table: a trace's, the grid's or the cursor's.
    QPoint PointNearTrace(bool near) const {
        auto* picture = dynamic_cast<app::GraphPicture*>(Graph);
        const graph::PixelReader pixels = [picture](int x, int y) {
            return picture->PixelAt(x, y);
        };
        for (int y = 40; y < Graph->height() - 40; y += 7) {
            for (int x = 120; x < Graph->width() - 20; x += 7) {
                const bool found = graph::ColorAtPoint(x, y, pixels, graph::DisplayedColors()) != 0;
                if (found == near) {
                    return {x, y};
                }
            }
        }
        qFatal("no such point");
    }
    // A move to where the mouse already is brings no event, so the mouse comes from beside.
    void MoveTo(QPoint position) const {
        QTest::mouseMove(Graph, position + QPoint(0, 1));
        QTest::mouseMove(Graph, position);
    }

    testing::Desk Desk;
    std::filesystem::path File;
    app::GraphWindow* Window = nullptr;
    QWidget* Graph = nullptr;
    QWidget* Strip = nullptr;
    QWidget* Box = nullptr;
};

} // namespace torvane::testing
