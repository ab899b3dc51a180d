#include "output/hard_copy.h"

#include "output/print_geometry.h"
#include "render/hard_copy_page.h"
#include "shell/wait_cursor.h"

#include <QMdiSubWindow>
#include <QPainter>
#include <QPixmap>
#include <QPointer>
#include <QPrinter>
#include <QPrinterInfo>
#include <QStyle>
#include <QStyleOptionTitleBar>

namespace torvane::app {
namespace {

PrintContext* installed = nullptr;

constexpr int PrinterError = 482;
constexpr int PathAccessError = 75;
constexpr int ProcedureError = 5;

int CaptionHeightOf(const QMdiSubWindow& frame) {
    QStyleOptionTitleBar option;
    option.initFrom(&frame);
    return frame.style()->pixelMetric(QStyle::PM_TitleBarHeight, &option, &frame);
}

bool Fail(shell::MessageSink& sink, int number, const std::string& description) {
    shell::ShowRunTimeError(sink, {number, description});
    return false;
}

} // namespace

QImage CaptureWindow(QWidget& form, int mode) {
    auto* frame = qobject_cast<QMdiSubWindow*>(form.parentWidget());
    QWidget& window = frame != nullptr ? static_cast<QWidget&>(*frame) : form;
    // grab() paints the window afresh into the picture, so what the dialog covered a moment ago
    // is there, and nothing that stands over the window on the screen is.
    const QPixmap pixmap = window.grab();
    const output::CaptureArea area =
        frame != nullptr
            ? output::CaptureAreaOf(mode, CaptionHeightOf(*frame), window.width(), window.height())
            : output::CaptureAreaOf(-1, 0, window.width(), window.height());
    const qreal ratio = pixmap.devicePixelRatio();
    QImage picture = pixmap.toImage().copy(
        QRectF(area.Left * ratio, area.Top * ratio, area.Width * ratio, area.Height * ratio)
            .toRect());
    picture.setDevicePixelRatio(1.0);
    return picture;
}

bool PrintPicture(const QImage& picture, double pictureDpi, const PrintJob& job,
                  shell::MessageSink& sink) {
    if (picture.isNull()) {
        return Fail(sink, ProcedureError, "The window has nothing to print.");
    }
    if (job.Printer.PdfFile) {
        const std::string failure = render::WritePdfPage(job.PdfPath, picture, pictureDpi,
                                                         {job.PageSize, job.Orientation, job.Zoom});
        return failure.empty() ||
               Fail(sink, PathAccessError,
                    "Path/File access error: " + job.PdfPath.string() + ": " + failure);
    }
    // The printer may have gone since the dialog listed it.
    if (QPrinterInfo::printerInfo(job.Printer.Name).isNull()) {
        return Fail(sink, PrinterError,
                    "Printer error: " + job.Printer.Name.toStdString() + " is not available");
    }
    QPrinter printer(QPrinter::HighResolution);
    printer.setPrinterName(job.Printer.Name);
    printer.setPageSize(job.PageSize);
    printer.setPageOrientation(job.Orientation);
    printer.setCopyCount(job.Copies);
    QPainter painter;
    if (!printer.isValid() || !painter.begin(&printer)) {
        return Fail(sink, PrinterError, "Printer error: " + job.Printer.Name.toStdString());
    }
    render::PaintCentred(painter, picture, pictureDpi, job.Zoom);
    if (!painter.end() || printer.printerState() == QPrinter::Error) {
        return Fail(sink, PrinterError, "Printer error: " + job.Printer.Name.toStdString());
    }
    return true;
}

bool HardCopy(QWidget& form, int mode, PrintContext& context) {
    QPointer<QWidget> window(&form);
    const std::optional<PrintJob> job = PrintDialog::Run(context, &form);
    // Something run while the dialog was open may have closed the window: gone, or hidden until
    // it goes.
    if (window.isNull() || !window->isVisible()) {
        return Fail(context.Sink, ProcedureError, "The window closed before it was printed.");
    }
    if (!job) {
        return false;
    }
    const WaitCursor hourglass;
    const QImage picture = CaptureWindow(form, mode);
    const double dpi = form.logicalDpiX() > 0 ? form.logicalDpiX() : render::ScreenDpi;
    return PrintPicture(picture, dpi, *job, context.Sink);
}

void InstallPrintContext(PrintContext* context) {
    installed = context;
}

bool PrintWindow(QWidget& form, int mode) {
    return installed != nullptr && HardCopy(form, mode, *installed);
}

} // namespace torvane::app
