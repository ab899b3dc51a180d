#include "output/file_dialog.h"

#include "shell/help_window.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QStandardPaths>
#include <QStorageInfo>
#include <QStyle>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace torvane::app {
namespace {

using output::FileColumn;

constexpr int DesktopEntry = -1;
constexpr const char* ParentFolder = "..";

QString PathText(const std::filesystem::path& path) {
    return QString::fromStdString(path);
}
QString ToQString(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

QIcon IconOf(const QStyle& style, output::DriveIcon icon) {
    switch (icon) {
    case output::DriveIcon::Removable:
        return style.standardIcon(QStyle::SP_DriveFDIcon);
    case output::DriveIcon::HardDisk:
        return style.standardIcon(QStyle::SP_DriveHDIcon);
    case output::DriveIcon::Network:
        return style.standardIcon(QStyle::SP_DriveNetIcon);
    case output::DriveIcon::CdRom:
        return style.standardIcon(QStyle::SP_DriveCDIcon);
    case output::DriveIcon::None:
        break;
    }
    return {};
}

} // namespace

std::filesystem::path DesktopFolder() {
    return QStandardPaths::writableLocation(QStandardPaths::DesktopLocation).toStdString();
}

FileDialog::FileDialog(const output::FileDialogRequest& request, FileDialogContext& context,
                       QWidget* owner)
    : QDialog(owner)
    , request_(request)
    , context_(context) {
    setObjectName("frmCom0010");
    setModal(true);
    BuildControls();

    folder_ = output::StartFolder(context_.Memory, context_.DataDir);
    setWindowTitle(ToQString(output::CaptionOf(request_.Mode)));
    txtFileName_->setText(
        ToQString(output::InitialFileName(request_.Mode, context_.Memory.LastFileName)));
    FillDrives();
    for (std::string_view type : output::TypesOf(request_.Mode)) {
        cmbExt_->addItem(ToQString(type));
    }
    ChooseType(0);
    RefreshFileList();
    chkCsv1_->setEnabled(request_.CsvRange);
    loading_ = false;

    connect(imcDrv_, &QComboBox::activated, this, &FileDialog::ChooseDrive);
    connect(cmbExt_, &QComboBox::activated, this, &FileDialog::ChooseType);
}

output::FileDialogResult FileDialog::Run(const output::FileDialogRequest& request,
                                         FileDialogContext& context, QWidget* owner) {
    FileDialog dialog(request, context, owner);
    dialog.exec();
    return dialog.Result();
}

void FileDialog::BuildControls() {
    imcDrv_ = new QComboBox(this);
    imcDrv_->setObjectName("ImcDrv");
    imcDrv_->setMinimumWidth(160);
    lblFolder_ = new QLabel(this);
    lblFolder_->setObjectName("lblFolder");
    lblFolder_->setTextInteractionFlags(Qt::TextSelectableByMouse);

    dirCurrent_ = new QListWidget(this);
    dirCurrent_->setObjectName("dirCurrent");
    dirCurrent_->setFixedWidth(150);
    connect(dirCurrent_, &QListWidget::itemActivated, this, [this](QListWidgetItem* item) {
        const QString name = item->text();
        // Up out of a mounted volume, or down into one, the volume box follows.
        if (MoveTo(name == ParentFolder ? folder_.parent_path() : folder_ / name.toStdString())) {
            SelectDriveOf(folder_);
        }
    });

    lvwFile_ = new QTreeWidget(this);
    lvwFile_->setObjectName("lvwFile");
    lvwFile_->setRootIsDecorated(false);
    lvwFile_->setUniformRowHeights(true);
    lvwFile_->setHeaderLabels({"Name", "Size", "Size", "Date"});
    lvwFile_->setColumnHidden(static_cast<int>(FileColumn::SortSize), true);
    QHeaderView* header = lvwFile_->header();
    header->setStretchLastSection(false);
    header->setSectionResizeMode(static_cast<int>(FileColumn::Name), QHeaderView::Stretch);
    header->setSectionResizeMode(static_cast<int>(FileColumn::Size), QHeaderView::ResizeToContents);
    header->setSectionResizeMode(static_cast<int>(FileColumn::Date), QHeaderView::ResizeToContents);
    header->setSectionsClickable(true);
    header->setSortIndicatorShown(true);
    connect(header, &QHeaderView::sectionClicked, this,
            [this](int column) { SortBy(static_cast<FileColumn>(column)); });
    connect(lvwFile_, &QTreeWidget::itemClicked, this,
            [this](QTreeWidgetItem* item) { txtFileName_->setText(item->text(0)); });
    connect(lvwFile_, &QTreeWidget::itemDoubleClicked, this, [this] {
        if (lvwFile_->currentItem() != nullptr && lvwFile_->currentItem()->isSelected()) {
            Execute();
        }
    });

    lblStatus_ = new QLabel(this);
    lblStatus_->setObjectName("lblStatus");
    lblStatus_->setWordWrap(true);

    txtFileName_ = new QLineEdit(this);
    txtFileName_->setObjectName("txtFileName");
    txtFileName_->installEventFilter(this);
    cmbExt_ = new QComboBox(this);
    cmbExt_->setObjectName("cmbExt");
    cmdExec_ = new QPushButton("OK(&O)", this);
    cmdExec_->setObjectName("cmdExec");
    cmdExec_->setDefault(true);
    connect(cmdExec_, &QPushButton::clicked, this, &FileDialog::Execute);
    cmdCancel_ = new QPushButton("Cancel(&C)", this);
    cmdCancel_->setObjectName("cmdCancel");
    connect(cmdCancel_, &QPushButton::clicked, this, [this] {
        result_ = {};
        reject();
    });

    fraCsv_ = new QGroupBox("CSV File", this);
    fraCsv_->setObjectName("fraCsv");
    chkCsv0_ = new QCheckBox("Displayed Item", fraCsv_);
    chkCsv0_->setObjectName("chkCsv0");
    chkCsv1_ = new QCheckBox("Selection range", fraCsv_);
    chkCsv1_->setObjectName("chkCsv1");
    auto* csv = new QHBoxLayout(fraCsv_);
    csv->addWidget(chkCsv0_);
    csv->addWidget(chkCsv1_);
    csv->addStretch();

    AnswerHelpKey(this, "file-dialog.html");

    auto* place = new QHBoxLayout;
    place->addWidget(imcDrv_);
    place->addWidget(lblFolder_, 1);
    auto* lists = new QHBoxLayout;
    lists->addWidget(dirCurrent_);
    lists->addWidget(lvwFile_, 1);
    auto* name = new QHBoxLayout;
    name->addWidget(new QLabel("File name", this));
    name->addWidget(txtFileName_, 1);
    name->addWidget(cmdExec_);
    auto* type = new QHBoxLayout;
    type->addWidget(new QLabel("File type", this));
    type->addWidget(cmbExt_, 1);
    type->addWidget(cmdCancel_);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(place);
    layout->addLayout(lists, 1);
    layout->addWidget(lblStatus_);
    layout->addLayout(name);
    layout->addLayout(type);
    layout->addWidget(fraCsv_);
    resize(620, 400);
}

void FileDialog::FillDrives() {
    imcDrv_->addItem(style()->standardIcon(QStyle::SP_DesktopIcon), "Desktop", DesktopEntry);
    std::vector<QStorageInfo> volumes;
    for (const QStorageInfo& volume : QStorageInfo::mountedVolumes()) {
        if (volume.isValid() && volume.isReady() && !volume.rootPath().isEmpty()) {
            volumes.push_back(volume);
        }
    }
    std::ranges::sort(volumes, {}, &QStorageInfo::rootPath);
    for (const QStorageInfo& volume : volumes) {
        const std::filesystem::path root = volume.rootPath().toStdString();
        std::error_code error;
        // Containers mount single files too; only folders are places.
        if ((!driveRoots_.empty() && driveRoots_.back() == root) ||
            !std::filesystem::is_directory(root, error)) {
            continue;
        }
        const QIcon icon =
            IconOf(*style(), output::DriveIconOf(volume.fileSystemType().toStdString()));
        imcDrv_->addItem(icon, volume.rootPath(), static_cast<int>(driveRoots_.size()));
        driveRoots_.push_back(root);
    }
    SelectDriveOf(folder_);
}

void FileDialog::SelectDriveOf(const std::filesystem::path& folder) {
    const auto drive = output::DriveOf(folder, driveRoots_);
    imcDrv_->setCurrentIndex(drive ? imcDrv_->findData(static_cast<int>(*drive)) : 0);
}

void FileDialog::ChooseDrive(int index) {
    const int drive = imcDrv_->itemData(index).toInt();
    const std::filesystem::path target =
        drive == DesktopEntry ? context_.DesktopPath : driveRoots_[static_cast<size_t>(drive)];
    if (!MoveTo(target)) {
        SelectDriveOf(folder_);
    }
}

bool FileDialog::MoveTo(const std::filesystem::path& folder) {
    std::error_code error;
    if (!std::filesystem::is_directory(folder, error)) {
        lblStatus_->setText(PathText(folder) + ": not a folder that can be opened");
        return false;
    }
    folder_ = folder.lexically_normal();
    txtFileName_->clear();
    RefreshFileList();
    return true;
}

void FileDialog::ChooseType(int index) {
    pattern_ = output::PatternOf(cmbExt_->itemText(index).toStdString());
    fraCsv_->setVisible(output::OffersCsvOptions(pattern_));
    if (!loading_) {
        txtFileName_->clear();
        RefreshFileList();
    }
}

void FileDialog::RefreshFileList() {
    lblFolder_->setText(PathText(folder_));
    output::FolderListing listing = output::ListFolder(folder_, pattern_);
    lblStatus_->setText(listing.Unreadable ? ToQString(*listing.Unreadable) : QString());
    dirCurrent_->clear();
    if (folder_.has_relative_path()) {
        dirCurrent_->addItem(new QListWidgetItem(
            style()->standardIcon(QStyle::SP_FileDialogToParent), ParentFolder));
    }
    for (const std::string& name : listing.Subfolders) {
        dirCurrent_->addItem(
            new QListWidgetItem(style()->standardIcon(QStyle::SP_DirIcon), ToQString(name)));
    }
    rows_ = std::move(listing.Files);
    output::SortRows(rows_, sortColumn_);
    ShowRows();
}

void FileDialog::SortBy(FileColumn column) {
    sortColumn_ = column;
    output::SortRows(rows_, sortColumn_);
    ShowRows();
}

void FileDialog::ShowRows() {
    lvwFile_->clear();
    const QIcon fileIcon = style()->standardIcon(QStyle::SP_FileIcon);
    for (const output::FileRow& row : rows_) {
        QStringList texts;
        for (int column = 0; column < output::FileColumnCount; ++column) {
            texts << ToQString(row.Text(static_cast<FileColumn>(column)));
        }
        auto* item = new QTreeWidgetItem(lvwFile_, texts);
        item->setIcon(0, fileIcon);
        item->setTextAlignment(static_cast<int>(FileColumn::Size), Qt::AlignRight);
    }
    lvwFile_->header()->setSortIndicator(static_cast<int>(sortColumn_), Qt::AscendingOrder);
    lvwFile_->setCurrentItem(nullptr);
}

void FileDialog::Execute() {
    const QList<QTreeWidgetItem*> selected = lvwFile_->selectedItems();
    const output::OkPress press{
        .Mode = request_.Mode,
        .Folder = folder_,
        .TypedName = txtFileName_->text().toStdString(),
        .SelectedName = selected.isEmpty() ? std::string() : selected[0]->text(0).toStdString(),
        .Type = cmbExt_->currentText().toStdString(),
        .DisplayedItemTicked = chkCsv0_->isChecked(),
        .SelectionRangeTicked = chkCsv1_->isChecked()};
    const output::FileDialogResult result = output::PressOk(press, context_.Memory, context_.Sink);
    if (!result.Cancel) {
        result_ = result;
        accept();
    }
}

bool FileDialog::eventFilter(QObject* watched, QEvent* event) {
    if (watched == txtFileName_ && event->type() == QEvent::KeyPress) {
        const QList<uint> typed = static_cast<QKeyEvent*>(event)->text().toUcs4();
        if (std::ranges::any_of(typed, [](uint key) {
                return !output::FileNameKeyPasses(static_cast<char32_t>(key));
            })) {
            return true;
        }
    }
    return QDialog::eventFilter(watched, event);
}

} // namespace torvane::app
