#pragma once
// The setting window (frmTLM0020, "SETTING MODE") over core's SettingMode: it forwards each
// control's event to the model and paints what the model holds; tmrStatus runs while the
// model's watch runs. The logger is reached through the driver, every message goes to the sink.

#include "logger/driver.h"
#include "logger/setting_mode.h"
#include "shell/message_sink.h"

#include <QDialog>

#include <array>
#include <filesystem>
#include <memory>

class QAction;
class QButtonGroup;
class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QTimer;

namespace torvane::app {

class SettingWindow : public QDialog {
    Q_OBJECT
public:
    // initDir holds SETTING.DAT and MT.DAT.
    SettingWindow(logger::Driver& driver, shell::MessageSink& sink, std::filesystem::path initDir,
                  QWidget* parent = nullptr);
    ~SettingWindow() override;

    // Form_Load: false when the window is not to be shown (the operator has been told).
    bool Open();
    // Opens the window and runs it modally.
    static void Run(logger::Driver& driver, shell::MessageSink& sink,
                    const std::filesystem::path& initDir, QWidget* parent = nullptr);

    const logger::SettingMode& Model() const { return *mode_; }

    // A close that the model refuses keeps the window.
    void done(int result) override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void BuildControls();
    QWidget* BuildSampling();
    QWidget* BuildConditions();
    QWidget* BuildSensors();
    void BuildMenus();
    void Refresh();
    void Send();
    void Print();
    void TakeSensor(logger::SensorButton button);
    void Watch();
    void StepUpDown(logger::SettingText box, int direction);
    QWidget* ControlOf(logger::SettingControl control) const;
    std::optional<logger::SettingControl> ControlFor(QObject* watched) const;

    logger::LoggerLink link_;
    std::unique_ptr<logger::SettingMode> mode_;

    std::array<std::array<QCheckBox*, logger::PeriodCount>, logger::SampleRowCount> chkSample_{};
    std::array<QCheckBox*, logger::OnOffCount> chkOn_{};
    std::array<QCheckBox*, logger::OnOffCount> chkOff_{};
    std::array<QLabel*, 4> lblVm_{};
    QComboBox* cmbPulseF_ = nullptr;
    QComboBox* cmbPulseR_ = nullptr;
    std::array<QLineEdit*, 5> txt_{}; // by logger::SettingText
    std::array<QRadioButton*, 3> optEngine_{};
    std::array<QPushButton*, 4> cmdSensor_{}; // by logger::SensorButton
    QLabel* lblSetTime_ = nullptr;
    QLabel* lblTotalTime_ = nullptr;
    QTimer* tmrStatus_ = nullptr;
    QAction* mnuSend_ = nullptr;
    QAction* mnuPrint_ = nullptr;
    QAction* mnuSus_ = nullptr;
    QAction* mnuLaf_ = nullptr;
    std::array<QAction*, 4> mnuSensor_{}; // by logger::SensorMenu
    QAction* mnuClose_ = nullptr;
};

} // namespace torvane::app
