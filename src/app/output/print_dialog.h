#pragma once
// frmCom0020 ("Print Dialog "): the printer, paper, orientation, copies and zoom of a hard copy.
// Its rules are core's (output/print_dialog_rules.h, output/paper_names.h,
// output/print_geometry.h); it remembers its values for the next opening in the run. Beside the
// system's printers it offers "PDF file", which asks for the file through the program's own
// file dialog, so that a machine without a printer prints as well.

#include "output/print_dialog_rules.h"
#include "shell/message_sink.h"

#include <QDialog>
#include <QPageLayout>
#include <QPageSize>
#include <QString>

#include <filesystem>
#include <functional>
#include <optional>
#include <vector>

class QComboBox;
class QLineEdit;
class QPushButton;
class QRadioButton;

namespace torvane::app {

inline constexpr const char* PdfPrinterName = "PDF file";

struct PrinterChoice {
    QString Name;
    bool PdfFile = false;
};

// The system's printers that the dialog lists, then the PDF file.
std::vector<PrinterChoice> AvailablePrinters();

// The job the operator asked for.
struct PrintJob {
    PrinterChoice Printer;
    std::filesystem::path PdfPath; // for the PDF file
    QPageSize PageSize;
    QPageLayout::Orientation Orientation = QPageLayout::Portrait;
    int Copies = 1;
    int Zoom = 100;
};

// What every opening works with; the desktop holds one for the run.
struct PrintContext {
    output::PrintDialogMemory& Memory;
    shell::MessageSink& Sink;
    // Where the PDF file goes; nothing when the operator cancels.
    std::function<std::optional<std::filesystem::path>(QWidget* owner)> ChoosePdfFile;
    // The printers offered; the system's and the PDF file unless a test gives others.
    std::function<std::vector<PrinterChoice>()> Printers = AvailablePrinters;
};

class PrintDialog : public QDialog {
    Q_OBJECT
public:
    PrintDialog(PrintContext& context, QWidget* owner);

    // Shows the dialog modally; the job, or nothing when the operator cancelled.
    static std::optional<PrintJob> Run(PrintContext& context, QWidget* owner);

    const std::optional<PrintJob>& Job() const { return job_; }

private:
    struct Paper {
        QString Name;
        QPageSize Size;
    };

    void BuildControls();
    void ChoosePrinter(int index);
    void ChoosePaper(int index);
    void ChooseOrientation(QPageLayout::Orientation orientation);
    // The printable size of the chosen printer for a paper and orientation, in points.
    QSizeF PrintableSize(const QPageSize& size, QPageLayout::Orientation orientation) const;
    // The zoom box follows a change of the printable area, when it holds a number.
    void CorrectZoom(QSizeF before, QSizeF after);
    void Print();

    PrintContext& context_;
    std::vector<PrinterChoice> printers_;
    std::vector<Paper> papers_;
    int paperIndex_ = -1;
    QPageLayout::Orientation orientation_ = QPageLayout::Portrait;
    std::optional<PrintJob> job_;
    bool loading_ = true;

    QComboBox* cmbPrinter_ = nullptr;
    QComboBox* cmbPaperSize_ = nullptr;
    QRadioButton* optMuki0_ = nullptr;
    QRadioButton* optMuki1_ = nullptr;
    QLineEdit* txtBusu_ = nullptr;
    QLineEdit* txtRitu_ = nullptr;
    QPushButton* cmdPrint_ = nullptr;
    QPushButton* cmdCancel_ = nullptr;
};

} // namespace torvane::app
