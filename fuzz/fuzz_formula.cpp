// The formula's tokeniser, syntax check and postfix conversion on arbitrary text: whatever an
// operator types (or pastes) into the formula box must end in a postfix form, a refusal or the
// stray-parenthesis failure, never in a crash.

#include "calc/formula_syntax.h"

#include <cstdint>
#include <cstdlib>
#include <string_view>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace torvane::calc;
    static const std::vector<std::string> offered{"ne", "th", "vfw", "deto1", "frsus", "lap"};
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const std::vector<std::string> tokens = TokenizeFormula(text);
    CheckFormula(tokens, offered);
    std::vector<FormulaToken> postfix;
    std::optional<torvane::shell::RunTimeError> failure;
    const int count = ConvertToPostfix(text, offered, postfix, failure);
    if (count >= 0 && (static_cast<std::size_t>(count) != postfix.size() || failure)) {
        std::abort();
    }
    if (count == PostfixFailed && !failure) {
        std::abort();
    }
    for (const FormulaToken& token : postfix) {
        if (PostfixText(token).empty()) {
            std::abort();
        }
    }
    return 0;
}
