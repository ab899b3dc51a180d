#include "graph_window_fixture.h"
#include "items/display_commands.h"
#include "items/scale_commands.h"
#include "layout_store_fixture.h"
#include "recording_view.h"
#include "shell/common.h"

#include <gtest/gtest.h>

#include <limits>

namespace torvane::items {
namespace {

using graph::ItemDisplay;
using graph::testing::RunHeader;
using logdata::Ne;
using logdata::TH;
using logdata::VFW;

constexpr int Slip = logdata::SlotCount; // position of the first computed item
constexpr int GraphHeight = 600;

class ItemCommandsTest : public ::testing::Test, protected torvane::testing::LayoutStoreFixture {
protected:
    ItemCommandsTest() {
        paths_.MakeFolders();
        store_.LoadLayouts();
        window_.Open(0, RunHeader(), "MAIN");
        window_.AddComputed(0, logdata::FormulaItem{1, 10, 50.0, "Slip", "%"});
        window_.Open(1, RunHeader(), "SECOND");
        Panel().RemoveLayerItems(0, Layer(0), View(0));
    }

    graph::GraphWindowState& State() { return window_.state; }
    graph::ItemPanel& Panel() { return State().Panel; }
    logdata::LayerRecord& Layer(int layer) {
        return State().Layers.Layer[static_cast<std::size_t>(layer)];
    }
    graph::LayerView& View(int layer) { return State().Views[static_cast<std::size_t>(layer)]; }
    ItemDisplay& Display(int layer, int position) {
        return *graph::ItemDisplayOf(View(layer), Layer(layer), position);
    }
    std::vector<int> RowPositions(int layer) {
        std::vector<int> positions;
        for (const graph::ItemRow& row : Panel().Rows()) {
            if (row.Layer == layer) {
                positions.push_back(row.Position);
            }
        }
        return positions;
    }
    ItemDisplay LastLayout(int channel) {
        return LayoutStoreFixture::Record(0).Items[static_cast<std::size_t>(channel)];
    }

    graph::testing::GraphWindowFixture window_;
    load::testing::RecordingView view_;
};

TEST_F(ItemCommandsTest, DisplayChoiceOffersExistingItemsAndHidesTheUnmarkedOnes) {
    Layer(0).ItemExists[VFW] = false;
    Display(0, Slip).View = 0;
    std::vector<ItemChoice> choices = DisplayChoicesOf(State());
    ASSERT_EQ(choices.size(), 13u);
    EXPECT_EQ(choices[TH], (ItemChoice{TH, true, true, ""}));
    EXPECT_EQ(choices[VFW], (ItemChoice{VFW, false, false, ""}));
    // A computed item taken off the display is no longer offered.
    EXPECT_EQ(choices[Slip], (ItemChoice{logdata::ComputedChannel, false, false, ""}));
    Display(0, Slip).View = 1;
    EXPECT_EQ(DisplayChoicesOf(State())[Slip],
              (ItemChoice{logdata::ComputedChannel, true, true, "Slip"}));

    std::vector<bool> view(13, false);
    view[Ne] = true;
    view[Slip] = true;
    ApplyDisplayChoice(State(), view, store_, view_);
    EXPECT_EQ(RowPositions(0), (std::vector<int>{Ne, Slip}));
    EXPECT_EQ(Display(0, TH).View, 0);
    EXPECT_EQ(LastLayout(TH).View, 0);
    EXPECT_EQ(LastLayout(Ne).View, 1);
    EXPECT_EQ(view_.steps, (std::vector<std::string>{"scales", "redraw", "values"}));
    // The second layer's rows moved up under the shorter first one.
    EXPECT_EQ(Panel().File(1)->Top, graph::FirstPanelBottom + 2 * graph::ItemRowHeight);
}

TEST_F(ItemCommandsTest, DisplayChoiceInAFurtherLayerLeavesTheLastLayoutAlone) {
    SelectLayer(State(), 1);
    std::vector<bool> view(12, false);
    view[VFW] = true;
    ApplyDisplayChoice(State(), view, store_, view_);
    EXPECT_EQ(RowPositions(1), (std::vector<int>{VFW}));
    EXPECT_EQ(RowPositions(0).size(), 13u);
    EXPECT_EQ(LastLayout(TH).View, 1);
}

TEST_F(ItemCommandsTest, LineActsOnTheMarkedItemOrOnEveryItemOfTheActiveLayer) {
    Display(0, Ne).View = 0;
    Panel().RemoveLayerItems(0, Layer(0), View(0));
    Display(0, TH).Color = 5;
    Display(0, TH).Line = 2;
    // Nothing marked: the first item on show gives the starting values, all items change.
    Panel().ClearSelection();
    std::optional<LineCommand> command = LineCommandOf(State());
    ASSERT_TRUE(command);
    EXPECT_EQ(*command, (LineCommand{0, -1, {5, 2, 0}}));
    ApplyLineKind(State(), *command, {9, 3, 2}, store_, view_);
    for (const int position : {int{Ne}, int{TH}, int{VFW}, Slip}) {
        EXPECT_EQ(Display(0, position).Color, 9) << position;
        EXPECT_EQ(Display(0, position).Point, 2) << position;
    }
    EXPECT_EQ(Panel().FindRow(0, Slip)->LineColor, shell::ColorValue(9));
    EXPECT_EQ(LastLayout(TH).Color, 9);
    EXPECT_EQ(Display(1, TH).Color, 2); // another layer keeps its own
    EXPECT_EQ(view_.steps, (std::vector<std::string>{"redraw"}));

    // A marked row of another layer decides alone; the last layout stays.
    Panel().SelectItem(1, VFW);
    command = LineCommandOf(State());
    EXPECT_EQ(*command, (LineCommand{1, VFW, {3, 0, 0}}));
    ApplyLineKind(State(), *command, {14, 1, 3}, store_, view_);
    EXPECT_EQ(Display(1, VFW).Color, 14);
    EXPECT_EQ(Display(1, TH).Color, 2);
    EXPECT_EQ(Panel().FindRow(1, VFW)->LineColor, shell::ColorValue(14));
    EXPECT_EQ(Panel().FindRow(1, TH)->LineColor, shell::ColorValue(2));
    EXPECT_EQ(LastLayout(VFW).Color, 9);
}

TEST_F(ItemCommandsTest, LineWithNothingOnShowOpensNoDialog) {
    SelectLayer(State(), 1);
    for (ItemDisplay& item : View(1).Display.Items) {
        item.View = 0;
    }
    Panel().RemoveLayerItems(1, Layer(1), View(1));
    Panel().MarkFile(1);
    EXPECT_EQ(LineCommandOf(State()), std::nullopt);
}

TEST_F(ItemCommandsTest, GridTakesTheMarkedRowOfLayerZeroOrElseTheLowestChannel) {
    Panel().SelectItem(1, Ne); // a row of another layer does not count
    Display(0, Ne).Grid = 1;
    std::optional<GridRequest> request = GridRequestOf(State());
    ASSERT_TRUE(request);
    EXPECT_EQ(request->Items.size(), 13u);
    EXPECT_EQ(request->Items[static_cast<std::size_t>(request->Item)].Kinds, Ne);
    EXPECT_TRUE(request->Grid);

    Panel().SelectItem(0, Slip);
    request = GridRequestOf(State());
    const GridItem& chosen = request->Items[static_cast<std::size_t>(request->Item)];
    EXPECT_EQ(chosen.Name, "Slip");
    EXPECT_EQ(chosen.FormulaIndex, 0);
    EXPECT_EQ(chosen.MaxValue, 50.0);

    // Half-way values round to even whole axis units.
    ApplyGrid(State(), {TH, -1, false, 802.5, 2.5}, store_, view_);
    EXPECT_EQ(Display(0, TH).Max, 802);
    EXPECT_EQ(Display(0, TH).Min, 2);
    EXPECT_EQ(Display(0, TH).Grid, 0);
    EXPECT_EQ(LastLayout(TH).Max, 802);
    ApplyGrid(State(), {Slip, 0, true, 600.0, 0.0}, store_, view_);
    EXPECT_EQ(Display(0, Slip).Max, 600);
    EXPECT_EQ(view_.steps, (std::vector<std::string>{"scales", "redraw", "scales", "redraw"}));
}

TEST_F(ItemCommandsTest, AlignBringsZoomAndBandButNotLimitsOrScales) {
    Display(0, TH) = {1, 1, 1, 1, 1, 7, 40, 240, 900, 100};
    const graph::ScaleRecord scale = View(1).ItemScale[TH];
    AlignLayers(State(), view_);
    const ItemDisplay& aligned = Display(1, TH);
    EXPECT_EQ(aligned.Zoom, 7);
    EXPECT_EQ(aligned.Top, 40);
    EXPECT_EQ(aligned.Bottom, 240);
    EXPECT_EQ(aligned.Max, 0);
    EXPECT_EQ(View(1).ItemScale[TH], scale);
    EXPECT_EQ(view_.steps, (std::vector<std::string>{"redraw"}));
}

TEST_F(ItemCommandsTest, MoveCentresTheMarkedItemBandAboveTheLapBar) {
    State().LapBarHeight = 14;
    Display(0, Ne).Zoom = 2;
    Display(0, TH).Max = 800;
    Panel().SelectItem(0, TH);
    ASSERT_TRUE(MoveCenter(State(), GraphHeight, store_, view_));
    // TH's default scale 4: grid step 100, pitch 10; Max 800 gives a band of 80.
    EXPECT_EQ(Display(0, TH).Zoom, 4);
    EXPECT_EQ(Display(0, TH).Top, (600 - 20 - 14 - 80) / 2);
    EXPECT_EQ(Display(0, TH).Bottom, 243 + 80);
    EXPECT_EQ(Display(0, Ne).Zoom, 2);
    EXPECT_EQ(LastLayout(TH).Top, 243);
    EXPECT_EQ(view_.steps, (std::vector<std::string>{"scales", "redraw"}));
}

TEST_F(ItemCommandsTest, MoveOfAMarkedFileCentresEveryItemOfItsLayer) {
    Display(1, Ne).Zoom = 1;
    Display(1, Ne).Max = 0; // no limit of its own: the band reaches the scale's top
    Panel().MarkFile(1);
    ASSERT_TRUE(MoveCenter(State(), GraphHeight, store_, view_));
    // Ne's default scale 6: 20000 in grid steps of 500, pitch 10.
    EXPECT_EQ(Display(1, Ne).Zoom, 6);
    EXPECT_EQ(Display(1, Ne).Bottom - Display(1, Ne).Top, 400);
    EXPECT_EQ(Display(1, Ne).Top, (600 - 20 - 400) / 2);
    graph::ScaleRecord neScale;
    graph::ScaleFor(Ne, 6, neScale);
    EXPECT_EQ(View(1).ItemScale[Ne], neScale);
    EXPECT_EQ(Display(0, Ne).Zoom, graph::DefaultScaleNumber(Ne));
}

TEST_F(ItemCommandsTest, MoveCentresAComputedItemOnItsDefaultFormulaScale) {
    Display(0, Slip).Zoom = 8;
    Panel().SelectItem(0, Slip);
    ASSERT_TRUE(MoveCenter(State(), GraphHeight, store_, view_));
    EXPECT_EQ(Display(0, Slip).Zoom, graph::DefaultFormulaScaleNumber);
    // Scale 3 of a formula: 1000 in grid steps of 100, pitch 10.
    EXPECT_EQ(Display(0, Slip).Bottom - Display(0, Slip).Top, 100);
}

TEST_F(ItemCommandsTest, MoveKeepsABandFromAnyLayoutLimitInsideThePictureRows) {
    Display(0, TH).Max = std::numeric_limits<std::int32_t>::max();
    ASSERT_TRUE(CenterItem(State(), 0, TH, GraphHeight));
    EXPECT_EQ(Display(0, TH).Top, std::numeric_limits<std::int16_t>::min());
    EXPECT_EQ(Display(0, TH).Bottom, std::numeric_limits<std::int16_t>::max());
}

TEST_F(ItemCommandsTest, MoveWithoutAMarkChangesNothing) {
    Panel().ClearSelection();
    const graph::LayerView before = View(0);
    EXPECT_FALSE(MoveCenter(State(), GraphHeight, store_, view_));
    Panel().SelectItem(1, TH); // a row of a layer that is not the active one
    EXPECT_FALSE(MoveCenter(State(), GraphHeight, store_, view_));
    EXPECT_EQ(View(0).Display, before.Display);
    EXPECT_TRUE(view_.steps.empty());
}

} // namespace
} // namespace torvane::items
