#pragma once
// frmCom0010: the program's own modal file dialog, for every file the operator picks. Its
// rules are core's (output/file_dialog_rules.h, output/file_list.h); this is their widgets:
// the drive box with "Desktop" and the mounted volumes, the folder list, the file list, the
// type box, the name box and, while the CSV type is chosen, the CSV options.

#include "output/file_dialog_rules.h"
#include "output/file_list.h"
#include "shell/message_sink.h"

#include <QDialog>

#include <filesystem>
#include <vector>

class QCheckBox;
class QComboBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;
class QTreeWidget;

namespace torvane::app {

// What every opening of the dialog works with; the desktop holds one for the process.
struct FileDialogContext {
    output::FileDialogMemory& Memory;
    std::filesystem::path DataDir;
    std::filesystem::path DesktopPath;
    shell::MessageSink& Sink;
};

// The operator's desktop folder.
std::filesystem::path DesktopFolder();

class FileDialog : public QDialog {
    Q_OBJECT
public:
    FileDialog(const output::FileDialogRequest& request, FileDialogContext& context,
               QWidget* owner);

    // Shows the dialog modally and gives its answer.
    static output::FileDialogResult Run(const output::FileDialogRequest& request,
                                        FileDialogContext& context, QWidget* owner);

    const output::FileDialogResult& Result() const { return result_; }
    const std::filesystem::path& Folder() const { return folder_; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void BuildControls();
    void FillDrives();
    void ChooseDrive(int index);
    // A new place clears the name box and lists the folder; a folder that cannot be read
    // leaves the old place.
    bool MoveTo(const std::filesystem::path& folder);
    void SelectDriveOf(const std::filesystem::path& folder);
    void ChooseType(int index);
    void RefreshFileList();
    void SortBy(output::FileColumn column);
    void ShowRows();
    void Execute();

    output::FileDialogRequest request_;
    FileDialogContext& context_;
    output::FileDialogResult result_;
    std::filesystem::path folder_;
    std::vector<std::filesystem::path> driveRoots_;
    std::string pattern_;
    std::vector<output::FileRow> rows_;
    output::FileColumn sortColumn_ = output::FileColumn::Name;
    bool loading_ = true;

    QComboBox* imcDrv_ = nullptr;
    QLabel* lblFolder_ = nullptr;
    QListWidget* dirCurrent_ = nullptr;
    QTreeWidget* lvwFile_ = nullptr;
    QLabel* lblStatus_ = nullptr;
    QLineEdit* txtFileName_ = nullptr;
    QComboBox* cmbExt_ = nullptr;
    QPushButton* cmdExec_ = nullptr;
    QPushButton* cmdCancel_ = nullptr;
    QGroupBox* fraCsv_ = nullptr;
    QCheckBox* chkCsv0_ = nullptr;
    QCheckBox* chkCsv1_ = nullptr;
};

} // namespace torvane::app
