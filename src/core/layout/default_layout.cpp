#include "layout/default_layout.h"

#include "graph/scale.h"

#include <array>
#include <optional>

namespace torvane::layout {
namespace {

using graph::DisplaySet;
using graph::ItemDisplay;
using logdata::ChannelCount;

struct FactoryItem {
    std::uint8_t View;
    std::uint8_t Color;
    std::uint8_t Grid;
    std::int16_t Top;
    std::int32_t Max;
    std::int32_t Min;
};

// Ne starts above the picture on purpose: its Min of 5000 moves the low part of the band out.
constexpr std::array<FactoryItem, ChannelCount> FactoryItems{{
    {1, 1, 1, -60, 15000, 5000}, // Ne
    {1, 12, 1, 260, 1000, 0},    // TH
    {1, 6, 1, 520, 300, 50},     // VFW
    {0, 6, 0, 360, 300, 50},     // VRW
    {1, 7, 1, 80, 5, 0},         // DETO1
    {0, 1, 1, 350, 5, 0},        // DETO2
    {1, 4, 0, 435, 150, 100},    // VB
    {0, 1, 0, 450, 0, 0},        // VM1
    {0, 1, 0, 480, 0, 0},        // VM2
    {0, 1, 0, 510, 0, 0},        // VM3
    {0, 1, 0, 540, 0, 0},        // VM4
    {0, 1, 0, 60, 0, 0},         // FRSUS
    {0, 1, 0, 90, 0, 0},         // RRSUS
    {0, 1, 0, 510, 0, 0},        // LAF1
    {0, 1, 0, 540, 0, 0},        // LAF2
    {0, 1, 0, 400, 0, 0},        // LAP
}};

// How a band without a bottom is rebuilt: which channel's default scale it takes, where its top
// goes, and whether the item is shown again. Channel 4 adds the height to its old bottom and
// channel 5 is left alone; both are kept as the stored files have always been read.
struct BandReset {
    int ScaleChannel;
    std::int16_t Top;
    bool FromOldBottom;
    bool Show;
};

constexpr std::array<std::optional<BandReset>, ChannelCount> BandResets{{
    BandReset{0, 30, false, true},
    BandReset{1, 180, false, true},
    BandReset{2, 330, false, true},
    BandReset{2, 360, false, false},
    BandReset{4, 210, true, false},
    std::nullopt,
    BandReset{6, 420, false, false},
    BandReset{7, 450, false, false},
    BandReset{7, 450, false, false},
    BandReset{7, 450, false, false},
    BandReset{7, 450, false, false},
    BandReset{11, 60, false, false},
    BandReset{11, 60, false, false},
    BandReset{13, 90, false, false},
    BandReset{13, 90, false, false},
    BandReset{15, 360, false, false},
}};

struct DefaultBand {
    std::uint8_t Zoom;
    std::int32_t Height;
};

DefaultBand DefaultBandOf(int channel) {
    graph::ScaleRecord scale;
    int zoom = 0;
    graph::DefaultScale(channel, scale, zoom);
    return {static_cast<std::uint8_t>(zoom), graph::BandHeight(scale)};
}

std::int16_t Row(std::int32_t value) {
    return static_cast<std::int16_t>(value);
}

void ResetBand(int channel, ItemDisplay& item) {
    const auto& reset = BandResets[static_cast<std::size_t>(channel)];
    if (!reset) {
        return;
    }
    const DefaultBand band = DefaultBandOf(reset->ScaleChannel);
    item.Zoom = band.Zoom;
    item.Bottom = Row((reset->FromOldBottom ? item.Bottom : reset->Top) + band.Height);
    item.Top = reset->Top;
    if (reset->Show) {
        item.View = 1;
    }
}

void RepairItem(int channel, ItemDisplay& item) {
    if (item.View > 1) {
        item.View = 1;
    }
    if (item.Color == 0 || item.Color > 16) {
        item.Color = 1;
    }
    if (item.Line == 0 || item.Line > 3) {
        item.Line = 1;
    }
    if (item.Point == 0 || item.Point > 3) {
        item.Point = 1;
    }
    if (item.Grid != 0 && item.View != 1) {
        item.Grid = 0;
    }
    if (item.Zoom > graph::MaxScaleNumber) {
        item.Zoom = 3;
    }
    if (item.Bottom <= 0) {
        ResetBand(channel, item);
    }
}

} // namespace

DisplaySet DefaultLayout() {
    DisplaySet record;
    for (int channel = 0; channel < ChannelCount; ++channel) {
        const FactoryItem& factory = FactoryItems[static_cast<std::size_t>(channel)];
        const DefaultBand band = DefaultBandOf(channel);
        ItemDisplay& item = record.Items[static_cast<std::size_t>(channel)];
        item.View = factory.View;
        item.Color = factory.Color;
        item.Line = 1;
        item.Point = 1;
        item.Grid = factory.Grid;
        item.Zoom = band.Zoom;
        item.Top = factory.Top;
        item.Bottom = Row(factory.Top + band.Height);
        item.Max = factory.Max;
        item.Min = factory.Min;
    }
    record.Time = {1, 10000, 100};
    return record;
}

void RepairLayout(DisplaySet& record) {
    for (int channel = 0; channel < ChannelCount; ++channel) {
        RepairItem(channel, record.Items[static_cast<std::size_t>(channel)]);
    }
    const graph::TimeScale& time = record.Time;
    if (time.PixelsPerStep == 0 || time.MsPerGrid == 0 || time.MsPerStep == 0) {
        // Deliberately not the factory time scale (10000 and 100): a repaired file has always
        // come back with these values.
        record.Time = {1, 5, 500};
    }
}

} // namespace torvane::layout
