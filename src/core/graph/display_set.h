#pragma once
// How items are shown: one ItemDisplay per channel and the time scale, together a DisplaySet.
// These are the records the layout store keeps; each graph window holds one per layer.

#include "logdata/channels.h"

#include <array>
#include <cstdint>
#include <string>

namespace torvane::graph {

struct ItemDisplay {
    std::uint8_t View = 0;  // 1 = shown
    std::uint8_t Color = 0; // colour index 1..14
    std::uint8_t Line = 0;  // 1 solid, 2 dotted, 3 dash-dot
    std::uint8_t Point = 0; // trace thickness 1..3
    std::uint8_t Grid = 0;  // 1 = scale and grid lines drawn
    std::uint8_t Zoom = 0;  // scale number 0..9
    // Pixel rows of the band's top and of the value 0, lap bar not counted.
    std::int16_t Top = 0;
    std::int16_t Bottom = 0;
    // Ends of the drawn scale in axis units; 0 means the scale's own end.
    std::int32_t Max = 0;
    std::int32_t Min = 0;

    friend bool operator==(const ItemDisplay&, const ItemDisplay&) = default;
};

struct TimeScale {
    std::int16_t PixelsPerStep = 0;
    std::int32_t MsPerGrid = 0;
    std::int32_t MsPerStep = 0;

    friend bool operator==(const TimeScale&, const TimeScale&) = default;
};

struct DisplaySet {
    std::array<ItemDisplay, logdata::ChannelCount> Items{}; // indexed by channel number
    TimeScale Time;
    std::string Name;

    friend bool operator==(const DisplaySet&, const DisplaySet&) = default;
};

} // namespace torvane::graph
