#pragma once
// Layer 0 of a layer set filled stream by stream, the way deployment leaves it, for the readers
// of values: throttle span, suspension zeros and every slot present.

#include "logdata/layer.h"
#include "logger/laf_table.h"
#include "support/temp_folder.h"

#include <array>
#include <vector>

namespace torvane::logdata::testing {

class OneLayerRun {
public:
    explicit OneLayerRun(std::array<std::int32_t, SlotCount> channels) {
        layers.TempDir = folder.Path();
        LayerRecord& layer = layers.Layer[0];
        layer.Header.SetWord(SettingWord::ThClose, 100);
        layer.Header.SetWord(SettingWord::ThOpen, 900);
        layer.Header.SetWord(SettingWord::FrZero, 900);
        layer.Header.SetWord(SettingWord::RrZero, 800);
        layer.ItemChannel.assign(channels.begin(), channels.end());
        layer.ItemExists.fill(true);
    }

    // Writes the stream and its sampling word; the lap stream has no sampling word of its own.
    void Stream(int stream, int interval, const std::vector<std::int16_t>& words) {
        if (stream < SampleTimeCount) {
            layers.Layer[0].Header.SetSampleTime(stream, static_cast<std::int16_t>(interval));
        }
        torvane::testing::WriteWords16(
            layers.StreamPath(0, StreamNames[static_cast<std::size_t>(stream)]), words);
    }

    torvane::testing::TempFolder folder;
    LayerSet layers;
    logger::LafTable laf;
};

} // namespace torvane::logdata::testing
