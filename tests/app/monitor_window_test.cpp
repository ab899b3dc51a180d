// The real-time monitor window against a real virtual logger: the labels follow the ridden bike
// on the 25 ms timer and their pixels change, Stop stands the timer, and a logger that dies
// gives its message once while the window keeps answering and closes.

#include "live_logger_desk.h"
#include "logger/monitor_window.h"
#include "pdf_printing.h"
#include "support/temp_folder.h"
#include "widget_driving.h"

#include <QAction>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QLabel>
#include <QPushButton>
#include <QTimer>
#include <QtTest>

#include <set>

using torvane::app::MonitorWindow;
using torvane::logger::MonitorState;
using torvane::testing::Control;
using torvane::testing::LiveLoggerDesk;

class MonitorWindowTest : public QObject {
    Q_OBJECT

private slots:
    void TheLabelsFollowTheLoggerOnTheTimer() {
        LiveLoggerDesk desk({"--time-scale", "5"});
        torvane::logger::LafTable laf;
        MonitorWindow window(desk.Driver, desk.Sink, laf);
        QVERIFY(window.Open());
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QCOMPARE(window.windowTitle(), QString("REAL TIME MONITOR"));
        auto* timer = Control<QTimer>(window, "tmrReal");
        QCOMPARE(timer->interval(), 25);
        QVERIFY(timer->isActive());
        // The readings stand while the print dialog is open and go on after the page.
        {
            torvane::testing::TempFolder folder;
            torvane::testing::PdfPrinting printing(desk.Sink);
            printing.Path = folder / std::string("monitor.pdf");
            bool stoodStill = false;
            torvane::testing::WhenModalOpens([&](QWidget* dialog) {
                stoodStill = !timer->isActive();
                Control<QPushButton>(*dialog, "cmdPrint")->click();
            });
            Control<QAction>(window, "mnuPrint")->trigger();
            QVERIFY(stoodStill);
            QVERIFY(std::filesystem::file_size(folder / std::string("monitor.pdf")) > 0);
            QVERIFY(timer->isActive());
            QCOMPARE(timer->interval(), 25);
        }
        QCOMPARE(Control<QLabel>(window, "lblProgram")->text(), QString("TORVANE LOGGER 2"));
        QCOMPARE(Control<QLabel>(window, "lblStart")->text(), QString("Ne 8000r/min & TH 80%"));

        auto* ne = Control<QLabel>(window, "lblNe");
        const QImage before = ne->grab().toImage();
        std::set<QString> shown;
        QElapsedTimer clock;
        clock.start();
        while (clock.elapsed() < 1500) {
            QTest::qWait(25);
            shown.insert(ne->text());
        }
        QVERIFY2(shown.size() > 10, qPrintable(QString::number(shown.size())));
        QVERIFY(ne->grab().toImage() != before);
        QVERIFY(window.Model().Readings() > 30);

        auto* stop = Control<QAction>(window, "mnuStop");
        stop->trigger();
        QVERIFY(!timer->isActive());
        QVERIFY(stop->isChecked());
        const auto readings = window.Model().Readings();
        QTest::qWait(200);
        QCOMPARE(window.Model().Readings(), readings);
        stop->trigger();
        QVERIFY(timer->isActive());

        Control<QAction>(window, "mnuClose")->trigger();
        QCOMPARE(window.Model().State(), MonitorState::Closed);
        QVERIFY(desk.Sink.Messages.empty());
    }

    void ALoggerThatDiesIsToldOnceAndTheWindowStaysResponsive() {
        LiveLoggerDesk desk({});
        torvane::logger::LafTable laf;
        MonitorWindow window(desk.Driver, desk.Sink, laf);
        QVERIFY(window.Open());
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        desk.Logger->Kill();
        QTRY_COMPARE_WITH_TIMEOUT(window.Model().State(), MonitorState::LinkLost, 2000);
        auto* stop = Control<QAction>(window, "mnuStop");
        QVERIFY(stop->isChecked());
        QVERIFY(!stop->isEnabled());
        // Ticks go on retrying; each must leave the event loop free at once.
        QElapsedTimer clock;
        clock.start();
        int turns = 0;
        while (clock.elapsed() < 500) {
            QTest::qWait(5);
            ++turns;
        }
        QVERIFY2(turns > 40, qPrintable(QString::number(turns)));
        QCOMPARE(desk.Sink.Messages.size(), std::size_t{1});
        QCOMPARE(QString::fromStdString(desk.Sink.Messages[0].Text),
                 QString("USB device error. Error code =  1007"));

        QVERIFY(desk.Start({}));
        QTRY_COMPARE_WITH_TIMEOUT(window.Model().State(), MonitorState::Polling, 2000);
        QVERIFY(stop->isEnabled());
        window.close();
        QCOMPARE(window.Model().State(), MonitorState::Closed);
    }

    // A message box runs an event loop of its own while the operator reads it; the timer's next
    // tick must wait for it rather than read inside it.
    void NoTickRunsInsideTheMessageOfAnother() {
        LiveLoggerDesk desk({});
        struct ModalSink : torvane::shell::MessageSink {
            int Show(const torvane::shell::Message&) override {
                ++Shown;
                QEventLoop loop;
                QTimer::singleShot(300, &loop, &QEventLoop::quit);
                loop.exec();
                return torvane::shell::answers::Ok;
            }
            int Shown = 0;
        } sink;
        torvane::logger::LafTable laf;
        MonitorWindow window(desk.Driver, sink, laf);
        QVERIFY(window.Open());
        window.show();
        desk.Logger->Kill();
        QTRY_COMPARE_WITH_TIMEOUT(window.Model().State(), MonitorState::LinkLost, 2000);
        QTest::qWait(300);
        QCOMPARE(sink.Shown, 1);
    }

    void ALoggerThatIsBusyKeepsTheWindowShut() {
        LiveLoggerDesk desk({"--broken"});
        torvane::logger::LafTable laf;
        MonitorWindow window(desk.Driver, desk.Sink, laf);
        QVERIFY(!window.Open());
        QCOMPARE(QString::fromStdString(desk.Sink.Messages.at(0).Text),
                 QString("Logger is out of order."));
    }
};

QTEST_MAIN(MonitorWindowTest)
#include "monitor_window_test.moc"
