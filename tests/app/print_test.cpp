// Printing: the print dialog's checks, memory and zoom correction, and a graph window printed
// into a PDF file through mnuPrint, whose page, rendered by pdftoppm, shows the window's
// picture centred at the chosen zoom.

#include "graph_desk.h"
#include "output/hard_copy.h"
#include "output/print_dialog.h"
#include "output/print_geometry.h"
#include "pdf_printing.h"
#include "shell/tool_box.h"
#include "widget_driving.h"

#include <QAction>
#include <QComboBox>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QProcess>
#include <QPushButton>
#include <QRadioButton>
#include <QtTest>

namespace fs = std::filesystem;
using namespace torvane;
using testing::AnswerPrintDialog;
using testing::Control;
using testing::Desk;
using testing::InkOf;
using testing::PdfPrinting;
using testing::RenderPage;

class PrintTest : public QObject {
    Q_OBJECT

private slots:
    // The boxes are checked in order; each refusal tells its message with the warning icon and
    // sends the focus to its box. Without a printer, Print cannot be pressed.
    void TheDialogRefusesBadEntriesAndSendsTheFocusToTheirBox() {
        shell::RecordingSink sink;
        PdfPrinting printing(sink);
        app::PrintDialog dialog(printing.Context, nullptr);
        auto* copies = Control<QLineEdit>(dialog, "txtBusu");
        auto* zoom = Control<QLineEdit>(dialog, "txtRitu");
        QCOMPARE(copies->text(), QString("1"));
        QCOMPARE(zoom->text(), QString("100"));
        QCOMPARE(zoom->maxLength(), 3);
        const struct {
            const char* Copies;
            const char* Zoom;
            const char* Message;
            QLineEdit* Focus;
        } refusals[] = {{"", "100", "Input Copies.", copies},
                        {"x", "100", "Input numerical value.", copies},
                        {"0", "100", "Input value beyond 1.", copies},
                        {"1", "", "Input Zoom.", zoom},
                        {"1", "abc", "Input numerical value.", zoom},
                        {"1", "49", "Input value from 50 to 200.", zoom},
                        {"1", "201", "Input value from 50 to 200.", zoom}};
        dialog.show();
        for (const auto& refusal : refusals) {
            sink.Messages.clear();
            copies->setText(refusal.Copies);
            zoom->setText(refusal.Zoom);
            Control<QPushButton>(dialog, "cmdPrint")->click();
            QCOMPARE(sink.Messages.size(), std::size_t{1});
            QCOMPARE(QString::fromStdString(sink.Messages[0].Text), QString(refusal.Message));
            QCOMPARE(sink.Messages[0].Icon, shell::icons::Warning);
            QCOMPARE(dialog.focusWidget(), refusal.Focus);
            QVERIFY(dialog.isVisible());
        }
        QVERIFY(!printing.Memory.Kept);

        printing.Context.Printers = [] {
            return std::vector<app::PrinterChoice>{};
        };
        app::PrintDialog none(printing.Context, nullptr);
        QVERIFY(!Control<QPushButton>(none, "cmdPrint")->isEnabled());
    }

    // A4 to A3 doubles the page, so the zoom goes up by half; the turn to landscape keeps the
    // area. A print remembers the values for the next opening, and a cancelled PDF file
    // question keeps the dialog open.
    void ThePaperCorrectsTheZoomAndAPrintIsRemembered() {
        shell::RecordingSink sink;
        PdfPrinting printing(sink);
        app::PrintDialog dialog(printing.Context, nullptr);
        auto* paper = Control<QComboBox>(dialog, "cmbPaperSize");
        auto* zoom = Control<QLineEdit>(dialog, "txtRitu");
        QCOMPARE(paper->count(), 38);
        QCOMPARE(paper->currentText(), QString("A4,210 x 297 mm"));
        paper->setCurrentIndex(paper->findText("A3,297 x 420 mm"));
        QCOMPARE(zoom->text(), QString("150"));
        Control<QRadioButton>(dialog, "optMuki1")->click();
        QCOMPARE(zoom->text(), QString("150"));
        Control<QLineEdit>(dialog, "txtBusu")->setText("2");

        dialog.show();
        Control<QPushButton>(dialog, "cmdPrint")->click();
        QVERIFY(dialog.isVisible());
        QVERIFY(!dialog.Job());

        printing.Path = "/tmp/x.pdf";
        Control<QPushButton>(dialog, "cmdPrint")->click();
        QVERIFY(dialog.Job());
        QCOMPARE(dialog.Job()->Zoom, 150);
        QCOMPARE(dialog.Job()->Copies, 2);
        QVERIFY(dialog.Job()->PageSize.isEquivalentTo(QPageSize(QPageSize::A3)));
        QCOMPARE(dialog.Job()->Orientation, QPageLayout::Landscape);

        app::PrintDialog again(printing.Context, nullptr);
        QCOMPARE(Control<QComboBox>(again, "cmbPaperSize")->currentText(),
                 QString("A3,297 x 420 mm"));
        QVERIFY(Control<QRadioButton>(again, "optMuki1")->isChecked());
        QCOMPARE(Control<QLineEdit>(again, "txtBusu")->text(), QString("2"));
        QCOMPARE(Control<QLineEdit>(again, "txtRitu")->text(), QString("150"));
        QVERIFY(sink.Messages.empty());
    }

    // The graph window's page at 100 % holds its picture whole, centred; at 150 % the picture
    // is half as large again, wider than the page, and the page shows its centre.
    void AGraphWindowPrintsCentredAtItsZoom() {
        Desk desk;
        PdfPrinting printing(desk.Sink);
        app::GraphWindow* window = desk.Frame.OpenLoggingWindow(app::LoggingFileSource::Given,
                                                                desk.Run("PAGE.rlg", 60000.0));
        QVERIFY(window != nullptr);
        QVERIFY(QTest::qWaitForWindowExposed(&desk.Frame));
        const QImage picture = app::CaptureWindow(*window, 0);
        const QRect pictureInk = InkOf(picture);
        QVERIFY(picture.width() > 700);

        for (const int zoom : {100, 150}) {
            const fs::path pdf = desk.Home.Path() / ("page" + std::to_string(zoom) + ".pdf");
            printing.Path = pdf;
            AnswerPrintDialog(QString::number(zoom));
            desk.Frame.Action("mnuPrint")->trigger();
            QVERIFY(desk.Sink.Messages.empty());
            const QImage page = RenderPage(pdf);
            QCOMPARE(page.size(), QSize(794, 1123)); // A4 at 96 pixels an inch

            // Where the picture's ink must stand on the page, clipped to the page.
            const output::PagePlacement place = output::CentrePicture(
                page.width(), page.height(), picture.width(), picture.height(), zoom);
            const double z = zoom / 100.0;
            const QRect expected = QRectF(-place.ScaleLeft + pictureInk.left() * z,
                                          -place.ScaleTop + pictureInk.top() * z,
                                          pictureInk.width() * z, pictureInk.height() * z)
                                       .toRect()
                                       .intersected(page.rect());
            const QRect ink = InkOf(page);
            for (const auto& [got, want] :
                 {std::pair{ink.left(), expected.left()}, std::pair{ink.right(), expected.right()},
                  std::pair{ink.top(), expected.top()},
                  std::pair{ink.bottom(), expected.bottom()}}) {
                QVERIFY2(std::abs(got - want) <= 2, qPrintable(QString("zoom %1: ink %2,%3 %4x%5")
                                                                   .arg(zoom)
                                                                   .arg(ink.x())
                                                                   .arg(ink.y())
                                                                   .arg(ink.width())
                                                                   .arg(ink.height())));
            }
        }
        QVERIFY(picture.width() * 1.5 > 794);
    }

    // With the toolbox shown the whole window is printed and the toolbox is away meanwhile;
    // a minimised window is not printed; a PDF file that cannot be written is reported and
    // leaves no file.
    void TheToolboxMinimisedWindowsAndFailures() {
        Desk desk;
        PdfPrinting printing(desk.Sink);
        app::GraphWindow* window = desk.Frame.OpenLoggingWindow(app::LoggingFileSource::Given,
                                                                desk.Run("TOOL.rlg", 60000.0));
        QVERIFY(window != nullptr);
        desk.Frame.ShowToolBox();
        auto* toolBox = desk.Frame.findChild<app::ToolBox*>();
        QVERIFY(toolBox != nullptr && toolBox->isVisible());
        printing.Path = desk.Home.Path() / "whole.pdf";
        bool toolBoxAway = false;
        testing::WhenModalOpens([&](QWidget* dialog) {
            toolBoxAway = !toolBox->isVisible();
            Control<QPushButton>(*dialog, "cmdPrint")->click();
        });
        desk.Frame.Action("mnuPrint")->trigger();
        QVERIFY(toolBoxAway);
        QVERIFY(toolBox->isVisible());
        QVERIFY(desk.Frame.Action("mnuToolBox")->isChecked());
        QVERIFY(fs::file_size(*printing.Path) > 0);
        // Mode -1: the sub-window whole, its title bar included.
        QCOMPARE(app::CaptureWindow(*window, -1).size(),
                 desk.Frame.Area()->currentSubWindow()->size());

        printing.Path = desk.Home.Path() / "missing" / "page.pdf";
        testing::WhenModalOpens(
            [](QWidget* dialog) { Control<QPushButton>(*dialog, "cmdPrint")->click(); });
        desk.Frame.Action("mnuPrint")->trigger();
        QCOMPARE(desk.Sink.Messages.size(), std::size_t{1});
        QVERIFY(desk.Sink.Messages[0].Text.starts_with("Error(75)"));
        QCOMPARE(desk.Sink.Messages[0].Icon, shell::icons::Stop);
        QVERIFY(!fs::exists(desk.Home.Path() / "missing"));

        // A printer that went away since the dialog listed it.
        desk.Sink.Messages.clear();
        const app::PrintJob gone{.Printer = {"Gone printer", false},
                                 .PdfPath = {},
                                 .PageSize = QPageSize(QPageSize::A4),
                                 .Orientation = QPageLayout::Portrait,
                                 .Copies = 1,
                                 .Zoom = 100};
        QVERIFY(!app::PrintPicture(app::CaptureWindow(*window, 0), 96, gone, desk.Sink));
        QCOMPARE(desk.Sink.Messages.size(), std::size_t{1});
        QVERIFY(desk.Sink.Messages[0].Text.starts_with("Error(482)"));

        desk.Frame.Area()->currentSubWindow()->showMinimized();
        bool opened = false;
        QTimer::singleShot(0, [&] {
            opened = QApplication::activeModalWidget() != nullptr;
            if (opened) {
                QApplication::activeModalWidget()->close();
            }
        });
        desk.Frame.Action("mnuPrint")->trigger();
        QApplication::processEvents();
        QVERIFY(!opened);

        // The window goes while its print dialog is open: told, nothing printed, no crash.
        desk.Frame.Area()->currentSubWindow()->showNormal();
        desk.Sink.Messages.clear();
        printing.Path = desk.Home.Path() / "closed.pdf";
        testing::WhenModalOpens([&desk](QWidget* dialog) {
            QPointer<QWidget> open(dialog);
            desk.Frame.Area()->currentSubWindow()->close();
            QTimer::singleShot(50, [open] {
                if (!open.isNull()) {
                    Control<QPushButton>(*open, "cmdPrint")->click();
                }
            });
        });
        desk.Frame.Action("mnuPrint")->trigger();
        QCOMPARE(desk.Sink.Messages.size(), std::size_t{1});
        QVERIFY(desk.Sink.Messages[0].Text.starts_with("Error(5)"));
        QVERIFY(!fs::exists(*printing.Path));
    }
};

QTEST_MAIN(PrintTest)
#include "print_test.moc"
