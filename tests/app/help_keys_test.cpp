// F1 opens the manual at the page of the window in use: a graph window, the toolbox, the frame
// with no window, and a window of its own; the Help entry opens the contents.

#include "graph_desk.h"
#include "shell/help_window.h"
#include "shell/tool_box.h"

#include <QAction>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QtTest>

using namespace torvane;
using testing::Desk;

namespace {

// The page the newest help window shows, or would show if the manual were installed.
QString NewestHelpPage(const QObject& owner) {
    const QList<app::HelpWindow*> windows = owner.findChildren<app::HelpWindow*>("HelpWindow");
    if (windows.isEmpty()) {
        return {};
    }
    const app::HelpWindow* help = windows.back();
    return help->source().isValid() ? help->source().fileName()
                                    : help->toPlainText().section('/', -1);
}

} // namespace

class HelpKeysTest : public QObject {
    Q_OBJECT

private slots:
    void F1OpensThePageOfTheWindowInUse() {
        Desk desk;
        QVERIFY(QTest::qWaitForWindowActive(&desk.Frame));
        QTest::keyClick(&desk.Frame, Qt::Key_F1);
        QCOMPARE(NewestHelpPage(desk.Frame), QString("frame.html"));
        desk.Frame.Action("mnuHelpEx")->trigger();
        QCOMPARE(NewestHelpPage(desk.Frame), QString("index.html"));

        app::GraphWindow* window = desk.Frame.OpenLoggingWindow(app::LoggingFileSource::Given,
                                                                desk.Run("HELP.rlg", 60000.0));
        QVERIFY(window != nullptr);
        QWidget* graph = window->findChild<QWidget*>("picGraph");
        graph->setFocus();
        QTest::keyClick(graph, Qt::Key_F1);
        QCOMPARE(NewestHelpPage(desk.Frame), QString("graph.html"));

        desk.Frame.ShowToolBox();
        auto* toolBox = desk.Frame.findChild<app::ToolBox*>();
        QCOMPARE(app::HelpPageOf(toolBox), std::string("toolbox.html"));
        QCOMPARE(app::HelpPageOf(nullptr), std::string("index.html"));

        // A window of its own outside the frame answers F1 itself.
        QWidget own;
        app::AnswerHelpKey(&own, "monitor.html");
        own.show();
        QVERIFY(QTest::qWaitForWindowActive(&own));
        QTest::keyClick(&own, Qt::Key_F1);
        QCOMPARE(NewestHelpPage(own), QString("monitor.html"));
    }
};

QTEST_MAIN(HelpKeysTest)
#include "help_keys_test.moc"
