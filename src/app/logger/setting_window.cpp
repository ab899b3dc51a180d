#include "logger/setting_window.h"

#include "output/hard_copy.h"
#include "shell/help_window.h"
#include "shell/wait_cursor.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QTimer>
#include <QToolButton>
#include <QVBoxLayout>

namespace torvane::app {
namespace {

using logger::SampleRow;
using logger::SensorButton;
using logger::SensorMenu;
using logger::SettingControl;
using logger::SettingText;

// The rows as the window lists them, with the names of their control arrays.
struct SamplingRow {
    SampleRow Row;
    const char* Control;
    const char* Caption;
};
constexpr std::array<SamplingRow, logger::SampleRowCount> SamplingRows{{
    {SampleRow::Ne, "chkNe", "Ne"},
    {SampleRow::TH, "chkTh", "TH"},
    {SampleRow::VFW, "chkVFW", "VFW"},
    {SampleRow::VRW, "chkVRW", "VRW"},
    {SampleRow::VB, "chkVB", "VB"},
    {SampleRow::VM1, "chkVM1", nullptr},
    {SampleRow::VM2, "chkVM2", nullptr},
    {SampleRow::VM3, "chkVM3", nullptr},
    {SampleRow::VM4, "chkVM4", nullptr},
}};
constexpr std::array<const char*, logger::OnOffCount> OnOffCaptions{"DETO1", "DETO2", "LAP"};

struct TextBox {
    const char* Name;
    const char* UpDown;
    int Low;
    int High;
    int Step;
};
// By SettingText.
constexpr std::array<TextBox, 5> TextBoxes{{
    {"txtCm_F", "udCm_F", logger::CmMin, logger::CmMax, 1},
    {"txtCm_R", "udCm_R", logger::CmMin, logger::CmMax, 1},
    {"txtTH", "udTH", 0, logger::ThMax, 1},
    {"txtNe", "udNe", 0, logger::EngineSpeedMax, logger::EngineSpeedStep},
    {"txtShift", "udShift", 0, logger::EngineSpeedMax, logger::EngineSpeedStep},
}};

constexpr std::array<const char*, 3> EngineCaptions{"  1P/rev", "  2P/rev", "0.5P/rev"};

QString ColourSheet(logger::ButtonColor colour) {
    const std::uint32_t rgb = logger::ButtonRgb(colour);
    // A plain border: the style's bevel would shade the face away from the colour it says.
    return QString("QPushButton { background-color: rgb(%1, %2, %3); border: 1px solid gray; "
                   "padding: 4px 12px; } QPushButton:disabled { color: gray; }")
        .arg((rgb >> 16) & 0xFF)
        .arg((rgb >> 8) & 0xFF)
        .arg(rgb & 0xFF);
}

template <typename Widget> Widget* Named(Widget* widget, const QString& name) {
    widget->setObjectName(name);
    return widget;
}

} // namespace

SettingWindow::SettingWindow(logger::Driver& driver, shell::MessageSink& sink,
                             std::filesystem::path initDir, QWidget* parent)
    : QDialog(parent)
    , link_(driver, sink)
    , mode_(std::make_unique<logger::SettingMode>(link_, std::move(initDir))) {
    setObjectName("frmTLM0020");
    setWindowTitle("SETTING MODE");
    tmrStatus_ = Named(new QTimer(this), "tmrStatus");
    connect(tmrStatus_, &QTimer::timeout, this, &SettingWindow::Watch);
    BuildControls();
    BuildMenus();
    AnswerHelpKey(this, "setting.html");
}

SettingWindow::~SettingWindow() = default;

void SettingWindow::BuildControls() {
    auto* columns = new QHBoxLayout;
    columns->addWidget(BuildSampling());
    auto* right = new QVBoxLayout;
    right->addWidget(BuildConditions());
    right->addWidget(BuildSensors());
    right->addStretch();
    columns->addLayout(right);
    auto* whole = new QVBoxLayout(this);
    whole->addLayout(columns);
}

QWidget* SettingWindow::BuildSampling() {
    auto* box = new QGroupBox("Sampling time [ms]", this);
    auto* grid = new QGridLayout(box);
    for (int column = 0; column < logger::PeriodCount; ++column) {
        auto* head = new QLabel(QString::number(logger::SamplingPeriods[column]), box);
        head->setAlignment(Qt::AlignCenter);
        grid->addWidget(head, 0, column + 1);
    }
    for (int line = 0; line < logger::SampleRowCount; ++line) {
        const SamplingRow& row = SamplingRows[static_cast<std::size_t>(line)];
        const int vm = static_cast<int>(row.Row) - static_cast<int>(SampleRow::VM1);
        QLabel* caption = row.Caption != nullptr
                              ? new QLabel(row.Caption, box)
                              : Named(new QLabel(box), QString("lblVM%1").arg(vm + 1));
        if (vm >= 0) {
            lblVm_[static_cast<std::size_t>(vm)] = caption;
        }
        grid->addWidget(caption, line + 1, 0);
        for (int column = 0; column < logger::PeriodCount; ++column) {
            auto* check = Named(new QCheckBox(box), QString("%1%2").arg(row.Control).arg(column));
            chkSample_[static_cast<std::size_t>(row.Row)][static_cast<std::size_t>(column)] = check;
            grid->addWidget(check, line + 1, column + 1, Qt::AlignCenter);
            connect(check, &QCheckBox::clicked, this, [this, row = row.Row, column](bool ticked) {
                mode_->ClickSampling(row, column, ticked);
                Refresh();
            });
        }
    }
    for (int item = 0; item < logger::OnOffCount; ++item) {
        const int line = logger::SampleRowCount + 1 + item;
        grid->addWidget(new QLabel(OnOffCaptions[static_cast<std::size_t>(item)], box), line, 0);
        for (const bool onBox : {true, false}) {
            auto* check = Named(new QCheckBox(onBox ? "ON" : "OFF", box),
                                QString(onBox ? "chkON%1" : "chkOFF%1").arg(item));
            (onBox ? chkOn_ : chkOff_)[static_cast<std::size_t>(item)] = check;
            grid->addWidget(check, line, onBox ? 1 : 3, 1, 2);
            connect(check, &QCheckBox::clicked, this, [this, item, onBox](bool ticked) {
                mode_->ClickOnOff(static_cast<logger::OnOffItem>(item), onBox, ticked);
                Refresh();
            });
        }
    }
    const int last = logger::SampleRowCount + 1 + logger::OnOffCount;
    grid->addWidget(new QLabel("Logging time", box), last, 0, 1, 3);
    lblTotalTime_ = Named(new QLabel(box), "lblTotalTime");
    lblTotalTime_->setFrameShape(QFrame::Panel);
    lblTotalTime_->setFrameShadow(QFrame::Sunken);
    lblTotalTime_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    grid->addWidget(lblTotalTime_, last, 3, 1, 4);
    return box;
}

QWidget* SettingWindow::BuildConditions() {
    auto* box = new QGroupBox("Setting", this);
    auto* grid = new QGridLayout(box);
    int line = 0;
    const auto pulseList = [&](const char* name, const char* caption) {
        auto* list = Named(new QComboBox(box), name);
        for (int index = 0; index < logger::PulseCount; ++index) {
            list->addItem(QString::fromStdString(logger::PulseText(index)));
        }
        list->installEventFilter(this);
        grid->addWidget(new QLabel(caption, box), line, 0);
        grid->addWidget(list, line++, 1);
        connect(list, &QComboBox::activated, this, [this, list](int index) {
            mode_->SelectPulse(list == cmbPulseF_, index);
            Refresh();
        });
        return list;
    };
    const auto textBox = [&](SettingText which, const char* caption) {
        const TextBox& shape = TextBoxes[static_cast<std::size_t>(which)];
        auto* text = Named(new QLineEdit(box), shape.Name);
        text->setAlignment(Qt::AlignRight);
        text->installEventFilter(this);
        txt_[static_cast<std::size_t>(which)] = text;
        connect(text, &QLineEdit::textEdited, this, [this, which](const QString& typed) {
            mode_->SetText(which, typed.toStdString());
        });
        auto* upDown = Named(new QWidget(box), shape.UpDown);
        auto* arrows = new QVBoxLayout(upDown);
        arrows->setContentsMargins(0, 0, 0, 0);
        arrows->setSpacing(0);
        for (const int direction : {1, -1}) {
            auto* arrow = new QToolButton(upDown);
            arrow->setArrowType(direction > 0 ? Qt::UpArrow : Qt::DownArrow);
            arrow->setFixedSize(16, 11);
            arrow->setAutoRepeat(true);
            arrows->addWidget(arrow);
            connect(arrow, &QToolButton::clicked, this,
                    [this, which, direction] { StepUpDown(which, direction); });
        }
        grid->addWidget(new QLabel(caption, box), line, 0);
        grid->addWidget(text, line, 1);
        grid->addWidget(upDown, line++, 2);
    };
    cmbPulseF_ = pulseList("cmbPulse_F", "Pulse/rev  front");
    textBox(SettingText::CmF, "Tyre [cm]  front");
    cmbPulseR_ = pulseList("cmbPulse_R", "Pulse/rev  rear");
    textBox(SettingText::CmR, "Tyre [cm]  rear");
    textBox(SettingText::StartTh, "Start  TH [%]");
    textBox(SettingText::StartNe, "Start  Ne [r/min]");
    textBox(SettingText::Shift, "Shift [r/min]");
    grid->addWidget(new QLabel("Engine", box), line, 0);
    auto* engines = new QHBoxLayout;
    for (int option = 0; option < 3; ++option) {
        auto* radio = Named(new QRadioButton(EngineCaptions[static_cast<std::size_t>(option)], box),
                            QString("optEngine%1").arg(option));
        radio->installEventFilter(this);
        optEngine_[static_cast<std::size_t>(option)] = radio;
        engines->addWidget(radio);
        connect(radio, &QRadioButton::clicked, this, [this, option] {
            mode_->SelectEngine(static_cast<logger::Engine>(option));
            Refresh();
        });
    }
    grid->addLayout(engines, line++, 1, 1, 2);
    grid->addWidget(new QLabel("Set on", box), line, 0);
    lblSetTime_ = Named(new QLabel(box), "lblSetTime");
    grid->addWidget(lblSetTime_, line, 1, 1, 2);
    return box;
}

QWidget* SettingWindow::BuildSensors() {
    auto* box = new QGroupBox("Sensor initialisation", this);
    auto* grid = new QGridLayout(box);
    constexpr std::array<std::pair<const char*, const char*>, 4> buttons{{
        {"cmdThrottle0", "0%"},
        {"cmdThrottle100", "100%"},
        {"cmdFR", "FR(0mm)"},
        {"cmdRR", "RR(0mm)"},
    }};
    grid->addWidget(new QLabel("Throttle", box), 0, 0);
    grid->addWidget(new QLabel("Suspension", box), 1, 0);
    for (int kind = 0; kind < 4; ++kind) {
        const auto& [name, caption] = buttons[static_cast<std::size_t>(kind)];
        auto* button = Named(new QPushButton(caption, box), name);
        button->setAutoDefault(false);
        cmdSensor_[static_cast<std::size_t>(kind)] = button;
        grid->addWidget(button, kind / 2, kind % 2 + 1);
        connect(button, &QPushButton::clicked, this,
                [this, kind] { TakeSensor(static_cast<SensorButton>(kind)); });
    }
    return box;
}

void SettingWindow::BuildMenus() {
    auto* bar = Named(new QMenuBar(this), "mnuSetting");
    layout()->setMenuBar(bar);
    mnuSend_ = Named(bar->addAction("DataTrancemission(&D)"), "mnuSend");
    connect(mnuSend_, &QAction::triggered, this, &SettingWindow::Send);
    mnuPrint_ = Named(bar->addAction("Print(&P)"), "mnuPrint");
    connect(mnuPrint_, &QAction::triggered, this, &SettingWindow::Print);
    const auto sensorMenu = [&](const char* name, const char* caption,
                                std::array<std::pair<const char*, const char*>, 2> entries,
                                SensorMenu first) {
        QMenu* menu = Named(bar->addMenu(caption), name);
        menu->menuAction()->setObjectName(name);
        for (int i = 0; i < 2; ++i) {
            const auto which = static_cast<SensorMenu>(static_cast<int>(first) + i);
            QAction* entry = Named(menu->addAction(entries[static_cast<std::size_t>(i)].second),
                                   entries[static_cast<std::size_t>(i)].first);
            entry->setCheckable(true);
            mnuSensor_[static_cast<std::size_t>(which)] = entry;
            connect(entry, &QAction::triggered, this, [this, which] {
                mode_->ToggleMenu(which);
                Refresh();
            });
        }
        return menu->menuAction();
    };
    mnuSus_ = sensorMenu("mnuSus", "SuspensionMeasurement(&S)",
                         {{{"mnuFrsus", "FRSUS"}, {"mnuRrsus", "RRSUS"}}}, SensorMenu::FrSus);
    mnuLaf_ = sensorMenu("mnuLaf", "LAF Measurement(&L)",
                         {{{"mnuLaf1", "LAF1"}, {"mnuLaf2", "LAF2"}}}, SensorMenu::Laf1);
    mnuClose_ = Named(bar->addAction("Close(&C)"), "mnuClose");
    connect(mnuClose_, &QAction::triggered, this, &QDialog::reject);
}

bool SettingWindow::Open() {
    const bool open = mode_->Open();
    if (open) {
        Refresh();
    }
    return open;
}

void SettingWindow::Run(logger::Driver& driver, shell::MessageSink& sink,
                        const std::filesystem::path& initDir, QWidget* parent) {
    SettingWindow window(driver, sink, initDir, parent);
    if (window.Open()) {
        window.exec();
    }
}

void SettingWindow::done(int result) {
    tmrStatus_->stop();
    if (!mode_->Close()) {
        Refresh();
        return;
    }
    QDialog::done(result);
}

void SettingWindow::Refresh() {
    const logger::SettingView& view = mode_->View();
    for (std::size_t row = 0; row < chkSample_.size(); ++row) {
        for (std::size_t column = 0; column < chkSample_[row].size(); ++column) {
            chkSample_[row][column]->setChecked(view.Sampling[row][column]);
        }
    }
    for (std::size_t item = 0; item < chkOn_.size(); ++item) {
        chkOn_[item]->setChecked(view.On[item]);
        chkOff_[item]->setChecked(view.Off[item]);
    }
    for (std::size_t vm = 0; vm < lblVm_.size(); ++vm) {
        lblVm_[vm]->setText(QString::fromStdString(view.VmLabels[vm]));
    }
    {
        const QSignalBlocker front(cmbPulseF_);
        const QSignalBlocker rear(cmbPulseR_);
        cmbPulseF_->setCurrentIndex(view.PulseF);
        cmbPulseR_->setCurrentIndex(view.PulseR);
    }
    const std::array<const std::string*, 5> texts{&view.CmF, &view.CmR, &view.StartTh,
                                                  &view.StartNe, &view.Shift};
    for (std::size_t box = 0; box < txt_.size(); ++box) {
        const QString text = QString::fromStdString(*texts[box]);
        if (txt_[box]->text() != text) {
            txt_[box]->setText(text);
        }
    }
    optEngine_[static_cast<std::size_t>(view.Engine)]->setChecked(true);
    lblSetTime_->setText(QString::fromStdString(view.SetTime));
    lblTotalTime_->setText(QString::fromStdString(view.TotalTime));
    const bool ticks[] = {view.FrSus, view.RrSus, view.Laf1, view.Laf2};
    for (std::size_t menu = 0; menu < mnuSensor_.size(); ++menu) {
        mnuSensor_[menu]->setChecked(ticks[menu]);
    }
    const logger::SettingCommands& commands = mode_->Commands();
    mnuSend_->setEnabled(commands.Send);
    mnuSus_->setEnabled(commands.Sus);
    const bool enabled[] = {commands.Throttle0, commands.Throttle100, commands.Front,
                            commands.Rear};
    for (std::size_t kind = 0; kind < cmdSensor_.size(); ++kind) {
        cmdSensor_[kind]->setEnabled(enabled[kind]);
        cmdSensor_[kind]->setStyleSheet(ColourSheet(mode_->Color(static_cast<SensorButton>(kind))));
    }
    if (mode_->WatchInterval() > 0 && !tmrStatus_->isActive()) {
        tmrStatus_->start(mode_->WatchInterval());
    } else if (mode_->WatchInterval() == 0) {
        tmrStatus_->stop();
    }
}

void SettingWindow::Watch() {
    // Stopped while the look runs: a question it asks lets events in, and a second tick must not
    // open a second link.
    tmrStatus_->stop();
    mode_->WatchTick();
    Refresh();
}

void SettingWindow::Send() {
    tmrStatus_->stop();
    logger::SettingFieldError field;
    {
        const WaitCursor hourglass;
        field = mode_->Send();
    }
    Refresh();
    if (const auto focus = logger::FocusOf(field)) {
        ControlOf(*focus)->setFocus();
    }
}

void SettingWindow::Print() {
    // No look at the logger while the print dialog's own event loop runs.
    tmrStatus_->stop();
    PrintWindow(*this, -1);
    Refresh();
}

void SettingWindow::TakeSensor(SensorButton button) {
    tmrStatus_->stop();
    {
        const WaitCursor hourglass;
        mode_->TakeSensor(button);
    }
    Refresh();
}

void SettingWindow::StepUpDown(SettingText box, int direction) {
    const TextBox& shape = TextBoxes[static_cast<std::size_t>(box)];
    bool numeric = false;
    const int shown = txt_[static_cast<std::size_t>(box)]->text().trimmed().toInt(&numeric);
    const int value =
        numeric ? std::clamp(shown + direction * shape.Step, shape.Low, shape.High) : shape.Low;
    mode_->SetText(box, std::to_string(value));
    Refresh();
}

QWidget* SettingWindow::ControlOf(SettingControl control) const {
    switch (control) {
    case SettingControl::PulseF:
        return cmbPulseF_;
    case SettingControl::PulseR:
        return cmbPulseR_;
    case SettingControl::CmF:
        return txt_[static_cast<std::size_t>(SettingText::CmF)];
    case SettingControl::CmR:
        return txt_[static_cast<std::size_t>(SettingText::CmR)];
    case SettingControl::StartTh:
        return txt_[static_cast<std::size_t>(SettingText::StartTh)];
    case SettingControl::StartNe:
        return txt_[static_cast<std::size_t>(SettingText::StartNe)];
    case SettingControl::Shift:
        return txt_[static_cast<std::size_t>(SettingText::Shift)];
    case SettingControl::Engine:
        return optEngine_[0];
    case SettingControl::Throttle0:
        return cmdSensor_[0];
    case SettingControl::Front:
        return cmdSensor_[2];
    case SettingControl::Rear:
        return cmdSensor_[3];
    }
    return nullptr;
}

std::optional<SettingControl> SettingWindow::ControlFor(QObject* watched) const {
    for (int control = 0; control <= static_cast<int>(SettingControl::Engine); ++control) {
        const auto each = static_cast<SettingControl>(control);
        if (ControlOf(each) == watched) {
            return each;
        }
    }
    for (QRadioButton* option : optEngine_) {
        if (option == watched) {
            return SettingControl::Engine;
        }
    }
    return std::nullopt;
}

bool SettingWindow::eventFilter(QObject* watched, QEvent* event) {
    const auto control = ControlFor(watched);
    if (!control) {
        return QDialog::eventFilter(watched, event);
    }
    auto* text = qobject_cast<QLineEdit*>(watched);
    if (event->type() == QEvent::FocusIn && text != nullptr) {
        QTimer::singleShot(0, text, &QLineEdit::selectAll);
    }
    if (event->type() != QEvent::KeyPress) {
        return QDialog::eventFilter(watched, event);
    }
    const auto* key = static_cast<QKeyEvent*>(event);
    if (key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter) {
        auto* list = qobject_cast<QComboBox*>(watched);
        const bool empty = (text != nullptr && text->text().isEmpty()) ||
                           (list != nullptr && list->currentIndex() < 0);
        if (!empty) {
            ControlOf(logger::NextOnReturn(*control, mode_->Commands()))->setFocus();
        }
        return true;
    }
    // Keys that type a character: only digits and backspace get through. Tab and the keys
    // that only move type none.
    const QString typed = key->text();
    const bool filtered = text != nullptr || qobject_cast<QComboBox*>(watched) != nullptr;
    if (filtered && typed.size() == 1) {
        const char16_t character = typed[0].unicode();
        const bool printable = character >= 0x20 && character != 0x7F;
        if (printable &&
            !(character < 0x80 && logger::SettingKeyPasses(static_cast<char>(character)))) {
            return true;
        }
    }
    return QDialog::eventFilter(watched, event);
}

} // namespace torvane::app
