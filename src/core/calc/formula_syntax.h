#pragma once
// A formula's text turned into postfix form: the tokeniser, the syntax check and the
// conversion. Their rules are deliberately plain: the only unary minus is a "-" at the start or
// right after "(", parentheses are checked by their counts alone, and a "+" or "-" takes only
// one operator off the stack, so that a-b*c-d means a-(b*c-d).

#include "shell/message_sink.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace torvane::calc {

enum class TokenKind : std::int16_t {
    Item = 1,
    Operator = 2, // an operator, a function, or a "(" left on the stack
    Number = 3,
};

// One entry of the postfix form.
struct FormulaToken {
    TokenKind Kind = TokenKind::Number;
    std::int32_t Index = 0; // item index (0..15) of an Item
    double Value = 0.0;     // a Number
    std::string Operator;   // an Operator's text

    friend bool operator==(const FormulaToken&, const FormulaToken&) = default;
};

// Lower-cases the text, sets the operators and parentheses apart and drops every blank, so
// that blanks inside a name or number vanish. Adjacent operators leave empty tokens.
std::vector<std::string> TokenizeFormula(std::string_view formula);

// The numbers a formula accepts: digits with an optional point and exponent ("12", "1.5",
// ".5", "2e3"), and the "-1" of the tokeniser's unary minus; nothing that is not finite.
std::optional<double> FormulaNumber(std::string_view token);

// True when the token sequence is wrong. `offered` are the lower-case names of the items the
// layer offers; any other name is wrong.
bool CheckFormula(const std::vector<std::string>& tokens, const std::vector<std::string>& offered);

// What ConvertToPostfix returns besides a count.
inline constexpr int PostfixWrong = -1;
// A stray ")" emptied the stack below its bottom and a later token touched it: a run-time
// failure of the dialog, in `failure`.
inline constexpr int PostfixFailed = -2;

// Tokenises and checks the formula, then converts it: the number of postfix entries, or
// PostfixWrong (the syntax check refused it), or PostfixFailed.
int ConvertToPostfix(std::string_view formula, const std::vector<std::string>& offered,
                     std::vector<FormulaToken>& postfix,
                     std::optional<shell::RunTimeError>& failure);

// An entry as text: an item by its lower-case name, a number in shortest round-trip form, an
// operator or function (or a "(") by its text.
std::string PostfixText(const FormulaToken& token);

// The run-time failures a formula can meet, numbered as the program reports them.
shell::RunTimeError OverflowError();
shell::RunTimeError DivisionByZeroError();
shell::RunTimeError StackError();
shell::RunTimeError FileAccessError();

} // namespace torvane::calc
