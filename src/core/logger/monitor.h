#pragma once
// frmTLM0050's behaviour, the real-time monitor: one link held open from opening to closing,
// one live reading on each tick of a 25 ms timer, and a link that is lost retried silently on
// every tick until readings come back. The window only forwards its timer and menus here and
// paints what the model holds.

#include "logger/laf_table.h"
#include "logger/logger_link.h"
#include "logger/monitor_readings.h"

#include <cstdint>
#include <string>

namespace torvane::logger {

inline constexpr int MonitorInterval = 25; // ms, tmrReal

enum class MonitorState {
    // Not opened yet, or closed: no link.
    Closed,
    // Reading at every tick.
    Polling,
    // The operator ticked Stop: the link stays open, the timer stands.
    Stopped,
    // A reading failed: the link is retried at every tick, Stop ticked and disabled.
    LinkLost,
};

// The logger's program, the time of its setting and its start conditions, read once.
struct MonitorHeader {
    std::string Program;
    std::string SettingTime;
    std::string StartCondition;
};

class Monitor {
public:
    Monitor(LoggerLink& link, const LafTable& laf)
        : link_(link)
        , laf_(laf) {}
    ~Monitor() { Close(); }
    Monitor(const Monitor&) = delete;
    Monitor& operator=(const Monitor&) = delete;

    // Opens the link, checks that the logger is idle or acquiring, reads its identity and
    // setting and takes the first reading. False when the window is not to stay: the operator
    // has been told and the link is closed.
    bool Open();
    // tmrReal: a reading, or an attempt to come back when the link was lost.
    void Tick();
    // mnuStop: stands the timer, or sets it going again. The link stays open meanwhile.
    void ToggleStop();
    // Form_QueryUnload: releases the link, whatever the state.
    void Close();

    MonitorState State() const { return state_; }
    // tmrReal's interval: 25, or 0 while stopped or not open.
    int Interval() const;
    bool StopTicked() const {
        return state_ == MonitorState::Stopped || state_ == MonitorState::LinkLost;
    }
    bool StopEnabled() const { return state_ != MonitorState::LinkLost; }
    const MonitorHeader& Header() const { return header_; }
    const MonitorValues& Values() const { return values_; }
    const TlmSettingData& Setting() const { return setting_; }
    // Readings taken since opening.
    std::int64_t Readings() const { return readings_; }
    const MonitorCounters& Counters() const { return counters_; }

private:
    bool Poll();
    void ComeBack();

    LoggerLink& link_;
    const LafTable& laf_;
    MonitorState state_ = MonitorState::Closed;
    TlmSettingData setting_{};
    MonitorHeader header_;
    MonitorValues values_{};
    MonitorCounters counters_;
    bool throttleShown_ = false;
    std::int64_t readings_ = 0;
};

} // namespace torvane::logger
