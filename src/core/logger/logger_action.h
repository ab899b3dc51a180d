#pragma once
// The order that every logger action follows: open the link, read the status, deal with a
// logger that is acquiring or busy, wait until it is ready, act, give acquisition back if it was
// stopped for the action, and close, reporting a driver error on the way out. Windows pass
// their action and say how their kind of work differs.

#include "logger/logger_link.h"

#include <cstdint>
#include <functional>

namespace torvane::logger {

// What an action does with a logger that is acquiring data.
enum class WhenAcquiring {
    // Ask "may I stop?": No ends the action, Yes stops acquisition for it.
    AskToStop,
    // Work that only reads (the file list, the monitor) goes on without asking.
    LetThrough,
};

struct ActionOptions {
    // Polling windows open quietly: "not connected" is not told.
    bool Quiet = false;
    logger::WhenAcquiring WhenAcquiring = logger::WhenAcquiring::AskToStop;
    // Refuse a logger that is neither idle, ready nor acquiring, telling its state. Off only
    // for a plain status query.
    bool CheckState = true;
    // Tell a refused state as "STATUS CODE : " and its number rather than by its text (the
    // setting's send).
    bool TellStatusCode = false;
    // Stop acquisition before the action whatever the state (download and clearing run only on
    // a stopped logger).
    bool AlwaysStopAcquisition = false;
    // Wait for the logger to be ready before acting. The file list reads at once.
    bool WaitUntilReady = true;
    // Give acquisition back after the action when it was stopped for it. Actions that decide
    // this themselves (download, clearing, the setting window at its closing) turn it off.
    bool GiveBackAcquisition = true;
};

struct ActionContext {
    LoggerLink& Link;
    // Acquisition was stopped for this action (ControlLogging 1 succeeded).
    bool AcquisitionStopped = false;
    // bytFlags as the first status read of the link gave them.
    std::uint8_t FlagsAtStart = 0;
};

// The action: returns 0, or a non-zero result that ends the link (a negative one is reported).
using LoggerAction = std::function<std::int32_t(ActionContext&)>;

struct ActionResult {
    // The last result on the way; a negative one has been reported.
    std::int32_t Result = 0;
    // The action ran and it and everything after it succeeded.
    bool Done = false;
};

// Runs one action over a fresh link; the link is closed on return.
ActionResult RunLoggerAction(LoggerLink& link, const ActionOptions& options,
                             const LoggerAction& action);

// RunLoggerAction in two halves, for an action that runs as steps between them (a download
// driven by a window's timer): Begin does everything before the action, End everything after.
class LoggerActionFrame {
public:
    LoggerActionFrame(LoggerLink& link, const ActionOptions& options)
        : link_(link)
        , options_(options)
        , context_{link, false, 0} {}

    // Opens a fresh link and readies the logger. False when the action is not to run: the link
    // has then been closed and Result() says why.
    bool Begin();
    // Valid after a Begin that returned true.
    ActionContext& Context() { return context_; }
    // Takes the action's result (0, or one that ends the link), gives acquisition back if the
    // options say so, and closes the link.
    const ActionResult& End(std::int32_t actionResult);
    const ActionResult& Result() const { return result_; }

private:
    std::int32_t PrepareLogger();

    LoggerLink& link_;
    ActionOptions options_;
    ActionContext context_;
    ActionResult result_;
    bool prepared_ = false;
};

// "Logger is acquiring data. May I stop operation?" True when the operator says Yes.
bool AskToStopAcquisition(shell::MessageSink& sink);

// Gives the logger back to acquisition and waits until it is ready.
std::int32_t GiveBackAcquisition(LoggerLink& link);

} // namespace torvane::logger
