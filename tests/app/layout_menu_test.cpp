// Saved layouts in the desktop: the layout-save dialog driven as a widget, and the View menu's
// layout entries applied to a graph window opened from a generated run.

#include "graph_desk.h"
#include "layout/layout_save_dialog.h"
#include "layout/layout_save_rules.h"
#include "shell/help_window.h"
#include "widget_driving.h"

#include <QAction>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMdiSubWindow>
#include <QPushButton>
#include <QtTest>

namespace fs = std::filesystem;
using namespace torvane;
using app::LayoutSaveDialog;
using testing::Desk;
using testing::WhenModalOpens;

namespace {

// Only Ne and TH shown, Ne at scale 2, two pixels a step of 50 ms.
graph::DisplaySet TwoItems() {
    graph::DisplaySet display;
    for (int channel = 0; channel < logdata::ChannelCount; ++channel) {
        graph::ItemDisplay& item = display.Items[static_cast<std::size_t>(channel)];
        item = {0,  1,   1, 1, 0, static_cast<std::uint8_t>(graph::DefaultScaleNumber(channel)),
                30, 130, 0, 0};
    }
    display.Items[logdata::Ne].View = 1;
    display.Items[logdata::Ne].Zoom = 2;
    display.Items[logdata::TH].View = 1;
    display.Time = {2, 1000, 50};
    return display;
}

void SaveLayouts(layout::LayoutStore& store, const std::vector<std::string>& names) {
    store.SetPendingLayout(TwoItems(), TwoItems().Time);
    for (const std::string& name : names) {
        QVERIFY(store.SaveLayout(name));
    }
}

// The dialog's controls by their names.
struct SaveDialogControls {
    explicit SaveDialogControls(QWidget& dialog)
        : list(dialog.findChild<QListWidget*>("lstLayout"))
        , name(dialog.findChild<QLineEdit*>("txtLayName"))
        , save(dialog.findChild<QPushButton*>("cmdSave"))
        , erase(dialog.findChild<QPushButton*>("cmdDel"))
        , cancel(dialog.findChild<QPushButton*>("cmdCancel")) {}
    void Choose(int row) const {
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {},
                          list->visualItemRect(list->item(row)).center());
    }

    QListWidget* list;
    QLineEdit* name;
    QPushButton* save;
    QPushButton* erase;
    QPushButton* cancel;
};

int VisibleRows(const app::GraphWindow& window) {
    int rows = 0;
    for (const auto* row : window.findChildren<app::ItemRowControl*>()) {
        rows += row->isVisible() ? 1 : 0;
    }
    return rows;
}

QString TitleTime(const app::GraphWindow& window) {
    return window.findChild<QLabel*>("lblTm")->text();
}

} // namespace

class LayoutMenuTest : public QObject {
    Q_OBJECT

private slots:
    // The named layouts are listed, the first one chosen and its name in the box (20 characters
    // at most), a click copies another. Enter in an empty box does
    // nothing; a blank name is refused and the box gets the focus back; Enter saves and closes.
    void TheDialogListsCopiesAndSaves() {
        Desk desk;
        SaveLayouts(desk.layouts, {"Mugello", "Jerez wet"});
        LayoutSaveDialog dialog(desk.layouts, desk.sink, &desk.frame);
        dialog.show();
        QVERIFY(QTest::qWaitForWindowActive(&dialog));
        const SaveDialogControls controls(dialog);
        QCOMPARE(testing::ColumnTexts(*controls.list->model()),
                 (QStringList{"Mugello", "Jerez wet"}));
        QCOMPARE(controls.name->maxLength(), 20);
        QCOMPARE(controls.name->text(), QString("Mugello"));
        controls.Choose(1);
        QCOMPARE(controls.name->text(), QString("Jerez wet"));

        // The chosen row is drawn marked, the other one plain with its name in dark pixels.
        const QImage picture = dialog.grab().toImage();
        const QPoint viewport = controls.list->viewport()->mapTo(&dialog, QPoint());
        const QRect plain =
            controls.list->visualItemRect(controls.list->item(0)).translated(viewport);
        const QRect marked =
            controls.list->visualItemRect(controls.list->item(1)).translated(viewport);
        QVERIFY(picture.pixelColor(marked.right() - 2, marked.center().y()) !=
                picture.pixelColor(plain.right() - 2, plain.center().y()));
        int dark = 0;
        for (int x = plain.left(); x < plain.left() + 60; ++x) {
            dark += picture.pixelColor(x, plain.center().y()).lightness() < 100 ? 1 : 0;
        }
        QVERIFY(dark > 3);

        // F1 opens the manual as a window of the dialog, the one owner whose windows still take
        // input while the dialog is modal.
        QTest::keyClick(&dialog, Qt::Key_F1);
        QVERIFY(dialog.findChild<app::HelpWindow*>("HelpWindow") != nullptr);

        controls.name->clear();
        QTest::keyClick(controls.name, Qt::Key_Return);
        QVERIFY(desk.sink.messages.empty());
        controls.name->setText("   ");
        controls.save->setFocus();
        controls.save->click();
        QCOMPARE(desk.sink.messages.at(0).text, std::string(layout::LayoutNameMissingMessage));
        QVERIFY(controls.name->hasFocus());
        QVERIFY(dialog.isVisible());

        controls.name->setText(" Assen ");
        QTest::keyClick(controls.name, Qt::Key_Return);
        QCOMPARE(dialog.result(), int(QDialog::Accepted));
        QVERIFY(!dialog.isVisible());
        QCOMPARE(desk.layouts.GetLayoutNames(),
                 (std::vector<std::string>{"INITIALIZE", "Mugello", "Jerez wet", "Assen"}));
    }

    // The layouts stand under LayoutReappearance once a window is active; choosing one shows it
    // in the window (rows, time scale), Default brings the factory display back, and
    // LayoutSave adds an entry. A delete before Cancel leaves the menu in step as well.
    void TheLayoutEntriesFollowTheStoreAndDriveTheActiveWindow() {
        Desk desk;
        QVERIFY(!desk.frame.Action("mnuLayoutDef")->isEnabled());
        QVERIFY(!desk.frame.Action("mnuLaySave")->isEnabled());

        SaveLayouts(desk.layouts, {"Two items"});
        app::GraphWindow* window = desk.frame.OpenLoggingWindow(app::LoggingFileSource::Given,
                                                                desk.Run("RUN.rlg", 60000.0));
        QVERIFY(window != nullptr);
        QVERIFY(QTest::qWaitForWindowExposed(&desk.frame));
        QAction* first = desk.frame.Action("mnuLayout1");
        QCOMPARE(first->text(), QString("Two items"));
        QVERIFY(first->isVisible() && first->isEnabled());
        QVERIFY(!desk.frame.Action("mnuLayout2")->isVisible());

        const int factoryRows = VisibleRows(*window);
        QVERIFY(factoryRows > 2);
        QCOMPARE(TitleTime(*window), QString(" Time -00h00m10s000"));
        first->trigger();
        QCOMPARE(VisibleRows(*window), 2);
        // The cursor's column 0 is now 50 steps of 50 ms before the start.
        QCOMPARE(TitleTime(*window), QString(" Time -00h00m02s500"));
        QCOMPARE(window->State().Time, (graph::TimeScale{2, 1000, 50}));
        graph::DisplaySet last;
        desk.layouts.GetLayout(0, last);
        QCOMPARE(last.Items[logdata::Ne].Zoom, std::uint8_t{2});
        QCOMPARE(last.Time, window->State().Time);
        // Below the two rows the panel shows nothing but its own background.
        const QImage picture = window->grab().toImage();
        const int belowRows = graph::FirstPanelBottom + 3 * graph::ItemRowHeight;
        QCOMPARE(picture.pixelColor(60, belowRows), picture.pixelColor(60, belowRows + 40));

        desk.frame.Action("mnuLayoutDef")->trigger();
        QCOMPARE(VisibleRows(*window), factoryRows);
        QCOMPARE(TitleTime(*window), QString(" Time -00h00m10s000"));

        WhenModalOpens([](QWidget* dialog) {
            QCOMPARE(dialog->objectName(), QString("frmTLM0011"));
            const SaveDialogControls controls(*dialog);
            controls.name->setText("Dry & hot");
            controls.save->click();
        });
        desk.frame.Action("mnuLaySave")->trigger();
        QCOMPARE(desk.frame.Action("mnuLayout2")->text(), QString("Dry && hot"));
        QVERIFY(desk.frame.Action("mnuLayout2")->isVisible());
        QVERIFY(!desk.frame.Action("mnuLayout3")->isVisible());
        graph::DisplaySet saved;
        desk.layouts.GetLayout(2, saved);
        QCOMPARE(saved.Time, (graph::TimeScale{1, 10000, 100}));

        desk.sink.SetAnswer(shell::answers::Ok);
        WhenModalOpens([](QWidget* dialog) {
            const SaveDialogControls controls(*dialog);
            controls.erase->click();
            controls.cancel->click();
        });
        desk.frame.Action("mnuLaySave")->trigger();
        QCOMPARE(first->text(), QString("Dry && hot"));
        QVERIFY(!desk.frame.Action("mnuLayout2")->isVisible());
    }

    // The frame keeps the number of the window that was active when it was asked to close.
    void ClosingTheFrameKeepsTheActiveWindowsNumber() {
        Desk desk;
        desk.frame.close();
        QCOMPARE(desk.frame.ActiveWindowNumber(), -1);
        desk.frame.show();
        const fs::path run = desk.Run("RUN.rlg", 20000.0);
        app::GraphWindow* one = desk.frame.OpenLoggingWindow(app::LoggingFileSource::Given, run);
        desk.frame.OpenLoggingWindow(app::LoggingFileSource::Given, run);
        desk.frame.Area()->setActiveSubWindow(qobject_cast<QMdiSubWindow*>(one->parentWidget()));
        desk.frame.close();
        QCOMPARE(desk.frame.ActiveWindowNumber(), 1);
    }

    // The last window to close writes the toolbox as it stands into the layout file's head, not
    // as the file held it.
    void TheLastWindowKeepsTheToolBoxAsItStands() {
        Desk desk;
        desk.frame.SetToolBoxPlace({false, 1500, 3000});
        desk.frame.ShowToolBox();
        desk.frame.OpenLoggingWindow(app::LoggingFileSource::Given, desk.Run("RUN.rlg", 20000.0));
        desk.frame.Action("mnuFileClose")->trigger();
        QVERIFY(desk.frame.GraphWindows().isEmpty());
        layout::LayoutStore reread(desk.paths, desk.sink);
        QVERIFY(reread.LoadLayouts());
        QCOMPARE(reread.ToolBox(), (layout::ToolBoxPlace{true, 1500, 3000}));
    }
};

QTEST_MAIN(LayoutMenuTest)
#include "layout_menu_test.moc"
