#pragma once
// The model's clock: one step is the logger's finest tick, so every sampling interval is a
// whole number of steps.

#include <cstdint>

namespace torvane::sim {

inline constexpr std::int64_t StepMs = 5;
inline constexpr double StepSeconds = 0.005;

} // namespace torvane::sim
