#pragma once
// The Linux desktop's ways to keep awake: the session's screen saver interface keeps the display
// on, logind's idle inhibitor keeps the machine from suspending when idle. Each is asked only
// where its service is running, so without a session or a system bus (a bare console, CI)
// nothing happens and nothing fails.

#include "shell/sleep_inhibitor.h"

#include <memory>
#include <optional>

class QDBusUnixFileDescriptor;

namespace torvane::app {

class SessionSleepInhibitor : public SleepInhibitor {
public:
    SessionSleepInhibitor();
    ~SessionSleepInhibitor() override;
    SessionSleepInhibitor(const SessionSleepInhibitor&) = delete;
    SessionSleepInhibitor& operator=(const SessionSleepInhibitor&) = delete;

    void Inhibit(const QString& reason) override;
    void Release() override;

private:
    std::optional<quint32> screenSaverCookie_;
    // logind holds its inhibitor while this descriptor stays open.
    std::unique_ptr<QDBusUnixFileDescriptor> idleLock_;
};

} // namespace torvane::app
