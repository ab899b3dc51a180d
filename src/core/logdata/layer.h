#pragma once
// One open logging file in a graph window (a layer), its lap marks, and the three layers of a
// window together with the window number that names their stream files.

#include "logdata/channels.h"
#include "logdata/log_header.h"

#include <array>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace torvane::logdata {

inline constexpr int LayerCount = 3;

// A computed item of a layer; its stream holds 32-bit words, one per Sampling ms.
struct FormulaItem {
    std::int16_t Decimal = 0;
    std::int16_t Sampling = 5;
    double Max = 0.0;
    std::string Name;
    std::string Unit;
};

struct LayerRecord {
    std::array<bool, SlotCount> ItemExists{};
    // Entries 0..11 are the slots; further entries are computed items (ComputedChannel).
    std::vector<std::int32_t> ItemChannel;
    std::int32_t ScrollItem = -1;
    std::int32_t DeployCount = 0;
    double MeasureTime = 0.0;
    double TimeOffset = 0.0;
    double CursorTime = 0.0;
    std::filesystem::path FilePath;
    LogHeader Header;
    std::vector<FormulaItem> FormulaItems;
};

struct LapInfo {
    std::int32_t LapBarTop = 0;
    double BestLap = 0.0;
    // Times of the lap marks in ms; entry 0 always exists.
    std::vector<double> LapTime{0.0};
};

// The three layers of one graph window. Layer 0 is the main file, 1 and 2 are overlays.
struct LayerSet {
    int WindowNumber = 1;
    std::filesystem::path TempDir;
    std::array<LayerRecord, LayerCount> Layer;
    std::array<LapInfo, LayerCount> Lap;
    // Smallest sampling interval over every file ever opened in this window; 0 before any.
    int MinSampleTime = 0;

    // The deployment number of a layer: window 1, layer 0 gives 10.
    int FileNumber(int layer) const;
    // Path of a stream (or computed item) file of a layer, e.g. TMP/Ne-010.tmp.
    std::filesystem::path StreamPath(int layer, std::string_view stream) const;
};

} // namespace torvane::logdata
