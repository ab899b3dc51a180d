// The session's keep-awake interface as the program calls it, on a private session bus run by a
// real dbus-daemon with a screen saver of the test's own; the system bus points where nothing
// listens, so the machine's own logind is never asked.

#include "shell/session_sleep_inhibitor.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QMutex>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QThread>
#include <QtTest>

#include <memory>

using torvane::app::SessionSleepInhibitor;

namespace {

// The screen saver's inhibit interface, answering on a thread of its own while the program's
// calls wait on the test's thread.
class FakeScreenSaver : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.ScreenSaver")
public:
    QStringList Calls() const {
        const QMutexLocker lock(&mutex_);
        return calls_;
    }

public slots:
    uint Inhibit(const QString& application, const QString& reason) {
        Record("Inhibit " + application + " / " + reason);
        return 42;
    }
    void UnInhibit(uint cookie) { Record("UnInhibit " + QString::number(cookie)); }

private:
    void Record(const QString& call) {
        const QMutexLocker lock(&mutex_);
        calls_ << call;
    }

    mutable QMutex mutex_;
    QStringList calls_;
};

} // namespace

class SleepInhibitorTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() {
        const QString daemon = QStandardPaths::findExecutable("dbus-daemon");
        if (daemon.isEmpty()) {
            QSKIP("no dbus-daemon on this machine");
        }
        QVERIFY(folder_.isValid());
        address_ = "unix:path=" + folder_.filePath("bus");
        // Before the program's first use of either bus, which reads them once.
        qputenv("DBUS_SESSION_BUS_ADDRESS", address_.toUtf8());
        qputenv("DBUS_SYSTEM_BUS_ADDRESS", ("unix:path=" + folder_.filePath("none")).toUtf8());
        bus_.start(daemon, {"--session", "--nofork", "--nopidfile", "--address=" + address_});
        QVERIFY(bus_.waitForStarted());
        QTRY_VERIFY(QFile::exists(folder_.filePath("bus")));

        thread_.start();
        saver_ = std::make_unique<FakeScreenSaver>();
        saver_->moveToThread(&thread_);
        QDBusConnection fake = QDBusConnection::connectToBus(address_, "fake-session");
        QVERIFY(fake.isConnected());
        QVERIFY(fake.registerObject("/org/freedesktop/ScreenSaver", saver_.get(),
                                    QDBusConnection::ExportAllSlots));
        QVERIFY(fake.registerService("org.freedesktop.ScreenSaver"));
    }

    void cleanupTestCase() {
        QDBusConnection::disconnectFromBus("fake-session");
        thread_.quit();
        thread_.wait();
        bus_.kill();
        bus_.waitForFinished();
    }

    void TheScreenSaverIsAskedOnceAndGivenItsCookieBack() {
        QCoreApplication::setApplicationName("torvane-studio");
        {
            SessionSleepInhibitor inhibitor;
            inhibitor.Inhibit("Downloading");
            QCOMPARE(saver_->Calls(), QStringList{"Inhibit torvane-studio / Downloading"});
            inhibitor.Release();
            QTRY_COMPARE(saver_->Calls().size(), 2);
            QCOMPARE(saver_->Calls().back(), QString("UnInhibit 42"));
            // Released once, the cookie is gone: another release asks nothing.
            inhibitor.Release();
            inhibitor.Inhibit("Again");
        }
        // The inhibitor that goes away while holding gives its cookie back.
        QTRY_COMPARE(saver_->Calls().size(), 4);
        QCOMPARE(saver_->Calls().back(), QString("UnInhibit 42"));
    }

    void WithoutAScreenSaverNothingIsAskedAndNothingFails() {
        QDBusConnection fake("fake-session");
        QVERIFY(fake.unregisterService("org.freedesktop.ScreenSaver"));
        QTRY_VERIFY(!QDBusConnection::sessionBus().interface()->isServiceRegistered(
            "org.freedesktop.ScreenSaver"));
        const qsizetype before = saver_->Calls().size();
        SessionSleepInhibitor inhibitor;
        inhibitor.Inhibit("Downloading");
        inhibitor.Release();
        QTest::qWait(50);
        QCOMPARE(saver_->Calls().size(), before);
    }

private:
    QTemporaryDir folder_;
    QString address_;
    QProcess bus_;
    QThread thread_;
    std::unique_ptr<FakeScreenSaver> saver_;
};

QTEST_GUILESS_MAIN(SleepInhibitorTest)
#include "sleep_inhibitor_test.moc"
