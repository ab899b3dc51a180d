// The tools over a picture that shows one trace colour and can be told to fail: Escape in a trace
// drag, a ghost that cannot be shown, a held move button, and a failed redraw.

#include "core/graph_window_fixture.h"
#include "graph/graph_picture.h"
#include "graph/graph_tools.h"
#include "graph/scroll_strip_view.h"
#include "graph_desk.h"
#include "shell/common.h"
#include "shell/tool_box.h"

#include <QPushButton>
#include <QtTest>

using namespace torvane;

namespace {

// White, except for a trace of VFW's colour (index 3, which no other item has) along row 200.
class OneTracePicture : public QWidget, public app::GraphPicture {
public:
    explicit OneTracePicture(QWidget* parent)
        : QWidget(parent) {}

    bool RedrawGraph(render::RedrawMode mode) override {
        rebuilds += mode == render::RedrawMode::Rebuild ? 1 : 0;
        return redrawWorks;
    }
    bool RedrawRect() override {
        ++shortRedraws;
        return redrawWorks;
    }
    void DrawScaleColumn() override {}
    bool BeginItemDrag(int, int) override { return true; }
    bool MoveGhost(QPoint) override { return ghostWorks; }
    void EndItemDrag() override { ++ghostsDropped; }
    void ShowOverlayLine(std::optional<QLine>) override {}
    std::uint32_t PixelAt(int, int y) const override {
        return y == 200 ? shell::ColorValue(3) : 0xFFFFFFu;
    }
    QWidget* Widget() override { return this; }

    int ghostsDropped = 0;
    int rebuilds = 0;
    int shortRedraws = 0;
    bool redrawWorks = true;
    bool ghostWorks = true;
};

// A window of the tools with one layer of a 600 s run at 100 ms a column, 10 s in.
struct Bench {
    Bench() {
        Fixture.Open(0, graph::testing::RunHeader());
        Fixture.state.Time = {1, 10000, 100};
        Fixture.state.Layers.Layer[0].MeasureTime = 600'000.0;
        Fixture.state.Layers.Layer[0].TimeOffset = 10'000.0;
        Fixture.state.Views[0].Display.Items[2].Top = 100;
        Fixture.state.Views[0].Display.Items[2].Bottom = 300;
        Window.resize(700, 440);
        Picture->setGeometry(0, 0, 600, 400);
        Strip->setGeometry(24, 400, 500, 24);
        Desk.Context.Tools = &Tools;
        // The frame would stand over this window and take its mouse.
        Desk.Frame.hide();
        Window.show();
        if (!QTest::qWaitForWindowExposed(&Window)) {
            qFatal("no window");
        }
    }
    graph::GraphWindowState& State() { return Fixture.state; }
    void MoveTo(QPoint position) const {
        QTest::mouseMove(Picture, position + QPoint(0, 1));
        QTest::mouseMove(Picture, position);
    }

    testing::Desk Desk;
    graph::testing::GraphWindowFixture Fixture;
    app::ToolSettings Tools;
    QWidget Window;
    OneTracePicture* Picture = new OneTracePicture(&Window);
    app::ScrollStripView* Strip = new app::ScrollStripView(&Window);
    QPushButton* Left = new QPushButton(&Window);
    QPushButton* Right = new QPushButton(&Window);
    app::GraphTools GraphTools{
        Fixture.state, Desk.Context, {*Picture, *Strip, *Left, *Right, Window}};
};

} // namespace

class GraphToolsPictureTest : public QObject {
    Q_OBJECT

private slots:

    // Escape drops the ghost and leaves everything where it was; a ghost that cannot be shown
    // is reported and ends the drag.
    void EscapeOrAFailedGhostEndTheDrag() {
        Bench bench;
        bench.MoveTo({300, 200});
        QTest::mousePress(bench.Picture, Qt::LeftButton, {}, {300, 200});
        QTest::keyClick(&bench.Window, Qt::Key_Escape);
        QCOMPARE(bench.State().DragState, graph::DragState::None);
        QCOMPARE(bench.Picture->ghostsDropped, 1);
        QTest::mouseRelease(bench.Picture, Qt::LeftButton, {}, {300, 200});
        QCOMPARE(bench.State().Layers.Layer[0].TimeOffset, 10000.0);
        QCOMPARE(bench.State().Views[0].Display.Items[2].Bottom, 300);

        bench.Picture->ghostWorks = false;
        QTest::mousePress(bench.Picture, Qt::LeftButton, {}, {300, 200});
        bench.MoveTo({340, 200});
        QTRY_COMPARE(bench.State().DragState, graph::DragState::None);
        QCOMPARE(bench.Desk.Sink.Messages.size(), std::size_t{1});
        QCOMPARE(bench.Desk.Sink.Messages[0].Text, std::string("Error DirectX."));
        QCOMPARE(bench.Desk.Sink.Messages[0].Icon, shell::icons::Stop);
        QTest::mouseRelease(bench.Picture, Qt::LeftButton, {}, {340, 200});
    }

    // A held cmdMove scrolls a pass at a time with the short redraw, which leaves the comments
    // out, until the release, which rebuilds the picture with them; a failed pass ends the hold.
    void AHeldMoveButtonScrollsUntilTheReleaseOrAFailedRedraw() {
        Bench bench;
        QTest::mousePress(bench.Right, Qt::LeftButton);
        QCOMPARE(bench.State().DragState, graph::DragState::HeldScroll);
        QVERIFY(bench.Right->isDown());
        QTRY_VERIFY(bench.Picture->shortRedraws >= 3);
        QCOMPARE(bench.Picture->rebuilds, 0);
        QTest::mouseRelease(bench.Right, Qt::LeftButton);
        QCOMPARE(bench.State().DragState, graph::DragState::None);
        QVERIFY(!bench.Right->isDown());
        QCOMPARE(bench.Picture->rebuilds, 1);
        const int passes = bench.Picture->shortRedraws;
        // 100 ms a column: each pass moves 500 ms.
        QCOMPARE(bench.State().Layers.Layer[0].TimeOffset, 10'000.0 + passes * 500.0);
        QTest::qWait(60);
        QCOMPARE(bench.Picture->shortRedraws, passes);

        bench.Picture->redrawWorks = false;
        QTest::mousePress(bench.Left, Qt::LeftButton);
        QCOMPARE(bench.State().DragState, graph::DragState::None);
        QVERIFY(!bench.Left->isDown());
        QCOMPARE(bench.Picture->shortRedraws, passes + 1);
        QCOMPARE(bench.State().SingleFileState, graph::SingleFileState::Cleared);
        QTest::mouseRelease(bench.Left, Qt::LeftButton);
        QCOMPARE(bench.Picture->rebuilds, 2);
    }

    // A failed redraw on a cursor move stops the picture rebuilding itself and skips the
    // read-out.
    void AFailedRedrawClearsTheLoadedState() {
        Bench bench;
        bench.MoveTo({300, 100});
        QCOMPARE(bench.State().SingleFileState, graph::SingleFileState::Loaded);
        const std::string title = bench.State().TitleText;
        bench.Picture->redrawWorks = false;
        bench.MoveTo({400, 100});
        QCOMPARE(bench.State().CursorX, 411);
        QCOMPARE(bench.State().SingleFileState, graph::SingleFileState::Cleared);
        QCOMPARE(bench.State().TitleText, title);
    }
};

QTEST_MAIN(GraphToolsPictureTest)
#include "graph_tools_picture_test.moc"
