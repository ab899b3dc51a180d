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
        : List(dialog.findChild<QListWidget*>("lstLayout"))
        , Name(dialog.findChild<QLineEdit*>("txtLayName"))
        , Save(dialog.findChild<QPushButton*>("cmdSave"))
        , Erase(dialog.findChild<QPushButton*>("cmdDel"))
        , Cancel(dialog.findChild<QPushButton*>("cmdCancel")) {}
    void Choose(int row) const {
        QTest::mouseClick(List->viewport(), Qt::LeftButton, {},
                          List->visualItemRect(List->item(row)).center());
    }

    QListWidget* List;
    QLineEdit* Name;
    QPushButton* Save;
    QPushButton* Erase;
    QPushButton* Cancel;
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
        SaveLayouts(desk.Layouts, {"Mugello", "Jerez wet"});
        LayoutSaveDialog dialog(desk.Layouts, desk.Sink, &desk.Frame);
        dialog.show();
        QVERIFY(QTest::qWaitForWindowActive(&dialog));
        const SaveDialogControls controls(dialog);
        QCOMPARE(testing::ColumnTexts(*controls.List->model()),
                 (QStringList{"Mugello", "Jerez wet"}));
        QCOMPARE(controls.Name->maxLength(), 20);
        QCOMPARE(controls.Name->text(), QString("Mugello"));
        controls.Choose(1);
        QCOMPARE(controls.Name->text(), QString("Jerez wet"));

        // The chosen row is drawn marked, the other one plain with its name in dark pixels.
        const QImage picture = dialog.grab().toImage();
        const QPoint viewport = controls.List->viewport()->mapTo(&dialog, QPoint());
        const QRect plain =
            controls.List->visualItemRect(controls.List->item(0)).translated(viewport);
        const QRect marked =
            controls.List->visualItemRect(controls.List->item(1)).translated(viewport);
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

        controls.Name->clear();
        QTest::keyClick(controls.Name, Qt::Key_Return);
        QVERIFY(desk.Sink.Messages.empty());
        controls.Name->setText("   ");
        controls.Save->setFocus();
        controls.Save->click();
        QCOMPARE(desk.Sink.Messages.at(0).Text, std::string(layout::LayoutNameMissingMessage));
        QVERIFY(controls.Name->hasFocus());
        QVERIFY(dialog.isVisible());

        controls.Name->setText(" Assen ");
        QTest::keyClick(controls.Name, Qt::Key_Return);
        QCOMPARE(dialog.result(), int(QDialog::Accepted));
        QVERIFY(!dialog.isVisible());
        QCOMPARE(desk.Layouts.GetLayoutNames(),
                 (std::vector<std::string>{"INITIALIZE", "Mugello", "Jerez wet", "Assen"}));
    }

    // The layouts stand under LayoutReappearance once a window is active; choosing one shows it
    // in the window (rows, time scale), Default brings the factory display back, and
    // LayoutSave adds an entry. A delete before Cancel leaves the menu in step as well.
    void TheLayoutEntriesFollowTheStoreAndDriveTheActiveWindow() {
        Desk desk;
        QVERIFY(!desk.Frame.Action("mnuLayoutDef")->isEnabled());
        QVERIFY(!desk.Frame.Action("mnuLaySave")->isEnabled());

        SaveLayouts(desk.Layouts, {"Two items"});
        app::GraphWindow* window = desk.Frame.OpenLoggingWindow(app::LoggingFileSource::Given,
                                                                desk.Run("RUN.rlg", 60000.0));
        QVERIFY(window != nullptr);
        QVERIFY(QTest::qWaitForWindowExposed(&desk.Frame));
        QAction* first = desk.Frame.Action("mnuLayout1");
        QCOMPARE(first->text(), QString("Two items"));
        QVERIFY(first->isVisible() && first->isEnabled());
        QVERIFY(!desk.Frame.Action("mnuLayout2")->isVisible());

        const int factoryRows = VisibleRows(*window);
        QVERIFY(factoryRows > 2);
        QCOMPARE(TitleTime(*window), QString(" Time -00h00m10s000"));
        first->trigger();
        QCOMPARE(VisibleRows(*window), 2);
        // The cursor's column 0 is now 50 steps of 50 ms before the start.
        QCOMPARE(TitleTime(*window), QString(" Time -00h00m02s500"));
        QCOMPARE(window->State().Time, (graph::TimeScale{2, 1000, 50}));
        graph::DisplaySet last;
        desk.Layouts.GetLayout(0, last);
        QCOMPARE(last.Items[logdata::Ne].Zoom, std::uint8_t{2});
        QCOMPARE(last.Time, window->State().Time);
        // Below the two rows the panel shows nothing but its own background.
        const QImage picture = window->grab().toImage();
        const int belowRows = graph::FirstPanelBottom + 3 * graph::ItemRowHeight;
        QCOMPARE(picture.pixelColor(60, belowRows), picture.pixelColor(60, belowRows + 40));

        desk.Frame.Action("mnuLayoutDef")->trigger();
        QCOMPARE(VisibleRows(*window), factoryRows);
        QCOMPARE(TitleTime(*window), QString(" Time -00h00m10s000"));

        WhenModalOpens([](QWidget* dialog) {
            QCOMPARE(dialog->objectName(), QString("frmTLM0011"));
            const SaveDialogControls controls(*dialog);
            controls.Name->setText("Dry & hot");
            controls.Save->click();
        });
        desk.Frame.Action("mnuLaySave")->trigger();
        QCOMPARE(desk.Frame.Action("mnuLayout2")->text(), QString("Dry && hot"));
        QVERIFY(desk.Frame.Action("mnuLayout2")->isVisible());
        QVERIFY(!desk.Frame.Action("mnuLayout3")->isVisible());
        graph::DisplaySet saved;
        desk.Layouts.GetLayout(2, saved);
        QCOMPARE(saved.Time, (graph::TimeScale{1, 10000, 100}));

        desk.Sink.SetAnswer(shell::answers::Ok);
        WhenModalOpens([](QWidget* dialog) {
            const SaveDialogControls controls(*dialog);
            controls.Erase->click();
            controls.Cancel->click();
        });
        desk.Frame.Action("mnuLaySave")->trigger();
        QCOMPARE(first->text(), QString("Dry && hot"));
        QVERIFY(!desk.Frame.Action("mnuLayout2")->isVisible());
    }

    // The frame keeps the number of the window that was active when it was asked to close.
    void ClosingTheFrameKeepsTheActiveWindowsNumber() {
        Desk desk;
        desk.Frame.close();
        QCOMPARE(desk.Frame.ActiveWindowNumber(), -1);
        desk.Frame.show();
        const fs::path run = desk.Run("RUN.rlg", 20000.0);
        app::GraphWindow* one = desk.Frame.OpenLoggingWindow(app::LoggingFileSource::Given, run);
        desk.Frame.OpenLoggingWindow(app::LoggingFileSource::Given, run);
        desk.Frame.Area()->setActiveSubWindow(qobject_cast<QMdiSubWindow*>(one->parentWidget()));
        desk.Frame.close();
        QCOMPARE(desk.Frame.ActiveWindowNumber(), 1);
    }

    // The last window to close writes the toolbox as it stands into the layout file's head, not
    // as the file held it.
    void TheLastWindowKeepsTheToolBoxAsItStands() {
        Desk desk;
        desk.Frame.SetToolBoxPlace({false, 1500, 3000});
        desk.Frame.ShowToolBox();
        desk.Frame.OpenLoggingWindow(app::LoggingFileSource::Given, desk.Run("RUN.rlg", 20000.0));
        desk.Frame.Action("mnuFileClose")->trigger();
        QVERIFY(desk.Frame.GraphWindows().isEmpty());
        layout::LayoutStore reread(desk.Paths, desk.Sink);
        QVERIFY(reread.LoadLayouts());
        QCOMPARE(reread.ToolBox(), (layout::ToolBoxPlace{true, 1500, 3000}));
    }
};

QTEST_MAIN(LayoutMenuTest)
#include "layout_menu_test.moc"
