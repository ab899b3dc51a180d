// The detonation map window: opened from the command line and a later start, from the frame's
// entries, read out by a press, saved and closed.

#include "graph_desk.h"
#include "pdf_printing.h"
#include "render/detonation_picture.h"
#include "shell/desktop.h"
#include "views/detonation_windows.h"
#include "views/dto_file.h"

#include <QAction>
#include <QLabel>
#include <QMimeData>
#include <QtTest>

#include <fstream>

using namespace torvane;
using app::DetonationWindow;

namespace {

// Map 1: 12 counts at speed row 3, throttle column 4, and 50 at row 19, column 19.
views::DetonationBytes SampleMap(bool secondMap) {
    views::DetonationContent content;
    content.Maps[0][3 * 20 + 4] = 12;
    content.Maps[0][19 * 20 + 19] = 50;
    content.Maps[1][0] = 3;
    content.RunTime = 600;
    content.RunDistance = 31;
    content.Present = {true, secondMap};
    return views::EncodeDetonation(content);
}

void WriteMap(const std::filesystem::path& file, const views::DetonationBytes& bytes) {
    std::ofstream out(file, std::ios::binary);
    out.write(reinterpret_cast<const char*>(bytes.data()),
              static_cast<std::streamsize>(bytes.size()));
}

QString LabelText(const QWidget* window, const char* name) {
    return window->findChild<QLabel*>(name)->text();
}

QRgb CellPixel(const DetonationWindow* window, int map, int a, int b) {
    const views::CellPlace cell = views::CellPlaceOf(map, a, b);
    return window->Picture().pixel(cell.X + 3, cell.Y + 3) & 0xFFFFFF;
}

} // namespace

class DetonationWindowTest : public QObject {
    Q_OBJECT

private slots:
    // A .dto path on the command line opens a map window; a later start's "LOAD" another.
    void ADtoOnTheCommandLineOpensAMapWindow() {
        testing::TempFolder home;
        const shell::AppPaths paths(home.Path());
        QVERIFY(paths.MakeFolders());
        const auto file = paths.DataDir() / "Mugello day 2.DTO";
        WriteMap(file, SampleMap(true));

        app::Desktop desktop(paths);
        desktop.Start(QString::fromStdString(file.string()));
        QCOMPARE(desktop.Frame().DetonationWindows().size(), 1);
        const DetonationWindow* window = desktop.Frame().DetonationWindows().front();
        QCOMPARE(window->objectName(), QString("frmTLM0030"));
        QCOMPARE(window->windowTitle(), QString("DETONATION MAP"));
        QVERIFY(window->isVisible());
        QCOMPARE(LabelText(window, "lblTotal1"), QString("62"));
        QCOMPARE(LabelText(window, "lblTK1"), QString("2.00"));
        QCOMPARE(LabelText(window, "lblRunDis"), QString("31"));
        QCOMPARE(CellPixel(window, 0, 3, 4), QRgb(0x0084FF));
        QCOMPARE(CellPixel(window, 0, 19, 19), QRgb(0x000000));
        QCOMPARE(CellPixel(window, 0, 0, 0), QRgb(0xFFFFFF));

        desktop.LinkExecute("LOAD" + QString::fromStdString(file.string()));
        QCOMPARE(desktop.Frame().DetonationWindows().size(), 2);
        desktop.Frame().close();
        QVERIFY(std::filesystem::exists(file)); // the operator's file stays
    }

    // A press reads the cell under it; a map that was not recorded is covered and left out.
    void APressReadsTheCellAndAMissingMapIsCovered() {
        testing::TempFolder folder;
        WriteMap(folder / "map.dto", SampleMap(false));
        shell::RecordingSink sink;
        std::optional<std::filesystem::path> saveAs = folder / "saved.dto";
        DetonationWindow window(sink, [&](QWidget*) { return saveAs; });
        QVERIFY(window.Load(views::DetonationSource::File, folder / "map.dto"));
        window.show();
        QVERIFY(window.findChild<QWidget*>("ShpNo2")->isVisible());
        QVERIFY(window.findChild<QWidget*>("ShpMap2")->isVisible());
        QVERIFY(!window.findChild<QWidget*>("ShpNo1")->isVisible());
        QCOMPARE(LabelText(&window, "lblTotal2"), QString());

        // Printed whole (nothing of a window of its own is cut) at zoom 100 into a PDF page.
        {
            testing::PdfPrinting printing(sink);
            printing.Path = folder / "map.pdf";
            testing::AnswerPrintDialog("100");
            window.findChild<QAction*>("mnuPrint")->trigger();
            QVERIFY(sink.Messages.empty());
            const QRect printed = testing::InkOf(testing::RenderPage(folder / "map.pdf"));
            // The whole window at its own size: resampling may smudge its lightest edge rows.
            const QSize shown = app::CaptureWindow(window, -1).size();
            QVERIFY(std::abs(printed.width() - shown.width()) <= 3);
            QVERIFY(std::abs(printed.height() - shown.height()) <= 3);
        }

        auto* picture = window.findChild<QLabel*>("picDeto");
        const views::CellPlace cell = views::CellPlaceOf(0, 3, 4);
        QTest::mouseClick(picture, Qt::RightButton, {}, QPoint(cell.X + 3, cell.Y + 3));
        QCOMPARE(LabelText(&window, "lblPart1"), QString());
        QTest::mouseClick(picture, Qt::LeftButton, {}, QPoint(cell.X + 3, cell.Y + 3));
        QCOMPARE(LabelText(&window, "lblPart1"), QString("12"));
        QCOMPARE(LabelText(&window, "lblPart2"), QString());
        QCOMPARE(LabelText(&window, "lblNe"), QString("6500-7000"));
        QCOMPARE(LabelText(&window, "lblTh"), QString("20-25"));
        // The covered map reads nothing: the labels stay.
        const views::CellPlace covered = views::CellPlaceOf(1, 0, 0);
        QTest::mouseClick(picture, Qt::LeftButton, {}, QPoint(covered.X + 3, covered.Y + 3));
        QCOMPARE(LabelText(&window, "lblNe"), QString("6500-7000"));

        window.Save();
        QCOMPARE(std::filesystem::file_size(folder / "saved.dto"), 807u);
        saveAs.reset(); // cancelled: nothing written
        std::filesystem::remove(folder / "saved.dto");
        window.Save();
        QVERIFY(!std::filesystem::exists(folder / "saved.dto"));
        QVERIFY(sink.Messages.empty());
    }

    // The frame's entries: a map of the active layer (only with a run open), a chosen file,
    // each refused with the program's message where it must be.
    void TheFramesEntriesOpenMapsOfALayerAndOfAChosenFile() {
        testing::Desk desk;
        std::deque<std::filesystem::path> chosen;
        app::DetonationContext context{
            .TempDir = desk.Paths.TempDir(),
            .Sink = desk.Sink,
            .Memory = desk.Memory,
            .Driver = nullptr,
            .ChooseDetonationFile = [&](QWidget*) -> std::optional<std::filesystem::path> {
                if (chosen.empty()) {
                    return std::nullopt;
                }
                auto next = chosen.front();
                chosen.pop_front();
                return next;
            },
            .ChooseDetonationSave = {}};
        desk.Frame.AttachDetonation(context);
        QVERIFY(!desk.Frame.Action("mnuDspDeto1")->isEnabled()); // no logger here
        QVERIFY(!desk.Frame.Action("mnuDspDeto2")->isEnabled()); // no run open
        QVERIFY(desk.Frame.OpenLoggingWindow(app::LoggingFileSource::Given,
                                             desk.Run("run.rlg", 120000.0, 3)));
        QVERIFY(desk.Frame.Action("mnuDspDeto2")->isEnabled());

        desk.Frame.Action("mnuDspDeto2")->trigger();
        QCOMPARE(desk.Frame.DetonationWindows().size(), 1);
        DetonationWindow* layerMap = desk.Frame.DetonationWindows().front();
        QCOMPARE(layerMap->State().Source, views::DetonationSource::Layer);
        QCOMPARE(layerMap->State().RunTime, 120);
        const auto workFile = layerMap->State().Path;
        QCOMPARE(workFile.filename().string(), std::string("DETO0001.dto"));
        layerMap->close(); // its work file goes with it
        QTRY_VERIFY(!std::filesystem::exists(workFile));

        WriteMap(desk.Paths.DataDir() / "bad.dto", {});
        std::filesystem::resize_file(desk.Paths.DataDir() / "bad.dto", 806);
        chosen = {desk.Paths.DataDir() / "bad.dto"};
        desk.Frame.Action("mnuDspDeto3")->trigger();
        QCOMPARE(desk.Sink.Messages.back().Text, std::string("Error detonation map data."));
        desk.Frame.Action("mnuDspDeto3")->trigger(); // cancelled
        desk.Memory.usedPercent = 80;
        desk.Frame.Action("mnuDspDeto2")->trigger();
        QCOMPARE(desk.Sink.Messages.back().Text,
                 std::string("A memory is extremely insufficient,Please end application."));
        QTRY_COMPARE(desk.Frame.DetonationWindows().size(), 0);

        // A dropped map opens as a handed-over one does, without the memory check.
        WriteMap(desk.Paths.DataDir() / "dropped.dto", SampleMap(true));
        QMimeData dropped;
        dropped.setUrls({QUrl::fromLocalFile(
            QString::fromStdString((desk.Paths.DataDir() / "dropped.dto").string()))});
        // The drop goes to the widget that took the drag's entry.
        QDragEnterEvent enter(QPoint(10, 10), Qt::CopyAction, &dropped, Qt::LeftButton,
                              Qt::NoModifier);
        QApplication::sendEvent(&desk.Frame, &enter);
        QDropEvent drop(QPointF(10, 10), Qt::CopyAction, &dropped, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&desk.Frame, &drop);
        QCOMPARE(desk.Frame.DetonationWindows().size(), 1);
        QCOMPARE(desk.Frame.DetonationWindows().front()->State().Total[1], 3);
    }
};

QTEST_MAIN(DetonationWindowTest)
#include "detonation_window_test.moc"
