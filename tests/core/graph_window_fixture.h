#pragma once
// A graph window brought to the state that loading leaves it in, built from a header and stream
// files written by the test, without the driver.

#include "graph/window_state.h"
#include "logdata/deployment.h"
#include "support/temp_folder.h"

#include <string>
#include <vector>

namespace torvane::graph::testing {

inline logdata::LogHeader RunHeader(int interval = 10, int sus = 0, int laf = 0) {
    logdata::LogHeader header;
    for (int entry = 0; entry < logdata::SampleTimeCount; ++entry) {
        header.SetSampleTime(entry, static_cast<std::int16_t>(interval));
    }
    header.SetWord(logdata::SettingWord::Sus, static_cast<std::int16_t>(sus));
    header.SetWord(logdata::SettingWord::Laf, static_cast<std::int16_t>(laf));
    header.SetWord(logdata::SettingWord::ThClose, 100);
    header.SetWord(logdata::SettingWord::ThOpen, 900);
    header.SetWord(logdata::SettingWord::FrZero, 900);
    header.SetWord(logdata::SettingWord::RrZero, 800);
    header.SetWord(logdata::SettingWord::LapOn, 1);
    return header;
}

// Every channel shown, colour index = channel + 1 (16 wraps to red), at its default scale.
inline DisplaySet AllShown() {
    DisplaySet display;
    for (int channel = 0; channel < logdata::ChannelCount; ++channel) {
        ItemDisplay& item = display.Items[static_cast<std::size_t>(channel)];
        item.View = 1;
        item.Color = static_cast<std::uint8_t>(channel + 1);
        item.Zoom = static_cast<std::uint8_t>(DefaultScaleNumber(channel));
    }
    display.Time = {1, 500, 5};
    return display;
}

class GraphWindowFixture {
public:
    GraphWindowFixture() {
        state.Layers.TempDir = folder.Path();
        state.Layers.WindowNumber = 1;
    }

    // Opens a layer as loading does: slots from the header, existence from its sampling words,
    // the main layer's display for further layers, the panel, the scroll item.
    void Open(int layer, const logdata::LogHeader& header, const std::string& caption = "RUN",
              const DisplaySet& display = AllShown()) {
        const auto index = static_cast<std::size_t>(layer);
        logdata::LayerRecord& record = state.Layers.Layer[index];
        record.Header = header;
        record.ItemChannel = logdata::SlotChannels(header);
        for (int slot = 0; slot < logdata::SampleTimeCount; ++slot) {
            record.ItemExists[static_cast<std::size_t>(slot)] = header.SampleTime(slot) != 0;
        }
        record.ItemExists[logdata::LapSlot] = header.LapWord() != 0;
        record.TimeOffset = state.Layers.Layer[0].TimeOffset;
        LayerView& view = state.Views[index];
        if (layer == 0) {
            view.Display = display;
            FillItemScales(view, record);
            state.Time = display.Time;
        } else {
            view = NewLayerView(state.Views[0]);
        }
        state.Panel.ShowLayerPanel(layer, caption, record, view);
        record.ScrollItem = ChooseScrollItem(record);
        state.LastLayer = layer;
        if (layer == 0) {
            state.Panel.MarkFile(0);
            SelectLayer(state, 0);
            state.SingleFileState = SingleFileState::Loaded;
        }
    }

    void AddComputed(int layer, const logdata::FormulaItem& item, std::uint8_t view = 1) {
        logdata::LayerRecord& record = state.Layers.Layer[static_cast<std::size_t>(layer)];
        record.ItemChannel.push_back(logdata::ComputedChannel);
        record.FormulaItems.push_back(item);
        ComputedItemView computed;
        computed.Display.View = view;
        computed.Display.Color = 14;
        DefaultFormulaScale(item.Max, computed.Scale);
        state.Views[static_cast<std::size_t>(layer)].Computed.push_back(computed);
    }

    void Stream(int layer, std::string_view name, const std::vector<std::int16_t>& words) {
        torvane::testing::WriteWords16(state.Layers.StreamPath(layer, name), words);
    }

    torvane::testing::TempFolder folder;
    GraphWindowState state;
};

} // namespace torvane::graph::testing
