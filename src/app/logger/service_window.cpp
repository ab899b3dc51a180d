#include "logger/service_window.h"

#include "shell/help_window.h"
#include "shell/step_timer.h"
#include "shell/wait_cursor.h"

#include <QCloseEvent>
#include <QFontDatabase>
#include <QGridLayout>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace torvane::app {
namespace {

using logger::ServiceControl;

QPushButton* Button(const char* name, const QString& caption, QWidget* parent) {
    auto* button = new QPushButton(caption, parent);
    button->setObjectName(name);
    button->setAutoDefault(false);
    return button;
}

} // namespace

ServiceWindow::ServiceWindow(logger::Driver& driver, shell::MessageSink& sink,
                             const std::filesystem::path& tempDir, FileDialogContext& fileDialogs,
                             QWidget* parent, logger::Pause pause)
    : QDialog(parent)
    , service_(driver, sink, tempDir, std::move(pause))
    , fileDialogs_(fileDialogs)
    , steps_(new StepTimer(this)) {
    setObjectName("frmTLM0060");
    setWindowTitle("Service mode");
    saveChoice_ = [this](output::FileDialogMode mode,
                         QWidget* owner) -> std::optional<std::filesystem::path> {
        const output::FileDialogResult result =
            FileDialog::Run(output::FileDialogRequest{.Mode = mode}, fileDialogs_, owner);
        if (result.Cancel) {
            return std::nullopt;
        }
        return result.Filepath;
    };
    connect(steps_, &StepTimer::Finished, this, &ServiceWindow::HeatRunFinished);
    BuildControls();
    ShowState();
    AnswerHelpKey(this, "service.html");
}

ServiceWindow::~ServiceWindow() = default;

void ServiceWindow::Run(logger::Driver& driver, shell::MessageSink& sink,
                        const std::filesystem::path& tempDir, FileDialogContext& fileDialogs,
                        QWidget* parent) {
    ServiceWindow window(driver, sink, tempDir, fileDialogs, parent);
    window.exec();
}

bool ServiceWindow::HeatRunning() const {
    return service_.RunningHeatRun() != nullptr;
}

void ServiceWindow::BuildControls() {
    auto* menu = new QMenuBar(this);
    QMenu* file = menu->addMenu("File(&F)");
    file->menuAction()->setObjectName("mnuFile");
    QMenu* save = file->addMenu("Save");
    mnuSave_ = save->menuAction();
    mnuSave_->setObjectName("mnuSave");
    QAction* saveSpecial = save->addAction("SpecialData");
    saveSpecial->setObjectName("mnuSaveSp");
    connect(saveSpecial, &QAction::triggered, this,
            [this] { Save(logger::ServiceDump::SpecialData); });
    QAction* saveError = save->addAction("ErrorCode");
    saveError->setObjectName("mnuSaveErr");
    connect(saveError, &QAction::triggered, this, [this] { Save(logger::ServiceDump::ErrorCode); });
    mnuExit_ = menu->addAction("Exit(&E)");
    mnuExit_->setObjectName("mnuExit");
    connect(mnuExit_, &QAction::triggered, this, &ServiceWindow::reject);

    auto* grid = new QGridLayout;
    static constexpr std::array<const char*, 3> HeatStart = {"Heat run Start", "Heat run 2 Start",
                                                             "Heat run 3 Start"};
    static constexpr std::array<const char*, 3> HeatEnd = {"Heat run End", "Heat run 2 End",
                                                           "Heat run 3 End"};
    for (int i = 0; i < 3; ++i) {
        const auto index = static_cast<std::size_t>(i);
        cmdHeat_[index] = Button(qPrintable(QString("cmdHeat%1").arg(i)), HeatStart[index], this);
        cmdHeatEnd_[index] =
            Button(qPrintable(QString("cmdHeatEnd%1").arg(i)), HeatEnd[index], this);
        connect(cmdHeat_[index], &QPushButton::clicked, this, [this, i] { StartHeatRun(i); });
        connect(cmdHeatEnd_[index], &QPushButton::clicked, this,
                [this] { service_.RequestHeatRunEnd(); });
        grid->addWidget(cmdHeat_[index], i, 0);
        grid->addWidget(cmdHeatEnd_[index], i, 1);
    }
    cmdTest_[0] = Button("cmdTest0", "TEST1 Start", this);
    cmdTest_[1] = Button("cmdTest1", "TEST2 Start", this);
    connect(cmdTest_[0], &QPushButton::clicked, this,
            [this] { Blocking([this] { service_.RunFunction(logger::ServiceFunction::Test1); }); });
    connect(cmdTest_[1], &QPushButton::clicked, this,
            [this] { Blocking([this] { service_.RunFunction(logger::ServiceFunction::Test2); }); });
    cmdInitial_ = Button("cmdInitial", " Initial configuration Start", this);
    connect(cmdInitial_, &QPushButton::clicked, this, [this] {
        Blocking([this] { service_.RunFunction(logger::ServiceFunction::InitialConfiguration); });
    });
    cmdSpecial_ = Button("cmdSpecial", "Get Special Data", this);
    connect(cmdSpecial_, &QPushButton::clicked, this,
            [this] { Blocking([this] { service_.ReadSpecialData(); }); });
    cmdError_ = Button("cmdError", "Get Error code", this);
    connect(cmdError_, &QPushButton::clicked, this,
            [this] { Blocking([this] { service_.ReadErrorCode(); }); });
    grid->addWidget(cmdTest_[0], 0, 2);
    grid->addWidget(cmdTest_[1], 1, 2);
    grid->addWidget(cmdInitial_, 2, 2);
    grid->addWidget(cmdSpecial_, 0, 3);
    grid->addWidget(cmdError_, 1, 3);

    txtDump_ = new QPlainTextEdit(this);
    txtDump_->setObjectName("txtDump");
    txtDump_->setReadOnly(true);
    txtDump_->setLineWrapMode(QPlainTextEdit::NoWrap);
    txtDump_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    txtDump_->setMinimumSize(620, 260);

    auto* layout = new QVBoxLayout(this);
    layout->setMenuBar(menu);
    layout->addLayout(grid);
    layout->addWidget(txtDump_, 1);
}

template <typename Action> void ServiceWindow::Blocking(Action action) {
    {
        WaitCursor wait;
        action();
    }
    ShowState();
}

void ServiceWindow::StartHeatRun(int index) {
    shell::SteppedActivity* run = service_.StartHeatRun(static_cast<logger::HeatRunKind>(index));
    if (run == nullptr) {
        return;
    }
    QApplication::setOverrideCursor(Qt::WaitCursor);
    ShowState();
    cmdHeatEnd_[static_cast<std::size_t>(index)]->setFocus();
    steps_->Run(*run);
}

void ServiceWindow::HeatRunFinished() {
    service_.HeatRunEnded();
    QApplication::restoreOverrideCursor();
    ShowState();
    if (closeWhenEnded_) {
        QDialog::reject();
    }
}

void ServiceWindow::Save(logger::ServiceDump dump) {
    const auto mode = dump == logger::ServiceDump::SpecialData
                          ? output::FileDialogMode::SaveSpecialData
                          : output::FileDialogMode::SaveErrorCode;
    if (const auto file = saveChoice_(mode, this)) {
        logger::SaveDump(service_.Bytes(dump), *file, fileDialogs_.Sink);
    }
}

void ServiceWindow::ShowState() {
    const bool idle = !HeatRunning();
    for (int i = 0; i < 3; ++i) {
        cmdHeat_[static_cast<std::size_t>(i)]->setEnabled(
            service_.Enabled(ServiceControl::Heat, i));
        cmdHeatEnd_[static_cast<std::size_t>(i)]->setEnabled(
            service_.Enabled(ServiceControl::HeatEnd, i));
    }
    for (QPushButton* test : cmdTest_) {
        test->setEnabled(service_.Enabled(ServiceControl::Test));
    }
    cmdInitial_->setEnabled(service_.Enabled(ServiceControl::Initial));
    cmdSpecial_->setEnabled(service_.Enabled(ServiceControl::Special));
    cmdError_->setEnabled(service_.Enabled(ServiceControl::Error));
    mnuSave_->setEnabled(idle);
    const QString dump = QString::fromStdString(service_.DumpText());
    if (txtDump_->toPlainText() != dump) {
        txtDump_->setPlainText(dump);
    }
}

void ServiceWindow::reject() {
    if (HeatRunning()) {
        // The run ends at its next look and the window goes with it.
        closeWhenEnded_ = true;
        service_.RequestHeatRunEnd();
        return;
    }
    QDialog::reject();
}

void ServiceWindow::closeEvent(QCloseEvent* event) {
    if (HeatRunning()) {
        event->ignore();
        reject();
        return;
    }
    QDialog::closeEvent(event);
}

} // namespace torvane::app
