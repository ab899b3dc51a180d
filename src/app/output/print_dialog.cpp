#include "output/print_dialog.h"

#include "output/paper_names.h"
#include "output/print_geometry.h"
#include "render/hard_copy_page.h"
#include "shell/help_window.h"

#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPrinter>
#include <QPrinterInfo>
#include <QPushButton>
#include <QRadioButton>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>

namespace torvane::app {
namespace {

QString ToQString(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

// The up-down control beside a box: steps the number in the box within its range.
class UpDown : public QWidget {
public:
    UpDown(QLineEdit& buddy, int minimum, int maximum, QWidget* parent)
        : QWidget(parent) {
        auto* layout = new QVBoxLayout(this);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->setSpacing(0);
        for (const int step : {1, -1}) {
            auto* button = new QToolButton(this);
            button->setArrowType(step > 0 ? Qt::UpArrow : Qt::DownArrow);
            button->setObjectName(step > 0 ? "up" : "down");
            button->setAutoRepeat(true);
            button->setFixedSize(16, 11);
            layout->addWidget(button);
            connect(button, &QToolButton::clicked, this, [&buddy, minimum, maximum, step] {
                bool number = false;
                const int value = buddy.text().trimmed().toInt(&number);
                const int next = number ? std::clamp(value + step, minimum, maximum) : minimum;
                buddy.setText(QString::number(next));
            });
        }
    }
};

struct NumberedSize {
    int Number = 0;
    QPageSize Size;
};

// A printer's papers with their numbers. The PDF file takes the table's papers under the
// table's numbers: several of them are one size to Qt, whose own number would name them twice.
std::vector<NumberedSize> PaperSizesOf(const PrinterChoice& printer) {
    std::vector<NumberedSize> sizes;
    if (!printer.PdfFile) {
        for (const QPageSize& size : QPrinterInfo::printerInfo(printer.Name).supportedPageSizes()) {
            sizes.push_back({size.windowsId(), size});
        }
        return sizes;
    }
    for (const int number : output::TablePaperNumbers()) {
        const QPageSize size = render::TablePaperSize(number);
        if (size.isValid()) {
            sizes.push_back({number, size});
        }
    }
    return sizes;
}

QPageSize DefaultPaperOf(const PrinterChoice& printer) {
    return printer.PdfFile ? QPageSize(QPageSize::A4)
                           : QPrinterInfo::printerInfo(printer.Name).defaultPageSize();
}

} // namespace

std::vector<PrinterChoice> AvailablePrinters() {
    std::vector<PrinterChoice> printers;
    for (const QString& name : QPrinterInfo::availablePrinterNames()) {
        if (output::ListsPrinter(name.toStdString())) {
            printers.push_back({name, false});
        }
    }
    printers.push_back({PdfPrinterName, true});
    return printers;
}

PrintDialog::PrintDialog(PrintContext& context, QWidget* owner)
    : QDialog(owner)
    , context_(context)
    , printers_(context.Printers ? context.Printers() : std::vector<PrinterChoice>{}) {
    setObjectName("frmCom0020");
    setModal(true);
    setWindowTitle(ToQString(output::PrintDialogCaption));
    BuildControls();
    AnswerHelpKey(this, "print.html");

    const output::PrintDialogMemory& memory = context_.Memory;
    for (const PrinterChoice& printer : printers_) {
        cmbPrinter_->addItem(printer.Name);
    }
    cmdPrint_->setEnabled(!printers_.empty());
    int printer = 0;
    if (memory.Kept && memory.PrinterIndex < static_cast<int>(printers_.size())) {
        printer = memory.PrinterIndex;
    } else {
        const QString system = QPrinterInfo::defaultPrinterName();
        for (std::size_t i = 0; i < printers_.size(); ++i) {
            if (!printers_[i].PdfFile && printers_[i].Name == system) {
                printer = static_cast<int>(i);
            }
        }
    }
    orientation_ = memory.Kept && memory.Landscape ? QPageLayout::Landscape : QPageLayout::Portrait;
    if (!printers_.empty()) {
        cmbPrinter_->setCurrentIndex(printer);
        ChoosePrinter(printer);
    }
    if (memory.Kept && memory.PaperIndex < cmbPaperSize_->count()) {
        cmbPaperSize_->setCurrentIndex(memory.PaperIndex);
        paperIndex_ = memory.PaperIndex;
    }
    (orientation_ == QPageLayout::Landscape ? optMuki1_ : optMuki0_)->setChecked(true);
    txtBusu_->setText(QString::fromStdString(memory.Copies));
    txtRitu_->setText(QString::fromStdString(memory.Zoom));

    connect(cmbPrinter_, &QComboBox::currentIndexChanged, this, &PrintDialog::ChoosePrinter);
    connect(cmbPaperSize_, &QComboBox::currentIndexChanged, this, &PrintDialog::ChoosePaper);
    connect(optMuki0_, &QRadioButton::clicked, this,
            [this] { ChooseOrientation(QPageLayout::Portrait); });
    connect(optMuki1_, &QRadioButton::clicked, this,
            [this] { ChooseOrientation(QPageLayout::Landscape); });
    connect(cmdPrint_, &QPushButton::clicked, this, &PrintDialog::Print);
    connect(cmdCancel_, &QPushButton::clicked, this, &QDialog::reject);
    loading_ = false;
}

std::optional<PrintJob> PrintDialog::Run(PrintContext& context, QWidget* owner) {
    // On the heap: the owner, and the dialog with it, may go while the dialog is open.
    QPointer<PrintDialog> dialog = new PrintDialog(context, owner);
    dialog->exec();
    if (dialog.isNull()) {
        return std::nullopt;
    }
    std::optional<PrintJob> job = dialog->Job();
    delete dialog;
    return job;
}

void PrintDialog::BuildControls() {
    cmbPrinter_ = new QComboBox(this);
    cmbPrinter_->setObjectName("cmbPrinter");
    cmbPaperSize_ = new QComboBox(this);
    cmbPaperSize_->setObjectName("cmbPaperSize");
    optMuki0_ = new QRadioButton("Portrait", this);
    optMuki0_->setObjectName("optMuki0");
    optMuki1_ = new QRadioButton("Landscape", this);
    optMuki1_->setObjectName("optMuki1");
    txtBusu_ = new QLineEdit(this);
    txtBusu_->setObjectName("txtBusu");
    txtRitu_ = new QLineEdit(this);
    txtRitu_->setObjectName("txtRitu");
    for (QLineEdit* box : {txtBusu_, txtRitu_}) {
        box->setMaxLength(output::PrintEntryLength);
        box->setFixedWidth(40);
    }
    auto* upBusu = new UpDown(*txtBusu_, 1, 999, this);
    upBusu->setObjectName("UpBusu");
    auto* udRitu = new UpDown(*txtRitu_, output::MinZoom, output::MaxZoom, this);
    udRitu->setObjectName("udRitu");
    cmdPrint_ = new QPushButton("Print", this);
    cmdPrint_->setObjectName("cmdPrint");
    cmdPrint_->setDefault(true);
    cmdCancel_ = new QPushButton("Cancel", this);
    cmdCancel_->setObjectName("cmdCancel");

    auto* grid = new QGridLayout;
    grid->addWidget(new QLabel("Printer", this), 0, 0);
    grid->addWidget(cmbPrinter_, 0, 1, 1, 3);
    grid->addWidget(new QLabel("Paper", this), 1, 0);
    grid->addWidget(cmbPaperSize_, 1, 1, 1, 3);
    auto* orientation = new QGroupBox("Orientation", this);
    auto* options = new QHBoxLayout(orientation);
    options->addWidget(optMuki0_);
    options->addWidget(optMuki1_);
    grid->addWidget(orientation, 2, 0, 1, 4);
    auto* copies = new QHBoxLayout;
    copies->addWidget(txtBusu_);
    copies->addWidget(upBusu);
    grid->addWidget(new QLabel("Copies", this), 3, 0);
    grid->addLayout(copies, 3, 1, Qt::AlignLeft);
    auto* zoom = new QHBoxLayout;
    zoom->addWidget(txtRitu_);
    zoom->addWidget(udRitu);
    zoom->addWidget(new QLabel("%", this));
    grid->addWidget(new QLabel("Zoom", this), 3, 2);
    grid->addLayout(zoom, 3, 3, Qt::AlignLeft);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmdPrint_);
    buttons->addWidget(cmdCancel_);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(grid);
    layout->addLayout(buttons);
    cmbPrinter_->setMinimumWidth(280);
}

void PrintDialog::ChoosePrinter(int index) {
    if (index < 0 || index >= static_cast<int>(printers_.size())) {
        return;
    }
    const PrinterChoice& printer = printers_[static_cast<std::size_t>(index)];
    const std::vector<NumberedSize> sizes = PaperSizesOf(printer);
    std::vector<int> numbers;
    for (const NumberedSize& size : sizes) {
        numbers.push_back(size.Number);
    }
    papers_.clear();
    for (const output::PaperEntry& entry : output::PaperListOf(numbers)) {
        papers_.push_back({QString::fromStdString(entry.Name), sizes[entry.Reported].Size});
    }
    const QPageSize wanted = DefaultPaperOf(printer);
    int chosen = 0;
    for (std::size_t i = 0; i < papers_.size(); ++i) {
        if (papers_[i].Size.isEquivalentTo(wanted)) {
            chosen = static_cast<int>(i);
            break;
        }
    }
    const bool wasLoading = loading_;
    loading_ = true;
    cmbPaperSize_->clear();
    for (const Paper& paper : papers_) {
        cmbPaperSize_->addItem(paper.Name);
    }
    cmbPaperSize_->setCurrentIndex(papers_.empty() ? -1 : chosen);
    paperIndex_ = papers_.empty() ? -1 : chosen;
    loading_ = wasLoading;
}

void PrintDialog::ChoosePaper(int index) {
    if (loading_ || index < 0 || index >= static_cast<int>(papers_.size())) {
        return;
    }
    const QSizeF before =
        paperIndex_ >= 0
            ? PrintableSize(papers_[static_cast<std::size_t>(paperIndex_)].Size, orientation_)
            : QSizeF();
    paperIndex_ = index;
    CorrectZoom(before, PrintableSize(papers_[static_cast<std::size_t>(index)].Size, orientation_));
}

void PrintDialog::ChooseOrientation(QPageLayout::Orientation orientation) {
    if (orientation == orientation_ || paperIndex_ < 0) {
        orientation_ = orientation;
        return;
    }
    const QPageSize& size = papers_[static_cast<std::size_t>(paperIndex_)].Size;
    const QSizeF before = PrintableSize(size, orientation_);
    orientation_ = orientation;
    CorrectZoom(before, PrintableSize(size, orientation_));
}

QSizeF PrintDialog::PrintableSize(const QPageSize& size,
                                  QPageLayout::Orientation orientation) const {
    const PrinterChoice& printer =
        printers_.at(static_cast<std::size_t>(std::max(0, cmbPrinter_->currentIndex())));
    if (printer.PdfFile) {
        return QPageLayout(size, orientation, QMarginsF()).paintRect(QPageLayout::Point).size();
    }
    QPrinter device;
    device.setPrinterName(printer.Name);
    device.setPageSize(size);
    device.setPageOrientation(orientation);
    return device.pageRect(QPrinter::Point).size();
}

void PrintDialog::CorrectZoom(QSizeF before, QSizeF after) {
    bool number = false;
    const int zoom = txtRitu_->text().trimmed().toInt(&number);
    if (!number) {
        return;
    }
    txtRitu_->setText(QString::number(output::CorrectedZoom(zoom, before.width(), before.height(),
                                                            after.width(), after.height())));
}

void PrintDialog::Print() {
    const output::PrintEntryCheck check =
        output::CheckPrintEntries(txtBusu_->text().toStdString(), txtRitu_->text().toStdString());
    if (!check.Passed) {
        shell::ShowMessage(context_.Sink, check.Message, shell::buttons::Ok, shell::icons::Warning);
        QLineEdit* box = check.Focus == output::PrintEntry::Copies ? txtBusu_ : txtRitu_;
        box->setFocus();
        box->selectAll();
        return;
    }
    const int printerIndex = cmbPrinter_->currentIndex();
    if (printerIndex < 0 || paperIndex_ < 0) {
        return;
    }
    PrintJob job{.Printer = printers_[static_cast<std::size_t>(printerIndex)],
                 .PdfPath = {},
                 .PageSize = papers_[static_cast<std::size_t>(paperIndex_)].Size,
                 .Orientation = orientation_,
                 .Copies = check.Copies,
                 .Zoom = check.Zoom};
    if (job.Printer.PdfFile) {
        const auto path = context_.ChoosePdfFile ? context_.ChoosePdfFile(this) : std::nullopt;
        if (!path) {
            return;
        }
        job.PdfPath = *path;
    }
    context_.Memory = {.Kept = true,
                       .PrinterIndex = printerIndex,
                       .PaperIndex = paperIndex_,
                       .Landscape = orientation_ == QPageLayout::Landscape,
                       .Copies = txtBusu_->text().toStdString(),
                       .Zoom = txtRitu_->text().toStdString()};
    job_ = std::move(job);
    accept();
}

} // namespace torvane::app
