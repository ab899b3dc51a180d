#include "items/grid_limits.h"
#include "items/item_choice.h"
#include "items/line_palette.h"
#include "logdata/channels.h"

#include <gtest/gtest.h>

namespace torvane::items {
namespace {

using shell::icons::Information;
using shell::icons::Warning;

TEST(LinePaletteTest, PointsGiveTheCellOfTheirColumnAndRowInsideThePictureOnly) {
    struct Case {
        int X, Y;
        std::optional<int> Index;
    };
    for (const Case& c : std::vector<Case>{{0, 0, 1},
                                           {29, 24, 1},
                                           {30, 0, 2},
                                           {209, 0, 7}, // column 6, the last of the row
                                           {0, 25, 8},
                                           {209, 49, 14},
                                           {210, 0, std::nullopt},
                                           {-1, 10, std::nullopt},
                                           {10, 50, std::nullopt}}) {
        EXPECT_EQ(PaletteIndexAt(c.X, c.Y), c.Index) << c.X << "," << c.Y;
    }
    for (int index = 1; index <= PaletteColorCount; ++index) {
        const PaletteCell cell = PaletteCellOf(index);
        EXPECT_EQ(PaletteIndexAt(cell.Column * PaletteCellWidth, cell.Row * PaletteCellHeight),
                  index);
    }
    // Indexes without a cell, which a layout file may hold, mark none inside the picture.
    EXPECT_EQ(PaletteCellOf(0), (PaletteCell{-1, 0}));
    EXPECT_EQ(PaletteCellOf(16), (PaletteCell{8, 1}));
}

TEST(LinePaletteTest, OnlyAMoveToAnotherCellAsksForTheFrameAgain) {
    LinePalette palette(3);
    EXPECT_FALSE(palette.PointAt(65, 5)); // still colour 3
    EXPECT_TRUE(palette.PointAt(209, 30));
    EXPECT_EQ(palette.Color(), 14);
    EXPECT_FALSE(palette.PointAt(215, 30)); // outside: nothing changes
    EXPECT_FALSE(palette.PointAt(100, -2));
    EXPECT_EQ(palette.Color(), 14);
}

TEST(ItemChoiceTest, ListsExistingItemsByNameAndGivesBackTheMarkedOnes) {
    const std::vector<ItemChoice> items{{logdata::Ne, true, true, ""},
                                        {logdata::TH, false, false, ""},
                                        {logdata::VFW, true, false, ""},
                                        {logdata::ComputedChannel, true, true, "Slip"}};
    EXPECT_EQ(ChoiceEntriesOf(items),
              (std::vector<ChoiceEntry>{{"Ne", 0, true}, {"VFW", 2, false}, {"Slip", 3, true}}));

    shell::RecordingSink sink;
    EXPECT_EQ(ConfirmChoice(items, {2, 3}, sink), (std::vector<bool>{false, false, true, true}));
    EXPECT_TRUE(sink.Messages.empty());
    EXPECT_EQ(ConfirmChoice(items, {}, sink), std::nullopt);
    ASSERT_EQ(sink.Messages.size(), 1u);
    EXPECT_EQ(sink.Messages[0].Text, "Choose an item to indicate. ");
}

GridItem Channel(int channel, std::int32_t max = 0, std::int32_t min = 0) {
    return {channel, channel, -1, std::string(logdata::ChannelName(channel)), 0.0, max, min};
}
GridItem Computed(double maxValue, std::int32_t max = 0, std::int32_t min = 0) {
    return {12, logdata::ComputedChannel, 0, "Slip", maxValue, max, min};
}

TEST(GridLimitsTest, DefaultButtonDividesTheTableByTheScalesDivisor) {
    struct Case {
        GridItem Item;
        LimitTexts Boxes;
    };
    for (const Case& c :
         std::vector<Case>{{Channel(logdata::Ne), {"15000", "5000"}},
                           {Channel(logdata::TH), {"100", "0"}}, // divisor 10
                           {Channel(logdata::VB), {"15", "10"}}, // divisor 10
                           {Channel(logdata::VM1), {"5", "0"}},  // divisor 100
                           {Channel(logdata::LAF2), {"15", "5"}},
                           {Computed(50.0), {"100", "0"}},   // 1000 on divisor 10
                           {Computed(0.005), {"0.01", "0"}}, // 1000 on divisor 100000
                           {Computed(4321.0), {"4321", "0"}}}) {
        EXPECT_EQ(DefaultLimitBoxes(c.Item), c.Boxes) << c.Item.Name;
    }
}

TEST(GridLimitsTest, BoxesShowTheItemsLimitsOrElseTheEndsOfItsScale) {
    EXPECT_EQ(LimitBoxesOf(Channel(logdata::TH, 805, 20)), (LimitTexts{"80.5", "2"}));
    EXPECT_EQ(LimitBoxesOf(Channel(logdata::Ne, 0, 3000)), (LimitTexts{"0", "3000"}));
    EXPECT_EQ(LimitBoxesOf(Channel(logdata::TH)), (LimitTexts{"100", "0"}));
    EXPECT_EQ(LimitBoxesOf(Computed(50.0, 600, 0)), (LimitTexts{"60", "0"}));
}

TEST(GridLimitsTest, BoxesTakeDigitsBackspaceAndOnePoint) {
    for (const char key : {'0', '9', '\b'}) {
        EXPECT_TRUE(AcceptLimitKey("1.5", key));
    }
    EXPECT_TRUE(AcceptLimitKey("15", '.'));
    EXPECT_FALSE(AcceptLimitKey("1.5", '.'));
    for (const char key : {'-', '+', 'e', ' ', ','}) {
        EXPECT_FALSE(AcceptLimitKey("", key)) << key;
    }
}

TEST(GridLimitsTest, OkRefusesInTheOrderOfItsChecks) {
    struct Case {
        const char* Max;
        const char* Min;
        GridRefusal Refusal;
    };
    const GridRefusal maxEmpty{InputValueText, Warning, LimitBox::Max};
    const GridRefusal maxWrong{IncorrectDataText, Warning, LimitBox::Max};
    const GridRefusal minEmpty{InputValueText, Warning, LimitBox::Min};
    const GridRefusal minWrong{IncorrectDataText, Warning, LimitBox::Min};
    const GridRefusal outOfRange{IncorrectDataText, Information, LimitBox::None};
    for (const Case& c : std::vector<Case>{{"", "", maxEmpty},
                                           {".", "", maxWrong}, // a bare point is no number
                                           {"1.2.3", "0", maxWrong},
                                           {"100", "", minEmpty},
                                           {"100", "-5", minWrong},    // pasted past the filter
                                           {"40001", "0", outOfRange}, // Ne's widest is 40000
                                           {"99999999999999999999999", "0", outOfRange},
                                           {"9000", "9000", outOfRange},
                                           {"5000", "9000", outOfRange}}) {
        const GridConfirmation confirmation = ConfirmGrid(Channel(logdata::Ne), true, c.Max, c.Min);
        ASSERT_TRUE(confirmation.Refusal) << c.Max << " / " << c.Min;
        EXPECT_EQ(*confirmation.Refusal, c.Refusal) << c.Max << " / " << c.Min;
    }
}

TEST(GridLimitsTest, AcceptedLimitsComeBackInAxisUnits) {
    GridConfirmation confirmation = ConfirmGrid(Channel(logdata::TH), false, "80.5", "2");
    EXPECT_FALSE(confirmation.Refusal);
    EXPECT_EQ(confirmation.Result, (GridResult{logdata::TH, -1, false, 805.0, 20.0}));

    // The widest scale of TH ends at 1000 axis units, 100 %.
    EXPECT_FALSE(ConfirmGrid(Channel(logdata::TH), true, "100", "0").Refusal);
    EXPECT_TRUE(ConfirmGrid(Channel(logdata::TH), true, "100.1", "0").Refusal);

    confirmation = ConfirmGrid(Computed(50.0), true, "60", "0.5");
    EXPECT_FALSE(confirmation.Refusal);
    EXPECT_EQ(confirmation.Result, (GridResult{12, 0, true, 600.0, 5.0}));
}

} // namespace
} // namespace torvane::items
