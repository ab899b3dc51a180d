#include "render/hard_copy_page.h"

#include "output/print_geometry.h"

#include <QPagedPaintDevice>
#include <QPainter>
#include <QPdfWriter>
#include <QSaveFile>

namespace torvane::render {

QPageSize TablePaperSize(int number) {
    // Qt knows no paper under Folio's number; its own Folio is another size.
    constexpr int FolioNumber = 14;
    return number == FolioNumber ? QPageSize(QSizeF(8.5, 13), QPageSize::Inch, "Folio")
                                 : QPageSize(QPageSize::id(number));
}

void PaintCentred(QPainter& painter, const QImage& picture, double pictureDpi, int zoom) {
    const QPaintDevice& device = *painter.device();
    // The picture's size in the device's pixels at 100 %.
    const double width = picture.width() * device.logicalDpiX() / pictureDpi;
    const double height = picture.height() * device.logicalDpiY() / pictureDpi;
    const output::PagePlacement place =
        output::CentrePicture(device.width(), device.height(), width, height, zoom);
    painter.drawImage(QRectF(-place.ScaleLeft, -place.ScaleTop, place.Width, place.Height),
                      picture);
}

QPageLayout PdfPageLayout(const PdfPage& page) {
    return QPageLayout(page.PageSize, page.Orientation, QMarginsF(0, 0, 0, 0));
}

std::string WritePdfPage(const std::filesystem::path& path, const QImage& picture,
                         double pictureDpi, const PdfPage& page) {
    QSaveFile file(QString::fromStdString(path.string()));
    if (!file.open(QIODevice::WriteOnly)) {
        return file.errorString().toStdString();
    }
    {
        QPdfWriter writer(&file);
        writer.setCreator("Torvane Studio");
        writer.setPageLayout(PdfPageLayout(page));
        QPainter painter;
        if (!painter.begin(&writer)) {
            file.cancelWriting();
            return "the page cannot be started";
        }
        PaintCentred(painter, picture, pictureDpi, page.Zoom);
        if (!painter.end()) {
            file.cancelWriting();
            return "the page cannot be finished";
        }
    }
    if (!file.commit()) {
        return file.errorString().toStdString();
    }
    return {};
}

} // namespace torvane::render
