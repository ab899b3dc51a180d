// The program's own file dialog, driven as a real widget on the offscreen platform; questions
// are answered by a recording sink.

#include "graph/file_choice.h"
#include "output/file_dialog.h"
#include "shell/help_window.h"
#include "support/temp_folder.h"
#include "widget_driving.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QTreeWidget>
#include <QtTest>

#include <memory>

using torvane::app::FileDialog;
using torvane::app::FileDialogContext;
using torvane::output::FileDialogMode;
using torvane::output::FileDialogRequest;
using torvane::testing::ColumnTexts;
using torvane::testing::Control;
using torvane::testing::TempFolder;
using torvane::testing::WriteText;
namespace answers = torvane::shell::answers;

class FileDialogTest : public QObject {
    Q_OBJECT

    std::unique_ptr<TempFolder> runs_;
    std::unique_ptr<TempFolder> data_;
    torvane::output::FileDialogMemory memory_;
    torvane::shell::RecordingSink sink_;
    std::unique_ptr<FileDialogContext> context_;

    std::unique_ptr<FileDialog> Open(FileDialogMode mode, bool csvRange = false) {
        auto dialog =
            std::make_unique<FileDialog>(FileDialogRequest{mode, csvRange}, *context_, nullptr);
        dialog->show();
        if (!QTest::qWaitForWindowExposed(dialog.get())) {
            qFatal("the dialog did not show");
        }
        return dialog;
    }

    static void ChooseCsvType(FileDialog& dialog) {
        auto* types = Control<QComboBox>(dialog, "cmbExt");
        types->setFocus();
        QTest::keyClick(types, Qt::Key_Down);
        QCOMPARE(types->currentText(), QString("Csv Files (*.csv)"));
    }

private slots:
    void init() {
        runs_ = std::make_unique<TempFolder>();
        data_ = std::make_unique<TempFolder>();
        memory_ = {.LastFolder = runs_->Path(), .LastFileName = {}};
        sink_ = torvane::shell::RecordingSink(answers::Yes);
        context_ = std::make_unique<FileDialogContext>(
            FileDialogContext{memory_, data_->Path(), data_->Path() / "no-desktop", sink_});
    }

    // A typed "abc" with the CSV type becomes abc.csv; an existing file is overwritten only
    // after Yes, and the folder and name are there at the next opening.
    void TypedNameTakesTheCsvExtensionAndOverwriteIsAsked() {
        WriteText(*runs_ / "abc.csv", "old");
        auto dialog = Open(FileDialogMode::SaveLoggingFile);
        auto* csv = Control<QGroupBox>(*dialog, "fraCsv");
        QVERIFY(!csv->isVisible());
        ChooseCsvType(*dialog);
        QVERIFY(csv->isVisible());
        QVERIFY(!Control<QCheckBox>(*dialog, "chkCsv1")->isEnabled()); // no range marked
        QCOMPARE(ColumnTexts(*Control<QTreeWidget>(*dialog, "lvwFile")->model()),
                 QStringList{"abc.csv"});

        auto* name = Control<QLineEdit>(*dialog, "txtFileName");
        QTest::keyClicks(name, "a.b/c");
        QCOMPARE(name->text(), QString("abc"));
        auto* ok = Control(*dialog, "cmdExec");

        sink_.SetAnswer(answers::No);
        QTest::mouseClick(ok, Qt::LeftButton);
        QVERIFY(dialog->isVisible());
        QCOMPARE(sink_.Messages.size(), size_t{1});
        QCOMPARE(sink_.Messages[0].Text, std::string("Already exists.Overwrite? "));
        QCOMPARE(sink_.Messages[0].Buttons, torvane::shell::buttons::YesNo);

        sink_.SetAnswer(answers::Yes);
        QTest::mouseClick(ok, Qt::LeftButton);
        QVERIFY(!dialog->isVisible());
        QCOMPARE(sink_.Messages.size(), size_t{2});
        QVERIFY(!dialog->Result().Cancel);
        QCOMPARE(dialog->Result().Filepath, *runs_ / "abc.csv");
        QVERIFY(dialog->Result().CsvAllItem);
        QVERIFY(!dialog->Result().CsvRange);
        QCOMPARE(memory_.LastFileName, std::string("abc.csv"));
    }

    // The list shows sizes in KB plus one and sorts them as numbers; a click copies a name; the
    // CSV type lists only CSV files and answers the range option when a range is marked.
    void ListSortsSizesAsNumbersAndCsvAnswersTheRange() {
        WriteText(*runs_ / "b.rlg", std::string(20 * 1024, 'x'));
        WriteText(*runs_ / "a.rlg", std::string(1024, 'x'));
        WriteText(*runs_ / "c.rlg", std::string(1023, 'x'));
        auto dialog = Open(FileDialogMode::SaveLoggingFile, true);
        auto* list = Control<QTreeWidget>(*dialog, "lvwFile");
        QVERIFY(list->isColumnHidden(1));
        QCOMPARE(ColumnTexts(*list->model()), (QStringList{"a.rlg", "b.rlg", "c.rlg"}));
        QCOMPARE(ColumnTexts(*list->model(), 2), (QStringList{"2KB", "21KB", "1KB"}));
        const QHeaderView* header = list->header();
        QTest::mouseClick(header->viewport(), Qt::LeftButton, {},
                          QPoint(header->sectionViewportPosition(2) + 5, header->height() / 2));
        QCOMPARE(ColumnTexts(*list->model()), (QStringList{"c.rlg", "a.rlg", "b.rlg"}));
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {},
                          list->visualItemRect(list->topLevelItem(1)).center());
        auto* name = Control<QLineEdit>(*dialog, "txtFileName");
        QCOMPARE(name->text(), QString("a.rlg"));

        ChooseCsvType(*dialog);
        QCOMPARE(list->topLevelItemCount(), 0);
        QCOMPARE(name->text(), QString());
        auto* range = Control<QCheckBox>(*dialog, "chkCsv1");
        QVERIFY(range->isEnabled());
        QTest::mouseClick(range, Qt::LeftButton);
        QTest::keyClicks(name, "lap");
        QTest::keyClick(name, Qt::Key_Return);
        QVERIFY(!dialog->Result().Cancel);
        QCOMPARE(dialog->Result().Filepath, *runs_ / "lap.csv");
        QVERIFY(dialog->Result().CsvRange);
        QVERIFY(sink_.Messages.empty());
    }

    // A place that cannot be opened leaves the old one and says why: the missing Desktop, a
    // folder removed after it was listed.
    void MissingFolderLeavesTheOldPlaceWithAMessage() {
        std::filesystem::create_directory(*runs_ / "sub");
        WriteText(*runs_ / "keep.rlg", "x");
        auto dialog = Open(FileDialogMode::LoadLoggingFile);
        auto* drives = Control<QComboBox>(*dialog, "ImcDrv");
        QCOMPARE(drives->itemText(0), QString("Desktop"));
        QVERIFY(drives->findText("/") > 0);
        auto* status = Control<QLabel>(*dialog, "lblStatus");
        drives->setFocus();
        QTest::keyClick(drives, Qt::Key_Home);
        QCOMPARE(dialog->Folder(), runs_->Path());
        QVERIFY(status->text().contains("no-desktop"));
        QVERIFY(drives->currentIndex() > 0);

        auto* folders = Control<QListWidget>(*dialog, "dirCurrent");
        const QList<QListWidgetItem*> sub = folders->findItems("sub", Qt::MatchExactly);
        QCOMPARE(sub.size(), 1);
        std::filesystem::remove(*runs_ / "sub");
        emit folders->itemActivated(sub[0]);
        QCOMPARE(dialog->Folder(), runs_->Path());
        QVERIFY(status->text().contains("sub"));
        QCOMPARE(ColumnTexts(*Control<QTreeWidget>(*dialog, "lvwFile")->model()),
                 QStringList{"keep.rlg"});

        emit folders->itemActivated(folders->item(0)); // ".."
        QCOMPARE(dialog->Folder(), runs_->Path().parent_path());
    }

    // The graph windows' save question runs the modal dialog and passes its CSV options on.
    void SaveOrExportRunsTheModalDialog() {
        torvane::testing::WhenModalOpens([](QWidget* modal) {
            QCOMPARE(modal->objectName(), QString("frmCom0010"));
            ChooseCsvType(*static_cast<FileDialog*>(modal));
            QTest::keyClicks(Control<QLineEdit>(*modal, "txtFileName"), "lap");
            QTest::mouseClick(Control<QCheckBox>(*modal, "chkCsv0"), Qt::LeftButton);
            QTest::mouseClick(Control(*modal, "cmdExec"), Qt::LeftButton);
        });
        const auto choice = torvane::app::ChooseSaveOrExport(*context_, nullptr, false);
        QVERIFY(choice.has_value());
        QCOMPARE(choice->Filepath, *runs_ / "lap.csv");
        QVERIFY(!choice->CsvAllItem);
        QVERIFY(!choice->CsvRange);
    }
};

QTEST_MAIN(FileDialogTest)
#include "file_dialog_test.moc"
