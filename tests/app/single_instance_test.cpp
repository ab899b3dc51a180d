// One desktop per user: the hand-over between a first and a later start, over a real local
// socket.

#include "shell/single_instance.h"

#include <QDir>
#include <QSignalSpy>
#include <QtTest>

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

using torvane::app::SingleInstance;
using Listen = SingleInstance::ListenResult;

class SingleInstanceTest : public QObject {
    Q_OBJECT

private:
    static QString UniqueName() {
        return "torvane-test-" + QString::number(QCoreApplication::applicationPid()) + "-" +
               QString::number(++serial_);
    }
    static inline int serial_ = 0;

private slots:
    // A later start hands over its command line and raises the first; without a path it only
    // raises; asking whether the first runs raises nothing. Only the user may connect to the
    // socket.
    void ALaterStartHandsOverItsCommandLineAndRaisesTheFirst() {
        const QString name = UniqueName();
        SingleInstance first(name);
        QCOMPARE(first.Listen(), Listen::Listening);
        const QFileInfo socket(QDir(QDir::tempPath()).filePath(name));
        QCOMPARE(socket.permissions() &
                     (QFile::ReadOther | QFile::WriteOther | QFile::ReadGroup | QFile::WriteGroup),
                 QFile::Permissions());
        QSignalSpy raised(&first, &SingleInstance::RaiseRequested);
        QSignalSpy commands(&first, &SingleInstance::CommandReceived);

        SingleInstance later(name);
        QCOMPARE(later.Listen(), Listen::AnotherRuns);
        QVERIFY(later.HandOver("LOAD/home/rider/runs/Mugello day 2.rlg"));
        QTRY_COMPARE(commands.count(), 1);
        QCOMPARE(commands[0][0].toString(), QString("LOAD/home/rider/runs/Mugello day 2.rlg"));
        QCOMPARE(raised.count(), 1);

        QVERIFY(SingleInstance(name).HandOver(QString()));
        QTRY_COMPARE(raised.count(), 2);
        QCOMPARE(commands.count(), 1);
    }

    // A socket that cannot be made is no other instance: the program is told why and runs on.
    void ASocketThatCannotBeMadeIsReported() {
        const QString name = QDir::temp().filePath(UniqueName() + "-missing/studio");
        SingleInstance alone(name);
        QCOMPARE(alone.Listen(), Listen::Failed);
        torvane::shell::RecordingSink sink;
        alone.ReportListenFailure(sink);
        QCOMPARE(sink.Messages.size(), size_t{1});
        QVERIFY(QString::fromStdString(sink.Messages[0].Text).contains(name));
        QCOMPARE(sink.Messages[0].Icon, torvane::shell::icons::Warning);
    }

    void NobodyToHandOverTo() { QVERIFY(!SingleInstance(UniqueName()).HandOver("LOADx.rlg", 300)); }

    // An instance that died leaves its socket file behind; the next start must not take it for
    // a running program and refuse to start.
    void ASocketLeftByADeadInstanceIsTakenOver() {
        const QString name = UniqueName();
        const QByteArray path = QDir(QDir::tempPath()).filePath(name).toLocal8Bit();
        const int stale = ::socket(AF_UNIX, SOCK_STREAM, 0);
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        std::memcpy(address.sun_path, path.constData(), static_cast<std::size_t>(path.size()));
        QCOMPARE(::bind(stale, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
        ::close(stale);
        QVERIFY(QFileInfo::exists(QString::fromLocal8Bit(path)));

        SingleInstance next(name);
        QCOMPARE(next.Listen(), Listen::Listening);
        QSignalSpy commands(&next, &SingleInstance::CommandReceived);
        QVERIFY(SingleInstance(name).HandOver("LOADrun.rlg"));
        QTRY_COMPARE(commands.count(), 1);
    }
    // Another user's program is hung up on unheard, even where it can reach the socket.
    void AnotherUsersCommandIsRefused() {
        if (::geteuid() != 0) {
            QSKIP("another user can only be played as root");
        }
        const QString name = UniqueName();
        SingleInstance first(name);
        QCOMPARE(first.Listen(), Listen::Listening);
        const QByteArray path = QDir(QDir::tempPath()).filePath(name).toLocal8Bit();
        ::chmod(path.constData(), 0666);
        QSignalSpy raised(&first, &SingleInstance::RaiseRequested);
        const pid_t child = ::fork();
        if (child == 0) {
            constexpr uid_t Nobody = 65534;
            const int fd = ::socket(AF_UNIX, SOCK_STREAM, 0);
            sockaddr_un address{};
            address.sun_family = AF_UNIX;
            std::memcpy(address.sun_path, path.constData(), static_cast<std::size_t>(path.size()));
            const bool sent =
                ::setgid(Nobody) == 0 && ::setuid(Nobody) == 0 &&
                ::connect(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0 &&
                ::write(fd, "LOADtheirs.rlg\n", 15) == 15;
            ::_exit(sent ? 0 : 1);
        }
        int status = 0;
        ::waitpid(child, &status, 0);
        QVERIFY2(WIFEXITED(status) && WEXITSTATUS(status) == 0, "the other user reached nothing");
        QTest::qWait(300);
        QCOMPARE(raised.count(), 0);
        QVERIFY(SingleInstance(name).HandOver(QString()));
        QTRY_COMPARE(raised.count(), 1);
    }
};

QTEST_MAIN(SingleInstanceTest)
#include "single_instance_test.moc"
