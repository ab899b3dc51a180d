#include "logdata/channels.h"

#include <algorithm>

namespace torvane::logdata {
namespace {

struct ChannelInfo {
    std::string_view Name;
    std::string_view Label;
    std::string_view Unit;
    std::string_view Format;
    int Stream;
};

constexpr std::array<ChannelInfo, ChannelCount> Catalogue{{
    {"Ne", "Ne[r/min]", "r/min", "0", 0},
    {"TH", "TH[%]", "%", "0.0", 1},
    {"VFW", "VFW[km/h]", "km/h", "0", 2},
    {"VRW", "VRW[km/h]", "km/h", "0", 3},
    {"DETO1", "DETO1", "", "0", 4},
    {"DETO2", "DETO2", "", "0", 5},
    {"VB", "VB[V]", "V", "0.0", 6},
    {"VM1", "VM1[V]", "V", "0.00", 7},
    {"VM2", "VM2[V]", "V", "0.00", 8},
    {"VM3", "VM3[V]", "V", "0.00", 9},
    {"VM4", "VM4[V]", "V", "0.00", 10},
    {"FRSUS", "FRSUS[mm]", "mm", "0.00", 7},
    {"RRSUS", "RRSUS[mm]", "mm", "0.00", 8},
    {"LAF1", "LAF1[A/F]", "A/F", "0.00", 9},
    {"LAF2", "LAF2[A/F]", "A/F", "0.00", 10},
    {"LAP", "LAP", "LAP", "0", 11},
}};

const ChannelInfo* Find(int channel) {
    if (channel < 0 || channel >= ChannelCount) {
        return nullptr;
    }
    return &Catalogue[static_cast<std::size_t>(channel)];
}

} // namespace

std::string_view ChannelName(int channel) {
    const auto* info = Find(channel);
    return info ? info->Name : std::string_view{};
}

std::string_view ChannelLabel(int channel) {
    const auto* info = Find(channel);
    return info ? info->Label : std::string_view{};
}

std::string_view ChannelUnit(int channel) {
    const auto* info = Find(channel);
    return info ? info->Unit : std::string_view{};
}

std::string_view ChannelFormat(int channel) {
    const auto* info = Find(channel);
    return info ? info->Format : std::string_view{"0"};
}

int ChannelStream(int channel) {
    const auto* info = Find(channel);
    return info ? info->Stream : -1;
}

std::string_view ChannelFile(int channel) {
    const int stream = ChannelStream(channel);
    return stream < 0 ? std::string_view{} : StreamNames[static_cast<std::size_t>(stream)];
}

int StreamIndex(std::string_view name) {
    const auto found = std::find(StreamNames.begin(), StreamNames.end(), name);
    return found == StreamNames.end() ? -1 : static_cast<int>(found - StreamNames.begin());
}

bool IsDetonationChannel(int channel) {
    return channel == DETO1 || channel == DETO2;
}

} // namespace torvane::logdata
