// The lap list (frmTLM0090) as drawn, and mnuLap driving it over generated runs: it follows the
// active window and layer, and a click on a lap moves the active layer.

#include "graph/lap_list_window.h"
#include "graph_desk.h"
#include "widget_driving.h"

#include <QAction>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QTableWidget>
#include <QtTest>

#include <filesystem>

using namespace torvane;
using app::GraphWindow;
using app::LapListWindow;
using testing::Desk;

namespace {

logdata::LapInfo LapsEvery(double lapMs, std::size_t marks) {
    logdata::LapInfo lap;
    lap.LapTime.clear();
    for (std::size_t i = 0; i < marks; ++i) {
        lap.LapTime.push_back(5000.0 + lapMs * static_cast<double>(i));
    }
    lap.BestLap = lapMs;
    return lap;
}

QTableWidget* GridOf(const QWidget& list) {
    return list.findChild<QTableWidget*>("grdLap");
}

// The text pixels of a cell as drawn: how many are red and how many black.
struct Ink {
    int Red = 0;
    int Black = 0;
};
Ink InkOf(QTableWidget& grid, int row, int column) {
    const QImage image = grid.viewport()->grab().toImage();
    const QRect cell = grid.visualRect(grid.model()->index(row, column)) & image.rect();
    Ink ink;
    for (int y = cell.top(); y <= cell.bottom(); ++y) {
        for (int x = cell.left(); x <= cell.right(); ++x) {
            const QColor pixel = image.pixelColor(x, y);
            const bool dark = pixel.green() < 90 && pixel.blue() < 90;
            ink.Red += dark && pixel.red() > 160 ? 1 : 0;
            ink.Black += dark && pixel.red() < 90 ? 1 : 0;
        }
    }
    return ink;
}

void ClickRow(QTableWidget& grid, int row) {
    const QRect cell = grid.visualRect(grid.model()->index(row, 1));
    QTest::mouseClick(grid.viewport(), Qt::LeftButton, {}, cell.center());
}

LapListWindow* LapList(const Desk& desk) {
    return desk.Frame.findChild<LapListWindow*>("frmTLM0090");
}

void Activate(Desk& desk, GraphWindow* window) {
    desk.Frame.Area()->setActiveSubWindow(qobject_cast<QMdiSubWindow*>(window->parentWidget()));
}

} // namespace

class LapListTest : public QObject {
    Q_OBJECT

private slots:
    // The laps as drawn: the length without hours, the best ones red and the others black, in
    // columns of 500 and 1500 twips; the grid takes its height from the rows.
    void TheListDrawsTheBestLapsInRed() {
        LapListWindow list(nullptr);
        list.show();
        QVERIFY(QTest::qWaitForWindowExposed(&list));
        QTableWidget* grid = GridOf(list);
        QCOMPARE(grid->columnWidth(0), 33);
        QCOMPARE(grid->columnWidth(1), 100);

        // Laps 1 and 3 are both the best; lap 2 runs over an hour.
        logdata::LapInfo lap;
        lap.LapTime = {5000.0, 95000.0, 3820500.0, 3910500.0};
        lap.BestLap = 90000.0;
        list.DispLapTime(lap, "MUGELLO");
        QCOMPARE(list.windowTitle(), QString("MUGELLO"));
        QCOMPARE(list.findChild<QLabel*>("lblTime")->text(), QString("01m30s000"));
        QCOMPARE(testing::ColumnTexts(*grid->model()), (QStringList{"0", "1", "2", "3"}));
        QCOMPARE(testing::ColumnTexts(*grid->model(), 1),
                 (QStringList{"---------------", "01m30s000", "62m05s500", "01m30s000"}));
        for (int row = 0; row < 4; ++row) {
            for (int column = 0; column < 2; ++column) {
                const Ink ink = InkOf(*grid, row, column);
                const bool best = row == 1 || row == 3;
                QVERIFY2((best ? ink.Red : ink.Black) > 5 && (best ? ink.Black : ink.Red) == 0,
                         qPrintable(QString("row %1 column %2").arg(row).arg(column)));
            }
        }
        QCOMPARE(grid->height(), 4 * 16 + 5);

        list.DispLapTime(LapsEvery(60000.0, 300), "LONG");
        QCOMPARE(grid->rowCount(), 255);
        QCOMPARE(grid->height(), 325);
    }

    // mnuLap needs a window; the list shows the active window's active layer and follows
    // another window and another layer. A run too short for a lap shows the start row only.
    void TheListFollowsTheActiveWindowAndLayer() {
        Desk desk;
        QAction* menu = desk.Frame.Action("mnuLap");
        QVERIFY(!menu->isEnabled());
        GraphWindow* first = desk.Frame.OpenLoggingWindow(app::LoggingFileSource::Given,
                                                          desk.Run("FIRST.rlg", 600000.0));
        QVERIFY(menu->isEnabled() && !menu->isChecked());
        menu->trigger();
        QVERIFY(menu->isChecked());
        LapListWindow* list = LapList(desk);
        QVERIFY(list != nullptr && list->isVisible());
        QCOMPARE(list->windowTitle(), QString("FIRST"));
        QTableWidget* grid = GridOf(*list);
        QVERIFY(grid->rowCount() >= 5);
        // A window that works on the logger alone has the list out of its way while it runs.
        bool listHidden = false;
        desk.LoggerWindowRan = [&] {
            listHidden = !list->isVisible();
        };
        desk.Frame.Action("mnuMoniter")->trigger();
        QVERIFY(listHidden);
        QVERIFY(list->isVisible());
        QCOMPARE(grid->rowCount(), static_cast<int>(first->State().Layers.Lap[0].LapTime.size()));

        GraphWindow* second = desk.Frame.OpenLoggingWindow(app::LoggingFileSource::Given,
                                                           desk.Run("SHORT.rlg", 60000.0, 2));
        QCOMPARE(list->windowTitle(), QString("SHORT"));
        QCOMPARE(testing::ColumnTexts(*grid->model(), 1), QStringList{"---------------"});
        Activate(desk, first);
        QCOMPARE(list->windowTitle(), QString("FIRST"));

        desk.Choices = {desk.Run("OVERLAY.rlg", 400000.0, 3)};
        desk.Frame.Action("mnuOpenLayer")->trigger();
        QTest::mouseClick(first->findChild<QWidget*>("chkFile1"), Qt::LeftButton);
        QCOMPARE(list->windowTitle(), QString("OVERLAY"));
        // Closing the active layer makes layer 0 active again.
        desk.Frame.Action("mnuCloseLayer")->trigger();
        QCOMPARE(list->windowTitle(), QString("FIRST"));
        Activate(desk, second);
        QCOMPARE(list->windowTitle(), QString("SHORT"));
    }

    // A click on lap n puts the start of that lap at the left edge of the active layer, leaving
    // the other layer; the start row goes back to the start of the file.
    void AClickOnALapMovesTheActiveLayerToItsStart() {
        Desk desk;
        GraphWindow* window = desk.Frame.OpenLoggingWindow(app::LoggingFileSource::Given,
                                                           desk.Run("MAIN.rlg", 600000.0));
        desk.Choices = {desk.Run("OTHER.rlg", 600000.0, 2)};
        desk.Frame.Action("mnuOpenLayer")->trigger();
        desk.Frame.Action("mnuLap")->trigger();
        QTableWidget* grid = GridOf(*LapList(desk));
        const logdata::LayerSet& layers = window->State().Layers;
        auto* title = window->findChild<QLabel*>("lblTm");
        const QString before = title->text();

        ClickRow(*grid, 3);
        QCOMPARE(layers.Layer[0].TimeOffset, layers.Lap[0].LapTime[2]);
        QCOMPARE(layers.Layer[1].TimeOffset, 0.0);
        QCOMPARE(window->State().SingleFileState, graph::SingleFileState::Cleared);
        QVERIFY(title->text() != before);

        ClickRow(*grid, 0);
        QCOMPARE(layers.Layer[0].TimeOffset, 0.0);

        // A picture that cannot be drawn stops the jump: it is told, and the read-out stays.
        const QString atStart = title->text();
        std::filesystem::remove(layers.StreamPath(0, "Ne"));
        ClickRow(*grid, 3);
        QCOMPARE(desk.Sink.Messages.size(), std::size_t{1});
        QVERIFY(desk.Sink.Messages[0].Text.starts_with("Error(53)"));
        QCOMPARE(title->text(), atStart);
    }
};

QTEST_MAIN(LapListTest)
#include "lap_list_test.moc"
