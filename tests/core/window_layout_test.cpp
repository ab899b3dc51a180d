#include "graph_window_fixture.h"
#include "layout/default_layout.h"
#include "layout_store_fixture.h"
#include "load/window_layout.h"
#include "recording_view.h"

#include <gtest/gtest.h>

namespace torvane::load {
namespace {

using graph::DisplaySet;
using graph::testing::AllShown;
using graph::testing::RunHeader;

// Only Ne and TH shown, Ne at scale 2, a time scale of its own.
DisplaySet TwoItems() {
    DisplaySet display = AllShown();
    for (graph::ItemDisplay& item : display.Items) {
        item.View = 0;
        item.Line = 1;
        item.Point = 1;
        item.Bottom = 100;
    }
    display.Items[logdata::Ne].View = 1;
    display.Items[logdata::Ne].Zoom = 2;
    display.Items[logdata::TH].View = 1;
    display.Time = {2, 1000, 50};
    return display;
}

std::vector<int> RowLayers(const graph::ItemPanel& panel) {
    std::vector<int> layers;
    for (const graph::ItemRow& row : panel.Rows()) {
        layers.push_back(row.Layer);
    }
    return layers;
}

class WindowLayoutTest : public ::testing::Test, protected torvane::testing::LayoutStoreFixture {
protected:
    WindowLayoutTest() {
        paths_.MakeFolders();
        store_.LoadLayouts();
        window_.Open(0, RunHeader(), "MAIN");
        window_.AddComputed(0, logdata::FormulaItem{1, 10, 50.0, "Slip", "%"});
        window_.Open(1, RunHeader(), "SECOND");
        window_.state.Panel.RemoveLayerItems(0, window_.state.Layers.Layer[0],
                                             window_.state.Views[0]);
        store_.SetPendingLayout(TwoItems(), TwoItems().Time);
        store_.SaveLayout("Two items");
    }

    graph::GraphWindowState& State() { return window_.state; }

    graph::testing::GraphWindowFixture window_;
    testing::RecordingView view_;
};

// mnuLayout(n): every layer shows the layout with scales to match, the panel is placed again
// layer under layer, the window runs on the layout's time scale, and record 0 remembers it.
TEST_F(WindowLayoutTest, AStoredLayoutIsShownInEveryLayerAndBecomesTheLastDisplay) {
    ASSERT_TRUE(ApplyStoredLayout(State(), store_, 1, view_));

    const DisplaySet applied = Record(1);
    ASSERT_EQ(applied.Items[logdata::Ne].Zoom, 2);
    for (int layer : {0, 1}) {
        const graph::LayerView& layerView = State().Views[static_cast<std::size_t>(layer)];
        EXPECT_EQ(layerView.Display.Items, applied.Items) << layer;
        graph::ScaleRecord neScale;
        graph::ScaleFor(logdata::Ne, 2, neScale);
        EXPECT_EQ(layerView.ItemScale[logdata::Ne], neScale) << layer;
    }
    // Ne, TH and the computed item under the first caption; Ne and TH under the second, which
    // has moved up to the end of the first layer's rows.
    EXPECT_EQ(RowLayers(State().Panel), (std::vector<int>{0, 0, 0, 1, 1}));
    const graph::FileCaption* second = State().Panel.File(1);
    ASSERT_NE(second, nullptr);
    EXPECT_EQ(second->Top, graph::FirstPanelBottom + 3 * graph::ItemRowHeight);
    EXPECT_EQ(State().Panel.PanelBottom(),
              second->Top + graph::FileCaptionHeight + 2 * graph::ItemRowHeight);
    EXPECT_EQ(State().Views[0].Computed.at(0).Display.Color, 14);

    EXPECT_EQ(State().Time, applied.Time);
    EXPECT_EQ(view_.steps,
              (std::vector<std::string>{"scales", "redraw", "values, cursor found again"}));
    EXPECT_EQ(Record(0).Items, applied.Items);
    EXPECT_EQ(Record(0).Time, applied.Time);
    EXPECT_EQ(Record(0).Name, "INITIALIZE");
    EXPECT_TRUE(sink_.Messages.empty());
}

// A record the store does not hold leaves the window as it was; mnuLayoutDef shows the factory
// display, which record 0 then holds as well.
TEST_F(WindowLayoutTest, AMissingRecordChangesNothingAndTheDefaultLayoutIsTheFactoryDisplay) {
    const DisplaySet last = Record(0);
    const graph::TimeScale time = State().Time;
    const std::size_t rows = State().Panel.Rows().size();
    EXPECT_FALSE(ApplyStoredLayout(State(), store_, 2, view_));
    EXPECT_EQ(State().Time, time);
    EXPECT_EQ(State().Panel.Rows().size(), rows);
    EXPECT_TRUE(view_.steps.empty());
    EXPECT_EQ(Record(0), last);

    ApplyStoredLayout(State(), store_, 1, view_);
    ApplyDefaultLayout(State(), store_, view_);
    const DisplaySet factory = layout::DefaultLayout();
    EXPECT_EQ(State().Views[1].Display.Items, factory.Items);
    EXPECT_EQ(State().Time, (graph::TimeScale{1, 10000, 100}));
    EXPECT_EQ(Record(0).Items, factory.Items);
    EXPECT_EQ(Record(0).Time, factory.Time);
}

// What LayoutSave writes is the active layer's display; record 0 is always the main layer's.
TEST_F(WindowLayoutTest, TheSaveDialogGetsTheActiveLayersDisplay) {
    State().Views[1].Display.Items[logdata::VB].Color = 9;
    State().ActiveLayer = 1;
    PendActiveDisplay(State(), store_);
    EXPECT_EQ(store_.PendingLayout().Items[logdata::VB].Color, 9);
    EXPECT_EQ(store_.PendingLayout().Time, State().Time);
    KeepAsLastDisplay(State(), store_);
    EXPECT_EQ(Record(0).Items, State().Views[0].Display.Items);
}

} // namespace
} // namespace torvane::load
