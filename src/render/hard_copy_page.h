#pragma once
// A hard copy's page: a captured picture painted centred at a zoom on any paged device (a
// printer, a PDF file). The desktop's print and torvane-cli render's PDF output share it, so a
// batch report and a printed window are the same page.

#include <QImage>
#include <QPageLayout>
#include <QPageSize>

#include <filesystem>
#include <string>

class QPainter;

namespace torvane::render {

// The pixels per inch of a picture taken from a screen whose own figure is not known: a
// window's pixel is this large on paper at 100 %.
inline constexpr double ScreenDpi = 96.0;

// The paper of a number of the table (output/paper_names.h) as Qt knows it; not valid for a
// number Qt has no paper for.
QPageSize TablePaperSize(int number);

// Paints the picture on the painter's page: `pictureDpi` says how large a pixel is on paper at
// 100 %, and the picture stands centred, so that beyond the page's size the page shows its
// centre.
void PaintCentred(QPainter& painter, const QImage& picture, double pictureDpi, int zoom);

struct PdfPage {
    QPageSize PageSize = QPageSize(QPageSize::A4);
    QPageLayout::Orientation Orientation = QPageLayout::Portrait;
    int Zoom = 100;
};

// The whole page is printable on a PDF page: no margins.
QPageLayout PdfPageLayout(const PdfPage& page);

// Writes one page with the picture to a PDF file. The file is written beside its place under
// another name and renamed when whole, so a failure leaves neither an empty nor a half file and
// keeps a file that stood there. Empty on success, else what failed.
std::string WritePdfPage(const std::filesystem::path& path, const QImage& picture,
                         double pictureDpi, const PdfPage& page);

} // namespace torvane::render
