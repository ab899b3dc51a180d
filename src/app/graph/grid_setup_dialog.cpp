#include "graph/grid_setup_dialog.h"

#include "shell/help_window.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFocusEvent>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>

namespace torvane::app {
namespace {

QPushButton* Button(const char* name, const char* caption, QWidget* owner) {
    auto* button = new QPushButton(caption, owner);
    button->setObjectName(name);
    return button;
}

// The text that stays beside a typed key: the box's text without its selection.
std::string KeptText(const QLineEdit* box) {
    QString text = box->text();
    if (box->hasSelectedText()) {
        text.remove(box->selectionStart(), box->selectedText().size());
    }
    return text.toStdString();
}

} // namespace

GridSetupDialog::GridSetupDialog(items::GridRequest request, shell::MessageSink& sink,
                                 QWidget* owner)
    : QDialog(owner)
    , request_(std::move(request))
    , sink_(sink)
    , item_(new QComboBox(this))
    , grid_(new QCheckBox("Grid is displayed", this))
    , max_(new QLineEdit(this))
    , min_(new QLineEdit(this)) {
    setObjectName("frmTLM0014");
    setWindowTitle("Setup of a grid");
    item_->setObjectName("cmbItem");
    grid_->setObjectName("chkGrid");
    max_->setObjectName("txtMax");
    min_->setObjectName("txtMin");
    for (const items::GridItem& item : request_.Items) {
        item_->addItem(QString::fromStdString(item.Name));
    }
    item_->setCurrentIndex(request_.Item);
    grid_->setChecked(request_.Grid);
    ShowLimits(items::LimitBoxesOf(Chosen()));
    connect(item_, &QComboBox::currentIndexChanged, this,
            [this] { ShowLimits(items::LimitBoxesOf(Chosen())); });
    for (QLineEdit* box : {max_, min_}) {
        box->installEventFilter(this);
    }

    QPushButton* defaults = Button("cmdDef", "Default(&D)", this);
    QPushButton* ok = Button("cmdOk", "OK(&O)", this);
    QPushButton* cancel = Button("cmdCancel", "Cancel(&C)", this);
    ok->setDefault(true);
    connect(defaults, &QPushButton::clicked, this,
            [this] { ShowLimits(items::DefaultLimitBoxes(Chosen())); });
    connect(ok, &QPushButton::clicked, this, &GridSetupDialog::Confirm);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);

    auto* grid = new QGridLayout(this);
    grid->addWidget(item_, 0, 0, 1, 2);
    grid->addWidget(grid_, 1, 0, 1, 2);
    grid->addWidget(new QLabel("Max", this), 2, 0);
    grid->addWidget(max_, 2, 1);
    grid->addWidget(new QLabel("Min", this), 3, 0);
    grid->addWidget(min_, 3, 1);
    grid->addWidget(defaults, 4, 0);
    grid->addWidget(ok, 5, 0);
    grid->addWidget(cancel, 5, 1);
    AnswerHelpKey(this, "items.html");
}

const items::GridItem& GridSetupDialog::Chosen() const {
    const int index = item_->currentIndex();
    return request_.Items.at(static_cast<std::size_t>(index < 0 ? 0 : index));
}

void GridSetupDialog::ShowLimits(const items::LimitTexts& limits) {
    max_->setText(QString::fromStdString(limits.Max));
    min_->setText(QString::fromStdString(limits.Min));
}

bool GridSetupDialog::eventFilter(QObject* watched, QEvent* event) {
    auto* box = qobject_cast<QLineEdit*>(watched);
    if (box == nullptr) {
        return QDialog::eventFilter(watched, event);
    }
    if (event->type() == QEvent::FocusIn) {
        // After the box's own handling, which would otherwise place the caret over the selection.
        QTimer::singleShot(0, box, &QLineEdit::selectAll);
    } else if (event->type() == QEvent::KeyPress) {
        const QString text = static_cast<QKeyEvent*>(event)->text();
        // Keys without a printable character (arrows, Delete, Tab, Enter) move and edit as usual.
        const char16_t key = text.size() == 1 ? text[0].unicode() : u'\0';
        if (key >= 0x20 && key != 0x7F &&
            (key >= 0x80 || !items::AcceptLimitKey(KeptText(box), static_cast<char>(key)))) {
            return true;
        }
    }
    return QDialog::eventFilter(watched, event);
}

void GridSetupDialog::Confirm() {
    const items::GridConfirmation confirmation = items::ConfirmGrid(
        Chosen(), grid_->isChecked(), max_->text().toStdString(), min_->text().toStdString());
    if (const auto& refusal = confirmation.Refusal) {
        shell::ShowMessage(sink_, refusal->Text, shell::buttons::Ok, refusal->Icon);
        if (refusal->Focus == items::LimitBox::Max) {
            max_->setFocus();
        } else if (refusal->Focus == items::LimitBox::Min) {
            min_->setFocus();
        }
        return;
    }
    result_ = confirmation.Result;
    accept();
}

} // namespace torvane::app
