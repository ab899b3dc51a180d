#include "logger/detonation_counter.h"

#include "vehicle/time_step.h"

#include <algorithm>

namespace torvane::sim {
namespace {

constexpr double LowestRpm = 5000.0;
constexpr double HighestRpm = 15000.0;
constexpr double RowRpm = 500.0;
constexpr int ColumnPercent = 5;
constexpr int LastRow = TLM_DETONATION_ROWS - 1;
constexpr int LastColumn = TLM_DETONATION_COLUMNS - 1;
constexpr double MsPerHour = 3'600'000.0;

} // namespace

int DetonationCounter::CellOf(double engineRpm, int throttlePercent) {
    if (!(engineRpm >= LowestRpm && engineRpm <= HighestRpm)) {
        return -1;
    }
    const int row = std::min(static_cast<int>((engineRpm - LowestRpm) / RowRpm), LastRow);
    const int column = std::clamp(throttlePercent / ColumnPercent, 0, LastColumn);
    return row * TLM_DETONATION_COLUMNS + column;
}

void DetonationCounter::Observe(const VehicleState& state, int throttlePercent) {
    runMs_ += StepMs;
    runKm_ += state.FrontWheelKmh * static_cast<double>(StepMs) / MsPerHour;
    const int cell = CellOf(state.EngineRpm, throttlePercent);
    if (cell < 0) {
        return;
    }
    for (std::size_t map = 0; map < maps_.size(); ++map) {
        auto& count = maps_[map][static_cast<std::size_t>(cell)];
        count =
            static_cast<std::uint8_t>(std::min(count + std::max(state.Detonation[map], 0), 255));
    }
}

TlmDetonationMap DetonationCounter::Map(std::int16_t presentBits) const {
    TlmDetonationMap map{};
    std::copy(maps_[0].begin(), maps_[0].end(), map.bytMap1);
    std::copy(maps_[1].begin(), maps_[1].end(), map.bytMap2);
    map.lngRunTime = static_cast<std::int32_t>(runMs_ / 1000);
    map.lngRunDistance = static_cast<std::int32_t>(runKm_);
    map.intPresent = presentBits;
    return map;
}

void DetonationCounter::Clear() {
    *this = DetonationCounter();
}

} // namespace torvane::sim
