// The text tool over a graph window with a generated run: a comment pulled from a trace, typed
// and entered is drawn in black (leader, head and text) and comes back with the file; Escape
// leaves nothing, blank text removes a comment, the keys wait while the edit box is open, and a
// side file that cannot be written is reported while the comment stays.

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
constexpr QRgb Black = 0xFF000000;

struct Comment {
    QPoint anchor;
    QPoint end;
};

QLineEdit* EditBox(const ToolWindow& w) {
    return w.window->findChild<QLineEdit*>("txtComment");
}

const QImage& Picture(const ToolWindow& w) {
    return static_cast<app::GraphView*>(w.graph)->Renderer().Picture();
}

// A leader from a point on a trace to a free place up or down and right of it.
Comment LeaderOnATrace(const ToolWindow& w) {
    const QPoint anchor = w.PointNearTrace(true);
    const int rise = anchor.y() > 120 ? -60 : 60;
    return {anchor, QPoint(std::min(anchor.x() + 50, 360), anchor.y() + rise)};
}

// Pulls a leader with the text tool and releases it: the edit box is open afterwards.
void PullLeader(ToolWindow& w, const Comment& c) {
    w.Tool(TextTool);
    w.MoveTo(c.anchor);
    QTest::mousePress(w.graph, Qt::LeftButton, {}, c.anchor);
    QTest::mouseMove(w.graph, c.end);
    QTest::mouseRelease(w.graph, Qt::LeftButton, {}, c.end);
}

void Type(ToolWindow& w, const QString& text, Qt::Key key) {
    QTest::keyClicks(EditBox(w), text);
    QTest::keyClick(EditBox(w), key);
}

// Whether (x, y) lies within one pixel of the segment a-b.
bool NearSegment(QPoint p, QPoint a, QPoint b) {
    const QPointF ab = b - a;
    const double length2 = QPointF::dotProduct(ab, ab);
    const double t =
        length2 == 0 ? 0 : std::clamp(QPointF::dotProduct(QPointF(p - a), ab) / length2, 0.0, 1.0);
    const QPointF nearest = QPointF(a) + t * ab;
    return std::hypot(p.x() - nearest.x(), p.y() - nearest.y()) <= 1.5;
}

struct BlackPixels {
    int leader = 0;
    int head = 0;
    int text = 0;
    int elsewhere = 0;
};

// Pixels that turned black between two pictures, by where they lie. The cursor's columns are
// left out: it moves with the mouse.
BlackPixels NewBlack(const QImage& before, const QImage& after, const graph::CommentPicture& c,
                     QSize size, std::initializer_list<int> cursorColumns) {
    const QPoint anchor(c.Anchor.X, c.Anchor.Y);
    const QPoint textPoint(c.TextPoint.X, c.TextPoint.Y);
    const QRect text(c.TextOrigin.X, c.TextOrigin.Y - 2, 8 * int(c.Text.size()) + 2, 16);
    BlackPixels found;
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x) {
            if (std::find(cursorColumns.begin(), cursorColumns.end(), x) != cursorColumns.end() ||
                after.pixel(x, y) != Black || before.pixel(x, y) == Black) {
                continue;
            }
            const QPoint p(x, y);
            if (NearSegment(p, anchor, textPoint)) {
                ++found.leader;
            } else if (std::hypot(x - anchor.x(), y - anchor.y()) <= 11) {
                ++found.head;
            } else if (text.contains(p)) {
                ++found.text;
            } else {
                ++found.elsewhere;
            }
        }
    }
    return found;
}

std::vector<graph::CommentPicture> Drawn(const ToolWindow& w) {
    return graph::DrawComments(w.State(), {w.graph->width(), w.graph->height()});
}

} // namespace

class CommentToolTest : public QObject {
    Q_OBJECT

private slots:
    void ACommentIsDrawnAndComesBackWithTheFile() {
        ToolWindow w;
        const Comment c = LeaderOnATrace(w);
        const QImage before = Picture(w).copy();
        const int cursorBefore = w.State().CursorX;

        w.Tool(TextTool);
        w.MoveTo(c.anchor);
        QTest::mousePress(w.graph, Qt::LeftButton, {}, c.anchor);
        QCOMPARE(w.State().DragState, 5);
        auto* timer = w.window->findChild<QTimer*>("tmrComment");
        QVERIFY(timer->isActive());
        QTest::mouseMove(w.graph, c.end);
        QTRY_COMPARE(w.State().Leader.End, (graph::PixelPoint{c.end.x(), c.end.y()}));
        // The rubber line shows on the screen and stays off the picture's surfaces.
        const QImage shown = w.graph->grab().toImage();
        const QPoint middle = (c.anchor + c.end) / 2;
        int inverted = 0;
        for (int dx = -1; dx <= 1; ++dx) {
            inverted +=
                shown.pixel(middle + QPoint(dx, 0)) != Picture(w).pixel(middle + QPoint(dx, 0));
        }
        QVERIFY(inverted > 0);

        QTest::mouseRelease(w.graph, Qt::LeftButton, {}, c.end);
        QVERIFY(!timer->isActive());
        QLineEdit* box = EditBox(w);
        QVERIFY(box->isVisible());
        QCOMPARE(box->maxLength(), 40);
        QCOMPARE(box->x(), c.end.x());
        QCOMPARE(box->y(), c.end.y() - box->height() / 2);
        QTRY_VERIFY(box->hasFocus());
        Type(w, "  Brake here ", Qt::Key_Return);
        QVERIFY(!box->isVisible());
        QVERIFY(box->text().isEmpty());
        QCOMPARE(w.State().DragState, 0);

        const auto drawn = Drawn(w);
        QCOMPARE(drawn.size(), std::size_t{1});
        QCOMPARE(drawn[0].Text, std::string("Brake here"));
        const QSize size = w.graph->size();
        const int cursorAfter = w.State().CursorX;
        const BlackPixels black =
            NewBlack(before, Picture(w), drawn[0], size, {cursorBefore, cursorAfter});
        QVERIFY2(black.leader >= 20, qPrintable(QString::number(black.leader)));
        QVERIFY(black.head >= 8);
        QVERIFY(black.text >= 20);
        QCOMPARE(black.elsewhere, 0);

        // Kept beside the file, the comment is drawn again in a new window.
        QVERIFY(std::filesystem::exists(load::CommentFilePath(w.file)));
        w.Reopen();
        const auto again = Drawn(w);
        QCOMPARE(again.size(), std::size_t{1});
        QCOMPARE(again[0].Anchor, drawn[0].Anchor);
        const BlackPixels reopened =
            NewBlack(before, Picture(w), again[0], size, {cursorBefore, cursorAfter});
        QCOMPARE(reopened.leader, black.leader);
        QCOMPARE(reopened.text, black.text);
        QCOMPARE(reopened.elsewhere, 0);
        QVERIFY(w.desk.sink.messages.empty());
    }

    void EscapeLeavesNothingAndBlankTextRemovesAComment() {
        ToolWindow w;
        const Comment c = LeaderOnATrace(w);
        PullLeader(w, c);
        Type(w, "Gone", Qt::Key_Escape);
        QVERIFY(!EditBox(w)->isVisible());
        QVERIFY(Drawn(w).empty());
        QVERIFY(!std::filesystem::exists(load::CommentFilePath(w.file)));

        PullLeader(w, c);
        Type(w, "Apex", Qt::Key_Return);
        const auto drawn = Drawn(w);
        QCOMPARE(drawn.size(), std::size_t{1});
        const QImage withComment = Picture(w).copy();

        // A double click on the text opens it with its text; blanks entered remove it.
        const QPoint onText(drawn[0].TextOrigin.X + 6, drawn[0].TextOrigin.Y + 6);
        QTest::mouseDClick(w.graph, Qt::LeftButton, {}, onText);
        QLineEdit* box = EditBox(w);
        QVERIFY(box->isVisible());
        QCOMPARE(box->text(), QString("Apex"));
        QCOMPARE(w.State().EditComment, int(drawn[0].Index));
        box->selectAll();
        Type(w, "   ", Qt::Key_Return);
        QVERIFY(!box->isVisible());
        QVERIFY(Drawn(w).empty());
        QVERIFY(!w.State().Comments[drawn[0].Index].InUse());
        QVERIFY(!std::filesystem::exists(load::CommentFilePath(w.file)));
        const BlackPixels left =
            NewBlack(Picture(w), withComment, drawn[0], w.graph->size(), {w.State().CursorX});
        QVERIFY(left.text >= 10); // the text was there and is gone
        w.Reopen();
        QVERIFY(Drawn(w).empty());
    }

    void TheKeysWaitWhileTheLeaderIsPulledOrTheBoxIsOpen() {
        ToolWindow w;
        const Comment c = LeaderOnATrace(w);
        w.Tool(TextTool);
        w.MoveTo(c.anchor);
        const double atAnchor = w.State().Layers.Layer[0].CursorTime;
        QTest::mousePress(w.graph, Qt::LeftButton, {}, c.anchor);
        QTest::keyClick(w.window, Qt::Key_Right);
        QCOMPARE(w.State().Layers.Layer[0].CursorTime, atAnchor);
        QTest::mouseRelease(w.graph, Qt::LeftButton, {}, c.end);
        QLineEdit* box = EditBox(w);
        QVERIFY(box->isVisible());
        QTest::keyClick(w.window, Qt::Key_Right);
        QTest::keyClick(box, Qt::Key_Right);
        QCOMPARE(w.State().Layers.Layer[0].CursorTime, atAnchor);
        QTest::keyClick(box, Qt::Key_Escape);
        QTest::keyClick(w.window, Qt::Key_Right);
        QVERIFY(w.State().Layers.Layer[0].CursorTime > atAnchor);
    }

    // Something in the side file's place: the operator is told, the comment stays drawn.
    void AnUnwritableSideFileIsReportedAndTheCommentStays() {
        ToolWindow w;
        std::filesystem::create_directories(load::CommentFilePath(w.file) / "in-the-way");
        PullLeader(w, LeaderOnATrace(w));
        Type(w, "Kept", Qt::Key_Return);
        QCOMPARE(w.desk.sink.messages.size(), std::size_t{1});
        QVERIFY(w.desk.sink.messages[0].text.starts_with("The comments of RUN.rlg could not be"));
        QCOMPARE(w.desk.sink.messages[0].icon, shell::icons::Warning);
        QCOMPARE(Drawn(w).size(), std::size_t{1});
    }
};

QTEST_MAIN(CommentToolTest)
#include "comment_tool_test.moc"
