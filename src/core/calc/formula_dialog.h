#pragma once
// The rules of the dialogs "Function calculation" (frmTLM0110) and "Operation" (frmTLM0120):
// the limits and key filter of the boxes, the members kept between openings, the order in
// which Ok checks the fields and what it tells the operator, the picker's lists, and where the
// picked text goes in the formula.

#include "calc/computed_item.h"
#include "calc/formula_calculation.h"
#include "shell/message_sink.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace torvane::calc {

inline constexpr int FormulaMaxLength = 50;
inline constexpr int ItemNameMaxLength = 5;
inline constexpr int UnitMaxLength = 5;
inline constexpr int DecimalChoices = MaxFormulaDecimals + 1; // "0" to "3"

inline constexpr std::string_view FormulaIncorrectMessage =
    "The entered formula is incorrect. Please enter it again.";

// The item name becomes part of a file name: these characters never reach it.
bool ItemNameKeyAccepted(char c);

// What the dialog keeps for its next opening in this run of the program, once a calculation has
// succeeded. Empty texts are not put back.
struct FormulaDialogMembers {
    std::string Formula;
    std::string ItemName;
    std::string UnitName;
    int DecimalIndex = 0;
};

// The fields as Ok finds them; DecimalIndex -1 when nothing is selected.
struct FormulaFields {
    std::string Formula;
    std::string ItemName;
    std::string UnitName;
    int DecimalIndex = 0;
};

enum class FormulaField { Formula, ItemName, Unit, Decimal };

struct FormulaOkResult {
    // Set when the dialog closes with a new item; otherwise the dialog stays open.
    std::optional<ComputedItemRequest> Item;
    // The field that takes the focus when the dialog stays open, if any.
    std::optional<FormulaField> Focus;
};

// Ok: checks the fields in order, stopping at the first failure with its message, then converts
// and calculates into the item's stream file. On success the members are kept.
FormulaOkResult AcceptFormula(const FormulaFields& fields, const std::vector<std::string>& offered,
                              FormulaSource source, FormulaDialogMembers& kept,
                              shell::MessageSink& sink);

// The whole pass of one formula, shared by the dialog and the command line: conversion, then
// calculation. Postfix is empty when the check refused the formula.
struct FormulaRun {
    std::vector<FormulaToken> Postfix;
    bool SyntaxPassed = false;
    FormulaOutcome Outcome;
};
FormulaRun RunFormula(std::string_view formula, const std::vector<std::string>& offered,
                      FormulaSource source, const std::string& newItemName, int decimals,
                      shell::MessageSink& sink);

// Leading and trailing blanks removed.
std::string TrimBlanks(std::string_view text);

// The picker: mode 1 lists the operations, mode 2 the offered items.
enum class PickerMode { Operations = 1, Items = 2 };
inline constexpr std::string_view ChooseItemMessage = "Choose an item to indicate. ";
std::vector<std::string> PickerEntries(PickerMode mode, const std::vector<int>& kinds);
// The text Ok returns for list index `index`: an operation's function with its parentheses
// ("sin()"), or an item's name.
std::string PickedText(PickerMode mode, int index, const std::vector<int>& kinds);

// The picked text inserted at the caret; the caret stands behind it, or between the
// parentheses when it ends in ")".
struct CaretText {
    std::string Text;
    int Caret = 0;
};
CaretText InsertAtCaret(std::string_view text, int caret, std::string_view inserted);

} // namespace torvane::calc
