#pragma once
// The logger's own detonation map: while it records, every knock is counted in the cell of the
// engine speed and throttle opening of that moment, with the run time and distance beside.
// Rows are 500 r/min wide from 5000 (15000 still falls in the last row), columns 5 % wide (100 %
// still falls in the last column); speeds outside 5000..15000 are not counted. A cell saturates
// at 255.

#include "tlm.h"
#include "vehicle/vehicle_state.h"

#include <array>
#include <cstdint>

namespace torvane::sim {

class DetonationCounter {
public:
    // One 5 ms step of a recorded run; throttlePercent is the logger's own 0..100.
    void Observe(const VehicleState& state, int throttlePercent);
    // presentBits: bit 0 map 1, bit 1 map 2 (which counters the setting records).
    TlmDetonationMap Map(std::int16_t presentBits) const;
    void Clear();

    // The cell of an engine speed and throttle opening, -1 when the speed is outside the map.
    static int CellOf(double engineRpm, int throttlePercent);

private:
    using Counts = std::array<std::uint8_t, TLM_DETONATION_ROWS * TLM_DETONATION_COLUMNS>;
    std::array<Counts, 2> maps_{};
    std::int64_t runMs_ = 0;
    double runKm_ = 0.0;
};

} // namespace torvane::sim
