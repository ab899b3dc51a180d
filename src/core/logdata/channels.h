#pragma once
// The channel catalogue: sixteen channels with fixed numbers, and the twelve streams a
// logging file deploys. Four sensor channels share the stream of a spare voltage input.

#include <array>
#include <string_view>

namespace torvane::logdata {

enum Channel : int {
    Ne = 0,
    TH = 1,
    VFW = 2,
    VRW = 3,
    DETO1 = 4,
    DETO2 = 5,
    VB = 6,
    VM1 = 7,
    VM2 = 8,
    VM3 = 9,
    VM4 = 10,
    FRSUS = 11,
    RRSUS = 12,
    LAF1 = 13,
    LAF2 = 14,
    LAP = 15,
    ComputedChannel = 99,
};

inline constexpr int ChannelCount = 16;
inline constexpr int SlotCount = 12;
inline constexpr int StreamCount = 12;
inline constexpr int LapSlot = 11;
// The LAP stream holds one word per step of this length, whatever the other intervals are.
inline constexpr int LapStepMs = 300;

// Stream names in stream order; stream i (0..10) samples at SampleTime(i), stream 11 is LAP.
inline constexpr std::array<std::string_view, StreamCount> StreamNames{
    "Ne", "TH", "VFW", "VRW", "DETO1", "DETO2", "VB", "VM1", "VM2", "VM3", "VM4", "LAP"};

std::string_view ChannelName(int channel);
std::string_view ChannelLabel(int channel);
// The unit written right after a value; empty for the detonation counters.
std::string_view ChannelUnit(int channel);
std::string_view ChannelFormat(int channel);
// Name of the stream a channel reads: FRSUS, RRSUS, LAF1 and LAF2 read VM1..VM4.
std::string_view ChannelFile(int channel);
// Index of the stream a channel reads (0..11), or -1 for a channel that has none.
int ChannelStream(int channel);
// Stream index of a stream name, or -1.
int StreamIndex(std::string_view name);

bool IsDetonationChannel(int channel);

} // namespace torvane::logdata
