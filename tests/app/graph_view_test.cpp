// picGraph drawn from streams written by the test: the pixels of the shown picture at the rows,
// columns and colours the window's geometry gives them.

#include "core/graph_window_fixture.h"
#include "graph/graph_view.h"
#include "graph/scale.h"
#include "logger/laf_table.h"
#include "render/raster.h"
#include "shell/message_sink.h"

#include <QtTest>

#include <filesystem>

using namespace torvane;

namespace {

constexpr int Width = 600;
constexpr int Height = 400;
// VFW at 100 km/h on a band whose value 0 stands on row 300, 2 km/h a row.
constexpr int TraceRow = 250;
const QColor Black(0, 0, 0);
const QColor White(255, 255, 255);
const QColor Grey(0xC0, 0xC0, 0xC0);
const QColor TraceColor(0, 0, 255); // colour index 6, 0xFF0000
const QColor CursorColor(0x00, 0x80, 0xFF);
const QColor BandColor(0xBF, 0xFF, 0xFF);

// One window with VFW alone shown, a stream of 100 km/h every 10 ms, 1 column per 5 ms.
struct Window : graph::testing::GraphWindowFixture {
    Window() {
        Open(0, graph::testing::RunHeader(10));
        for (auto& item : state.Views[0].Display.Items) {
            item.View = 0;
            item.Grid = 0;
        }
        graph::ItemDisplay& vfw = state.Views[0].Display.Items[logdata::VFW];
        vfw = {1, 6, 1, 1, 1, 5, 150, 300, 0, 0};
        graph::ScaleFor(logdata::VFW, 5, state.Views[0].ItemScale[logdata::VFW]);
        state.Time = {1, 500, 5};
        Stream(0, "VFW", std::vector<std::int16_t>(2000, 100));
        View = std::make_unique<app::GraphView>(state, Laf, Sink);
        View->resize(Width, Height);
        View->DrawScaleColumn();
    }
    QImage Shown() const { return View->grab().toImage(); }
    QColor At(int x, int y) const { return Shown().pixelColor(x, y); }

    logger::LafTable Laf;
    shell::RecordingSink Sink;
    std::unique_ptr<app::GraphView> View;
};

// Counts the paints a widget receives.
class PaintCount : public QObject {
public:
    explicit PaintCount(QWidget& widget) { widget.installEventFilter(this); }
    int count = 0;

protected:
    bool eventFilter(QObject*, QEvent* event) override {
        count += event->type() == QEvent::Paint ? 1 : 0;
        return false;
    }
};

bool BlackIn(const QImage& image, const QRect& area) {
    for (int y = area.top(); y <= area.bottom(); ++y) {
        for (int x = area.left(); x <= area.right(); ++x) {
            if (image.pixelColor(x, y) == Black) {
                return true;
            }
        }
    }
    return false;
}

} // namespace

class GraphViewTest : public QObject {
    Q_OBJECT

private slots:
    void GridTraceAndTagStandOnTheirColumnsAndRows() {
        Window window;
        QVERIFY(window.View->RedrawGraph(render::RedrawMode::Rebuild));
        const QImage shown = window.Shown();
        QCOMPARE(shown.size(), QSize(Width, Height));
        // Time grid: black every 100 columns from 200, grey half lines between.
        for (const int x : {200, 300, 400, 500}) {
            QCOMPARE(shown.pixelColor(x, 50), Black);
            QCOMPARE(shown.pixelColor(x - 50, 50), Grey);
        }
        QCOMPARE(shown.pixelColor(230, 50), White);
        QCOMPARE(shown.pixelColor(200, Height - 21), Black);
        QCOMPARE(shown.pixelColor(200, Height - 19), White); // the time band
        // The axis line and the band's labelled top line from the scale column.
        QCOMPARE(shown.pixelColor(100, 50), Black);
        QCOMPARE(shown.pixelColor(230, 150), Black);
        QCOMPARE(shown.pixelColor(230, 155), Grey);
        // The sample on its row, in its colour; the row above and below stay clear.
        for (const int x : {133, 260, 577}) {
            QCOMPARE(shown.pixelColor(x, TraceRow), TraceColor);
            QCOMPARE(shown.pixelColor(x, TraceRow - 1), White);
        }
        // The trace starts on its base line.
        QCOMPARE(shown.pixelColor(100, 299), TraceColor);
        // The tag: the arrow at column 151 fifteen rows above the trace, the name right of it.
        QCOMPARE(shown.pixelColor(151 + 7, TraceRow - 15 + 3), Black);
        QCOMPARE(shown.pixelColor(149, TraceRow - 15 + 3), White);
        QVERIFY(BlackIn(shown, QRect(166, TraceRow - 30, 30, 15)));
        // Grid labels in the time band.
        QVERIFY(BlackIn(shown, QRect(200, Height - 15, 30, 14)));
        QCOMPARE(window.View->PixelAt(133, TraceRow), 0xFF0000U);
        QCOMPARE(window.View->PixelAt(Width, 0), 0U);
    }

    void RangeBandLiesUnderTheGraphAndTheCursorIsDotted() {
        Window window;
        window.state.RangeState = graph::RangeState::Complete;
        window.state.RangeStart = 500.0;
        window.state.RangeEnd = 1000.0;
        window.state.CursorX = 420;
        QVERIFY(window.View->RedrawGraph(render::RedrawMode::Rebuild));
        QImage shown = window.Shown();
        QCOMPARE(shown.pixelColor(230, 100), BandColor);
        QCOMPARE(window.View->PixelAt(230, 100), 0xFFFFBFU);
        QCOMPARE(shown.pixelColor(200, 100), Black);           // grid over the band
        QCOMPARE(shown.pixelColor(260, TraceRow), TraceColor); // trace over the band
        QCOMPARE(shown.pixelColor(300, 100), Black);
        QCOMPARE(shown.pixelColor(370, 100), White);
        QCOMPARE(shown.pixelColor(250, Height - 19), White); // not in the time band
        // Dots of three pixels, three apart, over the full height.
        QCOMPARE(shown.pixelColor(420, 0), CursorColor);
        QCOMPARE(shown.pixelColor(420, 2), CursorColor);
        QCOMPARE(shown.pixelColor(420, 3), White);
        QCOMPARE(shown.pixelColor(420, 6), CursorColor);
        QCOMPARE(shown.pixelColor(420, Height - 4), CursorColor);

        // A cursor move composes again: the old column comes back, the band follows the state.
        window.state.CursorX = 430;
        window.state.RangeEnd = 750.0;
        QVERIFY(window.View->RedrawGraph(render::RedrawMode::Compose));
        shown = window.Shown();
        QCOMPARE(shown.pixelColor(420, 0), White);
        QCOMPARE(shown.pixelColor(430, 0), CursorColor);
        QCOMPARE(shown.pixelColor(260, 100), White);
        QCOMPARE(shown.pixelColor(240, 100), BandColor);
    }

    // A window whose picture no longer rebuilds on paint (its layers or place changed) still
    // follows a new size, also one the picture learns late, as on a restore from minimised.
    void APictureThatNoLongerRebuildsOnPaintFollowsItsSize() {
        Window window;
        QVERIFY(window.View->RedrawGraph(render::RedrawMode::Rebuild));
        window.state.SingleFileState = graph::SingleFileState::Cleared;
        window.state.Layers.Layer[0].MeasureTime = 20000.0;
        window.View->resize(Width + 300, Height + 100);
        const QImage shown = window.Shown();
        QCOMPARE(shown.pixelColor(800, 50), Black);
        QCOMPARE(shown.pixelColor(850, TraceRow), TraceColor);
        QCOMPARE(shown.pixelColor(800, Height + 100 - 21), Black);
        QCOMPARE(shown.pixelColor(800, Height - 19), Black); // no time band left at the old row
    }

    void HeldScrollingRedrawsFromColumn100() {
        Window window;
        QVERIFY(window.View->RedrawGraph(render::RedrawMode::Rebuild));
        window.state.Layers.Layer[0].TimeOffset = 250.0;
        QVERIFY(window.View->RedrawRect());
        const QImage shown = window.Shown();
        QCOMPARE(shown.pixelColor(150, 50), Black); // the grid moved 50 columns left
        QCOMPARE(shown.pixelColor(200, 50), Grey);
        QCOMPARE(shown.pixelColor(133, TraceRow), TraceColor);
        QCOMPARE(shown.pixelColor(100, 50), Black);
    }

    void AFreshWindowRebuildsWhenUncoveredNotWhenItShowsItsOwnRedraw() {
        Window window;
        window.View->show();
        QVERIFY(QTest::qWaitForWindowExposed(window.View.get()));
        window.state.SingleFileState = graph::SingleFileState::Loaded;
        QVERIFY(window.View->RedrawGraph(render::RedrawMode::Rebuild));
        // The stream drops to 50 km/h: a cursor move only composes, so the trace stays drawn.
        window.Stream(0, "VFW", std::vector<std::int16_t>(2000, 50));
        const PaintCount paints(*window.View);
        window.state.CursorX = 420;
        QVERIFY(window.View->RedrawGraph(render::RedrawMode::Compose));
        QTRY_VERIFY(paints.count > 0);
        QCOMPARE(window.View->PixelAt(133, TraceRow), 0xFF0000U);
        QCOMPARE(window.View->PixelAt(420, 0), 0xFF8000U);
        // Uncovered, the window draws its traces again.
        const QImage shown = window.Shown();
        QCOMPARE(shown.pixelColor(133, TraceRow + 25), TraceColor);
        QVERIFY(shown.pixelColor(133, TraceRow) != TraceColor);
        QCOMPARE(shown.pixelColor(420, 0), CursorColor);
    }

    void TheGhostFollowsTheMouseAndGoesAway() {
        Window window;
        QVERIFY(window.View->RedrawGraph(render::RedrawMode::Rebuild));
        QVERIFY(window.View->BeginItemDrag(0, logdata::VFW));
        QVERIFY(window.View->MoveGhost({0, -62}));
        QVERIFY(BlackIn(window.Shown(), QRect(310, TraceRow - 62, 12, 1)));
        window.View->EndItemDrag();
        QVERIFY(!BlackIn(window.Shown(), QRect(310, TraceRow - 62, 12, 1)));
        QVERIFY(!window.View->BeginItemDrag(0, 40)); // no such item
    }

    void AMissingStreamIsToldOnceAndStopsTheRepaints() {
        Window window;
        QVERIFY(window.View->RedrawGraph(render::RedrawMode::Rebuild));
        std::filesystem::remove(window.state.Layers.StreamPath(0, "VFW"));
        QVERIFY(!window.View->RedrawGraph(render::RedrawMode::Rebuild));
        QCOMPARE(window.Sink.Messages.size(), std::size_t{1});
        QVERIFY(window.Sink.Messages[0].Text.starts_with("Error(53)"));
        // A loaded window redraws on paint; a failure clears the state so it is not retried.
        window.state.SingleFileState = graph::SingleFileState::Loaded;
        window.Shown();
        QCOMPARE(window.state.SingleFileState, graph::SingleFileState::Cleared);
        QCOMPARE(window.Sink.Messages.size(), std::size_t{1});
        // What the operator saw stays.
        QCOMPARE(window.At(133, TraceRow), TraceColor);

        // The failed pass stopped at the stream: composed now, the graph has its grid but neither
        // the trace nor the time band, its line and labels, that come after the traces.
        QVERIFY(window.View->RedrawGraph(render::RedrawMode::Compose));
        const QImage partial = window.Shown();
        QCOMPARE(partial.pixelColor(200, 50), Black);
        QVERIFY(partial.pixelColor(133, TraceRow) != TraceColor);
        QCOMPARE(partial.pixelColor(230, Height - 20), White);
        QVERIFY(!BlackIn(partial, QRect(200, Height - 15, 30, 14)));

        // A band wholly below the picture is never read, so its missing stream is no failure.
        window.state.Views[0].Display.Items[logdata::VFW].Bottom = 2000;
        QVERIFY(window.View->RedrawGraph(render::RedrawMode::Rebuild));
        QCOMPARE(window.Sink.Messages.size(), std::size_t{1});
        QCOMPARE(window.At(230, Height - 20), Black);
    }

    void LinesKeepTheirDashPatternAndTheirPixelsWhenClipped() {
        QImage image(60, 40, QImage::Format_RGB32);
        image.fill(Qt::white);
        const render::Pen pen(render::PixelOf(0x000000), graph::PenStyle::DashDotDot);
        // Two segments: the pattern runs on over the corner; the last point is left out.
        const std::vector<graph::TracePoint> points{{0, 5}, {20, 5}, {30, 5}};
        render::Raster(image, image.rect()).Polyline(points, pen);
        QString drawn;
        for (int x = 0; x < 31; ++x) {
            drawn += image.pixelColor(x, 5) == Black ? '#' : '.';
        }
        QCOMPARE(drawn, QString("#########...###...###...######."));

        // A steep line drawn whole and drawn clipped to a box sets the same pixels in the box.
        QImage whole(60, 40, QImage::Format_RGB32);
        whole.fill(Qt::white);
        QImage clipped = whole;
        const render::Pen solid(render::PixelOf(0x000000), graph::PenStyle::Solid);
        const QRect box(10, 10, 20, 15);
        std::int64_t phase = 0;
        render::Raster(whole, whole.rect()).Line(3, -50, 37, 39, solid, phase);
        phase = 0;
        render::Raster(clipped, box).Line(3, -50, 37, 39, solid, phase);
        QCOMPARE(phase, std::int64_t{89});
        for (int y = 0; y < 40; ++y) {
            for (int x = 0; x < 60; ++x) {
                const QColor expected = box.contains(x, y) ? whole.pixelColor(x, y) : White;
                QCOMPARE(clipped.pixelColor(x, y), expected);
            }
        }
        QCOMPARE(whole.pixelColor(37, 39), White); // the end point
        // Row 20 is step 70 of 89: column 3 + 34 x 70 / 89 = 29.7, rounded.
        QCOMPARE(whole.pixelColor(30, 20), Black);
        QCOMPARE(whole.pixelColor(29, 20), White);
    }
};

QTEST_MAIN(GraphViewTest)
#include "graph_view_test.moc"
