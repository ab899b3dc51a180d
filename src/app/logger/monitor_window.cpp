#include "logger/monitor_window.h"

#include "output/hard_copy.h"
#include "shell/help_window.h"

#include <QCloseEvent>
#include <QFrame>
#include <QGridLayout>
#include <QLabel>
#include <QMenuBar>
#include <QTimer>
#include <QVBoxLayout>

namespace torvane::app {
namespace {

using logger::MonitorField;

struct Row {
    MonitorField Field;
    const char* Name; // objectName of the value's label
    const char* Caption;
    const char* Unit;
};

// In the order the labels are filled.
constexpr std::array<Row, logger::MonitorFieldCount> Rows{{
    {MonitorField::Ne, "lblNe", "Ne", "r/min"},
    {MonitorField::THper, "lblTHper", "TH", "%"},
    {MonitorField::THV, "lblTHV", "TH", "V"},
    {MonitorField::VFW, "lblVFW", "VFW", "km/h"},
    {MonitorField::VRW, "lblVRW", "VRW", "km/h"},
    {MonitorField::DETO1, "lblDeto1", "DETO1", "count"},
    {MonitorField::DETO2, "lblDeto2", "DETO2", "count"},
    {MonitorField::VB, "lblVB", "VB", "V"},
    {MonitorField::FRSUS, "lblFRSUS", "FRSUS", "mm"},
    {MonitorField::RRSUS, "lblRRSUS", "RRSUS", "mm"},
    {MonitorField::VM1, "lblVM0", "VM1", "V"},
    {MonitorField::VM2, "lblVM1", "VM2", "V"},
    {MonitorField::VM3, "lblVM2", "VM3", "V"},
    {MonitorField::VM4, "lblVM3", "VM4", "V"},
    {MonitorField::LAF1, "lblLAF0", "LAF1", "A/F"},
    {MonitorField::LAF2, "lblLAF1", "LAF2", "A/F"},
    {MonitorField::LAP, "lblLap", "LAP", "count"},
}};

QLabel* ValueLabel(const char* name, QWidget* parent) {
    auto* label = new QLabel(parent);
    label->setObjectName(name);
    label->setFrameShape(QFrame::Panel);
    label->setFrameShadow(QFrame::Sunken);
    label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    label->setMinimumWidth(90);
    label->setTextFormat(Qt::PlainText);
    return label;
}

} // namespace

MonitorWindow::MonitorWindow(logger::Driver& driver, shell::MessageSink& sink,
                             const logger::LafTable& laf, QWidget* parent)
    : QDialog(parent)
    , link_(driver, sink)
    , monitor_(link_, laf)
    , tmrReal_(new QTimer(this))
    , mnuStop_(nullptr)
    , lblProgram_(nullptr)
    , lblDate_(nullptr)
    , lblStart_(nullptr) {
    setObjectName("frmTLM0050");
    setWindowTitle("REAL TIME MONITOR");
    tmrReal_->setObjectName("tmrReal");
    connect(tmrReal_, &QTimer::timeout, this, &MonitorWindow::Tick);
    BuildControls();
    AnswerHelpKey(this, "monitor.html");
}

MonitorWindow::~MonitorWindow() {
    tmrReal_->stop();
    monitor_.Close();
}

void MonitorWindow::BuildControls() {
    auto* menu = new QMenuBar(this);
    mnuStop_ = menu->addAction("Stop(&S)");
    mnuStop_->setObjectName("mnuStop");
    mnuStop_->setCheckable(true);
    connect(mnuStop_, &QAction::triggered, this, &MonitorWindow::ToggleStop);
    QAction* print = menu->addAction("Print(&P)");
    print->setObjectName("mnuPrint");
    connect(print, &QAction::triggered, this, &MonitorWindow::Print);
    QAction* close = menu->addAction("Close(&C)");
    close->setObjectName("mnuClose");
    connect(close, &QAction::triggered, this, [this] {
        tmrReal_->stop();
        accept();
    });

    auto* head = new QGridLayout;
    lblProgram_ = new QLabel(this);
    lblProgram_->setObjectName("lblProgram");
    lblDate_ = new QLabel(this);
    lblDate_->setObjectName("lblDate");
    lblStart_ = new QLabel(this);
    lblStart_->setObjectName("lblStart");
    lblStart_->setTextFormat(Qt::PlainText);
    head->addWidget(new QLabel("Program", this), 0, 0);
    head->addWidget(lblProgram_, 0, 1);
    head->addWidget(new QLabel("Setting", this), 1, 0);
    head->addWidget(lblDate_, 1, 1);
    head->addWidget(new QLabel("Start", this), 2, 0);
    head->addWidget(lblStart_, 2, 1);
    head->setColumnStretch(1, 1);

    auto* grid = new QGridLayout;
    constexpr int RowsPerColumn = 9;
    for (std::size_t i = 0; i < Rows.size(); ++i) {
        const Row& row = Rows[i];
        const int gridRow = static_cast<int>(i) % RowsPerColumn;
        const int column = static_cast<int>(i) / RowsPerColumn * 4;
        values_[static_cast<std::size_t>(row.Field)] = ValueLabel(row.Name, this);
        grid->addWidget(new QLabel(row.Caption, this), gridRow, column);
        grid->addWidget(values_[static_cast<std::size_t>(row.Field)], gridRow, column + 1);
        grid->addWidget(new QLabel(row.Unit, this), gridRow, column + 2);
    }
    grid->setColumnMinimumWidth(3, 24);

    auto* layout = new QVBoxLayout(this);
    layout->setMenuBar(menu);
    layout->addLayout(head);
    auto* rule = new QFrame(this);
    rule->setFrameShape(QFrame::HLine);
    rule->setFrameShadow(QFrame::Sunken);
    layout->addWidget(rule);
    layout->addLayout(grid);
}

bool MonitorWindow::Open() {
    if (!monitor_.Open()) {
        return false;
    }
    const logger::MonitorHeader& header = monitor_.Header();
    lblProgram_->setText(QString::fromStdString(header.Program));
    lblDate_->setText(QString::fromStdString(header.SettingTime));
    lblStart_->setText(QString::fromStdString(header.StartCondition));
    ShowValues();
    ShowMenuAndTimer();
    return true;
}

void MonitorWindow::Run(logger::Driver& driver, shell::MessageSink& sink,
                        const logger::LafTable& laf, QWidget* parent) {
    MonitorWindow window(driver, sink, laf, parent);
    if (window.Open()) {
        window.exec();
    }
}

void MonitorWindow::Tick() {
    // A message shown during the reading runs its own event loop: the next tick must not start
    // inside it. ShowMenuAndTimer sets the timer going again.
    tmrReal_->stop();
    const std::int64_t before = monitor_.Readings();
    monitor_.Tick();
    if (monitor_.Readings() != before) {
        ShowValues();
    }
    ShowMenuAndTimer();
}

void MonitorWindow::Print() {
    // The readings stand while the print dialog is up and the page is made, so the picture is
    // the one the operator chose to print; they go on at the model's period afterwards.
    tmrReal_->stop();
    PrintWindow(*this, -1);
    ShowMenuAndTimer();
}

void MonitorWindow::ToggleStop() {
    monitor_.ToggleStop();
    ShowMenuAndTimer();
}

void MonitorWindow::ShowValues() {
    const logger::MonitorValues& values = monitor_.Values();
    for (const Row& row : Rows) {
        const auto index = static_cast<std::size_t>(row.Field);
        const QString text = QString::fromStdString(values[index].Text);
        if (values_[index]->text() != text) {
            values_[index]->setText(text);
            // Shown at once, as each value comes, not when the event loop next paints.
            if (values_[index]->isVisible()) {
                values_[index]->repaint();
            }
        }
    }
}

void MonitorWindow::ShowMenuAndTimer() {
    mnuStop_->setChecked(monitor_.StopTicked());
    mnuStop_->setEnabled(monitor_.StopEnabled());
    const int interval = monitor_.Interval();
    if (interval == 0) {
        tmrReal_->stop();
    } else if (!tmrReal_->isActive() || tmrReal_->interval() != interval) {
        tmrReal_->start(interval);
    }
}

void MonitorWindow::closeEvent(QCloseEvent* event) {
    tmrReal_->stop();
    monitor_.Close();
    QDialog::closeEvent(event);
}

void MonitorWindow::done(int result) {
    tmrReal_->stop();
    monitor_.Close();
    QDialog::done(result);
}

} // namespace torvane::app
