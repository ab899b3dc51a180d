// The download dialog driven as a real widget over a scripted driver: the list, the transfer, a
// failed try and clearing. The real link to a virtual logger is the logger suite's.

#include "core/logger_test_support.h"
#include "logger/download_dialog.h"
#include "shell/sleep_inhibitor.h"
#include "support/scripted_driver.h"
#include "support/temp_folder.h"
#include "widget_driving.h"

#include <QLabel>
#include <QProgressBar>
#include <QTreeWidget>
#include <QtTest>

#include <cstring>
#include <functional>
#include <optional>

using torvane::app::DownloadDialog;
using torvane::logger::Call;
using torvane::logger::Reply;
using torvane::testing::Control;
using torvane::testing::TempFolder;
namespace shell = torvane::shell;

namespace {

constexpr const char* AskToDownload = "Do you download data from Logger?";

// A scripted logger that calls back after every block it moves, as the operator's chance to
// act while the dialog lets events in.
class BlockDriver : public torvane::logger::ScriptedDriver {
public:
    std::int32_t GetTheLogFile_reading(TlmStatus& status, TlmTransferBlock& block) override {
        const std::int32_t result = ScriptedDriver::GetTheLogFile_reading(status, block);
        if (afterBlock) {
            afterBlock(blocks);
        }
        ++blocks;
        return result;
    }
    // Moves `count` blocks of `size` bytes, the last one completing the file.
    void ScriptTransfer(int count, std::int32_t size) {
        ScriptRepeated(Call::GetTheLogFile_reading, Reply{.BlockSize = size}, count - 1);
        Script(Call::GetTheLogFile_reading, {Reply{.Result = 1, .BlockSize = size}});
    }

    std::function<void(int)> afterBlock;
    int blocks = 0;
};

// Counts what the dialog asks of the session, and whether it holds it now.
class CountingInhibitor : public torvane::app::SleepInhibitor {
public:
    void Inhibit(const QString&) override { ++inhibits; }
    void Release() override { ++releases; }
    bool Held() const { return inhibits > releases; }

    int inhibits = 0;
    int releases = 0;
};

QTreeWidget* List(const QWidget& dialog) {
    return Control<QTreeWidget>(dialog, "lvwFile");
}
QProgressBar* Bar(const QWidget& dialog) {
    return Control<QProgressBar>(dialog, "PgbLogging");
}
QString Label(const QWidget& dialog, const char* name) {
    return Control<QLabel>(dialog, name)->text();
}
void Click(QWidget* button) {
    QTest::mouseClick(button, Qt::LeftButton);
}

// A logger holding `files`, its program number set, and the dialog over it once opened.
struct Desk {
    explicit Desk(std::vector<TlmDownloadEntry> files, const char* program = "1") {
        Driver.files = std::move(files);
        std::memset(Driver.special.bytProgramNo, 0, sizeof Driver.special.bytProgramNo);
        std::memcpy(Driver.special.bytProgramNo, program, std::strlen(program));
    }
    DownloadDialog& Open() {
        Dialog.emplace(Driver, Sink, Awake, torvane::app::DownloadRequest{Temp.Path()});
        Dialog->show();
        return *Dialog;
    }

    TempFolder Temp;
    BlockDriver Driver;
    torvane::logger::testing::AnsweringSink Sink;
    CountingInhibitor Awake;
    std::optional<DownloadDialog> Dialog;
};

} // namespace

class DownloadDialogTest : public QObject {
    Q_OBJECT

private slots:
    void ListShowsTheLoggersFilesAndProgramTwoMayClear() {
        Desk desk({{1, 0, 3725, 1024}, {2, -1, 3, 500}, {3, -1, 4, 1023}, {12, 0, 60, 0}});
        DownloadDialog& dialog = desk.Open();
        QVERIFY(dialog.Loaded());
        QVERIFY(desk.Sink.Messages.empty());
        const QTreeWidget* list = List(dialog);
        // The file of 3 seconds stays out.
        QCOMPARE(list->topLevelItemCount(), 3);
        QCOMPARE(torvane::testing::RowTexts(*list->model(), 1),
                 (QStringList{"003", "003", "000H00M04S", "1", "Done"}));
        QCOMPARE(list->currentItem(), list->topLevelItem(0));
        // Program 1 cannot clear; the list was read in one link that is closed again.
        QVERIFY(!Control(dialog, "cmdClear")->isEnabled());
        QCOMPARE(desk.Driver.CountOf(Call::Open), 1);
        QCOMPARE(desk.Driver.Sequence().back(), Call::Close);

        // Program 2 may clear, after asking; then the dialog closes.
        Desk later({{1, 0, 60, 3000}, {2, 0, 60, 3000}}, "2");
        DownloadDialog& clearing = later.Open();
        const char* ask = "Do you want to clear all data in the logger ?";
        later.Sink.Answers = {shell::answers::Cancel};
        Click(Control(clearing, "cmdClear"));
        QCOMPARE(later.Driver.CountOf(Call::InitializeLogFile), 0);
        QVERIFY(clearing.isVisible());
        QVERIFY(Control(clearing, "cmdOk")->isEnabled());
        Click(Control(clearing, "cmdClear"));
        QCOMPARE(later.Driver.CountOf(Call::InitializeLogFile), 1);
        QVERIFY(later.Driver.files.empty());
        QCOMPARE(later.Sink.Texts(), (std::vector<std::string>{ask, ask, "Completed."}));
        QVERIFY(!clearing.isVisible());
        QVERIFY(clearing.Result().Cancelled);
    }

    void DownloadFillsTheBarAndClosesWithTheNextFileName() {
        Desk desk({{4, 0, 60, 4096}});
        torvane::testing::WriteText(desk.Temp / "LGGR0007.rlg", "older");
        desk.Driver.ScriptTransfer(4, 1024);
        DownloadDialog& dialog = desk.Open();
        QVERIFY(QTest::qWaitForWindowExposed(&dialog));
        const QImage empty = Bar(dialog)->grab().toImage();
        desk.Driver.afterBlock = [&](int block) {
            // The machine stays awake from the first block on, asked once.
            QVERIFY(desk.Awake.Held());
            QCOMPARE(desk.Awake.inhibits, 1);
            if (block == 1) {
                // While the transfer runs only the stop button answers, and the dialog stays.
                QVERIFY(dialog.Busy());
                QVERIFY(!Control(dialog, "cmdOk")->isEnabled());
                QVERIFY(!List(dialog)->isEnabled());
                QVERIFY(Control(dialog, "cmdCancel")->isEnabled());
                QCOMPARE(Label(dialog, "lblAllData"), QString("4096"));
                QCOMPARE(Label(dialog, "lblReadData"), QString("1024"));
                QCOMPARE(Bar(dialog)->value(), 25);
                QVERIFY(!dialog.close());
                QTest::keyClick(&dialog, Qt::Key_Escape);
                QVERIFY(dialog.isVisible());
            }
        };
        Click(Control(dialog, "cmdOk"));
        // The blocks move from the dialog's timer, after the click has returned.
        QVERIFY(dialog.Busy());
        QCOMPARE(desk.Driver.blocks, 0);
        QTRY_VERIFY(!dialog.Busy());

        QCOMPARE(desk.Sink.Texts(), std::vector<std::string>{AskToDownload});
        QCOMPARE(desk.Sink.Messages[0].Buttons, shell::buttons::OkCancel);
        QCOMPARE(desk.Driver.blocks, 4);
        QCOMPARE(desk.Driver.startedEntry->intNumber, std::int16_t{4});
        QVERIFY(!dialog.isVisible());
        QCOMPARE(desk.Awake.inhibits, 1);
        QCOMPARE(desk.Awake.releases, 1);
        QCOMPARE(dialog.result(), int{QDialog::Accepted});
        QVERIFY(!dialog.Result().Cancelled);
        QCOMPARE(dialog.Result().File, desk.Temp / "LGGR0008.rlg");
        // The blocks went to a file beside the target, renamed over it once whole.
        const std::filesystem::path target = desk.Temp / "LGGR0008.rlg";
        QCOMPARE(desk.Driver.startedFile.parent_path(), target.parent_path());
        QVERIFY(desk.Driver.startedFile.filename().string().starts_with(".LGGR0008.rlg."));
        QVERIFY(std::filesystem::exists(target));
        QVERIFY(!std::filesystem::exists(desk.Driver.startedFile));
        QCOMPARE(Bar(dialog)->value(), Bar(dialog)->maximum());
        QCOMPARE(Label(dialog, "lblReadData"), QString("4096"));
        // The full bar is drawn, not just set.
        QVERIFY(Bar(dialog)->grab().toImage() != empty);
    }

    void FailedDownloadRemovesTheFileAndAllowsAnotherTry() {
        Desk desk({{1, 0, 60, 3000}});
        desk.Driver.Script(Call::GetTheLogFile_reading,
                           {Reply{.BlockSize = 1000}, Reply{.Result = TLM_ERR_NOT_CONNECTED}});
        DownloadDialog& dialog = desk.Open();
        desk.Driver.afterBlock = [&](int block) {
            if (block == 0) {
                torvane::testing::WriteText(desk.Driver.startedFile, "partial");
            }
        };
        Click(Control(dialog, "cmdOk"));
        QTRY_VERIFY(!dialog.Busy());

        QCOMPARE(desk.Sink.Texts(),
                 (std::vector<std::string>{AskToDownload, "USB device error. Error code =  1001"}));
        QVERIFY(desk.Temp.FileNames().empty());
        // A dropped link gives the machine back too.
        QCOMPARE(desk.Awake.inhibits, 1);
        QCOMPARE(desk.Awake.releases, 1);
        QVERIFY(dialog.isVisible());
        QVERIFY(!dialog.Busy());
        QCOMPARE(Label(dialog, "lblReadData") + Label(dialog, "lblAllData"), QString());
        QCOMPARE(Bar(dialog)->value(), 0);
        for (const char* name : {"cmdOk", "cmdCancel", "cmdClear"}) {
            QVERIFY2(Control(dialog, name)->isEnabled(), name);
        }
        QVERIFY(List(dialog)->isEnabled());

        // A transfer that the logger refuses at its start moves no block and asks nothing.
        desk.Driver.Script(Call::GetTheLogFile_start, {Reply{.Result = -1}});
        Click(Control(dialog, "cmdOk"));
        QTRY_VERIFY(!dialog.Busy());
        QCOMPARE(desk.Sink.Texts().back(), std::string("It failed in download. Error code = 2001"));
        QCOMPARE(desk.Awake.inhibits, 1);

        desk.Driver.ScriptTransfer(3, 1000);
        Click(Control(dialog, "cmdOk"));
        QTRY_VERIFY(!dialog.isVisible());
        QVERIFY(!dialog.Result().Cancelled);
        QCOMPARE(dialog.Result().File, desk.Temp / "LGGR0001.rlg");
        QCOMPARE(desk.Awake.inhibits, 2);
        QCOMPARE(desk.Awake.releases, 2);
    }

    // The stop button pressed while blocks move is asked about before the next block: No goes
    // on, Yes keeps what came and closes with nothing to open.
    void CancelAsksBeforeTheNextBlockAndYesKeepsThePartialFile() {
        Desk desk({{2, 0, 60, 5000}});
        desk.Driver.ScriptTransfer(5, 1000);
        DownloadDialog& dialog = desk.Open();
        desk.Driver.afterBlock = [&](int block) {
            if (block == 0) {
                torvane::testing::WriteText(desk.Driver.startedFile, "partial");
            }
            if (block == 1) {
                // Answered No: the stop button is back and OK is not.
                QVERIFY(Control(dialog, "cmdCancel")->isEnabled());
                QVERIFY(!Control(dialog, "cmdOk")->isEnabled());
            }
            if (block == 0 || block == 2) {
                Click(Control(dialog, "cmdCancel"));
                QVERIFY(!Control(dialog, "cmdCancel")->isEnabled());
                QVERIFY(Control(dialog, "cmdOk")->isEnabled());
            }
        };
        desk.Sink.Answers = {shell::answers::Ok, shell::answers::No, shell::answers::Yes};
        Click(Control(dialog, "cmdOk"));
        QTRY_VERIFY(!dialog.isVisible());

        const char* stop = "Do you stop downloading? ";
        QCOMPARE(desk.Sink.Texts(), (std::vector<std::string>{AskToDownload, stop, stop}));
        QCOMPARE(desk.Driver.blocks, 3);
        QVERIFY(dialog.Result().Cancelled);
        QCOMPARE(desk.Temp.FileNames(), (std::vector<std::string>{"LGGR0001.rlg"}));
        // Held across both questions, given back once stopped.
        QCOMPARE(desk.Awake.inhibits, 1);
        QCOMPARE(desk.Awake.releases, 1);
    }

    // A dialog that goes away while blocks move, as when the program ends, gives the machine
    // back as well.
    void ADialogDestroyedMidTransferReleasesTheMachine() {
        Desk desk({{3, 0, 60, 50000}});
        desk.Driver.ScriptTransfer(50, 1000);
        desk.Open();
        desk.Driver.afterBlock = [&](int block) {
            if (block == 1) {
                QTimer::singleShot(0, [&] { desk.Dialog.reset(); });
            }
        };
        Click(Control(*desk.Dialog, "cmdOk"));
        QTRY_VERIFY(!desk.Dialog);
        QVERIFY(desk.Driver.blocks < 50);
        QCOMPARE(desk.Awake.inhibits, 1);
        QCOMPARE(desk.Awake.releases, 1);
    }
};

QTEST_MAIN(DownloadDialogTest)
#include "download_dialog_test.moc"
