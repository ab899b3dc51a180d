#include "logdata/laps.h"

#include "logdata/stream_reader.h"

#include <array>

namespace torvane::logdata {
namespace {

// Rows of the lap bar are this many pixels apart.
constexpr std::int32_t LapBarRow = 14;

std::int32_t LapBarTop(const LayerSet& layers, int layer) {
    const bool firstHasMarks = layers.Layer[0].ItemExists[LapSlot];
    const bool secondHasMarks = layers.Layer[1].ItemExists[LapSlot];
    switch (layer) {
    case 1:
        return firstHasMarks ? LapBarRow : 0;
    case 2:
        return LapBarRow * ((firstHasMarks ? 1 : 0) + (secondHasMarks ? 1 : 0));
    default:
        return 0;
    }
}

} // namespace

double LapMarkTime(std::int64_t step, int word) {
    return static_cast<double>(step) * LapStepMs - static_cast<double>(word - 1) * 5.0;
}

std::size_t LapMarkCount(const LapInfo& lap) {
    // No mark can fall at 0 ms: the earliest is 5 ms into the first step.
    return lap.LapTime.size() == 1 && lap.LapTime[0] == 0.0 ? 0 : lap.LapTime.size();
}

void ReadLapFile(LayerSet& layers, int layer) {
    LapInfo& lap = layers.Lap.at(static_cast<std::size_t>(layer));
    lap.BestLap = 0.0;
    lap.LapTime.assign(1, 0.0);

    StreamReader reader(layers.StreamPath(layer, StreamNames[LapSlot]));
    const std::int64_t words = reader.ByteLength() / 2;
    std::array<std::int16_t, 2048> chunk{};
    std::size_t marks = 0;
    for (std::int64_t first = 1; first <= words; first += static_cast<std::int64_t>(chunk.size())) {
        reader.ReadWords16(first, chunk);
        for (std::size_t i = 0; i < chunk.size() && first + static_cast<std::int64_t>(i) <= words;
             ++i) {
            const int word = chunk[i];
            if (word <= 0) {
                continue;
            }
            if (marks >= lap.LapTime.size()) {
                lap.LapTime.resize(marks + 1);
            }
            lap.LapTime[marks] = LapMarkTime(first + static_cast<std::int64_t>(i), word);
            if (marks > 0) {
                const double lapTime = lap.LapTime[marks] - lap.LapTime[marks - 1];
                if (lap.BestLap == 0.0 || lapTime < lap.BestLap) {
                    lap.BestLap = lapTime;
                }
            }
            ++marks;
        }
    }
    lap.LapBarTop = LapBarTop(layers, layer);
}

} // namespace torvane::logdata
