#pragma once
// The device's sense of time. Everything the virtual logger does over time (the vehicle moving,
// a busy state ending, a transfer keeping to its link rate) is measured on a monotonic clock,
// never on wall-clock time, and tests replace the clock with one they move by hand.

#include <chrono>
#include <thread>

namespace torvane::sim {

class MonotonicClock {
public:
    using Duration = std::chrono::nanoseconds;

    virtual ~MonotonicClock() = default;
    // Time since an arbitrary fixed origin; never goes back.
    virtual Duration Now() = 0;
    // Returns once Now() has reached `time` (at once if it has already).
    virtual void SleepUntil(Duration time) = 0;
};

class SteadyClock final : public MonotonicClock {
public:
    Duration Now() override {
        return std::chrono::duration_cast<Duration>(
            std::chrono::steady_clock::now().time_since_epoch());
    }
    void SleepUntil(Duration time) override {
        std::this_thread::sleep_until(std::chrono::steady_clock::time_point(
            std::chrono::duration_cast<std::chrono::steady_clock::duration>(time)));
    }
};

} // namespace torvane::sim
