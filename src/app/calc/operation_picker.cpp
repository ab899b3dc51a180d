#include "calc/operation_picker.h"

#include "shell/help_window.h"

#include <QHBoxLayout>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

namespace torvane::app {

OperationPicker::OperationPicker(calc::PickerMode mode, const std::vector<int>& kinds,
                                 shell::MessageSink& sink, QWidget* owner)
    : QDialog(owner)
    , mode_(mode)
    , kinds_(kinds)
    , sink_(sink)
    , list_(new QListWidget(this)) {
    setObjectName("frmTLM0120");
    setWindowTitle("Operation");
    list_->setObjectName("lstItem");
    for (const std::string& entry : calc::PickerEntries(mode, kinds)) {
        list_->addItem(QString::fromStdString(entry));
    }
    list_->setCurrentRow(-1);
    auto* ok = new QPushButton("OK", this);
    ok->setObjectName("cmdOk");
    ok->setDefault(true);
    auto* cancel = new QPushButton("Cancel", this);
    cancel->setObjectName("cmdCancel");
    connect(ok, &QPushButton::clicked, this, &OperationPicker::Ok);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(list_, &QListWidget::itemDoubleClicked, this, &OperationPicker::Ok);

    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(ok);
    buttons->addWidget(cancel);
    auto* column = new QVBoxLayout(this);
    column->addWidget(list_);
    column->addLayout(buttons);
    list_->setMinimumHeight(list_->fontMetrics().height() * 12);
    AnswerHelpKey(this, "formula.html");
}

void OperationPicker::Ok() {
    const QListWidgetItem* item = list_->currentItem();
    if (item == nullptr || !item->isSelected()) {
        shell::ShowMessage(sink_, calc::ChooseItemMessage, shell::buttons::Ok,
                           shell::icons::Warning);
        list_->setFocus();
        return;
    }
    picked_ = calc::PickedText(mode_, list_->currentRow(), kinds_);
    accept();
}

} // namespace torvane::app
