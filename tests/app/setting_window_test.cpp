// The setting window as a real widget against a real virtual logger on a private socket: opening
// without it, the question when it appears, a send read back, and a wrong throttle pair that
// refuses the close.

#include "binding/tlm_decompressor.h"
#include "binding/tlm_driver.h"
#include "core/logger_test_support.h"
#include "graph/graph_window_context.h"
#include "layout/layout_store.h"
#include "load/memory_check.h"
#include "logger/driver_calls.h"
#include "logger/laf_table.h"
#include "logger/setting_file.h"
#include "logger/setting_window.h"
#include "shell/app_paths.h"
#include "shell/main_frame.h"
#include "shell/window_registry.h"
#include "support/simulator_process.h"
#include "support/temp_folder.h"
#include "widget_driving.h"

#include <QAction>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>
#include <QtTest>

#include <chrono>
#include <cstdlib>
#include <memory>
#include <thread>

using torvane::app::SettingWindow;
using torvane::testing::Control;
using torvane::testing::SimulatorProcess;
using torvane::testing::TempFolder;
namespace logger = torvane::logger;
namespace shell = torvane::shell;

namespace {

constexpr const char* Question = "Do you get setting data from Logger?";

class FixedMemory : public torvane::load::MemoryStatus {
public:
    std::optional<torvane::load::MemoryFigures> Read() override {
        return torvane::load::MemoryFigures{100, 100 - usedPercent, 0, 0};
    }
    std::uint64_t usedPercent = 40;
};

class SettingWindowTest : public QObject {
    Q_OBJECT

private:
    void StartLogger(std::vector<std::string> options = {}) {
        options.insert(options.begin(), "--idle");
        logger_ = std::make_unique<SimulatorProcess>(TORVANE_LOGGER_SIM, socket_, options);
        QVERIFY(logger_->Listening());
        // Past its power-on, when it answers as idle. The wait takes no events, so that an open
        // window's watch does not meet the logger still initialising.
        for (int tries = 0; tries < 100 && LoggerState() != TLM_STATE_IDLE; ++tries) {
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
        }
        QCOMPARE(LoggerState(), TLM_STATE_IDLE);
    }

    int LoggerState() {
        logger::LoggerLink link(driver_, sink_);
        if (driver_.Open(link.Status) != 0) {
            return -1;
        }
        logger::GetLoggerStatus(link);
        driver_.Close(link.Status);
        return link.Status.bytState;
    }

    TlmSettingData LoggerSetting() {
        logger::LoggerLink link(driver_, sink_);
        TlmSettingData record{};
        driver_.Open(link.Status);
        logger::ReadSetting(link, record);
        driver_.Close(link.Status);
        return record;
    }

    std::unique_ptr<SettingWindow> OpenWindow() {
        auto window = std::make_unique<SettingWindow>(driver_, sink_, init_->Path());
        if (!window->Open()) {
            return nullptr;
        }
        window->show();
        return window;
    }

    // The colour in the middle of a button's left edge, as it is drawn.
    static QColor Face(QWidget& button) {
        const QImage image = button.grab().toImage();
        return image.pixelColor(6, image.height() / 2);
    }

    std::unique_ptr<TempFolder> folder_;
    std::unique_ptr<TempFolder> init_;
    std::filesystem::path socket_;
    std::unique_ptr<SimulatorProcess> logger_;
    torvane::binding::TlmDriver driver_;
    logger::testing::AnsweringSink sink_;

private slots:
    void init() {
        folder_ = std::make_unique<TempFolder>();
        init_ = std::make_unique<TempFolder>();
        socket_ = folder_->Path() / "logger.sock";
        ::setenv("TORVANE_LOGGER", ("unix:" + socket_.string()).c_str(), 1);
        sink_ = {};
    }

    void cleanup() { logger_.reset(); }

    void OpeningWithoutALoggerWritesTheFreshSettingAndAsksWhenItAppears() {
        auto window = OpenWindow();
        QVERIFY(window);
        torvane::layout::FileFailure failure;
        QCOMPARE(logger::LoadSetting(init_->Path() / "SETTING.DAT", failure),
                 torvane::logdata::FreshSetting());
        QCOMPARE(window->windowTitle(), QString("SETTING MODE"));
        QCOMPARE(Control<QLabel>(*window, "lblTotalTime")->text(), QString("50h 58m"));
        QVERIFY(Control<QCheckBox>(*window, "chkNe2")->isChecked());
        QVERIFY(!Control<QPushButton>(*window, "cmdThrottle0")->isEnabled());
        QVERIFY(!Control<QAction>(*window, "mnuSend")->isEnabled());
        QVERIFY(Control<QAction>(*window, "mnuPrint")->isEnabled());
        QVERIFY(Control<QTimer>(*window, "tmrStatus")->isActive());
        QVERIFY(sink_.Messages.empty());

        // Ticking another period of a row moves its only tick, and the time follows.
        QTest::mouseClick(Control<QCheckBox>(*window, "chkNe0"), Qt::LeftButton);
        QVERIFY(!Control<QCheckBox>(*window, "chkNe2")->isChecked());
        QCOMPARE(Control<QLabel>(*window, "lblTotalTime")->text(), QString("25h 29m"));

        StartLogger();
        sink_.Answers = {shell::answers::Ok};
        QTRY_VERIFY_WITH_TIMEOUT(!sink_.Messages.empty(), 5000);
        QCOMPARE(QString::fromStdString(sink_.Messages[0].Text), QString(Question));
        // OK read the logger's setting over the screen.
        QVERIFY(Control<QCheckBox>(*window, "chkNe2")->isChecked());
        QVERIFY(Control<QPushButton>(*window, "cmdThrottle0")->isEnabled());
        QVERIFY(Control<QAction>(*window, "mnuSend")->isEnabled());
        QTest::qWait(1200);
        QCOMPARE(sink_.Messages.size(), std::size_t{1});
    }

    void ASentSettingReadsBackAsItWasBuilt() {
        StartLogger();
        auto window = OpenWindow();
        QVERIFY(window);
        QVERIFY(window->Model().Connected());
        QTest::mouseClick(Control<QCheckBox>(*window, "chkVRW1"), Qt::LeftButton);
        QTest::mouseClick(Control<QCheckBox>(*window, "chkON2"), Qt::LeftButton);
        auto* ne = Control<QLineEdit>(*window, "txtNe");
        ne->setFocus();
        ne->selectAll();
        QTest::keyClicks(ne, "9x0-25");
        QCOMPARE(ne->text(), QString("9025"));
        Control<QAction>(*window, "mnuSend")->trigger();
        QCOMPARE(QString::fromStdString(sink_.Texts().back()),
                 QString("The setup was completed normally."));
        const auto sent = logger::HeaderOf(LoggerSetting());
        QCOMPARE(sent, window->Model().Setting());
        QCOMPARE(sent.Word(torvane::logdata::SettingWord::VrwTime), std::int16_t{10});
        QCOMPARE(sent.Word(torvane::logdata::SettingWord::StartNe), std::int16_t{180});
        QCOMPARE(sent.Word(torvane::logdata::SettingWord::LapOn), std::int16_t{1});
        torvane::layout::FileFailure failure;
        QCOMPARE(logger::LoadSetting(init_->Path() / "SETTING.DAT", failure), sent);
        QVERIFY(!Control<QLabel>(*window, "lblSetTime")->text().isEmpty());

        // A refused field is told and takes the focus; nothing is sent.
        ne->setText("");
        QTest::keyClicks(ne, "0");
        auto* th = Control<QLineEdit>(*window, "txtTH");
        th->selectAll();
        QTest::keyClicks(th, "0");
        Control<QAction>(*window, "mnuSend")->trigger();
        QCOMPARE(QString::fromStdString(sink_.Texts().back()),
                 QString("Inputted data are not correct."));
        QCOMPARE(window->focusWidget(), static_cast<QWidget*>(th));
        QCOMPARE(logger::HeaderOf(LoggerSetting()), sent);

        window->close();
        QVERIFY(!window->isVisible());
        QTRY_COMPARE_WITH_TIMEOUT(LoggerState(), TLM_STATE_ACQUIRING, 3000);
    }

    void AThrottlePairInTheWrongOrderIsRedAndRefusesTheClose() {
        StartLogger({"--reversed-throttle"});
        auto window = OpenWindow();
        QVERIFY(window);
        auto* closed = Control<QPushButton>(*window, "cmdThrottle0");
        auto* open = Control<QPushButton>(*window, "cmdThrottle100");
        QTest::mouseClick(closed, Qt::LeftButton);
        QCOMPARE(Face(*closed), QColor(192, 192, 192));
        QTRY_COMPARE_WITH_TIMEOUT(LoggerState(), TLM_STATE_IDLE, 3000);
        QTest::mouseClick(open, Qt::LeftButton);
        QCOMPARE(QString::fromStdString(sink_.Texts().back()),
                 QString("The Initialized throttle is not correct."));
        QCOMPARE(Face(*closed), QColor(255, 0, 0));
        QCOMPARE(Face(*open), QColor(255, 0, 0));

        sink_.Answers = {shell::answers::Cancel};
        window->close();
        QVERIFY(window->isVisible());
        sink_.Answers = {shell::answers::Ok};
        window->close();
        QVERIFY(!window->isVisible());
    }

    void TheFramesConfigurationEntryStepsAsideForTheWindowAfterTheMemoryCheck() {
        torvane::shell::AppPaths paths(init_->Path());
        shell::RecordingSink sink;
        torvane::layout::LayoutStore layouts(paths, sink);
        torvane::logger::LafTable laf;
        torvane::shell::WindowRegistry registry;
        torvane::binding::TlmDecompressor decompressor;
        FixedMemory memory;
        torvane::app::MainFrame frame;
        int shown = 0;
        torvane::app::GraphWindowContext context{.TempDir = paths.TempDir(),
                                                 .Registry = registry,
                                                 .Layouts = layouts,
                                                 .Laf = laf,
                                                 .Decompressor = decompressor,
                                                 .Sink = sink,
                                                 .Memory = memory,
                                                 .ChooseLoggingFile = {},
                                                 .ChooseSaveFile = {},
                                                 .ChooseSaveOrExport = {},
                                                 .DownloadFromLogger = {},
                                                 .OpenSettingWindow = [&](QWidget* owner) {
                                                     QCOMPARE(owner, static_cast<QWidget*>(&frame));
                                                     QVERIFY(!frame.isVisible());
                                                     ++shown;
                                                 }};
        frame.Attach(context);
        frame.show();
        auto* entry = frame.findChild<QAction*>("mnuConf");
        QVERIFY(entry->isEnabled());
        entry->trigger();
        QCOMPARE(shown, 1);
        QVERIFY(frame.isVisible());
        memory.usedPercent = 85;
        entry->trigger();
        QCOMPARE(shown, 1);
        QCOMPARE(sink.Messages.size(), std::size_t{1});
    }

    void TheFrontSuspensionButtonFollowsItsMenu() {
        StartLogger();
        auto window = OpenWindow();
        QVERIFY(window);
        auto* front = Control<QPushButton>(*window, "cmdFR");
        QVERIFY(!front->isEnabled());
        Control<QAction>(*window, "mnuFrsus")->trigger();
        QVERIFY(front->isEnabled());
        QCOMPARE(Control<QLabel>(*window, "lblVM1")->text(), QString("FRSUS"));
        QTest::mouseClick(front, Qt::LeftButton);
        QCOMPARE(Face(*front), QColor(0, 128, 255));
        window->close();
    }
};

} // namespace

QTEST_MAIN(SettingWindowTest)
#include "setting_window_test.moc"
