// The text tool over a graph window with a generated run: a comment pulled from a trace, typed
// and entered is drawn in black (leader, head and text) and comes back with the file; the loss
// of focus leaves nothing, and a side file that cannot be written is reported while the comment
// stays.

#include "graph/comments.h"
#include "graph/graph_view.h"
#include "graph_tools_window.h"
#include "load/comment_file.h"

#include <QLineEdit>
#include <QTimer>
#include <QtTest>

#include <algorithm>
#include <cmath>
#include <filesystem>

using namespace torvane;
using testing::ToolWindow;

namespace {

constexpr int TextTool = 6;

QLineEdit* EditBox(const ToolWindow& w) {
    return w.Window->findChild<QLineEdit*>("txtComment");
}

const QImage& Picture(const ToolWindow& w) {
    return static_cast<app::GraphView*>(w.Graph)->Renderer().Picture();
}

std::vector<graph::CommentPicture> Drawn(const ToolWindow& w) {
    return graph::DrawComments(w.State(), {w.Graph->width(), w.Graph->height()});
}

// A leader from a point on a trace to a free place right of it, up or down.
QLine LeaderOnATrace(const ToolWindow& w) {
    const QPoint anchor = w.PointNearTrace(true);
    const int rise = anchor.y() > 120 ? -60 : 60;
    return {anchor, QPoint(std::min(anchor.x() + 50, 360), anchor.y() + rise)};
}

// Presses the text tool on the leader's start and moves to its end; released, the box opens.
void PullLeader(ToolWindow& w, QLine leader, bool release = true) {
    w.Tool(TextTool);
    w.MoveTo(leader.p1());
    QTest::mousePress(w.Graph, Qt::LeftButton, {}, leader.p1());
    QTest::mouseMove(w.Graph, leader.p2());
    if (release) {
        QTest::mouseRelease(w.Graph, Qt::LeftButton, {}, leader.p2());
    }
}

void Type(ToolWindow& w, const QString& text, Qt::Key key) {
    QTest::keyClicks(EditBox(w), text);
    QTest::keyClick(EditBox(w), key);
}

// Pixels that turned black from one picture to the next: on the leader (within a pixel), on the
// arrow head (within its 10 pixels of the anchor), in the text's box, or anywhere else. The
// columns given (the cursor's, which follows the mouse) are left out.
struct NewBlack {
    NewBlack(const QImage& before, const QImage& after, const graph::CommentPicture& c,
             std::initializer_list<int> skipped) {
        const QLineF leader(c.Anchor.X, c.Anchor.Y, c.TextPoint.X, c.TextPoint.Y);
        const QRect text(c.TextOrigin.X, c.TextOrigin.Y - 2, 8 * int(c.Text.size()) + 2, 16);
        for (int y = 0; y < after.height(); ++y) {
            for (int x = 0; x < after.width(); ++x) {
                if (std::ranges::find(skipped, x) != skipped.end() ||
                    qGray(after.pixel(x, y)) != 0 || qGray(before.pixel(x, y)) == 0) {
                    continue;
                }
                const QPointF along = leader.p2() - leader.p1();
                const double t =
                    std::clamp(QPointF::dotProduct(QPointF(x, y) - leader.p1(), along) /
                                   std::max(1.0, QPointF::dotProduct(along, along)),
                               0.0, 1.0);
                if (QLineF(QPointF(x, y), leader.p1() + t * along).length() <= 1.5) {
                    ++OnLeader;
                } else if (QLineF(QPointF(x, y), leader.p1()).length() <= 11) {
                    ++OnHead;
                } else if (text.contains(x, y)) {
                    ++InText;
                } else {
                    ++Elsewhere;
                }
            }
        }
    }
    int OnLeader = 0;
    int OnHead = 0;
    int InText = 0;
    int Elsewhere = 0;
};

} // namespace

class CommentToolTest : public QObject {
    Q_OBJECT

private slots:
    void ACommentIsDrawnAndComesBackWithTheFile() {
        ToolWindow w;
        const QLine leader = LeaderOnATrace(w);
        const QImage before = Picture(w).copy();
        const int cursorBefore = w.State().CursorX;

        PullLeader(w, leader, false);
        QCOMPARE(w.State().DragState, graph::DragState::CommentLeader);
        QTRY_COMPARE(w.State().Leader.End, (graph::PixelPoint{leader.x2(), leader.y2()}));
        // The rubber line shows on the screen (inverted) and stays off the picture's surfaces.
        const QPoint middle = leader.center();
        QVERIFY(w.Graph->grab().toImage().pixel(middle) != Picture(w).pixel(middle) ||
                w.Graph->grab().toImage().pixel(middle + QPoint(1, 0)) !=
                    Picture(w).pixel(middle + QPoint(1, 0)));

        QTest::mouseRelease(w.Graph, Qt::LeftButton, {}, leader.p2());
        QVERIFY(!w.Window->findChild<QTimer*>("tmrComment")->isActive());
        QLineEdit* box = EditBox(w);
        QVERIFY(box->isVisible());
        QCOMPARE(box->pos(), QPoint(leader.x2(), leader.y2() - box->height() / 2));
        QTRY_VERIFY(box->hasFocus());
        Type(w, "  Brake here ", Qt::Key_Return);
        QVERIFY(!box->isVisible());

        const auto drawn = Drawn(w);
        QCOMPARE(drawn.size(), std::size_t{1});
        QCOMPARE(drawn[0].Text, std::string("Brake here"));
        const int cursorAfter = w.State().CursorX;
        const NewBlack black(before, Picture(w), drawn[0], {cursorBefore, cursorAfter});
        QVERIFY(black.OnLeader >= 20);
        QVERIFY(black.OnHead >= 8);
        QVERIFY(black.InText >= 20);
        QCOMPARE(black.Elsewhere, 0);

        // Kept beside the file, the comment is drawn the same in a new window.
        w.Reopen();
        QCOMPARE(Drawn(w).size(), std::size_t{1});
        const NewBlack again(before, Picture(w), drawn[0], {cursorBefore, cursorAfter});
        QCOMPARE(again.OnLeader, black.OnLeader);
        QCOMPARE(again.InText, black.InText);
        QCOMPARE(again.Elsewhere, 0);
        QVERIFY(w.Desk.Sink.Messages.empty());
    }

    // The box ends when the focus goes elsewhere in the program, but waits while another
    // program or a menu has the keyboard.
    void TheBoxEndsWithItsFocus() {
        ToolWindow w;
        PullLeader(w, LeaderOnATrace(w));
        QTest::keyClicks(EditBox(w), "Half");
        for (const Qt::FocusReason reason : {Qt::ActiveWindowFocusReason, Qt::PopupFocusReason}) {
            QFocusEvent away(QEvent::FocusOut, reason);
            QCoreApplication::sendEvent(EditBox(w), &away);
            QCOMPARE(EditBox(w)->text(), QString("Half"));
        }
        w.Window->setFocus(Qt::MouseFocusReason);
        QVERIFY(!EditBox(w)->isVisible());
        QVERIFY(Drawn(w).empty());
    }

    // Something in the side file's place: the operator is told, the comment stays drawn.
    void AnUnwritableSideFileIsReportedAndTheCommentStays() {
        ToolWindow w;
        std::filesystem::create_directories(load::CommentFilePath(w.File) / "in-the-way");
        PullLeader(w, LeaderOnATrace(w));
        Type(w, "Kept", Qt::Key_Return);
        QCOMPARE(w.Desk.Sink.Messages.size(), std::size_t{1});
        QVERIFY(w.Desk.Sink.Messages[0].Text.starts_with("The comments of RUN.rlg could not be"));
        QCOMPARE(w.Desk.Sink.Messages[0].Icon, shell::icons::Warning);
        QCOMPARE(Drawn(w).size(), std::size_t{1});
    }
};

QTEST_MAIN(CommentToolTest)
#include "comment_tool_test.moc"
