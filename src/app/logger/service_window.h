#pragma once
// frmTLM0060, "Service mode", reached through the password box: the logger's built-in
// functions, its identity block and error log as hexadecimal dumps saved through the program's
// file dialog, and the three heat runs. A heat run is stepped by a timer, so the window takes
// events between its pieces; while it runs only its end button answers, and closing the window
// ends it first.

#include "logger/service_mode.h"
#include "output/file_dialog.h"

#include <QDialog>

#include <array>
#include <filesystem>
#include <functional>
#include <optional>

class QAction;
class QPlainTextEdit;
class QPushButton;

namespace torvane::app {

class StepTimer;

class ServiceWindow : public QDialog {
    Q_OBJECT
public:
    ServiceWindow(logger::Driver& driver, shell::MessageSink& sink,
                  const std::filesystem::path& tempDir, FileDialogContext& fileDialogs,
                  QWidget* parent = nullptr, logger::Pause pause = logger::SleepFor);
    ~ServiceWindow() override;

    static void Run(logger::Driver& driver, shell::MessageSink& sink,
                    const std::filesystem::path& tempDir, FileDialogContext& fileDialogs,
                    QWidget* parent = nullptr);

    const logger::ServiceMode& Model() const { return service_; }
    bool HeatRunning() const;

    // Where a dump is saved: the program's file dialog unless a test puts its own choice here.
    using SaveChoice = std::function<std::optional<std::filesystem::path>(
        output::FileDialogMode mode, QWidget* owner)>;
    void SetSaveChoice(SaveChoice choice) { saveChoice_ = std::move(choice); }

    void reject() override;

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void BuildControls();
    void StartHeatRun(int index);
    void HeatRunFinished();
    void Save(logger::ServiceDump dump);
    void ShowState();
    template <typename Action> void Blocking(Action action);

    logger::ServiceMode service_;
    FileDialogContext& fileDialogs_;
    SaveChoice saveChoice_;
    StepTimer* steps_;
    bool closeWhenEnded_ = false;

    std::array<QPushButton*, 3> cmdHeat_{};
    std::array<QPushButton*, 3> cmdHeatEnd_{};
    std::array<QPushButton*, 2> cmdTest_{};
    QPushButton* cmdInitial_ = nullptr;
    QPushButton* cmdSpecial_ = nullptr;
    QPushButton* cmdError_ = nullptr;
    QPlainTextEdit* txtDump_ = nullptr;
    QAction* mnuSave_ = nullptr;
    QAction* mnuExit_ = nullptr;
};

} // namespace torvane::app
