#include "calc/formula_syntax.h"

#include <gtest/gtest.h>

namespace torvane::calc {
namespace {

const std::vector<std::string> Offered{"ne", "th", "vfw", "deto1", "lap"};

// The postfix form as text, "wrong" when the check refuses the formula, "failed" when the
// conversion meets the run-time failure of a stray ")".
std::string Postfix(std::string_view formula) {
    std::vector<FormulaToken> postfix;
    std::optional<shell::RunTimeError> failure;
    const int count = ConvertToPostfix(formula, Offered, postfix, failure);
    if (count == PostfixWrong) {
        return "wrong";
    }
    if (count == PostfixFailed) {
        return failure && failure->Number == 9 ? "failed" : "failed without its error";
    }
    std::string text;
    for (const FormulaToken& token : postfix) {
        if (!text.empty()) {
            text += ' ';
        }
        text += PostfixText(token);
    }
    return count == static_cast<int>(postfix.size()) ? text : "count differs";
}

TEST(FormulaSyntaxTest, ConvertsOrRefusesByTheLanguagesOwnRules) {
    const struct {
        std::string_view Formula;
        std::string_view Expected;
    } cases[] = {
        // The one unary minus: at the start or right after "(".
        {"-ne", "-1 ne *"},
        {"(-ne)", "-1 ne *"},
        {"2*(-3)", "2 -1 3 * *"},
        {"2*-3", "wrong"},
        {"ne--th", "wrong"},
        // Lower case first; blanks vanish, even inside names and numbers.
        {"SIN(Ne)", "ne sin"},
        {"s i n ( n e )", "ne sin"},
        {"1 2+3", "12 3 +"},
        {"sin ne", "wrong"},
        // "+" and "-" take one operator off the stack, never more.
        {"ne+th*vfw+deto1", "ne th vfw * deto1 + +"},
        {"ne-th*vfw-deto1", "ne th vfw * deto1 - -"},
        {"(ne-th*vfw)-deto1", "ne th vfw * - deto1 -"},
        {"ne*th/vfw", "ne th * vfw /"},
        {"ne+(th)", "ne th +"},
        {"sqrt(ne)*2", "ne sqrt 2 *"},
        // Only the counts of parentheses are compared.
        {"ne)+(th", "ne th ( +"},
        {"ne+th)*(vfw", "failed"},
        {"(ne", "wrong"},
        {"()", "wrong"},
        {"ne(th)", "wrong"},
        // Numbers, and names that the layer does not offer.
        {".5+2e3", "0.5 2000 +"},
        {"lap+1", "lap 1 +"},
        {"1e999", "wrong"},
        {"ne+vm1", "wrong"},
        {"ne+calc", "wrong"},
        {"+ne", "wrong"},
        {"ne*", "wrong"},
        {"sin", "wrong"},
        {"**********+++++++++++++//////////////-------------", "wrong"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(Postfix(c.Formula), c.Expected) << c.Formula;
    }
}

TEST(FormulaSyntaxTest, TokeniserLeavesEmptyTokensBetweenAdjacentOperators) {
    EXPECT_EQ(TokenizeFormula(" A+(b) "), (std::vector<std::string>{"a", "+", "", "(", "b", ")"}));
    EXPECT_EQ(TokenizeFormula("-x"), (std::vector<std::string>{"-1", "*", "x"}));
    EXPECT_EQ(TokenizeFormula("   "), (std::vector<std::string>{""}));
}

} // namespace
} // namespace torvane::calc
