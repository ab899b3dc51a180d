#pragma once
// A monotonic clock that only moves when the test moves it, or when the device sleeps on it.

#include "logger/monotonic_clock.h"

#include <algorithm>

namespace torvane::sim {

class ManualClock final : public MonotonicClock {
public:
    Duration Now() override { return now_; }
    void SleepUntil(Duration time) override { now_ = std::max(now_, time); }
    void Advance(Duration by) { now_ += by; }

private:
    Duration now_ = std::chrono::hours(1);
};

} // namespace torvane::sim
