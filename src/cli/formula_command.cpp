// formula: a computed item over the main file of a run, by the same code as the desktop's
// "Function calculation" dialog.

#include "calc/formula_dialog.h"
#include "calc/formula_items.h"
#include "cli/cli_support.h"
#include "cli/commands.h"
#include "cli/deployed_run.h"
#include "shell/number_format.h"

#include <iostream>
#include <system_error>

namespace torvane::cli {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;

// The result's stream in the private deployment folder; the name only has to differ from the
// streams'.
constexpr const char* ResultItemName = "Result";

// The result's words copied to `out` through a temporary file beside it.
bool CopyResult(const fs::path& result, const fs::path& out) {
    fs::path part = out;
    part += ".part";
    std::error_code error;
    if (!fs::copy_file(result, part, fs::copy_options::overwrite_existing, error) ||
        (fs::rename(part, out, error), error)) {
        fs::remove(part, error);
        return false;
    }
    return true;
}

} // namespace

int Formula(const FormulaOptions& options) {
    if (options.Decimals < 0 || options.Decimals > calc::MaxFormulaDecimals) {
        return Fail("--decimals: 0 to 3");
    }
    const std::string formula = calc::TrimBlanks(options.Expression);
    if (formula.empty()) {
        return Fail("Enter the formula.");
    }
    StderrSink sink;
    const Environment environment = LoadEnvironment(sink);
    DeployedRun run;
    if (!run.Deploy(options.Input, sink)) {
        return 1;
    }
    const std::vector<std::string> offered = calc::OfferedNames(calc::OfferedKinds(run.Layer()));
    const calc::FormulaRun result =
        calc::RunFormula(formula, offered, {&run.Layers(), 0, &environment.Laf}, ResultItemName,
                         options.Decimals, sink);
    const calc::FormulaOutcome& outcome = result.Outcome;
    const double max = calc::ScaleMaximum(outcome.Max);

    std::string postfixText;
    json postfix = json::array();
    for (const calc::FormulaToken& token : result.Postfix) {
        const std::string text = calc::PostfixText(token);
        postfix.push_back(text);
        if (!postfixText.empty()) {
            postfixText += ' ';
        }
        postfixText += text;
    }
    if (options.Json) {
        json document{{"result", static_cast<int>(outcome.Result)},
                      {"entries", outcome.Entries},
                      {"dblMax", JsonNumber(outcome.Max)},
                      {"Max", JsonNumber(max)}};
        if (result.SyntaxPassed) {
            document["postfix"] = postfix;
        }
        std::cout << document.dump() << '\n';
    } else {
        std::cout << "Result   " << static_cast<int>(outcome.Result) << '\n';
        if (result.SyntaxPassed) {
            std::cout << "Postfix  " << postfixText << '\n';
        }
        std::cout << "Entries  " << outcome.Entries << "  (one every " << outcome.Sampling
                  << " ms)\n"
                  << "dblMax   " << shell::ShortestText(outcome.Max) << '\n'
                  << "Max      " << shell::ShortestText(max) << '\n';
    }
    if (outcome.Result == calc::FormulaResult::Incorrect) {
        return Fail(std::string(calc::FormulaIncorrectMessage));
    }
    if (outcome.Result == calc::FormulaResult::Failed) {
        return 1; // the sink has told why
    }
    if (options.Output &&
        !CopyResult(run.Layers().StreamPath(0, ResultItemName), *options.Output)) {
        return Fail("Cannot write " + options.Output->string());
    }
    return 0;
}

} // namespace torvane::cli
