#include "calc/formula_syntax.h"

#include "calc/formula_items.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace torvane::calc {
namespace {

constexpr std::string_view OperatorCharacters = "+-*/()";
constexpr std::array<std::string_view, 7> FunctionNames{"sin",  "cos",  "tan", "asin",
                                                        "acos", "atan", "sqrt"};

enum class TokenClass { Start, Open, Close, Operator, Function, Operand, Wrong };

bool IsFunction(std::string_view token) {
    return std::ranges::find(FunctionNames, token) != FunctionNames.end();
}

bool IsOffered(std::string_view token, const std::vector<std::string>& offered) {
    return std::ranges::find(offered, token) != offered.end();
}

TokenClass ClassOf(std::string_view token, const std::vector<std::string>& offered) {
    if (token == "(") {
        return TokenClass::Open;
    }
    if (token == ")") {
        return TokenClass::Close;
    }
    if (token == "+" || token == "-" || token == "*" || token == "/") {
        return TokenClass::Operator;
    }
    if (IsFunction(token)) {
        return TokenClass::Function;
    }
    if (FormulaNumber(token) || IsOffered(token, offered)) {
        return TokenClass::Operand;
    }
    return TokenClass::Wrong;
}

// True when `token` of class `current` may not follow `previous`.
bool WrongAfter(std::string_view token, TokenClass current, TokenClass previous) {
    using enum TokenClass;
    switch (current) {
    case Open:
        return previous == Close || previous == Operand;
    case Close:
        return previous == Open || previous == Function || previous == Operator;
    case Operator:
        if (token == "-") {
            return previous == Function || previous == Operator;
        }
        return previous == Open || previous == Function || previous == Operator ||
               previous == Start;
    case Function:
    case Operand:
        return previous == Close || previous == Function || previous == Operand;
    default:
        return true;
    }
}

// The operators waiting during the conversion. A ")" that finds no "(" empties it below its
// bottom; from then on any use of it is the failure that ends the conversion.
class OperatorStack {
public:
    bool Broken() const { return broken_; }
    bool Empty() const { return entries_.empty(); }
    const std::string& Top() const { return entries_.back(); }
    void Push(std::string entry) { entries_.push_back(std::move(entry)); }
    std::string Pop() {
        std::string top = std::move(entries_.back());
        entries_.pop_back();
        return top;
    }
    void Break() { broken_ = true; }

private:
    std::vector<std::string> entries_;
    bool broken_ = false;
};

FormulaToken OperatorToken(std::string text) {
    return {TokenKind::Operator, 0, 0.0, std::move(text)};
}

// Step 3 and 4 of the conversion: one operator written out at most, never more.
void PushOperator(OperatorStack& stack, std::vector<FormulaToken>& postfix, std::string op) {
    const bool multiplicative = op == "*" || op == "/";
    if (!stack.Empty()) {
        const std::string& top = stack.Top();
        const bool displaces =
            top == "*" || top == "/" || (!multiplicative && (top == "+" || top == "-"));
        if (displaces) {
            postfix.push_back(OperatorToken(stack.Pop()));
        }
    }
    stack.Push(std::move(op));
}

void CloseParenthesis(OperatorStack& stack, std::vector<FormulaToken>& postfix) {
    if (stack.Empty()) {
        return;
    }
    while (!stack.Empty() && stack.Top() != "(") {
        postfix.push_back(OperatorToken(stack.Pop()));
    }
    if (stack.Empty()) {
        stack.Break();
        return;
    }
    stack.Pop();
    if (!stack.Empty() && IsFunction(stack.Top())) {
        postfix.push_back(OperatorToken(stack.Pop()));
    }
}

} // namespace

std::vector<std::string> TokenizeFormula(std::string_view formula) {
    const std::string lower = ToLowerAscii(formula);
    std::string spaced;
    for (const char c : lower) {
        if (c == '-' && (spaced.empty() || spaced.ends_with("( "))) {
            spaced += "-1 * ";
        } else if (OperatorCharacters.find(c) != std::string_view::npos) {
            spaced += ' ';
            spaced += c;
            spaced += ' ';
        } else if (c != ' ') {
            spaced += c;
        }
    }
    const auto first = spaced.find_first_not_of(' ');
    const auto last = spaced.find_last_not_of(' ');
    const std::string_view trimmed = first == std::string::npos
                                         ? std::string_view{}
                                         : std::string_view(spaced).substr(first, last - first + 1);
    std::vector<std::string> tokens;
    std::size_t start = 0;
    while (true) {
        const auto blank = trimmed.find(' ', start);
        tokens.emplace_back(trimmed.substr(start, blank - start));
        if (blank == std::string_view::npos) {
            break;
        }
        start = blank + 1;
    }
    return tokens;
}

std::optional<double> FormulaNumber(std::string_view token) {
    std::size_t i = token.starts_with('-') ? 1 : 0;
    std::size_t digits = 0;
    const auto skipDigits = [&] {
        std::size_t n = 0;
        while (i < token.size() && token[i] >= '0' && token[i] <= '9') {
            ++i;
            ++n;
        }
        return n;
    };
    digits += skipDigits();
    if (i < token.size() && token[i] == '.') {
        ++i;
        digits += skipDigits();
    }
    if (digits == 0) {
        return std::nullopt;
    }
    if (i < token.size() && token[i] == 'e') {
        ++i;
        if (i < token.size() && token[i] == '-') {
            ++i;
        }
        if (skipDigits() == 0) {
            return std::nullopt;
        }
    }
    if (i != token.size()) {
        return std::nullopt;
    }
    double value = 0.0;
    const auto [end, error] = std::from_chars(token.data(), token.data() + token.size(), value);
    if (error != std::errc{} || end != token.data() + token.size() || !std::isfinite(value)) {
        return std::nullopt;
    }
    return value;
}

bool CheckFormula(const std::vector<std::string>& tokens, const std::vector<std::string>& offered) {
    TokenClass previous = TokenClass::Start;
    int opened = 0;
    int closed = 0;
    for (const std::string& token : tokens) {
        if (token.empty()) {
            continue;
        }
        const TokenClass current = ClassOf(token, offered);
        if (WrongAfter(token, current, previous)) {
            return true;
        }
        opened += current == TokenClass::Open ? 1 : 0;
        closed += current == TokenClass::Close ? 1 : 0;
        previous = current;
    }
    return previous == TokenClass::Function || previous == TokenClass::Operator || opened != closed;
}

int ConvertToPostfix(std::string_view formula, const std::vector<std::string>& offered,
                     std::vector<FormulaToken>& postfix,
                     std::optional<shell::RunTimeError>& failure) {
    postfix.clear();
    failure.reset();
    const std::vector<std::string> tokens = TokenizeFormula(formula);
    if (CheckFormula(tokens, offered)) {
        return PostfixWrong;
    }
    OperatorStack stack;
    for (const std::string& token : tokens) {
        if (token.empty()) {
            continue;
        }
        const std::optional<double> number = FormulaNumber(token);
        if (number) {
            postfix.push_back({TokenKind::Number, 0, *number, {}});
            continue;
        }
        const int item = FormulaItemIndex(token);
        if (item >= 0) {
            postfix.push_back({TokenKind::Item, item, 0.0, {}});
            continue;
        }
        if (stack.Broken()) {
            failure = StackError();
            return PostfixFailed;
        }
        if (token == "(" || IsFunction(token)) {
            stack.Push(token);
        } else if (token == ")") {
            CloseParenthesis(stack, postfix);
        } else {
            PushOperator(stack, postfix, token);
        }
    }
    if (stack.Broken()) {
        failure = StackError();
        return PostfixFailed;
    }
    while (!stack.Empty()) {
        postfix.push_back(OperatorToken(stack.Pop()));
    }
    return static_cast<int>(postfix.size());
}

std::string PostfixText(const FormulaToken& token) {
    switch (token.Kind) {
    case TokenKind::Item:
        return std::string(FormulaItemName(token.Index));
    case TokenKind::Operator:
        return token.Operator;
    case TokenKind::Number:
        break;
    }
    std::array<char, 32> text{};
    const auto [end, error] = std::to_chars(text.data(), text.data() + text.size(), token.Value);
    return error == std::errc{} ? std::string(text.data(), end) : std::string{};
}

shell::RunTimeError OverflowError() {
    return {6, "Overflow"};
}

shell::RunTimeError DivisionByZeroError() {
    return {11, "Division by zero"};
}

shell::RunTimeError StackError() {
    return {9, "Subscript out of range"};
}

shell::RunTimeError FileAccessError() {
    return {75, "Path/File access error"};
}

} // namespace torvane::calc
