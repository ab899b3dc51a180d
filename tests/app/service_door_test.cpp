// The door to service mode: tmrKeyEvn of the frame with keys pressed on the offscreen platform,
// and the password dialog it opens.

#include "logger/password_dialog.h"
#include "shell/main_frame.h"
#include "shell/service_door.h"

#include <QApplication>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>
#include <QtTest>

using torvane::app::MainFrame;
using torvane::app::PasswordDialog;

namespace {

constexpr Qt::KeyboardModifiers AllThree =
    Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier;

void ReleaseAll(QWindow* window) {
    QTest::keyRelease(window, Qt::Key_Up, AllThree);
}

} // namespace

class ServiceDoorTest : public QObject {
    Q_OBJECT

private slots:
    void OnlyTheFourKeysTogetherOpenTheDoor() {
        using torvane::app::OpensServiceDoor;
        QVERIFY(OpensServiceDoor(AllThree, true));
        QVERIFY(OpensServiceDoor(AllThree | Qt::KeypadModifier, true));
        QVERIFY(!OpensServiceDoor(AllThree, false));
        QVERIFY(!OpensServiceDoor(Qt::ShiftModifier | Qt::ControlModifier, true));
        QVERIFY(!OpensServiceDoor(Qt::ShiftModifier | Qt::AltModifier, true));
        QVERIFY(!OpensServiceDoor(Qt::ControlModifier | Qt::AltModifier, true));
    }

    // Held on the frame, the keys open the password box at the timer's next tick, owned by
    // the frame; let go, the timer opens nothing.
    void TheTimerOpensThePasswordBoxWhileTheKeysAreHeld() {
        MainFrame frame;
        frame.show();
        QVERIFY(QTest::qWaitForWindowActive(&frame));
        auto* timer = frame.findChild<QTimer*>("tmrKeyEvn");
        QVERIFY(timer != nullptr);
        QCOMPARE(timer->interval(), 1000);
        QVERIFY(timer->isActive());

        auto* door = frame.findChild<torvane::app::ServiceDoor*>();
        QTest::keyPress(frame.windowHandle(), Qt::Key_Shift, Qt::ShiftModifier);
        QTest::keyPress(frame.windowHandle(), Qt::Key_Control,
                        Qt::ShiftModifier | Qt::ControlModifier);
        QTest::keyPress(frame.windowHandle(), Qt::Key_Alt, AllThree);
        door->Check();
        QVERIFY(QApplication::activeModalWidget() == nullptr);

        QWidget* opened = nullptr;
        QWidget* owner = nullptr;
        QTimer watcher;
        connect(&watcher, &QTimer::timeout, [&] {
            if (QWidget* modal = QApplication::activeModalWidget()) {
                opened = modal;
                owner = modal->parentWidget();
                modal->findChild<QPushButton*>("cmdCancel")->click();
            }
        });
        watcher.start(20);
        QTest::keyPress(frame.windowHandle(), Qt::Key_Up, AllThree);
        QTRY_VERIFY_WITH_TIMEOUT(opened != nullptr, 2500);
        QCOMPARE(owner, &frame);
        QVERIFY(timer->isActive());

        ReleaseAll(frame.windowHandle());
        opened = nullptr;
        door->Check();
        QTest::qWait(1200);
        QVERIFY(opened == nullptr);
    }

    // Only the exact password closes the box (accepted); any other, a blank at its end or
    // another case, leaves it open with the text as typed; Cancel closes it.
    void ThePasswordBoxLetsOnlyTheExactPasswordThrough() {
        PasswordDialog dialog(nullptr);
        dialog.show();
        QVERIFY(QTest::qWaitForWindowExposed(&dialog));
        auto* password = dialog.findChild<QLineEdit*>("txtPass");
        auto* ok = dialog.findChild<QPushButton*>("cmdOk");
        QCOMPARE(password->echoMode(), QLineEdit::Password);

        for (const char* wrong : {"zenfieldaudit ", "ZENFIELDAUDIT", "", "zenfield"}) {
            password->setText(wrong);
            ok->click();
            QVERIFY2(dialog.isVisible(), wrong);
            QCOMPARE(password->text(), QString(wrong));
        }
        password->clear();
        QTest::keyClicks(password, "zenfieldaudit");
        const QImage picture = dialog.grab().toImage();
        // The typed letters show as dots in the box, dark on its white.
        const QRect box = password->geometry();
        int dark = 0;
        for (int x = box.left(); x < box.center().x(); ++x) {
            dark += picture.pixelColor(x, box.center().y()).lightness() < 100 ? 1 : 0;
        }
        QVERIFY(dark > 5);
        QTest::keyClick(password, Qt::Key_Return);
        QVERIFY(!dialog.isVisible());
        QCOMPARE(dialog.result(), int(QDialog::Accepted));

        PasswordDialog cancelled(nullptr);
        cancelled.show();
        cancelled.findChild<QPushButton*>("cmdCancel")->click();
        QVERIFY(!cancelled.isVisible());
        QCOMPARE(cancelled.result(), int(QDialog::Rejected));
    }
};

QTEST_MAIN(ServiceDoorTest)
#include "service_door_test.moc"
