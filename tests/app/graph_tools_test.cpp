// The mouse over a graph window with a generated run: the cursor and its read-out, the time zoom
// and what it saves, the range tool, the scroll strip's pixels and the box drag.

#include "graph/graph_picture.h"
#include "graph/graph_window.h"
#include "graph/hit_test.h"
#include "graph/panel_controls.h"
#include "graph/scroll_strip.h"
#include "graph/scrolling.h"
#include "graph_tools_window.h"
#include "shell/tool_box.h"

#include <QLabel>
#include <QPushButton>
#include <QTimer>
#include <QtTest>

using namespace torvane;
using testing::ToolWindow;

class GraphToolsTest : public QObject {
    Q_OBJECT

private slots:
    // The default layout shows 100 ms a column; the mouse's x is read 11 columns further right.
    void TheCursorFollowsTheMouseAndTheReadOutFollowsTheCursor() {
        ToolWindow w;
        w.MoveTo({289, 100});
        QCOMPARE(w.State().CursorX, 300);
        QCOMPARE(w.Title(), QString(" Time 00h00m20s000"));
        // Left of the hot spot's reach the graph takes no press.
        w.Tool(7);
        QTest::mousePress(w.Graph, Qt::LeftButton, {}, {88, 100});
        QCOMPARE(w.State().RangeState, graph::RangeState::None);
        QTest::mouseRelease(w.Graph, Qt::LeftButton, {}, {88, 100});
    }

    void TimeZoomKeepsTheCursorUnderTheMouseAndIsSaved() {
        ToolWindow w;
        w.MoveTo({289, 100}); // 20 s
        w.Tool(3);
        QTest::mouseClick(w.Graph, Qt::LeftButton, {}, {289, 100});
        QCOMPARE(w.State().Time, (graph::TimeScale{1, 5000, 50}));
        // 189 columns of 50 ms left of the mouse, on the grid of 50 ms.
        QCOMPARE(w.Offset(), 20000.0 - 9450.0);
        graph::DisplaySet saved;
        QVERIFY(w.Desk.Layouts.GetLayout(0, saved));
        QCOMPARE(saved.Time, w.State().Time);
        w.Tool(2);
        QTest::mouseClick(w.Graph, Qt::LeftButton, {}, {289, 100});
        QCOMPARE(w.State().Time.MsPerStep, 100);

        // Tool 5 on no trace changes nothing; on a trace it zooms that item.
        w.Tool(5);
        const graph::DisplaySet before = w.State().Views[0].Display;
        QTest::mouseClick(w.Graph, Qt::LeftButton, {}, w.PointNearTrace(false));
        QCOMPARE(w.State().Views[0].Display, before);
        QTest::mouseClick(w.Graph, Qt::LeftButton, {}, w.PointNearTrace(true));
        QVERIFY(w.State().Views[0].Display != before);
    }

    void TheRangeToolMarksFromPressToRelease() {
        ToolWindow w;
        w.Tool(7);
        w.MoveTo({289, 100});
        QTest::mousePress(w.Graph, Qt::LeftButton, {}, {289, 100});
        QCOMPARE(w.State().RangeState, graph::RangeState::StartMarked);
        w.MoveTo({189, 100});
        QTest::mouseRelease(w.Graph, Qt::LeftButton, {}, {189, 100});
        QCOMPARE(w.State().RangeState, graph::RangeState::Complete);
        QCOMPARE(w.State().RangeStart, 10000.0);
        QCOMPARE(w.State().RangeEnd, 20000.0);

        // Held near the right edge, the marking scrolls until the release closes the range.
        w.MoveTo({289, 100});
        QTest::mousePress(w.Graph, Qt::LeftButton, {}, {289, 100});
        QTimer::singleShot(150, w.Graph, [&] {
            QTest::mouseRelease(w.Graph, Qt::LeftButton, {}, {495, 100});
        });
        w.MoveTo({495, 100});
        QCOMPARE(w.State().DragState, graph::DragState::HeldScroll);
        QTRY_COMPARE(w.State().DragState, graph::DragState::None);
        QVERIFY(w.Offset() > 0.0);
        QCOMPARE(w.State().RangeState, graph::RangeState::Complete);
        QCOMPARE(w.State().RangeStart, 20000.0);
        QCOMPARE(w.State().RangeEnd, w.State().Layers.Layer[0].CursorTime);
        QVERIFY(w.State().RangeEnd > 40000.0);
    }

    // The strip is cyan on black; the box shows it inverted: red on white.
    void TheStripAndItsBoxAreDrawnFromTheStream() {
        ToolWindow w;
        QVERIFY(w.Box->isVisible());
        // 510 - 100 columns of 100 ms (plus one) of a 60 s run on 462 columns.
        QCOMPARE(w.Box->geometry(), QRect(0, 0, 316, 24));
        const QImage picture = w.Window->grab(w.Strip->geometry()).toImage();
        int trace = 0;
        int ground = 0;
        int inverted = 0;
        for (int x = 0; x < picture.width(); ++x) {
            for (int y = 0; y < picture.height(); ++y) {
                const QRgb pixel = picture.pixel(x, y) & 0xFFFFFF;
                const bool inBox = x < w.Box->width();
                trace += !inBox && pixel == 0x00FFFF ? 1 : 0;
                ground += !inBox && pixel == 0x000000 ? 1 : 0;
                inverted += inBox && pixel == 0xFF0000 ? 1 : 0;
                QVERIFY2(pixel == 0x00FFFF || pixel == 0x000000 || pixel == 0xFF0000 ||
                             pixel == 0xFFFFFF,
                         qPrintable(QString::number(pixel, 16)));
            }
        }
        QVERIFY(trace > 50);
        QVERIFY(ground > trace);
        QVERIFY(inverted > 50);

        // mnuScrollItem(0): the strip follows Ne; choosing the checked entry changes nothing.
        QAction* ne = w.Desk.Frame.Action("mnuScrollItem0");
        QVERIFY(w.Desk.Frame.Action("mnuScrollItem1")->isChecked());
        QVERIFY(ne->isEnabled());
        ne->trigger();
        QCOMPARE(w.State().Layers.Layer[0].ScrollItem, 0);
        QVERIFY(ne->isChecked());
        QVERIFY(!w.Desk.Frame.Action("mnuScrollItem1")->isChecked());
        QCOMPARE(w.Window->findChild<app::TitleItem*>("ucnScroll")->Title(), QString("Ne"));
        const QImage ofNe = w.Window->grab(w.Strip->geometry()).toImage();
        QVERIFY(ofNe != picture);
        ne->trigger();
        QVERIFY(ne->isChecked());
        QCOMPARE(w.Window->grab(w.Strip->geometry()).toImage(), ofNe);
    }

    // Dragged by 92 strip columns (12 s of the strip's 60 s), the view follows on its step grid;
    // pulling the right edge in zooms.
    void DraggingTheBoxScrollsAndPullingAnEdgeZooms() {
        ToolWindow w;
        QTest::mousePress(w.Box, Qt::LeftButton, {}, {100, 10});
        QCOMPARE(w.State().DragState, graph::DragState::BoxMove);
        QTest::mouseMove(w.Box, {192, 10});
        QTRY_COMPARE(w.Box->x(), 92); // on the next tick of tmrScroll
        // The box moved under the mouse.
        QTest::mouseRelease(w.Box, Qt::LeftButton, {}, {100, 10});
        QCOMPARE(w.State().DragState, graph::DragState::None);
        const double expected = 92.0 / 462 * w.State().ScrollSpan;
        QCOMPARE(w.Offset(), expected - std::fmod(std::round(expected), 100.0));

        // The right edge pulled to 41 columns wide: 60 s x 41 / 462 over 410 columns.
        const int right = w.Box->width() - 2;
        QTest::mousePress(w.Box, Qt::LeftButton, {}, {right, 10});
        QCOMPARE(w.State().DragState, graph::DragState::BoxRightEdge);
        QTest::mouseMove(w.Box, {41, 10});
        QTest::qWait(250);
        QCOMPARE(w.Box->width(), 316); // only the band follows the mouse
        QTest::mouseRelease(w.Box, Qt::LeftButton, {}, {41, 10});
        QCOMPARE(w.Box->width(), 41);
        QCOMPARE(w.State().Time, (graph::TimeScale{1, 1500, 15}));

        // The left edge pulled past the right one: the narrowest box, its right edge kept.
        const int boxRight = w.Box->x() + w.Box->width();
        const QPoint past(w.Box->width() + 20, 10);
        QTest::mousePress(w.Box, Qt::LeftButton, {}, {1, 10});
        QCOMPARE(w.State().DragState, graph::DragState::BoxLeftEdge);
        QTest::mouseMove(w.Box, past);
        QTest::qWait(250);
        QTest::mouseRelease(w.Box, Qt::LeftButton, {}, past);
        QCOMPARE(w.Box->width(), 10);
        QCOMPARE(w.Box->x() + w.Box->width(), boxRight);
    }

    // A box narrowed by its edge stays as it is when the strip is drawn again for another layer;
    // a right press in the graph leaves the strip alone; a lap jump only moves the box; a new
    // size places it for what the graph shows.
    void ThePulledBoxOutlivesARebuiltStripUntilTheWindowIsResized() {
        ToolWindow w;
        QVERIFY(w.Window->OpenLayer(w.Desk.Run("HALF.rlg", 30000.0, 2)));
        QCOMPARE(w.State().ActiveLayer, 0);
        QTest::mousePress(w.Box, Qt::LeftButton, {}, {w.Box->width() - 2, 10});
        QTest::mouseMove(w.Box, {41, 10});
        QTest::mouseRelease(w.Box, Qt::LeftButton, {}, {41, 10});
        const QRect pulled = w.Box->geometry();
        QCOMPARE(pulled.width(), 41);

        // The 30 s run of layer 1 under the same box, where its offset would put a wider one.
        QTest::mouseClick(w.Window->findChild<QWidget*>("chkFile1"), Qt::LeftButton);
        QCOMPARE(w.State().ActiveLayer, 1);
        QCOMPARE(w.State().ScrollSpan, 30000);
        QCOMPARE(w.Box->geometry(), pulled);
        const QImage ofLayer1 = w.Window->grab(w.Strip->geometry()).toImage();

        // A right press on a trace of layer 0 makes it active and opens the popup; the strip
        // still shows layer 1's run.
        const graph::TraceExtent extent = graph::TraceExtentOf(w.State(), w.Desk.Laf);
        auto* picture = dynamic_cast<app::GraphPicture*>(w.Graph);
        const graph::PixelReader pixels = [picture](int x, int y) {
            return picture->PixelAt(x, y);
        };
        std::optional<QPoint> onLayer0;
        for (int y = 40; y < w.Graph->height() - 40 && !onLayer0; y += 3) {
            for (int x = 120; x < w.Graph->width() - 20 && !onLayer0; x += 3) {
                const auto hit =
                    graph::HitTestItem(w.State(), x, y, pixels, graph::DisplayedColors(), extent);
                if (hit && hit->Layer == 0) {
                    onLayer0 = QPoint(x, y);
                }
            }
        }
        QVERIFY(onLayer0.has_value());
        QTimer::singleShot(0, [] {
            if (QWidget* popup = QApplication::activePopupWidget()) {
                popup->close();
            }
        });
        QTest::mousePress(w.Graph, Qt::RightButton, {}, *onLayer0);
        QTest::mouseRelease(w.Graph, Qt::RightButton, {}, *onLayer0);
        QCOMPARE(w.State().ActiveLayer, 0);
        QCOMPARE(w.State().ScrollSpan, 30000);
        QCOMPARE(w.Window->grab(w.Strip->geometry()).toImage(), ofLayer1);
        QCOMPARE(w.Box->geometry(), pulled);

        // The jump to the first lap takes layer 0 to its start: the box to the strip's left.
        QVERIFY(w.Window->MoveLapTime(0));
        QCOMPARE(w.Box->geometry(), QRect(0, 0, 41, 24));

        // 100 columns wider: layer 0's 60 s on a strip of 562 columns, 511 steps of 15 ms shown.
        w.Window->resize(740, 400);
        QCOMPARE(w.State().ScrollSpan, 60000);
        QCOMPARE(w.Box->geometry(), QRect(0, 0, qRound(562 / 60000.0 * 511 * 15), 24));
    }
};

QTEST_MAIN(GraphToolsTest)
#include "graph_tools_test.moc"
