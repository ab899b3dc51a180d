// The download dialog driven as a real widget: over a scripted driver for the list, the
// transfer, the operator's stop, a failed try and clearing; and once over libtlm against a
// real virtual logger.

#include "binding/tlm_driver.h"
#include "logger/download_dialog.h"
#include "logger/scripted_driver.h"
#include "support/simulator_process.h"
#include "support/temp_folder.h"

#include <QHeaderView>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QTimer>
#include <QTreeWidget>
#include <QtTest>

#include <cstring>
#include <functional>
#include <map>
#include <thread>

using torvane::app::DownloadDialog;
using torvane::logger::Call;
using torvane::logger::Reply;
using torvane::testing::TempFolder;
namespace shell = torvane::shell;
namespace fs = std::filesystem;

namespace {

// Answers each question by its text (OK when the text has no answer) and lets a test look at
// the dialog at the moment a message shows.
class ScriptedSink : public shell::MessageSink {
public:
    int Show(const shell::Message& message) override {
        messages.push_back(message);
        if (onShow) {
            onShow(message);
        }
        const auto answer = answers.find(message.text);
        return answer != answers.end() ? answer->second : shell::answers::Ok;
    }
    QStringList Texts() const {
        QStringList texts;
        for (const auto& message : messages) {
            texts << QString::fromStdString(message.text);
        }
        return texts;
    }

    std::map<std::string, int> answers;
    std::function<void(const shell::Message&)> onShow;
    std::vector<shell::Message> messages;
};

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
        ScriptRepeated(Call::GetTheLogFile_reading, Reply{.blockSize = size}, count - 1);
        Script(Call::GetTheLogFile_reading, {Reply{.result = 1, .blockSize = size}});
    }

    std::function<void(int)> afterBlock;
    int blocks = 0;
};

TlmDownloadEntry Entry(std::int16_t number, std::int16_t done, std::int32_t seconds,
                       std::int32_t size) {
    return {number, done, seconds, size};
}

void SetProgramNumber(TlmSpecialData& special, const char* number) {
    std::memset(special.bytProgramNo, 0, sizeof special.bytProgramNo);
    std::memcpy(special.bytProgramNo, number, std::strlen(number));
}

template <typename Widget> Widget* Child(const QWidget& dialog, const char* name) {
    auto* child = dialog.findChild<Widget*>(name);
    if (child == nullptr) {
        qFatal("no control %s", name);
    }
    return child;
}

QTreeWidget* List(const QWidget& dialog) {
    return Child<QTreeWidget>(dialog, "lvwFile");
}
QPushButton* Button(const QWidget& dialog, const char* name) {
    return Child<QPushButton>(dialog, name);
}
QProgressBar* Bar(const QWidget& dialog) {
    return Child<QProgressBar>(dialog, "PgbLogging");
}
QString Label(const QWidget& dialog, const char* name) {
    return Child<QLabel>(dialog, name)->text();
}

QStringList RowTexts(const QTreeWidgetItem& item) {
    QStringList texts;
    for (int column = 0; column < item.columnCount(); ++column) {
        texts << item.text(column);
    }
    return texts;
}

void Click(QPushButton* button) {
    QTest::mouseClick(button, Qt::LeftButton);
}

// Pixels of the bar's picture that differ from its empty picture.
int ChangedPixels(const QImage& empty, const QImage& now) {
    int changed = 0;
    for (int y = 0; y < now.height(); ++y) {
        for (int x = 0; x < now.width(); ++x) {
            changed += empty.pixel(x, y) != now.pixel(x, y) ? 1 : 0;
        }
    }
    return changed;
}

} // namespace

class DownloadDialogTest : public QObject {
    Q_OBJECT

private slots:
    void ListShowsTheLoggersFilesInFiveColumns() {
        BlockDriver driver;
        driver.files = {Entry(1, 0, 3725, 1024), Entry(2, -1, 3, 500), Entry(3, -1, 4, 1023),
                        Entry(12, 0, 60, 0)};
        SetProgramNumber(driver.special, "1");
        ScriptedSink sink;
        TempFolder temp;
        DownloadDialog dialog(driver, sink, {temp.Path()});

        QVERIFY(dialog.Loaded());
        QCOMPARE(dialog.objectName(), QString("frmTLM0015"));
        QCOMPARE(dialog.windowTitle(), QString("LoggerData"));
        QVERIFY(sink.messages.empty());
        const QTreeWidget* list = List(dialog);
        QCOMPARE(RowTexts(*list->headerItem()),
                 (QStringList{"", "FileName", "Measurement time", "Data size[Kbyte]", "Download"}));
        const QList<int> widths{list->columnWidth(1), list->columnWidth(2), list->columnWidth(3),
                                list->columnWidth(4)};
        QCOMPARE(widths, (QList<int>{65, 138, 105, 65}));
        // The file of 3 seconds stays out of the list.
        QCOMPARE(list->topLevelItemCount(), 3);
        QCOMPARE(RowTexts(*list->topLevelItem(0)),
                 (QStringList{"001", "001", "001H02M05S", "2", "None"}));
        QCOMPARE(RowTexts(*list->topLevelItem(1)),
                 (QStringList{"003", "003", "000H00M04S", "1", "Done"}));
        QCOMPARE(RowTexts(*list->topLevelItem(2)),
                 (QStringList{"012", "012", "000H01M00S", "1", "None"}));
        const QTreeWidgetItem& row = *list->topLevelItem(0);
        QCOMPARE(row.textAlignment(0) & Qt::AlignHorizontal_Mask, int{Qt::AlignLeft});
        QCOMPARE(row.textAlignment(1) & Qt::AlignHorizontal_Mask, int{Qt::AlignRight});
        QCOMPARE(row.textAlignment(2) & Qt::AlignHorizontal_Mask, int{Qt::AlignHCenter});
        QCOMPARE(row.textAlignment(3) & Qt::AlignHorizontal_Mask, int{Qt::AlignRight});
        QCOMPARE(row.textAlignment(4) & Qt::AlignHorizontal_Mask, int{Qt::AlignHCenter});
        QCOMPARE(list->currentItem(), list->topLevelItem(0));
        // Program 1 cannot clear; the list was read in one link that is closed again.
        QVERIFY(!Button(dialog, "cmdClear")->isEnabled());
        QCOMPARE(driver.CountOf(Call::Open), 1);
        QCOMPARE(driver.Sequence().back(), Call::Close);

        BlockDriver later;
        later.files = driver.files;
        SetProgramNumber(later.special, "2");
        DownloadDialog clearing(later, sink, {temp.Path()});
        QVERIFY(Button(clearing, "cmdClear")->isEnabled());
    }

    void DialogClosesAtOnceWhenThereIsNothingToList() {
        TempFolder temp;
        {
            BlockDriver driver;
            ScriptedSink sink;
            DownloadDialog dialog(driver, sink, {temp.Path()});
            QVERIFY(!dialog.Loaded());
            QCOMPARE(sink.Texts(), QStringList{"There is no file in Logger."});
            QCOMPARE(sink.messages[0].icon, shell::icons::Information);
            // exec() returns without showing anything.
            QCOMPARE(dialog.exec(), int{QDialog::Rejected});
            QVERIFY(dialog.Result().cancelled);
        }
        {
            BlockDriver driver;
            driver.files = {Entry(1, 0, 60, 100)};
            driver.Script(Call::Open, {Reply{.result = TLM_ERR_NOT_CONNECTED}});
            ScriptedSink sink;
            const auto result = DownloadDialog::Run(driver, sink, {temp.Path()});
            QVERIFY(result.cancelled);
            QCOMPARE(sink.Texts(), (QStringList{"TorvaneDataLogger is not connected.",
                                                "USB device error. Error code =  1001"}));
        }
    }

    void DownloadFillsTheBarAndClosesWithTheNextFileName() {
        TempFolder temp;
        torvane::testing::WriteText(temp / "LGGR0007.rlg", "older");
        BlockDriver driver;
        driver.files = {Entry(4, 0, 60, 4096)};
        driver.ScriptTransfer(4, 1024);
        ScriptedSink sink;
        DownloadDialog dialog(driver, sink, {temp.Path()});
        dialog.show();
        QVERIFY(QTest::qWaitForWindowExposed(&dialog));
        const QImage empty = Bar(dialog)->grab().toImage();

        driver.afterBlock = [&](int block) {
            if (block != 1) {
                return;
            }
            // While the transfer runs only the stop button answers, and the dialog stays.
            QVERIFY(dialog.Busy());
            QVERIFY(!Button(dialog, "cmdOk")->isEnabled());
            QVERIFY(!Button(dialog, "cmdClear")->isEnabled());
            QVERIFY(!List(dialog)->isEnabled());
            QVERIFY(Button(dialog, "cmdCancel")->isEnabled());
            QCOMPARE(Label(dialog, "lblAllData"), QString("4096"));
            QCOMPARE(Label(dialog, "lblReadData"), QString("1024"));
            QCOMPARE(Bar(dialog)->value(), 25);
            QVERIFY(!dialog.close());
            QTest::keyClick(&dialog, Qt::Key_Escape);
            QVERIFY(dialog.isVisible());
        };
        Click(Button(dialog, "cmdOk"));

        QCOMPARE(sink.Texts(), QStringList{"Do you download data from Logger?"});
        QCOMPARE(sink.messages[0].buttons, shell::buttons::OkCancel);
        QCOMPARE(driver.blocks, 4);
        QCOMPARE(driver.startedEntry->intNumber, std::int16_t{4});
        QCOMPARE(driver.startedFile, temp / "LGGR0008.rlg");
        QVERIFY(!dialog.isVisible());
        QCOMPARE(dialog.result(), int{QDialog::Accepted});
        QVERIFY(!dialog.Result().cancelled);
        QCOMPARE(dialog.Result().file, temp / "LGGR0008.rlg");
        QCOMPARE(Bar(dialog)->value(), Bar(dialog)->maximum());
        QCOMPARE(Label(dialog, "lblReadData"), QString("4096"));
        QVERIFY(ChangedPixels(empty, Bar(dialog)->grab().toImage()) > empty.width());
        // Acquisition was stopped for the transfer and given back.
        QCOMPARE(driver.LoggingControlValues(), (std::vector<std::int64_t>{1, 0}));
    }

    void ChosenNumberIsTheFirstEntryAndAShortOneIsRefused() {
        TempFolder temp;
        BlockDriver driver;
        // Two entries share a number: the list shows the long one, the choice finds the short.
        driver.files = {Entry(5, 0, 3, 100), Entry(5, 0, 60, 100)};
        ScriptedSink sink;
        DownloadDialog dialog(driver, sink, {temp.Path()});
        dialog.show();
        QVERIFY(QTest::qWaitForWindowExposed(&dialog));
        QCOMPARE(List(dialog)->topLevelItemCount(), 1);

        sink.answers["Do you download data from Logger?"] = shell::answers::Cancel;
        QWidget* rows = List(dialog)->viewport();
        const QPoint row = List(dialog)->visualItemRect(List(dialog)->topLevelItem(0)).center();
        QTest::mouseClick(rows, Qt::LeftButton, {}, row);
        QTest::mouseDClick(rows, Qt::LeftButton, {}, row);
        QCOMPARE(sink.Texts(), QStringList{"Do you download data from Logger?"});

        sink.answers.clear();
        Click(Button(dialog, "cmdOk"));
        QCOMPARE(sink.messages.back().text,
                 std::string("Can not open the specified file,Because of excessive short "
                             "measurement time."));
        QCOMPARE(sink.messages.back().icon, shell::icons::Warning);
        QCOMPARE(driver.CountOf(Call::GetTheLogFile_start), 0);
        QVERIFY(dialog.isVisible());
        QVERIFY(Button(dialog, "cmdOk")->isEnabled());
    }

    void StopAnsweredNoGoesOnAndKeysDoNotCancel() {
        TempFolder temp;
        BlockDriver driver;
        driver.files = {Entry(1, 0, 60, 5000)};
        driver.ScriptTransfer(5, 1000);
        ScriptedSink sink;
        sink.answers["Do you stop downloading? "] = shell::answers::No;
        DownloadDialog dialog(driver, sink, {temp.Path()});
        dialog.show();
        QPushButton* cancel = Button(dialog, "cmdCancel");
        QPushButton* ok = Button(dialog, "cmdOk");
        sink.onShow = [&](const shell::Message& message) {
            if (message.text == "Do you stop downloading? ") {
                QVERIFY(!cancel->isEnabled());
                QVERIFY(ok->isEnabled());
            }
        };
        driver.afterBlock = [&](int block) {
            if (block == 0) {
                cancel->setFocus();
                QTest::keyClick(cancel, Qt::Key_Space);
                QTest::keyClick(cancel, Qt::Key_Return);
            } else if (block == 1) {
                QTimer::singleShot(0, cancel, [cancel] { Click(cancel); });
            } else if (block == 2) {
                // The answer No gave the stop button back and took OK away.
                QVERIFY(cancel->isEnabled());
                QVERIFY(!ok->isEnabled());
            }
        };
        Click(ok);

        QCOMPARE(sink.Texts(),
                 (QStringList{"Do you download data from Logger?", "Do you stop downloading? "}));
        QCOMPARE(driver.blocks, 5);
        QCOMPARE(driver.CountOf(Call::GetTheLogFile_start), 1);
        QVERIFY(!dialog.Result().cancelled);
        QCOMPARE(Label(dialog, "lblReadData"), QString("5000"));
    }

    void StopAnsweredYesClosesKeepingThePartialFile() {
        TempFolder temp;
        BlockDriver driver;
        driver.files = {Entry(1, 0, 60, 5000)};
        driver.ScriptTransfer(5, 1000);
        ScriptedSink sink;
        sink.answers["Do you stop downloading? "] = shell::answers::Yes;
        DownloadDialog dialog(driver, sink, {temp.Path()});
        dialog.show();
        QPushButton* cancel = Button(dialog, "cmdCancel");
        driver.afterBlock = [&](int block) {
            if (block == 0) {
                torvane::testing::WriteText(driver.startedFile, "partial");
                QTimer::singleShot(0, cancel, [cancel] { Click(cancel); });
                // OK, which the stop request enables, starts nothing while busy.
                QTimer::singleShot(0, cancel, [&dialog] { Click(Button(dialog, "cmdOk")); });
            }
        };
        Click(Button(dialog, "cmdOk"));

        QCOMPARE(driver.blocks, 1);
        QCOMPARE(driver.CountOf(Call::GetTheLogFile_start), 1);
        QCOMPARE(driver.CountOf(Call::GetTheLogFile_end), 1);
        QVERIFY(!dialog.isVisible());
        QVERIFY(dialog.Result().cancelled);
        QCOMPARE(dialog.Result().file, temp / "LGGR0001.rlg");
        QVERIFY(fs::exists(temp / "LGGR0001.rlg"));
        QCOMPARE(driver.LoggingControlValues(), (std::vector<std::int64_t>{1, 0}));
    }

    void FailedDownloadRemovesTheFileAndAllowsAnotherTry() {
        TempFolder temp;
        BlockDriver driver;
        driver.files = {Entry(1, 0, 60, 3000)};
        SetProgramNumber(driver.special, "1");
        driver.Script(Call::GetTheLogFile_reading,
                      {Reply{.blockSize = 1000}, Reply{.result = TLM_ERR_NOT_CONNECTED}});
        ScriptedSink sink;
        DownloadDialog dialog(driver, sink, {temp.Path()});
        dialog.show();
        driver.afterBlock = [&](int block) {
            if (block == 0) {
                torvane::testing::WriteText(driver.startedFile, "partial");
            }
        };
        Click(Button(dialog, "cmdOk"));

        QCOMPARE(sink.Texts(), (QStringList{"Do you download data from Logger?",
                                            "USB device error. Error code =  1001"}));
        QVERIFY(temp.FileNames().empty());
        QVERIFY(dialog.isVisible());
        QVERIFY(!dialog.Busy());
        QVERIFY(dialog.Result().cancelled);
        QCOMPARE(Label(dialog, "lblReadData"), QString());
        QCOMPARE(Label(dialog, "lblAllData"), QString());
        QCOMPARE(Bar(dialog)->value(), 0);
        for (const char* name : {"cmdOk", "cmdCancel", "cmdClear"}) {
            QVERIFY2(Button(dialog, name)->isEnabled(), name);
        }
        QVERIFY(List(dialog)->isEnabled());

        driver.ScriptTransfer(3, 1000);
        Click(Button(dialog, "cmdOk"));
        QVERIFY(!dialog.isVisible());
        QVERIFY(!dialog.Result().cancelled);
        QCOMPARE(dialog.Result().file, temp / "LGGR0001.rlg");
    }

    void ClearAsksClearsAndCloses() {
        TempFolder temp;
        BlockDriver driver;
        driver.files = {Entry(1, 0, 60, 3000), Entry(2, 0, 60, 3000)};
        SetProgramNumber(driver.special, "2");
        ScriptedSink sink;
        DownloadDialog dialog(driver, sink, {temp.Path()});
        dialog.show();

        sink.answers["Do you want to clear all data in the logger ?"] = shell::answers::Cancel;
        Click(Button(dialog, "cmdClear"));
        QCOMPARE(driver.CountOf(Call::InitializeLogFile), 0);
        QVERIFY(dialog.isVisible());
        QVERIFY(Button(dialog, "cmdOk")->isEnabled());
        QVERIFY(Button(dialog, "cmdCancel")->isEnabled());

        sink.answers.clear();
        Click(Button(dialog, "cmdClear"));
        QCOMPARE(driver.CountOf(Call::InitializeLogFile), 1);
        QVERIFY(driver.files.empty());
        QCOMPARE(sink.Texts().mid(1),
                 (QStringList{"Do you want to clear all data in the logger ?", "Completed."}));
        QVERIFY(!dialog.isVisible());
        QVERIFY(dialog.Result().cancelled);
    }

    void CancelClosesWithoutADownload() {
        TempFolder temp;
        BlockDriver driver;
        driver.files = {Entry(1, 0, 60, 3000)};
        ScriptedSink sink;
        DownloadDialog dialog(driver, sink, {temp.Path()});
        dialog.show();
        Click(Button(dialog, "cmdCancel"));
        QVERIFY(!dialog.isVisible());
        QVERIFY(dialog.Result().cancelled);
        QCOMPARE(driver.CountOf(Call::Open), 1);
    }

    void DownloadsFromTheVirtualLogger() {
        TempFolder temp;
        torvane::testing::SimulatorProcess simulator(
            TORVANE_LOGGER_SIM, temp / "logger.sock",
            {"--idle", "--files", "2", "--minutes", "1", "--seed", "7", "--rate", "0"});
        QVERIFY2(simulator.Listening(), simulator.Output().c_str());
        qputenv("TORVANE_LOGGER", QByteArray::fromStdString(simulator.Endpoint()));
        torvane::binding::TlmDriver driver;
        WaitUntilInitialised(driver);
        const fs::path work = temp / "TMP";
        fs::create_directories(work);
        ScriptedSink sink;

        DownloadDialog dialog(driver, sink, {work});
        QVERIFY2(dialog.Loaded(), qPrintable(sink.Texts().join('\n')));
        dialog.show();
        const QTreeWidget* list = List(dialog);
        QCOMPARE(list->topLevelItemCount(), 2);
        QCOMPARE(RowTexts(*list->topLevelItem(0)).mid(0, 3),
                 (QStringList{"001", "001", "000H01M00S"}));
        QCOMPARE(list->topLevelItem(1)->text(0), QString("002"));
        QCOMPARE(list->topLevelItem(0)->text(4), QString("None"));

        Click(Button(dialog, "cmdOk"));
        QCOMPARE(sink.Texts(), QStringList{"Do you download data from Logger?"});
        QVERIFY(!dialog.Result().cancelled);
        QCOMPARE(dialog.Result().file, work / "LGGR0001.rlg");
        const auto size = fs::file_size(work / "LGGR0001.rlg");
        QVERIFY(size > 0);
        QCOMPARE(Label(dialog, "lblAllData"), QString::number(size));
        QCOMPARE(Label(dialog, "lblReadData"), QString::number(size));
        QCOMPARE(Bar(dialog)->value(), Bar(dialog)->maximum());

        DownloadDialog again(driver, sink, {work});
        QCOMPARE(List(again)->topLevelItem(0)->text(4), QString("Done"));
        qunsetenv("TORVANE_LOGGER");
    }

private:
    // The virtual logger starts in its initialising state; a dialog opened then would refuse.
    static void WaitUntilInitialised(torvane::logger::Driver& driver) {
        for (int tries = 0; tries < 100; ++tries) {
            TlmStatus status{};
            if (driver.Open(status) == 0) {
                driver.GetStatus(status);
                driver.Close(status);
                if (status.bytState != TLM_STATE_INITIALIZING) {
                    return;
                }
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
        }
    }
};

QTEST_MAIN(DownloadDialogTest)
#include "download_dialog_test.moc"
