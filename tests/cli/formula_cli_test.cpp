// torvane-cli formula, run as the real binary on a generated run.

#include "support/documented_json.h"
#include "support/run_process.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cmath>

namespace torvane::cli {
namespace {

using nlohmann::json;
using torvane::testing::ProcessResult;
using torvane::testing::ReadBytes;
using torvane::testing::TempFolder;

constexpr std::string_view Incorrect = "The entered formula is incorrect. Please enter it again.\n";

class FormulaCliTest : public ::testing::Test {
protected:
    FormulaCliTest() {
        const auto made = Cli({"generate", run, "--minutes", "0.1", "--seed", "7"});
        EXPECT_EQ(made.Status, 0) << made.Err;
    }

    ProcessResult Cli(const std::vector<std::string>& args) const {
        return torvane::testing::RunProcess(TORVANE_CLI, args,
                                            {"TORVANE_HOME=" + (folder / "home").string()});
    }

    std::int32_t Word(const std::vector<std::uint8_t>& bytes, std::size_t n) const {
        return static_cast<std::int32_t>(bytes[4 * n] | bytes[4 * n + 1] << 8 |
                                         bytes[4 * n + 2] << 16 |
                                         static_cast<std::uint32_t>(bytes[4 * n + 3]) << 24);
    }

    TempFolder folder;
    const std::string run = (folder / "run.rlg").string();
    const std::string out = (folder / "result.bin").string();
};

TEST_F(FormulaCliTest, ResultWordsMatchTheValueReaderAndTheJsonIsDocumented) {
    const auto result = Cli({"formula", run, "Ne*2", "--decimals", "1", "--out", out, "--json"});
    ASSERT_EQ(result.Status, 0) << result.Err;
    const json document = json::parse(result.Out);
    EXPECT_EQ(torvane::testing::Undocumented(torvane::testing::DocumentedJson("formula"), document),
              std::vector<std::string>{});
    EXPECT_EQ(document["result"], 0);
    EXPECT_EQ(document["postfix"], json::parse(R"(["ne","2","*"])"));
    const auto bytes = ReadBytes(out);
    ASSERT_EQ(bytes.size(), document["entries"].get<std::size_t>() * 4);
    // Ne, sampled every 10 ms for 6000 ms, is read until its next instant after the last sample.
    EXPECT_EQ(document["entries"], 6010 / 5 - 1);

    // Where the cursor reads Ne, the computed item holds twice that, in tenths.
    const auto values = json::parse(Cli({"values", run, "--at", "1000,2500", "--json"}).Out);
    double largest = 0.0;
    for (std::size_t n = 0; n < bytes.size() / 4; ++n) {
        largest = std::max(largest, Word(bytes, n) / 10.0);
    }
    EXPECT_EQ(Word(bytes, 199), std::lround(values[0]["values"]["Ne"].get<double>() * 20));
    EXPECT_EQ(Word(bytes, 499), std::lround(values[1]["values"]["Ne"].get<double>() * 20));
    EXPECT_DOUBLE_EQ(document["dblMax"].get<double>(), largest);

    // A leading minus follows "--"; the text form tells the same facts.
    const auto negative = Cli({"formula", "--json", "--", run, "-Ne*2"});
    ASSERT_EQ(negative.Status, 0) << negative.Err;
    EXPECT_EQ(json::parse(negative.Out)["postfix"], json::parse(R"(["-1","ne","*","2","*"])"));
    EXPECT_EQ(json::parse(negative.Out)["Max"], 0.1);
    const auto text = Cli({"formula", run, "5+3"});
    EXPECT_EQ(text.Out, "Result   0\nPostfix  5 3 +\nEntries  1  (one every 5 ms)\n"
                        "dblMax   8\nMax      10\n");
}

TEST_F(FormulaCliTest, RefusedFormulasExitOneWithTheirMessageAndWriteNothing) {
    const struct {
        std::vector<std::string> Args;
        std::string Err;
        int Result; // -1: no JSON expected
    } cases[] = {
        {{"Ne+VM4", "--json"}, std::string(Incorrect), 1},
        {{"2*-3", "--json"}, std::string(Incorrect), 1},
        {{"10/(Ne*0)", "--json"}, std::string(Incorrect), 1},
        {{"Ne*1000000", "--decimals", "3", "--json"}, "Overflow\n", 2},
        {{"Ne+TH)*(VFW", "--json"}, "Error(9)\nSubscript out of range\n", 2},
        {{"   "}, "Enter the formula.\n", -1},
    };
    for (const auto& c : cases) {
        std::vector<std::string> args{"formula", run};
        args.insert(args.end(), c.Args.begin(), c.Args.end());
        args.insert(args.end(), {"--out", out});
        const auto result = Cli(args);
        EXPECT_EQ(result.Status, 1) << c.Args[0];
        EXPECT_EQ(result.Err, c.Err) << c.Args[0];
        if (c.Result >= 0) {
            EXPECT_EQ(json::parse(result.Out)["result"], c.Result) << c.Args[0];
        }
        EXPECT_FALSE(std::filesystem::exists(out)) << c.Args[0];
    }
    EXPECT_NE(Cli({"formula", run, "Ne", "--decimals", "4"}).Status, 0);
}

} // namespace
} // namespace torvane::cli
