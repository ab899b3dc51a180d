#include "logger/monitor.h"

#include "logger/driver_calls.h"
#include "logger/link_messages.h"

namespace torvane::logger {

bool Monitor::Open() {
    std::int32_t result = OpenLogger(link_, false);
    if (result != 0) {
        return false;
    }
    state_ = MonitorState::Polling;
    result = GetLoggerStatus(link_);
    if (result == 0 && link_.Status.bytState != TLM_STATE_IDLE &&
        link_.Status.bytState != TLM_STATE_ACQUIRING) {
        ShowLoggerState(link_);
        link_.Driver.Close(link_.Status);
        state_ = MonitorState::Closed;
        return false;
    }
    TlmSpecialData special{};
    if (result == 0) {
        result = ReadSpecialData(link_, special);
    }
    if (result == 0) {
        result = ReadSetting(link_, setting_);
    }
    if (result != 0) {
        ReportDriverError(link_, result, false);
        state_ = MonitorState::Closed;
        return false;
    }
    header_ = {ProgramText(special), SettingTimeText(setting_), StartConditionText(setting_)};
    if (!Poll()) {
        state_ = MonitorState::Closed;
        return false;
    }
    return true;
}

int Monitor::Interval() const {
    return state_ == MonitorState::Polling || state_ == MonitorState::LinkLost ? MonitorInterval
                                                                               : 0;
}

void Monitor::Tick() {
    switch (state_) {
    case MonitorState::Polling:
        if (!Poll()) {
            state_ = MonitorState::LinkLost;
        }
        break;
    case MonitorState::LinkLost:
        ComeBack();
        break;
    case MonitorState::Stopped:
    case MonitorState::Closed:
        break;
    }
}

void Monitor::ToggleStop() {
    if (state_ == MonitorState::Polling) {
        state_ = MonitorState::Stopped;
    } else if (state_ == MonitorState::Stopped) {
        state_ = MonitorState::Polling;
    }
}

void Monitor::Close() {
    if (state_ == MonitorState::Polling || state_ == MonitorState::Stopped) {
        link_.Driver.Close(link_.Status);
    }
    state_ = MonitorState::Closed;
}

bool Monitor::Poll() {
    TlmSignalCondition signal{};
    if (const std::int32_t result = ReadSignalCondition(link_, signal); result != 0) {
        // Told once; the link is closed and the ticks that follow try to come back silently.
        ReportDriverError(link_, result, false);
        return false;
    }
    std::optional<MonitorValue> throttle;
    if (throttleShown_) {
        throttle = values_[static_cast<std::size_t>(MonitorField::THper)];
    }
    values_ = ConvertReading(signal, setting_, laf_, counters_, throttle);
    throttleShown_ = throttleShown_ || setting_.intThOpen > setting_.intThClose;
    ++readings_;
    return true;
}

void Monitor::ComeBack() {
    if (OpenLogger(link_, true) == 0 && GetLoggerStatus(link_) == 0) {
        state_ = MonitorState::Polling;
        return;
    }
    link_.Driver.Close(link_.Status);
}

} // namespace torvane::logger
