#include "layout/layout_save_dialog.h"

#include "layout/layout_save_rules.h"
#include "shell/help_window.h"

#include <QGridLayout>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

namespace torvane::app {
namespace {

QPushButton* Button(const char* name, const char* caption, QWidget* owner) {
    auto* button = new QPushButton(caption, owner);
    button->setObjectName(name);
    // Enter belongs to the name box, which presses Save itself.
    button->setAutoDefault(false);
    return button;
}

} // namespace

LayoutSaveDialog::LayoutSaveDialog(layout::LayoutStore& store, shell::MessageSink& sink,
                                   QWidget* owner)
    : QDialog(owner)
    , store_(store)
    , sink_(sink)
    , list_(new QListWidget(this))
    , name_(new QLineEdit(this))
    , save_(Button("cmdSave", "Save(&S)", this))
    , delete_(Button("cmdDel", "Delete(&D)", this))
    , cancel_(Button("cmdCancel", "Cancel(&C)", this)) {
    setObjectName("frmTLM0011");
    setWindowTitle("Save of layout");
    list_->setObjectName("lstLayout");
    name_->setObjectName("txtLayName");
    name_->setMaxLength(static_cast<int>(layout::LayoutNameSize));

    // Choosing an entry, by the mouse or by the keys, puts its name in the box.
    connect(list_, &QListWidget::currentRowChanged, this, [this](int row) {
        if (const QListWidgetItem* item = list_->item(row)) {
            name_->setText(item->text());
        }
    });
    connect(name_, &QLineEdit::returnPressed, this, [this] {
        if (!name_->text().isEmpty()) {
            save_->click();
        }
    });
    connect(save_, &QPushButton::clicked, this, &LayoutSaveDialog::Save);
    connect(delete_, &QPushButton::clicked, this, &LayoutSaveDialog::Delete);
    connect(cancel_, &QPushButton::clicked, this, &QDialog::reject);

    auto* buttons = new QVBoxLayout;
    buttons->addWidget(save_);
    buttons->addWidget(delete_);
    buttons->addStretch(1);
    buttons->addWidget(cancel_);
    auto* grid = new QGridLayout(this);
    grid->addWidget(name_, 0, 0);
    grid->addWidget(list_, 1, 0);
    grid->addLayout(buttons, 0, 1, 2, 1);
    list_->setMinimumHeight(list_->fontMetrics().height() * 11);
    name_->setMinimumWidth(name_->fontMetrics().horizontalAdvance('W') * 16);
    AnswerHelpKey(this, "layout-save.html");
    Fill();
}

void LayoutSaveDialog::Fill() {
    const layout::LayoutSaveOffer offer = layout::LayoutSaveOfferOf(store_);
    list_->clear();
    for (const layout::NamedLayout& layout : offer.Layouts) {
        auto* item = new QListWidgetItem(QString::fromStdString(layout.Name), list_);
        item->setData(Qt::UserRole, layout.Index);
    }
    save_->setEnabled(offer.SaveEnabled);
    delete_->setEnabled(offer.DeleteEnabled);
    list_->setCurrentRow(offer.ChosenRow);
}

void LayoutSaveDialog::Save() {
    switch (layout::SaveNamedLayout(store_, name_->text().toStdString(), sink_)) {
    case layout::LayoutSaveResult::Saved:
        accept();
        break;
    case layout::LayoutSaveResult::NameMissing:
        name_->setFocus();
        break;
    case layout::LayoutSaveResult::Declined:
    case layout::LayoutSaveResult::Failed:
        break;
    }
}

void LayoutSaveDialog::Delete() {
    const QListWidgetItem* chosen = list_->currentItem();
    if (chosen == nullptr) {
        return;
    }
    if (layout::DeleteChosenLayout(store_, chosen->data(Qt::UserRole).toInt(), sink_)) {
        Fill();
    }
}

} // namespace torvane::app
