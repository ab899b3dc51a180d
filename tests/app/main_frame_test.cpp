// The frame and its small dialogs, driven as real widgets on the offscreen platform.

#include "shell/frame_menu.h"
#include "shell/help_window.h"
#include "shell/main_frame.h"
#include "shell/message_box_sink.h"
#include "shell/tool_box.h"
#include "widget_driving.h"

#include <QAction>
#include <QImage>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QPushButton>
#include <QTemporaryDir>
#include <QtTest>

using torvane::app::MainFrame;
using torvane::testing::WhenModalOpens;

namespace {

// How many pixels of the image differ from its top-left pixel.
int MarkedPixels(const QImage& image) {
    const QRgb background = image.pixel(0, 0);
    int marked = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            marked += image.pixel(x, y) != background ? 1 : 0;
        }
    }
    return marked;
}

} // namespace

class MainFrameTest : public QObject {
    Q_OBJECT

private slots:
    // The caption, the bar's menus in order and drawn, every entry in its menu with its
    // caption, and only the entries whose work exists enabled; End closes the frame.
    void TheBarHoldsEveryEntryAndEndCloses() {
        MainFrame frame;
        frame.show();
        QVERIFY(QTest::qWaitForWindowExposed(&frame));
        QCOMPARE(frame.windowTitle(), QString("Torvane Studio"));
        QStringList bar;
        for (QAction* action : frame.menuBar()->actions()) {
            bar << action->text();
        }
        QCOMPARE(bar, (QStringList{"File(&F)", "View(&V)", "Configuration(&C)", "Tool(&T)",
                                   "Help(&H)"}));
        QVERIFY(MarkedPixels(frame.menuBar()->grab().toImage()) > 100);
        for (const auto& entry : torvane::app::FrameMenu()) {
            const QString name = QString::fromUtf8(entry.Name);
            QAction* action = frame.Action(name);
            QVERIFY2(action != nullptr, qPrintable(name));
            QCOMPARE(action->text(), QString::fromUtf8(entry.Caption));
        }
        QCOMPARE(frame.Action("mnuOpen")->menu()->actions()[0]->objectName(),
                 QString("mnuFileOpen"));
        QCOMPARE(frame.Action("mnuDetonation")->menu()->actions().size(), 3);
        for (const char* on : {"mnuEnd", "mnuInfo", "mnuHelpEx", "mnuFile"}) {
            QVERIFY2(frame.Action(on)->isEnabled(), on);
        }
        for (const char* off : {"mnuFileOpen", "mnuLogger", "mnuMoniter"}) {
            QVERIFY2(!frame.Action(off)->isEnabled(), off);
        }
        frame.Action("mnuEnd")->trigger();
        QVERIFY(!frame.isVisible());
    }

    // F1 opens the manual in the frame; a missing manual is said so.
    void HelpShowsTheManualOrItsAbsence() {
        MainFrame frame;
        frame.show();
        QCOMPARE(frame.Action("mnuHelpEx")->shortcut(), QKeySequence(QKeySequence::HelpContents));
        frame.Action("mnuHelpEx")->trigger();
        auto* help = frame.findChild<torvane::app::HelpWindow*>("HelpWindow");
        QVERIFY(help != nullptr && help->isVisible());
        QVERIFY(help->windowTitle().startsWith("Torvane Studio"));

        QTemporaryDir folder;
        QFile page(folder.filePath("index.html"));
        QVERIFY(page.open(QIODevice::WriteOnly));
        page.write("<html><body><h1>Opening a run</h1></body></html>");
        page.close();
        torvane::app::HelpWindow shown(folder.filePath("index.html").toStdString());
        QVERIFY(shown.toPlainText().contains("Opening a run"));
        torvane::app::HelpWindow missing(folder.filePath("absent.html").toStdString());
        QVERIFY(missing.toPlainText().startsWith("The manual is not installed"));
    }

    void TheToolBoxFollowsItsEntrySetsTheToolsAndKeepsItsPlace() {
        MainFrame frame;
        frame.show();
        QVERIFY(QTest::qWaitForWindowExposed(&frame));
        QAction* entry = frame.Action("mnuToolBox");

        entry->trigger();
        auto* box = frame.findChild<torvane::app::ToolBox*>("frmTLM0016");
        QVERIFY(box != nullptr && box->isVisible());
        QVERIFY(entry->isChecked());
        QVERIFY(box->findChild<QAbstractButton*>("optMode0")->isChecked());
        box->findChild<QAbstractButton*>("optMode3")->click();
        QCOMPARE(frame.Tools().ToolMode, 3);
        QVERIFY(!box->findChild<QAbstractButton*>("optMode0")->isChecked());
        box->findChild<QAbstractButton*>("optDisp1")->click();
        QCOMPARE(frame.Tools().LinkLayers, 1);

        entry->trigger();
        QTRY_VERIFY(frame.findChild<torvane::app::ToolBox*>("frmTLM0016") == nullptr);
        QVERIFY(!entry->isChecked());
        QVERIFY(!frame.ToolBoxPlace().Shown);

        // Opened again it shows the tools chosen before; moved and closed from its own window,
        // the entry follows and the place is kept for the next opening.
        entry->trigger();
        box = frame.findChild<torvane::app::ToolBox*>("frmTLM0016");
        QVERIFY(box->findChild<QAbstractButton*>("optMode3")->isChecked());
        const QPoint moved = box->pos() + QPoint(40, 30);
        box->move(moved);
        box->close();
        QTRY_VERIFY(!entry->isChecked());
        QCOMPARE(frame.ToolBoxPlace().Left, moved.x() * 15);
        entry->trigger();
        box = frame.findChild<torvane::app::ToolBox*>("frmTLM0016");
        QCOMPARE(box->pos(), moved);
        entry->trigger();
        QTRY_VERIFY(frame.findChild<torvane::app::ToolBox*>("frmTLM0016") == nullptr);

        // It stays on the screen; 400 twips is no whole number of pixels, yet the place the file
        // held comes back unchanged.
        using torvane::layout::ToolBoxPlace;
        QCOMPARE(torvane::app::LimitToScreen(ToolBoxPlace{true, 3000, 400}, QSize(1024, 768)),
                 (ToolBoxPlace{true, 3000, 400}));
        QCOMPARE(torvane::app::LimitToScreen(ToolBoxPlace{true, 99999, 99999}, QSize(1024, 768)),
                 (ToolBoxPlace{true, 768 * 15 - 3200, 1024 * 15 - 1200}));
        frame.SetToolBoxPlace(ToolBoxPlace{false, 3000, 400});
        frame.ShowToolBox();
        QCOMPARE(frame.ToolBoxPlace(), (ToolBoxPlace{true, 3000, 400}));
    }

    // A message of core arrives as a box with the program's title, its text, icon and buttons,
    // and the button pressed comes back as the program's answer number.
    void MessagesAreBoxesAndAnswersAreTheProgramsNumbers() {
        torvane::app::MessageBoxSink sink;
        WhenModalOpens([](QWidget* modal) {
            auto* box = qobject_cast<QMessageBox*>(modal);
            QVERIFY(box != nullptr);
            QCOMPARE(box->windowTitle(), QString("Torvane Studio"));
            QCOMPARE(box->text(), QString("Do you stop downloading? "));
            QCOMPARE(box->icon(), QMessageBox::Information);
            box->button(QMessageBox::No)->click();
        });
        const int answer = torvane::shell::ShowMessage(sink, "Do you stop downloading? ",
                                                       torvane::shell::buttons::YesNo,
                                                       torvane::shell::icons::Information);
        QCOMPARE(answer, torvane::shell::answers::No);

        WhenModalOpens([](QWidget* modal) {
            auto* box = qobject_cast<QMessageBox*>(modal);
            QCOMPARE(box->icon(), QMessageBox::Critical);
            box->button(QMessageBox::Ok)->click();
        });
        QCOMPARE(torvane::shell::ShowMessage(sink, "File not found.", torvane::shell::buttons::Ok,
                                             torvane::shell::icons::Stop),
                 torvane::shell::answers::Ok);
    }
};

QTEST_MAIN(MainFrameTest)
#include "main_frame_test.moc"
