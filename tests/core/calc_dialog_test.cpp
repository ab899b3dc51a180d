#include "calc/computed_item.h"
#include "calc/formula_dialog.h"
#include "calc/formula_items.h"
#include "logdata/channels.h"
#include "one_layer_run.h"
#include "recording_view.h"

#include <gtest/gtest.h>

namespace torvane::calc {
namespace {

class FormulaDialogTest : public ::testing::Test, protected logdata::testing::OneLayerRun {
protected:
    FormulaDialogTest()
        : OneLayerRun({0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 15}) {
        Stream(logdata::Ne, 5, {10, 20, 30});
    }

    FormulaOkResult Ok(FormulaFields fields) {
        return AcceptFormula(fields, {"ne", "lap"}, {&layers, 0, &laf}, kept, sink);
    }

    FormulaDialogMembers kept{"old", "Old", "u", 2};
    shell::RecordingSink sink;
};

TEST_F(FormulaDialogTest, OkChecksTheFieldsInOrderAndKeepsTheMembersOnlyAfterSuccess) {
    const struct {
        FormulaFields Fields;
        std::string_view Message;
        FormulaField Focus;
    } refusals[] = {
        {{"  ", "", "", -1}, "Enter the formula.", FormulaField::Formula},
        {{"ne", " ", "", -1}, "Enter the new item name.", FormulaField::ItemName},
        {{"ne", "lap", "", -1},
         "An existing item name cannot be entered. Please enter a new item name.",
         FormulaField::ItemName},
        {{"ne", "Ne2", "", -1}, "Enter the unit name.", FormulaField::Unit},
        {{"ne", "Ne2", "r", -1},
         "Enter the number of digits below decimal point.",
         FormulaField::Decimal},
        {{"ne+vfw", "Ne2", "r", 0}, FormulaIncorrectMessage, FormulaField::Formula},
        {{"10/(ne-400)", "Ne2", "r", 0}, FormulaIncorrectMessage, FormulaField::Formula},
    };
    for (const auto& refusal : refusals) {
        sink.Messages.clear();
        const FormulaOkResult result = Ok(refusal.Fields);
        EXPECT_FALSE(result.Item) << refusal.Message;
        EXPECT_EQ(result.Focus, refusal.Focus) << refusal.Message;
        ASSERT_EQ(sink.Messages.size(), 1u);
        EXPECT_EQ(sink.Messages[0].Text, refusal.Message);
        EXPECT_EQ(sink.Messages[0].Icon, shell::icons::Warning);
    }
    EXPECT_EQ(kept.Formula, "old");

    // "Ne" is not one of the lower-case names, so it passes.
    const FormulaOkResult done = Ok({" ne*60 ", " Ne ", " r ", 1});
    ASSERT_TRUE(done.Item);
    EXPECT_EQ(done.Item->NewItemName, "Ne");
    EXPECT_EQ(done.Item->UnitName, "r");
    EXPECT_EQ(done.Item->DecimalPoint, 1);
    EXPECT_EQ(done.Item->SamplingTime, 5);
    EXPECT_EQ(done.Item->Max, 100000.0); // 36000 is above 10000
    EXPECT_EQ(kept.Formula, "ne*60");
    EXPECT_EQ(kept.ItemName, "Ne");
    EXPECT_EQ(kept.DecimalIndex, 1);
}

TEST(FormulaDialogRulesTest, ScaleMaximumKeyFilterPickerAndCaret) {
    const std::pair<double, double> maxima[] = {
        {20000, 100000}, {10000, 10000}, {1000.5, 10000}, {100, 100}, {10.01, 100},
        {2, 10},         {1, 1},         {0.2, 1},        {0.1, 0.1}, {0, 0.1}};
    for (const auto& [value, expected] : maxima) {
        EXPECT_EQ(ScaleMaximum(value), expected) << value;
    }
    for (const char c : std::string_view("\\/.:;<>|\"?!*")) {
        EXPECT_FALSE(ItemNameKeyAccepted(c)) << c;
    }
    EXPECT_TRUE(ItemNameKeyAccepted('-'));
    EXPECT_TRUE(ItemNameKeyAccepted(' '));

    const std::vector<int> kinds{logdata::Ne, logdata::FRSUS, logdata::LAP};
    EXPECT_EQ(PickerEntries(PickerMode::Items, kinds),
              (std::vector<std::string>{"Ne", "FRSUS", "LAP"}));
    EXPECT_EQ(PickerEntries(PickerMode::Operations, kinds).size(), 11u);
    EXPECT_EQ(PickedText(PickerMode::Operations, 3, kinds), "asin()");
    EXPECT_EQ(PickedText(PickerMode::Operations, 10, kinds), "/");
    EXPECT_EQ(PickedText(PickerMode::Items, 1, kinds), "FRSUS");
    EXPECT_EQ(PickedText(PickerMode::Items, -1, kinds), "");

    EXPECT_EQ(InsertAtCaret("ne+", 3, "sqrt()").Text, "ne+sqrt()");
    EXPECT_EQ(InsertAtCaret("ne+", 3, "sqrt()").Caret, 8); // between the parentheses
    EXPECT_EQ(InsertAtCaret("ne+th", 2, "*").Text, "ne*+th");
    EXPECT_EQ(InsertAtCaret("ne+th", 2, "*").Caret, 3);
}

TEST_F(FormulaDialogTest, ComputedItemIsAppendedOnceAndRecalculatedInPlace) {
    graph::GraphWindowState state;
    state.Layers = layers;
    state.LapBarHeight = 14;
    state.Panel.ShowLayerPanel(0, "run", state.Layers.Layer[0], state.Views[0]);
    const int first = StoreComputedItem(state, 0, {"Pow", "kW", 1, 5, 100.0}, 500);
    const int second = StoreComputedItem(state, 0, {"Sum", "x", 0, 5, 10.0}, 500);
    EXPECT_EQ(first, 12);
    EXPECT_EQ(second, 13);
    const int again = StoreComputedItem(state, 0, {"Pow", "W", 2, 5, 1000.0}, 500);
    EXPECT_EQ(again, 12);
    const auto& record = state.Layers.Layer[0];
    EXPECT_EQ(record.ItemChannel.size(), 14u);
    EXPECT_EQ(record.ItemChannel[12], logdata::ComputedChannel);
    EXPECT_EQ(record.FormulaItems[0].Unit, "W");
    EXPECT_EQ(record.FormulaItems[0].Decimal, 2);
    // Max 1000 gives base 1000, grid step 100, pitch 10: ten steps above the bottom row.
    const graph::ComputedItemView& shown = state.Views[0].Computed[0];
    EXPECT_EQ(shown.Display.Bottom, 500 - 20 - 14);
    EXPECT_EQ(shown.Display.Top, 500 - 20 - 14 - 100);
    EXPECT_EQ(shown.Display.Zoom, 3);
    EXPECT_EQ(shown.Display.Max, shown.Scale.AxisMax);
    EXPECT_EQ(shown.Display.View, 1);

    load::testing::RecordingView view;
    EXPECT_TRUE(ShowComputedItems(state, view));
    EXPECT_EQ(view.steps, (std::vector<std::string>{"scales", "redraw", "values"}));
    const auto& rows = state.Panel.Rows();
    const auto named = std::ranges::count_if(rows, [](const graph::ItemRow& row) {
        return row.Kinds == logdata::ComputedChannel && row.Italic;
    });
    EXPECT_EQ(named, 2);
}

} // namespace
} // namespace torvane::calc
