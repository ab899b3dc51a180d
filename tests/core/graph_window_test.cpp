#include "graph/window_geometry.h"
#include "graph/window_menus.h"
#include "graph_window_fixture.h"
#include "shell/common.h"

#include <gtest/gtest.h>

namespace torvane::graph {
namespace {

using logdata::LogHeader;
using testing::GraphWindowFixture;
using testing::RunHeader;

class GraphWindowTest : public ::testing::Test, public GraphWindowFixture {
protected:
    std::vector<int> RowIndices(int layer) const {
        std::vector<int> indices;
        for (const ItemRow& row : state.Panel.Rows()) {
            if (row.Layer == layer) {
                indices.push_back(row.Index);
            }
        }
        return indices;
    }

    static LogHeader Without(std::initializer_list<int> entries, LogHeader header = RunHeader()) {
        for (const int entry : entries) {
            header.SetSampleTime(entry, 0);
        }
        return header;
    }
};

TEST_F(GraphWindowTest, RowsForShownItemsThatHoldData) {
    DisplaySet display = testing::AllShown();
    display.Items[logdata::VRW].View = 0;
    Open(0, Without({logdata::VFW}, RunHeader(10, 3, 0)), "RUN", display);
    AddComputed(0, {2, 5, 50.0, "Slip", "%"});
    AddComputed(0, {0, 5, 50.0, "Hidden", ""}, 0);
    AddComputed(0, {1, 5, 500.0, "Power", "kW"});
    state.Panel.RemoveLayerItems(0, state.Layers.Layer[0], state.Views[0]);

    // VFW has no data and VRW is not in view; SusMode 3 puts FRSUS and RRSUS in slots 7 and 8.
    EXPECT_EQ(RowIndices(0), (std::vector<int>{1, 2, 5, 6, 7, 8, 9, 10, 11, 12, 50, 52}));
    const auto& rows = state.Panel.Rows();
    for (std::size_t i = 0; i < rows.size(); ++i) {
        EXPECT_EQ(rows[i].Top, FirstPanelBottom + 15 * static_cast<int>(i));
    }

    // The third computed item keeps its own number although the second one is not shown.
    const ItemRow* power = state.Panel.Row(52);
    ASSERT_NE(power, nullptr);
    EXPECT_EQ(power->Position, 14);
    EXPECT_EQ(power->FormulaIndex, 2);
    EXPECT_EQ(power->LineColor, shell::ColorValue(14));
    EXPECT_EQ(state.Panel.PanelBottom(), FirstPanelBottom + 15 * 12);
}

TEST_F(GraphWindowTest, LaterLayersStackBelowAndFollowAChangedLayer) {
    Open(0, RunHeader(), "MAIN");
    const int firstEnd = state.Panel.PanelBottom();
    Open(1, Without({logdata::DETO1, logdata::DETO2}), "SECOND");
    Open(2, RunHeader(), "THIRD");
    EXPECT_EQ(state.Panel.File(1)->Top, firstEnd);
    EXPECT_EQ(state.Panel.Row(SlotRowIndex(1, 0))->Top, firstEnd + FileCaptionHeight);
    EXPECT_EQ(RowIndices(1).size(), 10u);

    const int thirdTop = state.Panel.File(2)->Top;
    const int thirdRow = state.Panel.Row(SlotRowIndex(2, 0))->Top;
    const int bottom = state.Panel.PanelBottom();

    // Hiding VB in layer 0 takes one row out; everything below moves up by one row.
    state.Views[0].Display.Items[logdata::VB].View = 0;
    state.Panel.RemoveLayerItems(0, state.Layers.Layer[0], state.Views[0]);
    EXPECT_EQ(state.Panel.File(1)->Top, firstEnd - 15);
    EXPECT_EQ(state.Panel.File(2)->Top, thirdTop - 15);
    EXPECT_EQ(state.Panel.Row(SlotRowIndex(2, 0))->Top, thirdRow - 15);
    EXPECT_EQ(state.Panel.PanelBottom(), bottom - 15);

    // The last layer sets the panel's end itself.
    state.Views[2].Display.Items[logdata::Ne].View = 0;
    state.Panel.RemoveLayerItems(2, state.Layers.Layer[2], state.Views[2]);
    EXPECT_EQ(state.Panel.PanelBottom(), bottom - 30);

    state.Panel.CloseLayer(2);
    EXPECT_EQ(state.Panel.File(2), nullptr);
    EXPECT_TRUE(RowIndices(2).empty());
    EXPECT_EQ(state.Panel.PanelBottom(), thirdTop - 15);
}

TEST_F(GraphWindowTest, StripHistogramAndDetonationMapNeedTheirChannels) {
    Open(0, Without({logdata::TH, logdata::DETO1}));
    EXPECT_EQ(ScrollStripOf(state).Kinds, logdata::Ne); // the first of TH, Ne, VFW
    WindowMenuState menus = MenuStateOf(state);
    EXPECT_EQ(menus.ScrollItemEnabled, (std::array<bool, 3>{true, false, true}));
    EXPECT_EQ(menus.ScrollItemChecked, (std::array<bool, 3>{true, false, false}));
    EXPECT_TRUE(menus.HistoEnabled);
    EXPECT_TRUE(menus.DspDeto2Enabled); // Ne and DETO2
    EXPECT_TRUE(ResizeRebuildsStrip(state));

    Open(1, Without({logdata::Ne, logdata::TH, logdata::VFW}));
    SelectLayer(state, 1);
    EXPECT_EQ(state.Layers.Layer[1].ScrollItem, -1);
    EXPECT_FALSE(ScrollStripOf(state).Shown);
    menus = MenuStateOf(state);
    EXPECT_EQ(menus.ScrollItemEnabled, (std::array<bool, 3>{}));
    EXPECT_FALSE(menus.HistoEnabled);
    EXPECT_FALSE(ResizeRebuildsStrip(state));

    Open(2, Without({logdata::DETO1, logdata::DETO2}));
    SelectLayer(state, 2);
    EXPECT_FALSE(MenuStateOf(state).DspDeto2Enabled);
    state.Layers.Layer[2].ItemExists[logdata::Ne] = false;
    EXPECT_TRUE(MenuStateOf(state).HistoEnabled); // TH alone is enough
}

TEST_F(GraphWindowTest, FirstPressOnARowOfTheActiveLayerOnlyMarksIt) {
    Open(0, RunHeader());
    const int throttle = SlotRowIndex(0, logdata::TH);
    const PanelControl row{PanelControl::Kind::Row, throttle};

    PanelPressResult first = PressPanelControl(state, row, MouseButton::Right);
    EXPECT_FALSE(first.Popup.has_value());
    EXPECT_FALSE(first.LayerSelected);
    EXPECT_TRUE(state.Panel.Row(throttle)->CheckMark);

    PanelPressResult second = PressPanelControl(state, row, MouseButton::Right);
    EXPECT_TRUE(second.LayerSelected);
    ASSERT_TRUE(second.Popup.has_value());
    const std::vector<MenuEntryState> expected{
        {"mnuLaySave", false, true}, {"mnuLayReapp", false, true}, {"mnuToolBox", false, true},
        {"mnuDisp", true, true},     {"mnuLine", true, true},      {"mnuGrid", true, false},
        {"mnuScroll", false, true},  {"mnuAlign", true, false},    {"mnuMove", true, true}};
    EXPECT_EQ(*second.Popup, expected);
    EXPECT_FALSE(MenuStateOf(state).GridEnabled);
}

TEST_F(GraphWindowTest, PressesOnOtherLayersOrTheirTracesSelectThem) {
    Open(0, RunHeader());
    EXPECT_FALSE(SelectLayer(state, 1)); // not open
    Open(1, RunHeader());

    // An unmarked row of another layer selects that layer at once.
    const PanelPressResult row = PressPanelControl(
        state, {PanelControl::Kind::Row, SlotRowIndex(1, logdata::Ne)}, MouseButton::Left);
    EXPECT_TRUE(row.LayerSelected);

    // The main file's caption: grid on, scroll bar entry shown, align enabled with two layers.
    const PanelPressResult main =
        PressPanelControl(state, {PanelControl::Kind::File, 0}, MouseButton::Right);
    EXPECT_EQ(state.ActiveLayer, 0);
    ASSERT_TRUE(main.Popup.has_value());
    EXPECT_EQ((*main.Popup)[5], (MenuEntryState{"mnuGrid", true, true}));
    EXPECT_EQ((*main.Popup)[6], (MenuEntryState{"mnuScroll", true, true}));
    EXPECT_EQ((*main.Popup)[7], (MenuEntryState{"mnuAlign", true, true}));

    PressPanelControl(state, {PanelControl::Kind::File, 1}, MouseButton::Left);
    EXPECT_EQ(state.ActiveLayer, 1);
    EXPECT_FALSE(MenuStateOf(state).GridEnabled);
    EXPECT_FALSE(PressPanelControl(state, {PanelControl::Kind::Row, 999}, MouseButton::Right)
                     .Popup.has_value());

    // A right press in the graph takes the hit or the marked row.
    state.Panel.ClearSelection();
    EXPECT_FALSE(PressGraphRight(state, std::nullopt).has_value());

    auto popup = PressGraphRight(state, ItemRef{1, logdata::VB});
    ASSERT_TRUE(popup.has_value());
    EXPECT_EQ(state.ActiveLayer, 1);
    EXPECT_TRUE(state.Panel.Row(SlotRowIndex(1, logdata::VB))->CheckMark);
    EXPECT_EQ((*popup)[5], (MenuEntryState{"mnuGrid", true, false}));

    state.Panel.SelectItem(0, logdata::TH);
    popup = PressGraphRight(state, std::nullopt);
    ASSERT_TRUE(popup.has_value());
    EXPECT_EQ(state.ActiveLayer, 0);
    EXPECT_EQ((*popup)[5], (MenuEntryState{"mnuGrid", true, true}));
}

} // namespace
} // namespace torvane::graph
