#include "graph/display_item_dialog.h"

#include "shell/help_window.h"

#include <QGridLayout>
#include <QListWidget>
#include <QPushButton>

namespace torvane::app {
namespace {

QPushButton* Button(const char* name, const char* caption, QWidget* owner) {
    auto* button = new QPushButton(caption, owner);
    button->setObjectName(name);
    return button;
}

} // namespace

DisplayItemDialog::DisplayItemDialog(std::vector<items::ItemChoice> items, shell::MessageSink& sink,
                                     QWidget* owner)
    : QDialog(owner)
    , items_(std::move(items))
    , sink_(sink)
    , list_(new QListWidget(this)) {
    setObjectName("frmTLM0012");
    setWindowTitle("Selection of a display item");
    list_->setObjectName("lstItem");
    for (const items::ChoiceEntry& entry : items::ChoiceEntriesOf(items_)) {
        auto* item = new QListWidgetItem(QString::fromStdString(entry.Name), list_);
        item->setData(Qt::UserRole, entry.Position);
        // The list toggles the mark itself, on a click anywhere on the entry.
        item->setFlags(Qt::ItemIsEnabled);
        item->setCheckState(entry.Marked ? Qt::Checked : Qt::Unchecked);
    }
    connect(list_, &QListWidget::itemClicked, this, [](QListWidgetItem* item) {
        item->setCheckState(item->checkState() == Qt::Checked ? Qt::Unchecked : Qt::Checked);
    });

    QPushButton* all = Button("cmbAll0", "All(&A)", this);
    QPushButton* release = Button("cmbAll1", "Release(&R)", this);
    QPushButton* ok = Button("cmdOk", "OK(&O)", this);
    QPushButton* cancel = Button("cmdCancel", "Cancel(&C)", this);
    ok->setDefault(true);
    connect(all, &QPushButton::clicked, this, [this] { MarkAll(true); });
    connect(release, &QPushButton::clicked, this, [this] { MarkAll(false); });
    connect(ok, &QPushButton::clicked, this, &DisplayItemDialog::Confirm);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);

    auto* grid = new QGridLayout(this);
    grid->addWidget(list_, 0, 0, 1, 2);
    grid->addWidget(all, 1, 0);
    grid->addWidget(release, 1, 1);
    grid->addWidget(ok, 2, 0);
    grid->addWidget(cancel, 2, 1);
    list_->setMinimumHeight(list_->fontMetrics().height() * 14);
    AnswerHelpKey(this, "items.html");
}

void DisplayItemDialog::MarkAll(bool marked) {
    for (int row = 0; row < list_->count(); ++row) {
        list_->item(row)->setCheckState(marked ? Qt::Checked : Qt::Unchecked);
    }
}

void DisplayItemDialog::Confirm() {
    std::vector<int> marked;
    for (int row = 0; row < list_->count(); ++row) {
        const QListWidgetItem* item = list_->item(row);
        if (item->checkState() == Qt::Checked) {
            marked.push_back(item->data(Qt::UserRole).toInt());
        }
    }
    if (auto view = items::ConfirmChoice(items_, marked, sink_)) {
        view_ = std::move(*view);
        accept();
    }
}

} // namespace torvane::app
