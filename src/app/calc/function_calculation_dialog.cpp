#include "calc/function_calculation_dialog.h"

#include "calc/formula_items.h"
#include "calc/operation_picker.h"
#include "shell/help_window.h"
#include "shell/wait_cursor.h"

#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace torvane::app {
namespace {

// Kept for the next opening in this run of the program, after a successful calculation.
calc::FormulaDialogMembers& KeptMembers() {
    static calc::FormulaDialogMembers kept;
    return kept;
}

// Drops the keys that would break the item's file name; pasted text is not filtered.
class ItemNameKeyFilter : public QObject {
public:
    using QObject::QObject;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::KeyPress) {
            const QString text = static_cast<QKeyEvent*>(event)->text();
            if (text.size() == 1 && text[0].unicode() < 0x80 &&
                !calc::ItemNameKeyAccepted(static_cast<char>(text[0].unicode()))) {
                return true;
            }
        }
        return QObject::eventFilter(watched, event);
    }
};

QLineEdit* Box(const char* name, int maxLength, const QString& kept, QWidget* owner) {
    auto* box = new QLineEdit(owner);
    box->setObjectName(name);
    box->setMaxLength(maxLength);
    if (!kept.isEmpty()) {
        box->setText(kept);
    }
    return box;
}

} // namespace

FunctionCalculationDialog::FunctionCalculationDialog(const std::vector<int>& kinds,
                                                     calc::FormulaSource source,
                                                     shell::MessageSink& sink, QWidget* owner)
    : QDialog(owner)
    , kinds_(kinds)
    , offered_(calc::OfferedNames(kinds))
    , source_(source)
    , sink_(sink) {
    setObjectName("frmTLM0110");
    setWindowTitle("Function calculation");
    const calc::FormulaDialogMembers& kept = KeptMembers();
    formula_ =
        Box("txtFormula", calc::FormulaMaxLength, QString::fromStdString(kept.Formula), this);
    itemName_ =
        Box("txtItem", calc::ItemNameMaxLength, QString::fromStdString(kept.ItemName), this);
    unit_ = Box("txtUnit", calc::UnitMaxLength, QString::fromStdString(kept.UnitName), this);
    itemName_->installEventFilter(new ItemNameKeyFilter(itemName_));
    decimal_ = new QComboBox(this);
    decimal_->setObjectName("cmbDecimal");
    for (int digits = 0; digits < calc::DecimalChoices; ++digits) {
        decimal_->addItem(QString::number(digits), digits);
    }
    decimal_->setCurrentIndex(kept.DecimalIndex);

    auto* operations = new QPushButton("f(x)", this);
    operations->setObjectName("cmdItem0");
    operations->setToolTip("Operation");
    auto* items = new QPushButton("Item", this);
    items->setObjectName("cmdItem1");
    items->setToolTip("Item");
    auto* ok = new QPushButton("OK", this);
    ok->setObjectName("cmdOk");
    auto* cancel = new QPushButton("Cancel", this);
    cancel->setObjectName("cmdCancel");
    for (QPushButton* button : {operations, items, ok, cancel}) {
        button->setAutoDefault(false);
    }
    connect(operations, &QPushButton::clicked, this,
            [this] { Pick(calc::PickerMode::Operations); });
    connect(items, &QPushButton::clicked, this, [this] { Pick(calc::PickerMode::Items); });
    connect(ok, &QPushButton::clicked, this, &FunctionCalculationDialog::Ok);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);

    auto* grid = new QGridLayout(this);
    grid->addWidget(new QLabel("Formula", this), 0, 0);
    grid->addWidget(formula_, 0, 1, 1, 3);
    grid->addWidget(operations, 0, 4);
    grid->addWidget(items, 0, 5);
    grid->addWidget(new QLabel("New item name", this), 1, 0);
    grid->addWidget(itemName_, 1, 1);
    grid->addWidget(new QLabel("Unit", this), 1, 2);
    grid->addWidget(unit_, 1, 3);
    grid->addWidget(new QLabel("Digits below decimal point", this), 2, 0);
    grid->addWidget(decimal_, 2, 1);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(ok);
    buttons->addWidget(cancel);
    grid->addLayout(buttons, 3, 0, 1, 6);
    formula_->setMinimumWidth(formula_->fontMetrics().horizontalAdvance('W') * 24);
    AnswerHelpKey(this, "formula.html");
}

void FunctionCalculationDialog::Pick(calc::PickerMode mode) {
    OperationPicker picker(mode, kinds_, sink_, this);
    if (picker.exec() != QDialog::Accepted) {
        return;
    }
    const calc::CaretText inserted = calc::InsertAtCaret(
        formula_->text().toStdString(), formula_->cursorPosition(), picker.Picked());
    formula_->setText(QString::fromStdString(inserted.Text));
    formula_->setFocus();
    formula_->setCursorPosition(inserted.Caret);
}

void FunctionCalculationDialog::Ok() {
    const calc::FormulaFields fields{formula_->text().toStdString(),
                                     itemName_->text().toStdString(), unit_->text().toStdString(),
                                     decimal_->currentIndex()};
    calc::FormulaOkResult result;
    {
        const WaitCursor hourglass;
        result = calc::AcceptFormula(fields, offered_, source_, KeptMembers(), sink_);
    }
    if (result.Item) {
        item_ = result.Item;
        accept();
        return;
    }
    if (result.Focus) {
        QWidget* boxes[] = {formula_, itemName_, unit_, decimal_};
        boxes[static_cast<int>(*result.Focus)]->setFocus();
    }
}

} // namespace torvane::app
