// The histogram window (frmTLM0040) and its range dialog (frmTLM0041) as drawn: the bars at
// their pixels, the read-out under a held button, the dialog's messages, and mnuHisto opening
// windows over the active layer's streams.

#include "graph_desk.h"
#include "support/temp_folder.h"
#include "views/histogram_range.h"
#include "views/histogram_widget.h"
#include "widget_driving.h"

#include <QAction>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QtTest>

using namespace torvane;
using app::HistogramWindow;

namespace {

namespace fs = std::filesystem;

constexpr QRgb Black = 0xFF000000;
constexpr QRgb Blue = 0xFF0080FF;

QRgb PixelAt(const HistogramWindow& window, int x, int y) {
    return window.findChild<QLabel*>("picHist")->pixmap().toImage().pixel(x, y);
}

std::size_t CopiesIn(const fs::path& folder) {
    std::size_t count = 0;
    for (const auto& entry : fs::directory_iterator(folder)) {
        count += entry.path().filename().string().starts_with("HS") ? 1 : 0;
    }
    return count;
}

} // namespace

class HistogramWindowTest : public QObject {
    Q_OBJECT

    // A window over streams written here: every throttle sample closed, Ne at 3000 r/min.
    struct Opened {
        testing::TempFolder folder;
        shell::RecordingSink sink;
        HistogramWindow window{sink, nullptr};
        Opened() {
            testing::WriteWords16(folder / "TH", std::vector<std::int16_t>(300, 25));
            testing::WriteWords16(folder / "Ne", std::vector<std::int16_t>(300, 150));
            const bool loaded =
                window.Load({folder.Path(), folder / "Ne", folder / "TH", {900, 100}});
            if (!loaded) {
                qFatal("the histogram did not load");
            }
            window.show();
        }
    };

private slots:
    void BarsStandAtTheirPixels() {
        Opened opened;
        const HistogramWindow& window = opened.window;
        QVERIFY(window.findChild<QAction*>("mnuTh")->isChecked());
        QVERIFY(window.findChild<QAction*>("mnuPrint")->isEnabled());
        // Bar 0 holds 100 %: framed from column 59 to 75, from the scale's top row 58 down.
        QCOMPARE(PixelAt(window, 59, 58), Black);
        QCOMPARE(PixelAt(window, 67, 58), Black);
        QCOMPARE(PixelAt(window, 67, 59), Blue);
        QCOMPARE(PixelAt(window, 74, 361), Blue);
        QCOMPARE(PixelAt(window, 75, 200), Black);
        QCOMPARE(PixelAt(window, 67, 57) == Blue, false);
        // An empty bar is its frame's one row on the zero line.
        QCOMPARE(PixelAt(window, 80, 362), Black);
        QCOMPARE(PixelAt(window, 80, 361) == Black || PixelAt(window, 80, 361) == Blue, false);
    }

    void HeldButtonReadsTheBarUnderIt() {
        Opened opened;
        QLabel* picture = opened.window.findChild<QLabel*>("picHist");
        auto* data = opened.window.findChild<QLabel*>("lblData");
        QTest::mousePress(picture, Qt::LeftButton, {}, QPoint(65, 300));
        QVERIFY(data->isVisible());
        QCOMPARE(data->text(), QString("TH : 0 - 4\n100.00%"));
        QCOMPARE(data->x() + data->width() / 2, 65);
        QCOMPARE(data->geometry().bottom() + 1, 300);
        // A border column gives nothing: the last read-out stays.
        QMouseEvent border(QEvent::MouseMove, QPointF(76, 362),
                           picture->mapToGlobal(QPointF(76, 362)), Qt::NoButton, Qt::LeftButton,
                           {});
        QApplication::sendEvent(picture, &border);
        QCOMPARE(data->text(), QString("TH : 0 - 4\n100.00%"));
        QMouseEvent next(QEvent::MouseMove, QPointF(77, 362),
                         picture->mapToGlobal(QPointF(77, 362)), Qt::NoButton, Qt::LeftButton, {});
        QApplication::sendEvent(picture, &next);
        QCOMPARE(data->text(), QString("TH : 5 - 9\n0.00%"));
        QTest::mouseRelease(picture, Qt::LeftButton, {}, QPoint(77, 362));
        QVERIFY(!data->isVisible());
        QVERIFY(data->text().isEmpty());
    }

    void RangeDialogRefusesThenShowsTheNeView() {
        Opened opened;
        testing::WhenModalOpens([](QWidget* dialog) {
            QCOMPARE(dialog->objectName(), QString("frmTLM0041"));
            dialog->findChild<QLineEdit*>("txtDataStart")->setText("100");
            dialog->findChild<QLineEdit*>("txtDataEnd")->setText("119");
            dialog->findChild<QPushButton*>("cmdExec")->click();
            QVERIFY(dialog->isVisible());
            dialog->findChild<QLineEdit*>("txtDataEnd")->setText("25000");
            dialog->findChild<QPushButton*>("cmdExec")->click();
        });
        opened.window.findChild<QAction*>("mnuNe")->trigger();
        QCOMPARE(opened.sink.Messages.size(), std::size_t{1});
        QCOMPARE(opened.sink.Messages[0].Text, std::string(views::NeRangeTooNarrow));
        QCOMPARE(opened.sink.Messages[0].Icon, shell::icons::Information);
        QVERIFY(opened.window.findChild<QAction*>("mnuNe")->isChecked());
        QVERIFY(!opened.window.findChild<QAction*>("mnuTh")->isChecked());
        QCOMPARE(opened.window.State().Range, (views::NeRange{100, 20000}));
        // 3000 r/min is bar 2 of 100 to 20000 in bands of 995: a full bar from row 58.
        QCOMPARE(PixelAt(opened.window, views::histogram_geometry::BarLeft(2) + 5, 60), Blue);
    }

    void MnuHistoOpensWindowsOfTheActiveLayerAndCloseRemovesTheirCopies() {
        testing::Desk desk;
        QVERIFY(desk.Frame.OpenLoggingWindow(app::LoggingFileSource::Given,
                                             desk.Run("run.rlg", 20000)) != nullptr);
        QAction* histo = desk.Frame.Action("mnuHisto");
        QVERIFY(histo->isEnabled());
        histo->trigger();
        histo->trigger();
        const auto windows = desk.Frame.findChildren<HistogramWindow*>();
        QCOMPARE(windows.size(), 2);
        QVERIFY(windows[0]->isVisible());
        QCOMPARE(windows[0]->windowTitle(), QString("HISTOGRAM"));
        QCOMPARE(CopiesIn(desk.Paths.TempDir()), std::size_t{4});
        windows[0]->close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCOMPARE(CopiesIn(desk.Paths.TempDir()), std::size_t{2});
        QVERIFY(desk.Sink.Messages.empty());
    }
};

QTEST_MAIN(HistogramWindowTest)
#include "histogram_window_test.moc"
