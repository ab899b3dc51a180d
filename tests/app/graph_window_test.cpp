// Graph windows opened in the frame from generated runs: the item panel as it is drawn, the
// refusals, saving a download, resizing and the drop of a file.

#include "binding/tlm_decompressor.h"
#include "graph/graph_picture.h"
#include "graph/graph_window.h"
#include "graph/graph_window_context.h"
#include "graph/panel_controls.h"
#include "graph_desk.h"
#include "layout/layout_store.h"
#include "load/load_logging_file.h"
#include "load/window_close.h"
#include "logdata/channels.h"

#include <QAction>
#include <QApplication>
#include <QDropEvent>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMimeData>
#include <QTimer>
#include <QUrl>
#include <QtTest>

namespace fs = std::filesystem;
using namespace torvane;
using app::GraphWindow;
using testing::Desk;

namespace {

QList<app::ItemRowControl*> RowsOf(const GraphWindow& window, int layer) {
    QList<app::ItemRowControl*> rows;
    for (int slot = 0; slot < logdata::SlotCount; ++slot) {
        if (auto* row = window.findChild<app::ItemRowControl*>(
                QString("chkItem%1").arg(layer * logdata::SlotCount + slot + 1))) {
            rows << row;
        }
    }
    return rows;
}

QColor PixelOf(QWidget& window, const QWidget& control, QPoint inside) {
    const QImage image = window.grab().toImage();
    return image.pixelColor(control.mapTo(&window, inside));
}

void DropOn(QWidget& target, const QList<QUrl>& urls) {
    QMimeData data;
    data.setUrls(urls);
    // The drop goes to the widget that took the drag's entry.
    QDragEnterEvent enter(QPoint(200, 200), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&target, &enter);
    QDropEvent drop(QPointF(200, 200), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&target, &drop);
}

QUrl UrlOf(const fs::path& path) {
    return QUrl::fromLocalFile(QString::fromStdString(path.string()));
}

} // namespace

class GraphWindowTest : public QObject {
    Q_OBJECT

private slots:
    // The run's items stand in the panel, each with its value at the cursor, under the title
    // time and the file's caption; the parts are drawn in their colours, the popup and the
    // layout follow the mouse and the size.
    void AGeneratedRunOpensWithItsPanel() {
        Desk desk;
        GraphWindow* window = desk.Frame.OpenLoggingWindow(app::LoggingFileSource::Given,
                                                           desk.Run("MUGELLO.rlg", 60000.0));
        QVERIFY(window != nullptr);
        QVERIFY(desk.Sink.Messages.empty());
        QVERIFY(QTest::qWaitForWindowExposed(&desk.Frame));

        auto* file = window->findChild<app::FileCaptionBox*>("chkFile0");
        QCOMPARE(file->Caption(), QString("MUGELLO"));

        const logdata::LayerRecord& record = window->State().Layers.Layer[0];
        const auto rows = RowsOf(*window, 0);
        QVERIFY(rows.size() >= 4);
        int previousTop = file->geometry().bottom();
        for (app::ItemRowControl* row : rows) {
            const auto slot = static_cast<std::size_t>(row->objectName().mid(7).toInt() - 1);
            const int channel = record.ItemChannel[slot];
            QCOMPARE(row->Name(), QString::fromUtf8(logdata::ChannelName(channel)));
            QVERIFY2(row->ValueText().endsWith(QString::fromUtf8(logdata::ChannelUnit(channel))),
                     qPrintable(row->ValueText()));
            QVERIFY(row->y() > previousTop);
            previousTop = row->y();
        }
        // Before the mouse has moved over the graph the cursor stands at column 0, a scale
        // column (100 steps of the default layout's 100 ms) before the start.
        auto* title = window->findChild<QLabel*>("lblTm");
        QCOMPARE(title->text(), QString(" Time -00h00m10s000"));

        // The marked caption is white on dark blue, an unmarked row black on cyan, and the graph
        // shows the picture it reports.
        QCOMPARE(PixelOf(*window, *file, {file->width() - 3, 3}), QColor(0x00, 0x00, 0x80));
        QCOMPARE(PixelOf(*window, *rows.front(), {rows.front()->width() - 2, 1}),
                 QColor(0x00, 0xFF, 0xFF));
        QWidget* graph = window->findChild<QWidget*>("picGraph");
        const QPoint middle(graph->width() / 2, graph->height() / 2);
        const std::uint32_t shown =
            dynamic_cast<app::GraphPicture*>(graph)->PixelAt(middle.x(), middle.y());
        QCOMPARE(PixelOf(*window, *graph, middle),
                 QColor(shown & 0xFF, (shown >> 8) & 0xFF, (shown >> 16) & 0xFF));

        // A click on the title time switches to the Delta display and back.
        QTest::mouseClick(title, Qt::LeftButton);
        QCOMPARE(title->text(), QString("Delta  00h00m00s000"));
        QTest::mouseClick(title, Qt::LeftButton);
        QCOMPARE(title->text(), QString(" Time -00h00m10s000"));

        // A right press on the caption opens the View popup without the layout entries, which are
        // back once it closes; on an unmarked row it only marks the row.
        bool seen = false;
        QTimer::singleShot(0, [&] {
            auto* popup = qobject_cast<QMenu*>(QApplication::activePopupWidget());
            QVERIFY(popup != nullptr);
            QCOMPARE(popup->objectName(), QString("mnuVisible"));
            QVERIFY(!desk.Frame.Action("mnuLaySave")->isVisible());
            seen = true;
            popup->close();
        });
        QTest::mouseClick(file, Qt::RightButton);
        QVERIFY(seen);
        QVERIFY(desk.Frame.Action("mnuLaySave")->isVisible());

        auto* row = rows.front();
        QTest::mouseClick(row, Qt::RightButton);
        QVERIFY(QApplication::activePopupWidget() == nullptr);
        QCOMPARE(PixelOf(*window, *row, {row->width() - 2, 1}), QColor(0x00, 0x00, 0xFF));

        // Below 200 x 100 the window is laid out as if it were that size.
        auto* strip = window->findChild<QWidget*>("picScroll");
        window->resize(640, 400);
        QCOMPARE(graph->geometry(), QRect(130, 0, 510, 376));
        QCOMPARE(strip->geometry(), QRect(154, 376, 640 - 178, 24));
        QCOMPARE(window->findChild<QWidget*>("cmdMove1")->x(), 640 - 24);
        window->resize(150, 60);
        QCOMPARE(graph->geometry(), QRect(130, 0, 70, 76));
        QCOMPARE(strip->geometry(), QRect(154, 76, 22, 24));
        QCOMPARE(window->State().GraphMidX, (70 + 100) / 2);
    }

    // A run of 3000 ms, a truncated file and a memory load of 80 % each give their message
    // and leave no window, number or stream; at 79 % the same run opens. FileOpen asks for
    // the file, and a cancelled choice opens nothing.
    void RefusedFilesLeaveNoWindow() {
        Desk desk;
        const fs::path run = desk.Run("RUN.rlg", 20000.0);
        const fs::path damaged = desk.Run("DAMAGED.rlg", 20000.0);
        fs::resize_file(damaged, fs::file_size(damaged) / 2);
        const struct {
            fs::path file;
            std::uint64_t memory;
            std::string message;
            int icon;
        } cases[] = {{desk.Run("SHORT.rlg", 3000.0), 40, load::ShortMeasurementMessage,
                      shell::icons::Warning},
                     {damaged, 40, "File access error.", shell::icons::Stop},
                     {run, 80, load::MemoryShortMessage, shell::icons::Stop}};
        for (const auto& refused : cases) {
            desk.Sink.Messages.clear();
            desk.Memory.usedPercent = refused.memory;
            QVERIFY(desk.Frame.OpenLoggingWindow(app::LoggingFileSource::Given, refused.file) ==
                    nullptr);
            QCOMPARE(desk.Sink.Messages.size(), std::size_t{1});
            QCOMPARE(desk.Sink.Messages[0].Text, refused.message);
            QCOMPARE(desk.Sink.Messages[0].Icon, refused.icon);
            QVERIFY(desk.Frame.Area()->subWindowList().isEmpty());
            QVERIFY(!desk.Registry.AnyFroms());
            QCOMPARE(desk.TempFiles(), std::size_t{0});
            QVERIFY(!desk.Frame.Action("mnuFileClose")->isEnabled());
        }
        desk.Frame.Action("mnuFileOpen")->trigger();
        QVERIFY(desk.Frame.Area()->subWindowList().isEmpty());
        desk.Memory.usedPercent = 79;
        desk.Choices.push_back(run);
        desk.Frame.Action("mnuFileOpen")->trigger();
        QCOMPARE(desk.Caption(), QString("RUN"));
    }

    // mnuSave of a downloaded run: a CSV name exports the shown items and leaves the download
    // unsaved; a logging-file name keeps the run there, its caption follows and closing the
    // window asks nothing any more.
    void SaveExportsOrKeepsADownloadedRun() {
        Desk desk;
        QVERIFY(!desk.Frame.Action("mnuSave")->isEnabled());
        std::deque<output::SaveChoice> answers;
        std::vector<bool> rangeOffered;
        desk.Context.ChooseSaveOrExport = [&](QWidget*, bool rangeMarked) {
            rangeOffered.push_back(rangeMarked);
            std::optional<output::SaveChoice> next;
            if (!answers.empty()) {
                next = answers.front();
                answers.pop_front();
            }
            return next;
        };
        const fs::path downloaded = desk.Paths.TempDir() / "LGGR0001.rlg";
        QVERIFY(testing::WriteGeneratedRun(downloaded, 20000.0, 3));
        GraphWindow* window = desk.Frame.ShowLoggingFile(downloaded, true);
        QVERIFY(window != nullptr);
        QVERIFY(desk.Frame.Action("mnuSave")->isEnabled());
        auto* caption = window->findChild<app::FileCaptionBox*>("chkFile0");
        const QImage before = caption->grab().toImage();

        desk.Frame.Action("mnuSave")->trigger(); // cancelled
        answers.push_back({desk.Paths.DataDir() / "RUN.csv", false, false});
        desk.Frame.Action("mnuSave")->trigger();
        QCOMPARE(rangeOffered, (std::vector<bool>{false, false}));
        const std::string csv = testing::ReadText(desk.Paths.DataDir() / "RUN.csv");
        QVERIFY2(csv.starts_with("Time(s),Ne,TH,VFW,"), csv.substr(0, 80).c_str());
        QCOMPARE(desk.Registry.GetLogger(window->Number()), 1);
        QVERIFY(fs::exists(downloaded));

        answers.push_back({desk.Paths.DataDir() / "KEPT.rlg", false, false});
        desk.Frame.Action("mnuSave")->trigger();
        QVERIFY(desk.Sink.Messages.empty());
        QVERIFY(!fs::exists(downloaded));
        QVERIFY(fs::exists(desk.Paths.DataDir() / "KEPT.rlg"));
        QCOMPARE(desk.Registry.GetLogger(window->Number()), 0);
        QCOMPARE(caption->Caption(), QString("KEPT"));
        QCOMPARE(window->windowTitle(),
                 QString::fromStdString((desk.Paths.DataDir() / "KEPT.rlg").string()));
        QVERIFY(caption->grab().toImage() != before);

        desk.Frame.Action("mnuFileClose")->trigger();
        QVERIFY(desk.Sink.Messages.empty());
        QVERIFY(desk.Frame.GraphWindows().isEmpty());
        QVERIFY(!desk.Frame.Action("mnuSave")->isEnabled());
    }

    // Closing the program asks about an unsaved download before any window goes: Cancel keeps
    // the frame and every window with its streams; Yes with the save dialog cancelled is not
    // asked a second time, and all windows and streams go.
    void CancelWhileTheProgramClosesKeepsEveryWindow() {
        Desk desk;
        GraphWindow* fromDisk = desk.Frame.OpenLoggingWindow(app::LoggingFileSource::Given,
                                                             desk.Run("RUN.rlg", 20000.0));
        const fs::path downloaded = desk.Paths.TempDir() / "LGGR0001.rlg";
        QVERIFY(testing::WriteGeneratedRun(downloaded, 20000.0, 3));
        GraphWindow* fromLogger = desk.Frame.ShowLoggingFile(downloaded, true);
        QVERIFY(fromDisk != nullptr && fromLogger != nullptr);
        const std::size_t diskStreams = desk.TempFiles("-010.tmp");
        const std::size_t loggerStreams = desk.TempFiles("-020.tmp");
        QVERIFY(diskStreams > 0 && loggerStreams > 0);

        desk.Sink.SetAnswer(shell::answers::Cancel);
        QVERIFY(!desk.Frame.close());
        QCOMPARE(desk.Sink.Messages.size(), size_t{1});
        QCOMPARE(desk.Sink.Messages[0].Text, std::string(load::NotSavedMessage));
        QVERIFY(desk.Frame.isVisible());
        QCOMPARE(desk.Frame.GraphWindows(), (QList<GraphWindow*>{fromDisk, fromLogger}));
        QVERIFY(fromDisk->isVisible() && fromLogger->isVisible());
        QCOMPARE(desk.TempFiles("-010.tmp"), diskStreams);
        QCOMPARE(desk.TempFiles("-020.tmp"), loggerStreams);
        QVERIFY(fs::exists(downloaded));

        desk.Sink.SetAnswer(shell::answers::Yes);
        QVERIFY(desk.Frame.close());
        QCOMPARE(desk.Sink.Messages.size(), size_t{2});
        QVERIFY(desk.Frame.GraphWindows().isEmpty());
        QCOMPARE(desk.TempFiles(".tmp"), size_t{0});
    }

    // New windows step down a cascade inside the frame and start again at its corner rather
    // than open partly out of sight.
    void NewWindowsOpenInSight() {
        Desk desk;
        desk.Frame.resize(1000, 700);
        const fs::path run = desk.Run("RUN.rlg", 20000.0);
        QList<QPoint> corners;
        for (int i = 0; i < 10; ++i) {
            QVERIFY(desk.Frame.OpenLoggingWindow(app::LoggingFileSource::Given, run) != nullptr);
            const QMdiSubWindow* shown = desk.Frame.Area()->subWindowList().back();
            QVERIFY(desk.Frame.Area()->viewport()->rect().contains(shown->geometry()));
            corners << shown->pos();
        }
        QCOMPARE(corners[1] - corners[0], QPoint(24, 24));
        QVERIFY(corners.count(corners[0]) > 1);
    }

    // Only the first dropped path counts, and only an existing logging file opens.
    void ADroppedLoggingFileOpens() {
        Desk desk;
        const fs::path run = desk.Run("DROPPED.RLG", 20000.0);
        const QUrl notes = UrlOf(desk.Paths.DataDir() / "notes.txt");
        for (const QList<QUrl>& urls : {QList<QUrl>{notes, UrlOf(run)},
                                        {UrlOf(desk.Paths.DataDir() / "MISSING.rlg")},
                                        {UrlOf(desk.Paths.DataDir())}}) {
            DropOn(desk.Frame, urls);
            QVERIFY(desk.Frame.GraphWindows().isEmpty());
        }
        QVERIFY(desk.Sink.Messages.empty());

        DropOn(desk.Frame, {UrlOf(run), notes});
        QCOMPARE(desk.Frame.GraphWindows().size(), 1);
        QCOMPARE(desk.Caption(), QString("DROPPED"));
    }
};

QTEST_MAIN(GraphWindowTest)
#include "graph_window_test.moc"
