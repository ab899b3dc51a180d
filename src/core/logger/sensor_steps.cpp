// The sensor buttons of the setting window: the throttle's closed and open points, taken one at a
// time and judged as a pair, and the suspensions' zero points.

#include "logger/driver_calls.h"
#include "logger/logger_action.h"
#include "logger/setting_mode.h"
#include "logger/setting_send.h"

namespace torvane::logger {
namespace {

constexpr std::uint8_t ThrottleClosedTaken = 1;
constexpr std::uint8_t ThrottleOpenTaken = 2;
constexpr std::uint8_t ThrottlePairTaken = ThrottleClosedTaken | ThrottleOpenTaken;

// The link a step runs on: the logger readied as every action readies it, and left stopped, for
// the window gives it back only when it closes.
const ActionOptions SensorStepOptions{.GiveBackAcquisition = false};

// A step that ended without being a failure of the step: the link closes quietly.
constexpr std::int32_t EndedQuietly = 1;

} // namespace

bool SettingMode::TakeSensor(SensorButton button) {
    watchInterval_ = 0;
    const bool throttle = button == SensorButton::Throttle0 || button == SensorButton::Throttle100;
    const bool done = throttle ? TakeThrottle(button) : TakeSuspension(button);
    if (done) {
        watchInterval_ = WatchIntervalMs;
    }
    return done;
}

bool SettingMode::TakeThrottle(SensorButton button) {
    if (throttleDone_ == ThrottlePairTaken) {
        colors_[0] = colors_[1] = ButtonColor::Grey;
        throttleDone_ = 0;
    }
    LoggerActionFrame frame(link_, SensorStepOptions);
    if (!frame.Begin()) {
        return false;
    }
    std::int32_t result = InitializeSensor(link_, static_cast<std::int16_t>(button));
    if (result == 0) {
        throttleDone_ |=
            button == SensorButton::Throttle0 ? ThrottleClosedTaken : ThrottleOpenTaken;
        if (throttleDone_ == ThrottlePairTaken) {
            result = JudgeThrottlePair();
        }
    }
    if (result != 0) {
        frame.End(result == EndedQuietly ? 0 : result);
        return false;
    }
    mustRelease_ = true;
    return frame.End(0).Done;
}

std::int32_t SettingMode::JudgeThrottlePair() {
    TlmInitData data{};
    if (const std::int32_t result = ReadInitData(link_, 0, data); result != 0) {
        return result;
    }
    if (ThrottlePointsWrong(data)) {
        shell::ShowMessage(link_.Sink, "The Initialized throttle is not correct.",
                           shell::buttons::Ok, shell::icons::Information);
        colors_[0] = colors_[1] = ButtonColor::Red;
        return 0;
    }
    if (const std::int32_t result = InitializeSensor(link_, CommitThrottleKind); result != 0) {
        return result;
    }
    // A commit that leaves a sense code is not coloured and not told.
    if (link_.Status.bytSense != 0) {
        return EndedQuietly;
    }
    colors_[0] = colors_[1] = ButtonColor::Blue;
    return 0;
}

bool SettingMode::TakeSuspension(SensorButton button) {
    LoggerActionFrame frame(link_, SensorStepOptions);
    if (!frame.Begin()) {
        return false;
    }
    const std::int32_t result = InitializeSensor(link_, static_cast<std::int16_t>(button));
    colors_[static_cast<std::size_t>(button)] = result == 0 ? ButtonColor::Blue : ButtonColor::Red;
    if (result != 0) {
        frame.End(result);
        return false;
    }
    mustRelease_ = true;
    return frame.End(0).Done;
}

} // namespace torvane::logger
