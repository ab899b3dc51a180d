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
        : file(desk.Run("RUN.rlg", durationMs)) {
        Open();
    }
    // The run in a new window, 640 x 400.
    void Open() {
        window = desk.frame.OpenLoggingWindow(app::LoggingFileSource::Given, file);
        if (window == nullptr || !QTest::qWaitForWindowExposed(&desk.frame)) {
            qFatal("no window");
        }
        window->resize(640, 400);
        graph = window->findChild<QWidget*>("picGraph");
        strip = window->findChild<QWidget*>("picScroll");
        box = window->findChild<QWidget*>("picBox");
        // The picture as drawn at that size.
        graph->repaint();
    }
    // Closes the window and opens the run again.
    void Reopen() {
        desk.frame.Area()->closeAllSubWindows();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        Open();
    }
    const graph::GraphWindowState& State() const { return window->State(); }
    double Offset(int layer = 0) const {
        return State().Layers.Layer[std::size_t(layer)].TimeOffset;
    }
    QString Title() const { return window->findChild<QLabel*>("lblTm")->text(); }
    void Tool(int mode) { desk.frame.Tools().ToolMode = mode; }
    // A point of the graph where the hit test's scan meets (or does not meet) a colour of its
    // table: a trace's, the grid's or the cursor's.
    QPoint PointNearTrace(bool near) const {
        auto* picture = dynamic_cast<app::GraphPicture*>(graph);
        const graph::PixelReader pixels = [picture](int x, int y) {
            return picture->PixelAt(x, y);
        };
        for (int y = 40; y < graph->height() - 40; y += 7) {
            for (int x = 120; x < graph->width() - 20; x += 7) {
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
        QTest::mouseMove(graph, position + QPoint(0, 1));
        QTest::mouseMove(graph, position);
    }

    Desk desk;
    std::filesystem::path file;
    app::GraphWindow* window = nullptr;
    QWidget* graph = nullptr;
    QWidget* strip = nullptr;
    QWidget* box = nullptr;
};

} // namespace torvane::testing
