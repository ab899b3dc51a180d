#include "logger/download_dialog.h"

#include "logger/clear_logger.h"
#include "shell/help_window.h"
#include "shell/sleep_inhibitor.h"
#include "shell/step_timer.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <algorithm>
#include <array>

namespace torvane::app {
namespace {

struct Column {
    const char* Title;
    int Width; // 0: the list's default
    Qt::Alignment Alignment;
};

constexpr std::array<Column, 5> Columns{{
    {"", 0, Qt::AlignLeft},
    {"FileName", 65, Qt::AlignRight},
    {"Measurement time", 138, Qt::AlignHCenter},
    {"Data size[Kbyte]", 105, Qt::AlignRight},
    {"Download", 65, Qt::AlignHCenter},
}};

constexpr int ProgressMax = 100;

QString ByteCount(std::int64_t bytes) {
    return QString::number(bytes);
}

} // namespace

// Watches the running download for the dialog: moves the progress bar and the buttons, and
// keeps the machine awake.
class DownloadDialog::Watcher : public logger::DownloadObserver {
public:
    explicit Watcher(DownloadDialog& dialog)
        : dialog_(dialog)
        , awake_(dialog.awake_, "Downloading a logging file from the logger") {}

    // The download asks to stay awake before every block: a request that only restarts the idle
    // timers has to be repeated. A session's inhibitor lasts until it is released, so the first
    // request takes it, and the end of the download, on whatever path, gives it back as the
    // watcher goes.
    void KeepAwake() override { awake_.Hold(); }
    void Progress(std::int64_t bytesSoFar) override { dialog_.ShowProgress(bytesSoFar); }
    void StopAnswered(bool stopping) override { dialog_.StopAnswered(stopping); }

private:
    DownloadDialog& dialog_;
    AwakeHold awake_;
};

struct DownloadDialog::Running {
    Running(DownloadDialog& dialog, std::filesystem::path target)
        : Link(dialog.driver_, dialog.sink_)
        , Watcher(dialog)
        , Download(Link, Watcher)
        , File(std::move(target)) {}

    logger::LoggerLink Link;
    DownloadDialog::Watcher Watcher;
    logger::Download Download;
    std::filesystem::path File;
};

DownloadDialog::DownloadDialog(logger::Driver& driver, shell::MessageSink& sink,
                               SleepInhibitor& awake, DownloadRequest request, QWidget* parent)
    : QDialog(parent)
    , driver_(driver)
    , sink_(sink)
    , awake_(awake)
    , request_(std::move(request))
    , steps_(new StepTimer(this)) {
    setObjectName("frmTLM0015");
    AnswerHelpKey(this, "download.html");
    setWindowTitle("LoggerData");
    BuildControls();
    connect(steps_, &StepTimer::Finished, this, &DownloadDialog::DownloadEnded);

    logger::LoggerLink link(driver_, sink_);
    auto list = logger::ReadLoggerFileList(link);
    loaded_ = list.has_value() && !list->Entries.empty();
    if (!loaded_) {
        return;
    }
    list_ = std::move(*list);
    cmdClear_->setEnabled(list_.ClearAllowed);
    FillList();
}

DownloadDialog::~DownloadDialog() = default;

DownloadResult DownloadDialog::Run(logger::Driver& driver, shell::MessageSink& sink,
                                   SleepInhibitor& awake, DownloadRequest request,
                                   QWidget* parent) {
    DownloadDialog dialog(driver, sink, awake, std::move(request), parent);
    dialog.exec();
    return dialog.Result();
}

void DownloadDialog::BuildControls() {
    lvwFile_ = new QTreeWidget(this);
    lvwFile_->setObjectName("lvwFile");
    lvwFile_->setRootIsDecorated(false);
    lvwFile_->setUniformRowHeights(true);
    lvwFile_->setSelectionMode(QAbstractItemView::SingleSelection);
    lvwFile_->setColumnCount(static_cast<int>(Columns.size()));
    auto* header = new QTreeWidgetItem;
    for (std::size_t i = 0; i < Columns.size(); ++i) {
        const int column = static_cast<int>(i);
        header->setText(column, Columns[i].Title);
        header->setTextAlignment(column, Columns[i].Alignment | Qt::AlignVCenter);
    }
    lvwFile_->setHeaderItem(header);
    lvwFile_->header()->setStretchLastSection(false);
    for (std::size_t i = 0; i < Columns.size(); ++i) {
        if (Columns[i].Width > 0) {
            lvwFile_->setColumnWidth(static_cast<int>(i), Columns[i].Width);
        }
    }

    cmdOk_ = new QPushButton("OK(&O)", this);
    cmdOk_->setObjectName("cmdOk");
    cmdOk_->setDefault(true);
    cmdClear_ = new QPushButton("Clear", this);
    cmdClear_->setObjectName("cmdClear");
    cmdClear_->setAutoDefault(false);
    // No mnemonic and no key: only the mouse cancels or stops a download.
    cmdCancel_ = new QPushButton("Cancel", this);
    cmdCancel_->setObjectName("cmdCancel");
    cmdCancel_->setAutoDefault(false);
    cmdCancel_->installEventFilter(this);

    pgbLogging_ = new QProgressBar(this);
    pgbLogging_->setObjectName("PgbLogging");
    pgbLogging_->setRange(0, ProgressMax);
    pgbLogging_->setValue(0);
    pgbLogging_->setTextVisible(false);

    lblTitle_ = new QLabel("Download[byte]", this);
    lblTitle_->setObjectName("lblTitle");
    lblReadData_ = new QLabel(this);
    lblReadData_->setObjectName("lblReadData");
    lblReadData_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    lblReadData_->setMinimumWidth(80);
    lblSepa_ = new QLabel("/", this);
    lblSepa_->setObjectName("lblSepa");
    lblAllData_ = new QLabel(this);
    lblAllData_->setObjectName("lblAllData");
    lblAllData_->setMinimumWidth(80);

    auto* counts = new QHBoxLayout;
    counts->addWidget(lblTitle_);
    counts->addStretch();
    counts->addWidget(lblReadData_);
    counts->addWidget(lblSepa_);
    counts->addWidget(lblAllData_);

    auto* buttons = new QHBoxLayout;
    buttons->addWidget(cmdClear_);
    buttons->addStretch();
    buttons->addWidget(cmdOk_);
    buttons->addWidget(cmdCancel_);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(lvwFile_);
    layout->addLayout(counts);
    layout->addWidget(pgbLogging_);
    layout->addLayout(buttons);
    resize(520, 320);

    connect(cmdOk_, &QPushButton::clicked, this, &DownloadDialog::StartDownload);
    connect(cmdCancel_, &QPushButton::clicked, this, &DownloadDialog::CancelPressed);
    connect(cmdClear_, &QPushButton::clicked, this, &DownloadDialog::ClearPressed);
    connect(lvwFile_, &QTreeWidget::itemDoubleClicked, this, [this] {
        if (lvwFile_->topLevelItemCount() > 0 && !busy_) {
            StartDownload();
        }
    });
}

void DownloadDialog::FillList() {
    for (const logger::FileListRow& row : logger::FileListRows(list_.Entries)) {
        auto* item = new QTreeWidgetItem(lvwFile_);
        const std::array texts{row.Number, row.FileName, row.MeasurementTime, row.DataSize,
                               row.Download};
        for (std::size_t i = 0; i < texts.size(); ++i) {
            const int column = static_cast<int>(i);
            item->setText(column, QString::fromStdString(texts[i]));
            item->setTextAlignment(column, Columns[i].Alignment | Qt::AlignVCenter);
        }
    }
    if (lvwFile_->topLevelItemCount() > 0) {
        lvwFile_->setCurrentItem(lvwFile_->topLevelItem(0));
    }
}

int DownloadDialog::exec() {
    if (!loaded_) {
        return QDialog::Rejected;
    }
    return QDialog::exec();
}

// Escape and the window's close button come here too; QDialog keeps a window open that is
// still visible after this.
void DownloadDialog::reject() {
    if (!busy_) {
        QDialog::reject();
    }
}

bool DownloadDialog::eventFilter(QObject* watched, QEvent* event) {
    if (watched == cmdCancel_ &&
        (event->type() == QEvent::KeyPress || event->type() == QEvent::KeyRelease)) {
        return true;
    }
    return QDialog::eventFilter(watched, event);
}

void DownloadDialog::StartDownload() {
    if (busy_) {
        return;
    }
    const QTreeWidgetItem* selected = lvwFile_->currentItem();
    if (selected == nullptr) {
        return;
    }
    if (shell::ShowMessage(sink_, "Do you download data from Logger?", shell::buttons::OkCancel,
                           shell::icons::Information) == shell::answers::Cancel) {
        return;
    }
    const TlmDownloadEntry* chosen =
        logger::ChooseDownloadEntry(list_.Entries, selected->text(0).toInt(), sink_);
    if (chosen == nullptr) {
        return;
    }
    const TlmDownloadEntry& entry = *chosen;
    downloadSize_ = entry.lngSize;
    lblAllData_->setText(ByteCount(entry.lngSize));

    cmdCancel_->setFocus();
    SetIdleControlsEnabled(false);
    busy_ = true;
    running_ = std::make_unique<Running>(*this, logger::NextLoggerFileName(request_.TempDir));
    if (running_->Download.Start(entry, running_->File)) {
        steps_->Run(running_->Download);
    } else {
        DownloadEnded();
    }
}

void DownloadDialog::DownloadEnded() {
    const logger::DownloadOutcome outcome = running_->Download.Outcome();
    const std::filesystem::path file = running_->File;
    running_.reset();
    busy_ = false;
    if (!outcome.Ok) {
        DownloadFailed();
        return;
    }
    result_ = {.Cancelled = outcome.Stopped, .File = file};
    accept();
}

void DownloadDialog::DownloadFailed() {
    result_ = {};
    lblReadData_->clear();
    lblAllData_->clear();
    pgbLogging_->setValue(0);
    SetIdleControlsEnabled(true);
    cmdCancel_->setEnabled(true);
}

void DownloadDialog::SetIdleControlsEnabled(bool enabled) {
    cmdOk_->setEnabled(enabled);
    // After a failed try the clear button comes back whatever the logger's program.
    cmdClear_->setEnabled(enabled);
    lvwFile_->setEnabled(enabled);
}

void DownloadDialog::ShowProgress(std::int64_t bytesSoFar) {
    lblReadData_->setText(ByteCount(bytesSoFar));
    const double share = downloadSize_ > 0 ? static_cast<double>(bytesSoFar) / downloadSize_ : 1.0;
    pgbLogging_->setValue(
        static_cast<int>(std::clamp(ProgressMax * share, 0.0, 1.0 * ProgressMax)));
}

void DownloadDialog::CancelPressed() {
    if (!busy_) {
        reject();
        return;
    }
    if (running_ == nullptr) {
        return;
    }
    running_->Download.RequestStop();
    cmdOk_->setEnabled(true);
    cmdOk_->setFocus();
    cmdCancel_->setEnabled(false);
}

void DownloadDialog::StopAnswered(bool stopping) {
    cmdCancel_->setEnabled(true);
    if (!stopping) {
        cmdCancel_->setFocus();
        cmdOk_->setEnabled(false);
    }
}

void DownloadDialog::ClearPressed() {
    if (busy_) {
        return;
    }
    busy_ = true;
    cmdCancel_->setEnabled(false);
    cmdOk_->setEnabled(false);
    lvwFile_->setEnabled(false);
    logger::LoggerLink link(driver_, sink_);
    const logger::ClearOutcome outcome = logger::ClearLogger(link);
    busy_ = false;
    if (outcome == logger::ClearOutcome::Declined) {
        cmdCancel_->setEnabled(true);
        cmdOk_->setEnabled(true);
        lvwFile_->setEnabled(true);
        return;
    }
    // Cleared or not, the rows may no longer be the logger's: the dialog closes.
    result_ = {};
    reject();
}

} // namespace torvane::app
