#pragma once
// The logger's file list and the download of one file into the temporary folder (frmTLM0015,
// "LoggerData"). The list is read over one link when the dialog is made; a dialog whose list
// could not be read, or whose logger holds no file, closes again at once (the operator has been
// told). A download runs on the interface thread one block a step from a timer, so that the
// cancel button can ask for a stop between blocks; while it runs nothing else of the dialog
// answers and the dialog cannot be closed. While blocks move, the machine and its display are
// kept awake. The logger's memory can be cleared from here too.

#include "logger/download.h"
#include "logger/driver.h"
#include "logger/file_list.h"
#include "shell/message_sink.h"

#include <QDialog>

#include <filesystem>
#include <memory>
#include <vector>

class QLabel;
class QProgressBar;
class QPushButton;
class QTreeWidget;

namespace torvane::app {

class SleepInhibitor;
class StepTimer;

struct DownloadRequest {
    // Where the downloaded file is written, as LGGRnnnn.rlg.
    std::filesystem::path TempDir;
};

struct DownloadResult {
    // Nothing is to be opened: the dialog was left without a download, the operator stopped
    // the transfer, or the logger was cleared.
    bool Cancelled = true;
    // The file written. A stopped download's partial file stays and keeps its number.
    std::filesystem::path File;
};

class DownloadDialog : public QDialog {
    Q_OBJECT
public:
    // Reads the logger's file list through the driver; every message goes to the sink. A
    // download holds `awake` from its first block to its end.
    DownloadDialog(logger::Driver& driver, shell::MessageSink& sink, SleepInhibitor& awake,
                   DownloadRequest request, QWidget* parent = nullptr);
    ~DownloadDialog() override;

    // Shows the dialog modally and returns what it leaves for the frame.
    static DownloadResult Run(logger::Driver& driver, shell::MessageSink& sink,
                              SleepInhibitor& awake, DownloadRequest request,
                              QWidget* parent = nullptr);

    // False when the dialog closed again while it opened: exec() then returns at once.
    bool Loaded() const { return loaded_; }
    // A download or a clearing is running.
    bool Busy() const { return busy_; }
    const DownloadResult& Result() const { return result_; }

    int exec() override;
    // Refused while busy.
    void reject() override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    class Watcher;
    struct Running;

    void BuildControls();
    void FillList();
    void StartDownload();
    void DownloadEnded();
    void CancelPressed();
    void ClearPressed();
    void DownloadFailed();
    void SetIdleControlsEnabled(bool enabled);
    void ShowProgress(std::int64_t bytesSoFar);
    void StopAnswered(bool stopping);

    logger::Driver& driver_;
    shell::MessageSink& sink_;
    SleepInhibitor& awake_;
    DownloadRequest request_;
    DownloadResult result_;
    logger::LoggerFileList list_;
    bool loaded_ = false;
    bool busy_ = false;
    // The running download, its link and its watcher; stepped by steps_.
    std::unique_ptr<Running> running_;
    StepTimer* steps_;
    std::int32_t downloadSize_ = 0;

    QTreeWidget* lvwFile_;
    QPushButton* cmdOk_;
    QPushButton* cmdCancel_;
    QPushButton* cmdClear_;
    QProgressBar* pgbLogging_;
    QLabel* lblTitle_;
    QLabel* lblReadData_;
    QLabel* lblSepa_;
    QLabel* lblAllData_;
};

} // namespace torvane::app
