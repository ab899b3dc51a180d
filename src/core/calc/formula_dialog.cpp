#include "calc/formula_dialog.h"

#include "calc/formula_items.h"
#include "logdata/channels.h"

#include <algorithm>
#include <array>

namespace torvane::calc {
namespace {

constexpr std::string_view ItemNameRefusedKeys = "\\/.:;<>|\"?!*";

constexpr std::array<std::string_view, 11> OperationEntries{
    "sin", "cos", "tan", "asin", "acos", "atan", "sqrt", "+", "-", "*", "/"};
constexpr std::array<std::string_view, 11> OperationTexts{
    "sin()", "cos()", "tan()", "asin()", "acos()", "atan()", "sqrt()", "+", "-", "*", "/"};

void Warn(shell::MessageSink& sink, std::string_view text) {
    shell::ShowMessage(sink, text, shell::buttons::Ok, shell::icons::Warning);
}

FormulaOkResult StayAt(FormulaField field) {
    return {std::nullopt, field};
}

} // namespace

bool ItemNameKeyAccepted(char c) {
    return ItemNameRefusedKeys.find(c) == std::string_view::npos;
}

std::string TrimBlanks(std::string_view text) {
    const auto first = text.find_first_not_of(' ');
    if (first == std::string_view::npos) {
        return {};
    }
    return std::string(text.substr(first, text.find_last_not_of(' ') - first + 1));
}

FormulaRun RunFormula(std::string_view formula, const std::vector<std::string>& offered,
                      FormulaSource source, const std::string& newItemName, int decimals,
                      shell::MessageSink& sink) {
    FormulaRun run;
    std::optional<shell::RunTimeError> failure;
    const int count = ConvertToPostfix(formula, offered, run.Postfix, failure);
    if (count == PostfixWrong) {
        run.Postfix.clear();
        run.Outcome.Result = FormulaResult::Incorrect;
        return run;
    }
    run.SyntaxPassed = true;
    if (count == PostfixFailed) {
        shell::ShowRunTimeError(sink, *failure);
        run.Outcome.Result = FormulaResult::Failed;
        return run;
    }
    run.Outcome = CalculateFormula(run.Postfix, source, newItemName, decimals, sink);
    return run;
}

FormulaOkResult AcceptFormula(const FormulaFields& fields, const std::vector<std::string>& offered,
                              FormulaSource source, FormulaDialogMembers& kept,
                              shell::MessageSink& sink) {
    const std::string formula = TrimBlanks(fields.Formula);
    if (formula.empty()) {
        Warn(sink, "Enter the formula.");
        return StayAt(FormulaField::Formula);
    }
    const std::string name = TrimBlanks(fields.ItemName);
    if (name.empty()) {
        Warn(sink, "Enter the new item name.");
        return StayAt(FormulaField::ItemName);
    }
    if (IsReservedItemName(name)) {
        Warn(sink, "An existing item name cannot be entered. Please enter a new item name.");
        return StayAt(FormulaField::ItemName);
    }
    const std::string unit = TrimBlanks(fields.UnitName);
    if (unit.empty()) {
        Warn(sink, "Enter the unit name.");
        return StayAt(FormulaField::Unit);
    }
    if (fields.DecimalIndex < 0 || fields.DecimalIndex >= DecimalChoices) {
        Warn(sink, "Enter the number of digits below decimal point.");
        return StayAt(FormulaField::Decimal);
    }
    const FormulaRun run = RunFormula(formula, offered, source, name, fields.DecimalIndex, sink);
    if (run.Outcome.Result == FormulaResult::Incorrect) {
        Warn(sink, FormulaIncorrectMessage);
        return StayAt(FormulaField::Formula);
    }
    if (run.Outcome.Result == FormulaResult::Failed) {
        return {};
    }
    kept = {formula, name, unit, fields.DecimalIndex};
    return {ComputedItemRequest{name, unit, fields.DecimalIndex, run.Outcome.Sampling,
                                ScaleMaximum(run.Outcome.Max)},
            std::nullopt};
}

std::vector<std::string> PickerEntries(PickerMode mode, const std::vector<int>& kinds) {
    std::vector<std::string> entries;
    if (mode == PickerMode::Operations) {
        entries.assign(OperationEntries.begin(), OperationEntries.end());
    } else {
        for (const int kind : kinds) {
            entries.emplace_back(logdata::ChannelName(kind));
        }
    }
    return entries;
}

std::string PickedText(PickerMode mode, int index, const std::vector<int>& kinds) {
    if (index < 0) {
        return {};
    }
    const auto i = static_cast<std::size_t>(index);
    if (mode == PickerMode::Operations) {
        return i < OperationTexts.size() ? std::string(OperationTexts[i]) : std::string{};
    }
    return i < kinds.size() ? std::string(logdata::ChannelName(kinds[i])) : std::string{};
}

CaretText InsertAtCaret(std::string_view text, int caret, std::string_view inserted) {
    const auto at = static_cast<std::size_t>(std::clamp(caret, 0, static_cast<int>(text.size())));
    CaretText result{std::string(text.substr(0, at)) + std::string(inserted) +
                         std::string(text.substr(at)),
                     static_cast<int>(at + inserted.size())};
    if (inserted.ends_with(')')) {
        --result.Caret;
    }
    return result;
}

} // namespace torvane::calc
