// The program's own file dialog, driven as a real widget on the offscreen platform; questions
// are answered by a recording sink.

#include "graph/file_choice.h"
#include "output/file_dialog.h"
#include "shell/help_window.h"
#include "support/temp_folder.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTimer>
#include <QTreeWidget>
#include <QtTest>

#include <memory>

using torvane::app::FileDialog;
using torvane::app::FileDialogContext;
using torvane::output::FileDialogMode;
using torvane::output::FileDialogRequest;
using torvane::testing::TempFolder;
using torvane::testing::WriteText;
namespace answers = torvane::shell::answers;

namespace {

template <typename Widget> Widget* Find(QWidget* dialog, const char* name) {
    auto* widget = dialog->findChild<Widget*>(name);
    if (widget == nullptr) {
        qFatal("no control %s", name);
    }
    return widget;
}

QStringList Column(QTreeWidget* list, int column) {
    QStringList texts;
    for (int row = 0; row < list->topLevelItemCount(); ++row) {
        texts << list->topLevelItem(row)->text(column);
    }
    return texts;
}

} // namespace

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
        auto* types = Find<QComboBox>(&dialog, "cmbExt");
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
        auto* csv = Find<QGroupBox>(dialog.get(), "fraCsv");
        QVERIFY(!csv->isVisible());
        ChooseCsvType(*dialog);
        QVERIFY(csv->isVisible());
        QVERIFY(!Find<QCheckBox>(dialog.get(), "chkCsv1")->isEnabled()); // no range marked
        QCOMPARE(Column(Find<QTreeWidget>(dialog.get(), "lvwFile"), 0), QStringList{"abc.csv"});

        auto* name = Find<QLineEdit>(dialog.get(), "txtFileName");
        QTest::keyClicks(name, "a.b/c");
        QCOMPARE(name->text(), QString("abc"));
        auto* ok = Find<QPushButton>(dialog.get(), "cmdExec");

        sink_.SetAnswer(answers::No);
        QTest::mouseClick(ok, Qt::LeftButton);
        QVERIFY(dialog->isVisible());
        QCOMPARE(sink_.messages.size(), size_t{1});
        QCOMPARE(sink_.messages[0].text, std::string("Already exists.Overwrite? "));
        QCOMPARE(sink_.messages[0].buttons, torvane::shell::buttons::YesNo);

        sink_.SetAnswer(answers::Yes);
        QTest::mouseClick(ok, Qt::LeftButton);
        QVERIFY(!dialog->isVisible());
        QCOMPARE(sink_.messages.size(), size_t{2});
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
        auto* list = Find<QTreeWidget>(dialog.get(), "lvwFile");
        QVERIFY(list->isColumnHidden(1));
        QCOMPARE(Column(list, 0), (QStringList{"a.rlg", "b.rlg", "c.rlg"}));
        QCOMPARE(Column(list, 2), (QStringList{"2KB", "21KB", "1KB"}));
        const QHeaderView* header = list->header();
        QTest::mouseClick(header->viewport(), Qt::LeftButton, {},
                          QPoint(header->sectionViewportPosition(2) + 5, header->height() / 2));
        QCOMPARE(Column(list, 0), (QStringList{"c.rlg", "a.rlg", "b.rlg"}));
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {},
                          list->visualItemRect(list->topLevelItem(1)).center());
        auto* name = Find<QLineEdit>(dialog.get(), "txtFileName");
        QCOMPARE(name->text(), QString("a.rlg"));

        ChooseCsvType(*dialog);
        QCOMPARE(list->topLevelItemCount(), 0);
        QCOMPARE(name->text(), QString());
        auto* range = Find<QCheckBox>(dialog.get(), "chkCsv1");
        QCOMPARE(range->text(), QString("Selection range"));
        QVERIFY(range->isEnabled());
        QTest::mouseClick(range, Qt::LeftButton);
        QTest::keyClicks(name, "lap");
        QTest::keyClick(name, Qt::Key_Return);
        QVERIFY(!dialog->Result().Cancel);
        QCOMPARE(dialog->Result().Filepath, *runs_ / "lap.csv");
        QVERIFY(dialog->Result().CsvRange);
        QVERIFY(sink_.messages.empty());
    }

    // A place that cannot be opened leaves the old one and says why: the missing Desktop, a
    // folder removed after it was listed.
    void MissingFolderLeavesTheOldPlaceWithAMessage() {
        std::filesystem::create_directory(*runs_ / "sub");
        WriteText(*runs_ / "keep.rlg", "x");
        auto dialog = Open(FileDialogMode::LoadLoggingFile);
        auto* drives = Find<QComboBox>(dialog.get(), "ImcDrv");
        QCOMPARE(drives->itemText(0), QString("Desktop"));
        QVERIFY(drives->findText("/") > 0);
        auto* status = Find<QLabel>(dialog.get(), "lblStatus");
        drives->setFocus();
        QTest::keyClick(drives, Qt::Key_Home);
        QCOMPARE(dialog->Folder(), runs_->Path());
        QVERIFY(status->text().contains("no-desktop"));
        QVERIFY(drives->currentIndex() > 0);

        auto* folders = Find<QListWidget>(dialog.get(), "dirCurrent");
        const QList<QListWidgetItem*> sub = folders->findItems("sub", Qt::MatchExactly);
        QCOMPARE(sub.size(), 1);
        std::filesystem::remove(*runs_ / "sub");
        emit folders->itemActivated(sub[0]);
        QCOMPARE(dialog->Folder(), runs_->Path());
        QVERIFY(status->text().contains("sub"));
        QCOMPARE(Column(Find<QTreeWidget>(dialog.get(), "lvwFile"), 0), QStringList{"keep.rlg"});

        emit folders->itemActivated(folders->item(0)); // ".."
        QCOMPARE(dialog->Folder(), runs_->Path().parent_path());
    }

    // The graph windows' save question runs the modal dialog and passes its CSV options on.
    void SaveOrExportRunsTheModalDialog() {
        QTimer::singleShot(0, [] {
            QWidget* modal = QApplication::activeModalWidget();
            QVERIFY(modal != nullptr);
            QCOMPARE(modal->objectName(), QString("frmCom0010"));
            ChooseCsvType(*static_cast<FileDialog*>(modal));
            QTest::keyClicks(Find<QLineEdit>(modal, "txtFileName"), "lap");
            QTest::mouseClick(Find<QCheckBox>(modal, "chkCsv0"), Qt::LeftButton);
            QTest::mouseClick(Find<QPushButton>(modal, "cmdExec"), Qt::LeftButton);
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
