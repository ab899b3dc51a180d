#pragma once
// frmTLM0110, "Function calculation": the formula, the new item's name and unit and its digits
// below the decimal point. Ok calculates the item into its stream file; the dialog is accepted
// only when that succeeded, and Item() then says what the window adds.

#include "calc/formula_dialog.h"
#include "shell/message_sink.h"

#include <QDialog>

#include <optional>
#include <vector>

class QComboBox;
class QLineEdit;

namespace torvane::app {

class FunctionCalculationDialog : public QDialog {
    Q_OBJECT
public:
    // `kinds` are the channels the layer of `source` offers, in slot order.
    FunctionCalculationDialog(const std::vector<int>& kinds, calc::FormulaSource source,
                              shell::MessageSink& sink, QWidget* owner);

    const std::optional<calc::ComputedItemRequest>& Item() const { return item_; }

private:
    void Pick(calc::PickerMode mode);
    void Ok();

    std::vector<int> kinds_;
    std::vector<std::string> offered_;
    calc::FormulaSource source_;
    shell::MessageSink& sink_;
    QLineEdit* formula_;  // txtFormula
    QLineEdit* itemName_; // txtItem
    QLineEdit* unit_;     // txtUnit
    QComboBox* decimal_;  // cmbDecimal
    std::optional<calc::ComputedItemRequest> item_;
};

} // namespace torvane::app
