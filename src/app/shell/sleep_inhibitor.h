#pragma once
// Keeping the machine and its display from going idle while the program does something long
// that nobody watches, such as a download from the logger.

#include <QString>

#include <utility>

namespace torvane::app {

class SleepInhibitor {
public:
    virtual ~SleepInhibitor() = default;

    // Asks that neither the machine nor the display go idle until Release; `reason` is what the
    // session may show to the user. Where nothing can be asked, nothing happens.
    virtual void Inhibit(const QString& reason) = 0;
    // Ends what Inhibit asked for; harmless when it could ask nothing.
    virtual void Release() = 0;
};

// An inhibitor held from the first Hold until the hold is destroyed.
class AwakeHold {
public:
    AwakeHold(SleepInhibitor& inhibitor, QString reason)
        : inhibitor_(inhibitor)
        , reason_(std::move(reason)) {}
    ~AwakeHold() {
        if (held_) {
            inhibitor_.Release();
        }
    }
    AwakeHold(const AwakeHold&) = delete;
    AwakeHold& operator=(const AwakeHold&) = delete;

    // Inhibits on the first call; later calls find it held.
    void Hold() {
        if (!held_) {
            held_ = true;
            inhibitor_.Inhibit(reason_);
        }
    }

private:
    SleepInhibitor& inhibitor_;
    QString reason_;
    bool held_ = false;
};

} // namespace torvane::app
