// The frame and its small dialogs, driven as real widgets on the offscreen platform.

#include "shell/about_box.h"
#include "shell/frame_menu.h"
#include "shell/help_window.h"
#include "shell/main_frame.h"
#include "shell/message_box_sink.h"
#include "shell/tool_box.h"

#include <QAction>
#include <QApplication>
#include <QImage>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>
#include <QtTest>

#include <functional>

using torvane::app::MainFrame;

namespace {

// Runs check on the modal widget that the next call opens, once it is up.
void WhenModalOpens(std::function<void(QWidget*)> check) {
    QTimer::singleShot(0, [check = std::move(check)] {
        QWidget* modal = QApplication::activeModalWidget();
        QVERIFY(modal != nullptr);
        check(modal);
    });
}

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
    void CaptionAndTheBarInOrder() {
        MainFrame frame;
        QCOMPARE(frame.windowTitle(), QString("Torvane Studio"));
        QCOMPARE(frame.objectName(), QString("mdiTLM0010"));
        QStringList bar;
        for (QAction* action : frame.menuBar()->actions()) {
            bar << action->text();
        }
        QCOMPARE(bar, (QStringList{"File(&F)", "View(&V)", "Configuration(&C)", "Tool(&T)",
                                   "Help(&H)"}));
    }

    void EveryEntryStandsInItsMenuWithItsCaption() {
        MainFrame frame;
        for (const auto& entry : torvane::app::FrameMenu()) {
            const QString name =
                QString::fromUtf8(entry.name.data(), static_cast<qsizetype>(entry.name.size()));
            QAction* action = frame.Action(name);
            QVERIFY2(action != nullptr, qPrintable(name));
            QCOMPARE(action->text(),
                     QString::fromUtf8(entry.caption.data(),
                                       static_cast<qsizetype>(entry.caption.size())));
        }
        QMenu* open = frame.Action("mnuOpen")->menu();
        QVERIFY(open != nullptr);
        QCOMPARE(open->actions().size(), 2);
        QCOMPARE(open->actions()[0]->objectName(), QString("mnuFileOpen"));
        QMenu* detonation = frame.Action("mnuDetonation")->menu();
        QVERIFY(detonation != nullptr);
        QCOMPARE(detonation->actions().size(), 3);
        QCOMPARE(detonation->actions()[2]->text(), QString("DetonationFile(&D)"));
        QVERIFY(frame.Action("mnuCalcu")->menu() == nullptr);
    }

    // Only the entries whose work exists can be chosen; the rest are shown, greyed.
    void EntriesWithoutTheirWindowAreDisabled() {
        MainFrame frame;
        QVERIFY(frame.Action("mnuEnd")->isEnabled());
        QVERIFY(frame.Action("mnuInfo")->isEnabled());
        QVERIFY(frame.Action("mnuHelpEx")->isEnabled());
        QVERIFY(!frame.Action("mnuFileOpen")->isEnabled());
        QVERIFY(!frame.Action("mnuLogger")->isEnabled());
        QVERIFY(!frame.Action("mnuMoniter")->isEnabled());
        QVERIFY(frame.Action("mnuFile")->isEnabled());
    }

    void InformationShowsTheAboutBoxUntilOk() {
        MainFrame frame;
        frame.show();
        bool seen = false;
        WhenModalOpens([&](QWidget* about) {
            QCOMPARE(about->objectName(), QString("frmTLM0017"));
            QCOMPARE(about->findChild<QLabel*>("lblTitle")->text(), QString("Torvane Studio"));
            QCOMPARE(about->findChild<QLabel*>("lblVersion")->text(), QString("2.00.00"));
            QVERIFY(MarkedPixels(about->grab().toImage()) > 200);
            auto* ok = about->findChild<QPushButton*>("cmdOK");
            QCOMPARE(ok->text(), QString("OK(&O)"));
            seen = true;
            ok->click();
        });
        frame.Action("mnuInfo")->trigger();
        QVERIFY(seen);
        QVERIFY(QApplication::activeModalWidget() == nullptr);
    }

    void HelpOpensTheManualOnF1() {
        MainFrame frame;
        frame.show();
        QVERIFY(QTest::qWaitForWindowExposed(&frame));
        QCOMPARE(frame.Action("mnuHelpEx")->shortcut(), QKeySequence(QKeySequence::HelpContents));
        frame.Action("mnuHelpEx")->trigger();
        auto* help = frame.findChild<torvane::app::HelpWindow*>("HelpWindow");
        QVERIFY(help != nullptr);
        QVERIFY(help->isVisible());
        QVERIFY(help->windowTitle().startsWith("Torvane Studio"));
    }

    void TheManualIsShownOrItsAbsenceSaid() {
        const QString folder = QDir::temp().filePath(
            "torvane-manual-" + QString::number(QCoreApplication::applicationPid()));
        QDir().mkpath(folder);
        QFile page(folder + "/index.html");
        QVERIFY(page.open(QIODevice::WriteOnly));
        page.write("<html><body><h1>Opening a run</h1></body></html>");
        page.close();
        torvane::app::HelpWindow shown((folder + "/index.html").toStdString());
        QVERIFY(shown.toPlainText().contains("Opening a run"));
        torvane::app::HelpWindow missing((folder + "/absent.html").toStdString());
        QVERIFY(missing.toPlainText().startsWith("The manual is not installed"));
        QDir(folder).removeRecursively();
    }

    void TheToolBoxFollowsItsEntryAndSetsTheTools() {
        MainFrame frame;
        frame.show();
        QVERIFY(QTest::qWaitForWindowExposed(&frame));
        QAction* entry = frame.Action("mnuToolBox");
        QVERIFY(entry->isEnabled());
        QVERIFY(!entry->isChecked());

        entry->trigger();
        auto* box = frame.findChild<torvane::app::ToolBox*>("frmTLM0016");
        QVERIFY(box != nullptr);
        QVERIFY(box->isVisible());
        QVERIFY(entry->isChecked());
        const QStringList tips{"Drag & Drop",
                               "Scroll",
                               "Horizontal-axis reduction",
                               "Horizontal-axis expansion",
                               "Vertical-axis reduction",
                               "Vertical-axis expansion",
                               "Text",
                               "Delta Time"};
        for (int index = 0; index < tips.size(); ++index) {
            auto* option = box->findChild<QAbstractButton*>("optMode" + QString::number(index));
            QVERIFY(option != nullptr);
            QCOMPARE(option->toolTip(), tips[index]);
        }
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

        // Opened again it shows the tools chosen before; closed from its own window, the
        // entry follows.
        entry->trigger();
        box = frame.findChild<torvane::app::ToolBox*>("frmTLM0016");
        QVERIFY(box->findChild<QAbstractButton*>("optMode3")->isChecked());
        box->close();
        QTRY_VERIFY(!entry->isChecked());
    }

    void TheToolBoxKeepsItsPlaceOnTheScreen() {
        using torvane::layout::ToolBoxPlace;
        QCOMPARE(torvane::app::LimitToScreen(ToolBoxPlace{true, 3000, 400}, QSize(1024, 768)),
                 (ToolBoxPlace{true, 3000, 400}));
        QCOMPARE(torvane::app::LimitToScreen(ToolBoxPlace{true, 99999, 99999}, QSize(1024, 768)),
                 (ToolBoxPlace{true, 768 * 15 - 3200, 1024 * 15 - 1200}));

        MainFrame frame;
        frame.SetToolBoxPlace(ToolBoxPlace{false, 3000, 400});
        frame.ShowToolBox();
        // 400 twips is no whole number of pixels: the place the file held comes back unchanged.
        QCOMPARE(frame.ToolBoxPlace(), (ToolBoxPlace{true, 3000, 400}));
    }

    void EndClosesTheFrame() {
        MainFrame frame;
        frame.show();
        QVERIFY(QTest::qWaitForWindowExposed(&frame));
        frame.Action("mnuEnd")->trigger();
        QVERIFY(!frame.isVisible());
    }

    void TheBarIsDrawn() {
        MainFrame frame;
        frame.show();
        QVERIFY(QTest::qWaitForWindowExposed(&frame));
        const QImage bar = frame.menuBar()->grab().toImage();
        QVERIFY(bar.height() > 10);
        QVERIFY(MarkedPixels(bar) > 100);
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
            QVERIFY(box->button(QMessageBox::Yes) != nullptr);
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
