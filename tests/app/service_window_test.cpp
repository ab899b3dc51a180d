// Service mode's window against a real virtual logger: the identity dump shown and saved, a
// dump target that cannot be written, the heat run that holds every control but its end and
// stops when asked, and a window closed in the middle of a heat run.

#include "live_logger_desk.h"
#include "logger/heat_run.h"
#include "logger/password_dialog.h"
#include "logger/service_window.h"
#include "widget_driving.h"

#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QtTest>

#include <fstream>

using torvane::app::ServiceWindow;
using torvane::testing::Control;
using torvane::testing::LiveLoggerDesk;
namespace fs = std::filesystem;

namespace {

torvane::app::FileDialogContext DialogContext(torvane::shell::MessageSink& sink,
                                              const fs::path& dataDir = {}) {
    static torvane::output::FileDialogMemory memory;
    return {.Memory = memory, .DataDir = dataDir, .DesktopPath = {}, .Sink = sink};
}

std::vector<char> Bytes(const fs::path& file) {
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

} // namespace

class ServiceWindowTest : public QObject {
    Q_OBJECT

private slots:
    void APasswordWithATrailingBlankIsRefused() {
        torvane::app::PasswordDialog box(nullptr);
        Control<QLineEdit>(box, "txtPass")->setText("zenfieldaudit ");
        Control<QPushButton>(box, "cmdOk")->click();
        QCOMPARE(box.result(), 0);
        Control<QLineEdit>(box, "txtPass")->setText("zenfieldaudit");
        Control<QPushButton>(box, "cmdOk")->click();
        QCOMPARE(box.result(), int(QDialog::Accepted));
    }

    void TheIdentityDumpIsShownAndSavedWhole() {
        LiveLoggerDesk desk({"--idle"});
        auto context = DialogContext(desk.Sink);
        ServiceWindow window(desk.Driver, desk.Sink, desk.Folder.Path(), context);
        window.show();
        Control<QPushButton>(window, "cmdSpecial")->click();
        const QString dump = Control<QPlainTextEdit>(window, "txtDump")->toPlainText();
        QVERIFY2(dump.startsWith("000000  54 56 4C 2D"), qPrintable(dump));
        QCOMPARE(dump.split('\n').size(), 6);

        const fs::path saved = desk.Folder.Path() / "logger.spd";
        std::optional<torvane::output::FileDialogMode> asked;
        window.SetSaveChoice(
            [&](torvane::output::FileDialogMode mode, QWidget*) -> std::optional<fs::path> {
                asked = mode;
                return saved;
            });
        Control<QAction>(window, "mnuSaveSp")->trigger();
        QCOMPARE(asked, std::optional(torvane::output::FileDialogMode::SaveSpecialData));
        const auto bytes = Bytes(saved);
        QCOMPARE(bytes.size(), std::size_t{TLM_SPECIAL_DATA_SIZE});
        QCOMPARE(std::string(bytes.data() + 34, 14), std::string("TORVANE LOGGER"));

        const fs::path nowhere = desk.Folder.Path() / "gone" / "logger.spd";
        window.SetSaveChoice(
            [&](torvane::output::FileDialogMode, QWidget*) { return std::optional(nowhere); });
        Control<QAction>(window, "mnuSaveSp")->trigger();
        QCOMPARE(desk.Sink.Messages.size(), std::size_t{1});
        QVERIFY(QString::fromStdString(desk.Sink.Messages[0].Text).startsWith("Error(76)"));
        QVERIFY(!fs::exists(nowhere.parent_path()));
    }

    void TheErrorLogIsSavedThroughTheProgramsFileDialog() {
        LiveLoggerDesk desk({"--idle", "--error-state", "7"});
        auto context = DialogContext(desk.Sink, desk.Folder.Path());
        ServiceWindow window(desk.Driver, desk.Sink, desk.Folder.Path(), context);
        window.show();
        Control<QPushButton>(window, "cmdError")->click();
        QVERIFY(
            Control<QPlainTextEdit>(window, "txtDump")->toPlainText().startsWith("000000  01 07"));
        torvane::testing::WhenModalOpens([](QWidget* modal) {
            QCOMPARE(modal->objectName(), QString("frmCom0010"));
            QCOMPARE(modal->windowTitle(), QString("Save Error Code"));
            QTest::keyClicks(Control<QLineEdit>(*modal, "txtFileName"), "log");
            QTest::mouseClick(Control(*modal, "cmdExec"), Qt::LeftButton);
        });
        Control<QAction>(window, "mnuSaveErr")->trigger();
        const auto bytes = Bytes(desk.Folder.Path() / "log.err");
        QCOMPARE(bytes.size(), std::size_t{TLM_ERROR_INFO_SIZE});
        QCOMPARE(bytes[1], char{7});
        QVERIFY(desk.Sink.Messages.empty());
    }

    void AHeatRunHoldsTheWindowUntilItsEndIsPressed() {
        LiveLoggerDesk desk({"--idle", "--files", "1", "--minutes", "1", "--rate", "0"});
        auto context = DialogContext(desk.Sink);
        ServiceWindow window(desk.Driver, desk.Sink, desk.Folder.Path(), context);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        Control<QPushButton>(window, "cmdHeat1")->click();
        QVERIFY(window.HeatRunning());
        for (const char* name : {"cmdHeat0", "cmdHeat1", "cmdHeat2", "cmdHeatEnd0", "cmdHeatEnd2",
                                 "cmdTest0", "cmdTest1", "cmdInitial", "cmdSpecial", "cmdError"}) {
            QVERIFY2(!Control<QPushButton>(window, name)->isEnabled(), name);
        }
        auto* end = Control<QPushButton>(window, "cmdHeatEnd1");
        QVERIFY(end->isEnabled());
        QTRY_VERIFY_WITH_TIMEOUT(window.Model().RunningHeatRun()->Stage() ==
                                     torvane::logger::HeatStage::ReadingSignals,
                                 10000);
        QTest::qWait(200);
        end->click();
        QTRY_VERIFY_WITH_TIMEOUT(!window.HeatRunning(), 1000);
        QVERIFY(Control<QPushButton>(window, "cmdHeat0")->isEnabled());
        QVERIFY(!end->isEnabled());
        QVERIFY(desk.Sink.Messages.empty());
    }

    void ClosingDuringAHeatRunEndsItFirst() {
        LiveLoggerDesk desk({"--idle"});
        auto context = DialogContext(desk.Sink);
        ServiceWindow window(desk.Driver, desk.Sink, desk.Folder.Path(), context);
        window.show();
        Control<QPushButton>(window, "cmdHeat0")->click();
        QTRY_VERIFY_WITH_TIMEOUT(window.Model().RunningHeatRun()->Stage() ==
                                     torvane::logger::HeatStage::ReadingSignals,
                                 10000);
        window.close();
        QVERIFY(window.isVisible());
        QTRY_VERIFY_WITH_TIMEOUT(!window.isVisible(), 1000);
        QVERIFY(!window.HeatRunning());
    }
};

QTEST_MAIN(ServiceWindowTest)
#include "service_window_test.moc"
