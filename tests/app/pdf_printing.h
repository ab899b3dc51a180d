#pragma once
// Printing into a PDF file in widget tests: a printer list of the PDF file only, the print
// dialog answered as it opens, and the page rendered back into pixels by pdftoppm.

#include "output/hard_copy.h"
#include "output/print_dialog.h"
#include "widget_driving.h"

#include <QImage>
#include <QLineEdit>
#include <QProcess>
#include <QPushButton>
#include <QtTest>

#include <filesystem>
#include <optional>
#include <vector>

namespace torvane::testing {

// A printer list of the PDF file only, with PDF files going to `path`.
struct PdfPrinting {
    explicit PdfPrinting(shell::MessageSink& sink)
        : Context{.Memory = Memory,
                  .Sink = sink,
                  .ChoosePdfFile = [this](QWidget*) { return Path; },
                  .Printers =
                      [] {
                          return std::vector<app::PrinterChoice>{{"PDF file", true}};
                      }} {
        app::InstallPrintContext(&Context);
    }
    ~PdfPrinting() { app::InstallPrintContext(nullptr); }
    PdfPrinting(const PdfPrinting&) = delete;
    PdfPrinting& operator=(const PdfPrinting&) = delete;

    output::PrintDialogMemory Memory;
    std::optional<std::filesystem::path> Path;
    app::PrintContext Context;
};

// The page rendered at 96 pixels an inch, the window's own scale.
inline QImage RenderPage(const std::filesystem::path& pdf) {
    const QString prefix = QString::fromStdString((pdf.parent_path() / "page").string());
    QProcess::execute("pdftoppm", {"-r", "96", "-png", "-singlefile",
                                   QString::fromStdString(pdf.string()), prefix});
    return QImage(prefix + ".png");
}

// The smallest rectangle holding every pixel darker than near-white.
inline QRect InkOf(const QImage& image) {
    QRect ink;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (qGray(image.pixel(x, y)) < 235) {
                ink |= QRect(x, y, 1, 1);
            }
        }
    }
    return ink;
}

inline void AnswerPrintDialog(const QString& zoom) {
    testing::WhenModalOpens([zoom](QWidget* dialog) {
        QCOMPARE(dialog->objectName(), QString("frmCom0020"));
        QCOMPARE(dialog->windowTitle(), QString("Print Dialog "));
        Control<QLineEdit>(*dialog, "txtRitu")->setText(zoom);
        Control<QPushButton>(*dialog, "cmdPrint")->click();
    });
}

} // namespace torvane::testing
