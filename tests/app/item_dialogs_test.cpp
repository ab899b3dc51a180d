// The item commands of a graph window: the line dialog's palette and options, the grid dialog's
// refusals and limits, and the display-item dialog, driven through the View menu of a window
// opened from a generated run.

#include "graph/display_item_dialog.h"
#include "graph/line_kind_dialog.h"
#include "graph_desk.h"
#include "items/grid_limits.h"
#include "items/item_choice.h"
#include "widget_driving.h"

#include <QAction>
#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QtTest>

using namespace torvane;
using testing::Control;
using testing::Desk;
using testing::WhenModalOpens;

namespace {

void DragWithLeftButton(QWidget* widget, QPoint point) {
    QMouseEvent move(QEvent::MouseMove, point, widget->mapToGlobal(point), Qt::NoButton,
                     Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(widget, &move);
}

const graph::ItemDisplay& MainDisplay(const app::GraphWindow& window, int channel) {
    return window.State().Views[0].Display.Items[static_cast<std::size_t>(channel)];
}

void ExpectMessage(shell::RecordingSink& sink, std::string_view text, int icon) {
    QCOMPARE(sink.Messages.size(), std::size_t{1});
    QCOMPARE(sink.Messages[0].Text, std::string(text));
    QCOMPARE(sink.Messages[0].Icon, icon);
    sink.Messages.clear();
}

int VisibleRows(const app::GraphWindow& window) {
    int rows = 0;
    for (const auto* row : window.findChildren<app::ItemRowControl*>()) {
        rows += row->isVisible() ? 1 : 0;
    }
    return rows;
}

} // namespace

class ItemDialogsTest : public QObject {
    Q_OBJECT

private slots:
    // A press at x = 209 chooses the last cell of the top row, which then shows the frame while
    // the first cell shows its plain colour; a drag follows the cell only inside the picture.
    void ThePaletteFramesTheCellUnderTheMouse() {
        app::LineKindDialog dialog({1, 2, 1}, nullptr);
        dialog.show();
        QVERIFY(QTest::qWaitForWindowExposed(&dialog));
        auto* palette = Control<app::PaletteView>(dialog, "picColor");
        QTest::mouseClick(palette, Qt::LeftButton, {}, QPoint(209, 10));
        QCOMPARE(palette->Color(), 7);
        QImage picture = palette->grab().toImage();
        QCOMPARE(picture.pixelColor(6 * 30 + 1, 12), QColor(Qt::black));
        QCOMPARE(picture.pixelColor(1, 12), QColor(255, 0, 0));

        DragWithLeftButton(palette, QPoint(215, 30));
        QCOMPARE(palette->Color(), 7);
        DragWithLeftButton(palette, QPoint(35, 30));
        QCOMPARE(palette->Color(), 9);
        picture = palette->grab().toImage();
        QCOMPARE(picture.pixelColor(30 + 1, 25 + 12), QColor(Qt::black));
        QVERIFY(picture.pixelColor(6 * 30 + 1, 12) != QColor(Qt::black));

        QVERIFY(Control<QRadioButton>(dialog, "optLine1")->isChecked());
        QCOMPARE(Control<QRadioButton>(dialog, "optPt2")->text(), QString("6Pt"));
        Control<QRadioButton>(dialog, "optPt2")->click();
        Control<QPushButton>(dialog, "cmdOk")->click();
        QCOMPARE(dialog.result(), int(QDialog::Accepted));
        QCOMPARE(dialog.Kind(), (items::LineKind{9, 2, 3}));
    }

    // mnuGrid opens on Ne, the lowest channel, with its limits; the boxes drop what is no digit
    // and a second point; OK refuses in the order of its checks and keeps the dialog open; the
    // default button and another item refill the boxes; accepted limits reach the window and the
    // last-used layout in axis units.
    void TheGridDialogRefusesWrongLimitsAndStoresGoodOnes() {
        Desk desk;
        app::GraphWindow* window = desk.Frame.OpenLoggingWindow(app::LoggingFileSource::Given,
                                                                desk.Run("RUN.rlg", 20000.0));
        QVERIFY(window != nullptr);
        QVERIFY(desk.Frame.Action("mnuGrid")->isEnabled());
        bool checked = false;
        WhenModalOpens([&](QWidget* dialog) {
            QCOMPARE(dialog->objectName(), QString("frmTLM0014"));
            auto* item = Control<QComboBox>(*dialog, "cmbItem");
            auto* max = Control<QLineEdit>(*dialog, "txtMax");
            auto* min = Control<QLineEdit>(*dialog, "txtMin");
            auto* ok = Control<QPushButton>(*dialog, "cmdOk");
            QCOMPARE(item->currentText(), QString("Ne"));
            QCOMPARE(max->text(), QString("15000"));
            QCOMPARE(min->text(), QString("5000"));

            max->clear();
            ok->click();
            ExpectMessage(desk.Sink, items::InputValueText, shell::icons::Warning);
            QVERIFY(dialog->isVisible());
            QTest::keyClicks(max, "12a.5.-");
            QCOMPARE(max->text(), QString("12.5"));
            min->setText("12.5");
            ok->click();
            ExpectMessage(desk.Sink, items::IncorrectDataText, shell::icons::Information);
            max->setText("41000");
            min->setText("0");
            ok->click();
            ExpectMessage(desk.Sink, items::IncorrectDataText, shell::icons::Information);
            min->setText(".");
            ok->click();
            ExpectMessage(desk.Sink, items::IncorrectDataText, shell::icons::Warning);

            Control<QPushButton>(*dialog, "cmdDef")->click();
            QCOMPARE(max->text(), QString("15000"));
            item->setCurrentText("TH");
            QCOMPARE(max->text(), QString("100"));
            max->setText("80.5");
            min->setText("2");
            ok->click();
            QVERIFY(!dialog->isVisible());
            checked = true;
        });
        desk.Frame.Action("mnuGrid")->trigger();
        QVERIFY(checked);
        QCOMPARE(MainDisplay(*window, logdata::TH).Max, 805);
        QCOMPARE(MainDisplay(*window, logdata::TH).Min, 20);
        graph::DisplaySet last;
        desk.Layouts.GetLayout(0, last);
        QCOMPARE(last.Items[logdata::TH].Max, 805);
    }

    // mnuDisp: nothing marked is refused; the marked item alone stays on show in the panel.
    // mnuLine and mnuMove are offered with a window, mnuAlign only with a second file.
    void TheDisplayDialogChoosesTheRows() {
        Desk desk;
        app::GraphWindow* window = desk.Frame.OpenLoggingWindow(app::LoggingFileSource::Given,
                                                                desk.Run("RUN.rlg", 20000.0));
        QVERIFY(window != nullptr);
        QVERIFY(desk.Frame.Action("mnuLine")->isEnabled());
        QVERIFY(desk.Frame.Action("mnuMove")->isEnabled());
        QVERIFY(!desk.Frame.Action("mnuAlign")->isEnabled());
        QVERIFY(VisibleRows(*window) > 2);
        WhenModalOpens([&](QWidget* dialog) {
            QCOMPARE(dialog->objectName(), QString("frmTLM0012"));
            auto* list = Control<QListWidget>(*dialog, "lstItem");
            Control<QPushButton>(*dialog, "cmbAll1")->click();
            Control<QPushButton>(*dialog, "cmdOk")->click();
            ExpectMessage(desk.Sink, items::NoItemChosenText, shell::icons::Warning);
            const QList<QListWidgetItem*> th = list->findItems("TH", Qt::MatchExactly);
            QCOMPARE(th.size(), 1);
            QTest::mouseClick(list->viewport(), Qt::LeftButton, {},
                              list->visualItemRect(th.front()).center());
            QCOMPARE(th.front()->checkState(), Qt::Checked);
            Control<QPushButton>(*dialog, "cmdOk")->click();
        });
        desk.Frame.Action("mnuDisp")->trigger();
        QCOMPARE(VisibleRows(*window), 1);
        QCOMPARE(MainDisplay(*window, logdata::TH).View, std::uint8_t{1});
        QCOMPARE(MainDisplay(*window, logdata::Ne).View, std::uint8_t{0});
    }
};

QTEST_MAIN(ItemDialogsTest)
#include "item_dialogs_test.moc"
