#include "calc/formula_calculation.h"
#include "calc/formula_dialog.h"
#include "logdata/channels.h"
#include "one_layer_run.h"

#include <gtest/gtest.h>

#include <cmath>

namespace torvane::calc {
namespace {

using logdata::DETO1;
using logdata::FRSUS;
using logdata::Ne;
using logdata::TH;
using logdata::VFW;

std::vector<std::int32_t> ReadWords32(const std::filesystem::path& file) {
    const std::vector<std::uint8_t> bytes = torvane::testing::ReadBytes(file);
    std::vector<std::int32_t> words(bytes.size() / 4);
    for (std::size_t i = 0; i < words.size(); ++i) {
        words[i] = static_cast<std::int32_t>(bytes[4 * i] | bytes[4 * i + 1] << 8 |
                                             bytes[4 * i + 2] << 16 |
                                             static_cast<std::uint32_t>(bytes[4 * i + 3]) << 24);
    }
    return words;
}

const std::vector<std::string> Offered{"ne", "th", "vfw", "deto1", "frsus", "lap"};

class FormulaCalculationTest : public ::testing::Test, protected logdata::testing::OneLayerRun {
protected:
    FormulaCalculationTest()
        : OneLayerRun({Ne, TH, VFW, 3, DETO1, 5, 6, FRSUS, 8, 9, 10, 15}) {}

    FormulaRun Run(std::string_view formula, int decimals = 0) {
        return RunFormula(formula, Offered, {&layers, 0, &laf}, "Calc", decimals, sink);
    }
    std::filesystem::path ResultFile() const { return layers.StreamPath(0, "Calc"); }
    std::vector<std::int32_t> Result() const { return ReadWords32(ResultFile()); }

    shell::RecordingSink sink;
};

TEST_F(FormulaCalculationTest, StepsOf5msInterpolateTheSlowItemAndEndWithTheShortestInput) {
    Stream(Ne, 5, {1, 2, 3, 4, 5, 6, 7, 8});
    Stream(VFW, 20, {100}); // one sample: its next one reads 0, and it ends first
    const FormulaRun run = Run("ne+vfw");
    ASSERT_EQ(run.Outcome.Result, FormulaResult::Success);
    // VFW climbs from 0 to its first sample at 20 ms.
    EXPECT_EQ(Result(), (std::vector<std::int32_t>{45, 90, 135, 180, 175, 170, 165}));
    EXPECT_EQ(run.Outcome.Entries, 7);
    EXPECT_EQ(run.Outcome.Max, 180.0);
    EXPECT_EQ(run.Outcome.Sampling, 5);
    EXPECT_TRUE(sink.Messages.empty());
}

TEST_F(FormulaCalculationTest, CountersReadOnlyAtTheirInstantsAndSpanlessThrottleReadsZero) {
    Stream(DETO1, 20, {3, 4, 5});
    EXPECT_EQ(Run("deto1").Outcome.Result, FormulaResult::Success);
    EXPECT_EQ(Result(), (std::vector<std::int32_t>{0, 0, 0, 3, 0, 0, 0, 4, 0, 0, 0, 5, 0, 0, 0}));

    // A throttle without a span is no input at all: the run goes by Ne alone, or is one entry.
    layers.Layer[0].Header.SetWord(logdata::SettingWord::ThOpen, 100);
    Stream(TH, 5, {500, 500, 500});
    Stream(Ne, 5, {1, 1});
    EXPECT_EQ(Run("th+ne").Outcome.Entries, 2);
    EXPECT_EQ(Result()[0], 20);
    EXPECT_EQ(Result()[1], 20);
    EXPECT_EQ(Run("th+1").Outcome.Entries, 1);
}

TEST_F(FormulaCalculationTest, ConstantsLapAndNegativeResultsAndHalfToEvenRounding) {
    const struct {
        std::string_view Formula;
        int Decimals;
        std::int32_t Word;
        double Max;
    } cases[] = {
        {"5+3", 0, 8, 8.0},
        {"5+3", 2, 800, 8.0},
        {"lap", 0, 0, 0.0},
        {"0.5", 0, 0, 0.5},
        {"1.5", 0, 2, 1.5},
        {"2.5", 0, 2, 2.5},
        {"-2.5", 0, -2, 0.0},
        {"2*(-3)", 1, -60, 0.0},
        {"2147483.647", 3, 2147483647, 2147483.647},
        {"atan(1)", 3, 45000, 45.0},
        {"acos(0)", 0, 90, 90.0},
        // The "asin" row takes a cosine.
        {"asin(0.6)", 3, static_cast<std::int32_t>(std::round(std::cos(0.75) * 57295.7795130823)),
         std::cos(0.75) * 57.2957795130823},
    };
    for (const auto& c : cases) {
        const FormulaRun run = Run(c.Formula, c.Decimals);
        ASSERT_EQ(run.Outcome.Result, FormulaResult::Success) << c.Formula;
        EXPECT_EQ(Result(), std::vector<std::int32_t>{c.Word}) << c.Formula;
        EXPECT_DOUBLE_EQ(run.Outcome.Max, c.Max) << c.Formula;
    }
    // Item values below 0 are raised to 0 before the formula sees them.
    Stream(7, 5, {1000});
    EXPECT_EQ(Run("frsus-1").Outcome.Result, FormulaResult::Success);
    EXPECT_EQ(Result(), (std::vector<std::int32_t>{-1}));
}

TEST_F(FormulaCalculationTest, IncorrectForTheDataAndRunTimeFailuresLeaveNoResultFile) {
    Stream(VFW, 5, {5, 5, 0, 5});
    const struct {
        std::string_view Formula;
        int Decimals;
        FormulaResult Result;
        std::string_view Message; // empty: none
        int Icon;
    } cases[] = {
        {"10/vfw", 0, FormulaResult::Incorrect, "", 0},
        {"sqrt(0-2)", 0, FormulaResult::Incorrect, "", 0},
        {"tan(89.5)", 0, FormulaResult::Incorrect, "", 0},
        {"tan(270)", 0, FormulaResult::Incorrect, "", 0},
        {"asin(2)", 0, FormulaResult::Incorrect, "", 0},
        {"2147483.648", 3, FormulaResult::Failed, "Overflow", shell::icons::Warning},
        {"vfw*1e308*10", 0, FormulaResult::Failed, "Overflow", shell::icons::Warning},
        {"asin(1)", 0, FormulaResult::Failed, "Error(11)\rDivision by zero", shell::icons::Stop},
        {"acos(-1)", 0, FormulaResult::Failed, "Error(11)\rDivision by zero", shell::icons::Stop},
        {"ne+th)*(vfw", 0, FormulaResult::Failed, "Error(9)\rSubscript out of range",
         shell::icons::Stop},
    };
    for (const auto& c : cases) {
        sink.Messages.clear();
        EXPECT_EQ(Run(c.Formula, c.Decimals).Outcome.Result, c.Result) << c.Formula;
        EXPECT_FALSE(std::filesystem::exists(ResultFile())) << c.Formula;
        if (c.Message.empty()) {
            EXPECT_TRUE(sink.Messages.empty()) << c.Formula;
        } else {
            ASSERT_EQ(sink.Messages.size(), 1u) << c.Formula;
            EXPECT_EQ(sink.Messages[0].Text, c.Message);
            EXPECT_EQ(sink.Messages[0].Icon, c.Icon);
        }
    }
    // Within one step the entry met first decides: Ne ends at 15 ms where VFW reads 0.
    Stream(Ne, 5, {1, 1});
    const FormulaRun ended = Run("ne+10/vfw");
    EXPECT_EQ(ended.Outcome.Result, FormulaResult::Success);
    EXPECT_EQ(ended.Outcome.Entries, 2);
    const FormulaRun refused = Run("10/vfw+ne");
    EXPECT_EQ(refused.Outcome.Result, FormulaResult::Incorrect);
    EXPECT_EQ(refused.Outcome.Entries, 2);

    // tan fails only at 90 and 270, not at their other multiples.
    EXPECT_EQ(Run("tan(0-90)*0").Outcome.Result, FormulaResult::Success);
    EXPECT_EQ(Run("tan(450)*0").Outcome.Result, FormulaResult::Success);
}

TEST_F(FormulaCalculationTest, ScratchFileKeepsItsOldTailAndAnUnwritableOneIsReported) {
    Stream(Ne, 5, {1, 2, 3});
    Run("ne");
    EXPECT_EQ(Result(), (std::vector<std::int32_t>{20, 40, 60}));
    EXPECT_EQ(Run("7").Outcome.Entries, 1);
    EXPECT_EQ(Result(), (std::vector<std::int32_t>{7, 40, 60}));

    std::filesystem::remove(folder / ScratchFileName);
    std::filesystem::remove(ResultFile());
    std::filesystem::create_directory(folder / ScratchFileName);
    EXPECT_EQ(Run("ne").Outcome.Result, FormulaResult::Failed);
    ASSERT_EQ(sink.Messages.size(), 1u);
    EXPECT_EQ(sink.Messages[0].Text, "Error(75)\rPath/File access error");
    EXPECT_FALSE(std::filesystem::exists(ResultFile()));
}

// The block reading gives exactly what one read per sampling instant gives, across blocks,
// with a stream cut to an odd length among the inputs.
TEST_F(FormulaCalculationTest, ResultsEqualTheSampleBySampleReadingOverALongRun) {
    std::vector<std::int16_t> ne(9300);
    std::vector<std::int16_t> th(9300);
    std::vector<std::int16_t> vfw(2300);
    for (std::size_t i = 0; i < ne.size(); ++i) {
        ne[i] = static_cast<std::int16_t>((i * 37) % 700);
        th[i] = static_cast<std::int16_t>(25 + (i * 11) % 200);
    }
    for (std::size_t i = 0; i < vfw.size(); ++i) {
        vfw[i] = static_cast<std::int16_t>((i * 13) % 300);
    }
    Stream(Ne, 5, ne);
    Stream(TH, 5, th);
    Stream(VFW, 20, vfw);
    std::filesystem::resize_file(layers.StreamPath(0, "VFW"), vfw.size() * 2 + 1);
    const FormulaRun run = Run("Ne*TH/100+sqrt(VFW)", 2);
    ASSERT_EQ(run.Outcome.Result, FormulaResult::Success);

    const struct {
        double Close = 100;
        double Open = 900;
    } span;
    const auto reading = [](const std::vector<std::int16_t>& words, std::int64_t t, int interval) {
        const std::int64_t k = t / interval;
        const std::int64_t q = t % interval;
        const auto at = [&](std::int64_t n) {
            return n >= 1 && n <= std::ssize(words) ? words[static_cast<std::size_t>(n - 1)] : 0;
        };
        return at(k) + (at(k + 1) - at(k)) * static_cast<double>(q) / interval;
    };
    std::vector<std::int32_t> expected;
    for (std::int64_t t = 5; t / 20 <= std::ssize(vfw); t += 5) {
        const double throttle =
            std::max(0.0, (reading(th, t, 5) * 4 - span.Close) / (span.Open - span.Close) * 100);
        const double value =
            reading(ne, t, 5) * 20 * throttle / 100 + std::sqrt(reading(vfw, t, 20));
        expected.push_back(static_cast<std::int32_t>(std::nearbyint(value * 100)));
    }
    EXPECT_EQ(Result(), expected);
}

} // namespace
} // namespace torvane::calc
