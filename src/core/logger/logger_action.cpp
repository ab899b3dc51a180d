#include "logger/logger_action.h"

#include "logger/driver_calls.h"
#include "logger/link_messages.h"
#include "logger/wait_ready.h"

namespace torvane::logger {
namespace {

enum class StateCheck { GoOn, Stop, End };

StateCheck CheckState(LoggerLink& link, const ActionOptions& options) {
    switch (link.status.bytState) {
    case TLM_STATE_IDLE:
    case TLM_STATE_READY:
        return StateCheck::GoOn;
    case TLM_STATE_ACQUIRING:
        if (options.whenAcquiring == WhenAcquiring::LetThrough) {
            return StateCheck::GoOn;
        }
        return AskToStopAcquisition(link.sink) ? StateCheck::Stop : StateCheck::End;
    default:
        if (!options.checkState) {
            return StateCheck::GoOn;
        }
        ShowLoggerState(link);
        return StateCheck::End;
    }
}

// Everything between opening and closing; returns the result that the close deals with.
std::int32_t RunOpenLink(LoggerLink& link, const ActionOptions& options, const LoggerAction& action,
                         bool& done) {
    if (const std::int32_t result = GetLoggerStatus(link); result != 0) {
        return result;
    }
    ActionContext context{link, false, link.status.bytFlags};
    const StateCheck check = CheckState(link, options);
    if (check == StateCheck::End) {
        return results::Ok;
    }
    if (check == StateCheck::Stop || options.alwaysStopAcquisition) {
        if (const std::int32_t result = ControlLogging(link, 1); result != 0) {
            return result;
        }
        context.acquisitionStopped = true;
    }
    if (options.waitUntilReady) {
        if (const std::int32_t result = WaitLoggerReady(link); result != 0) {
            return result;
        }
    }
    if (const std::int32_t result = action(context); result != 0) {
        return result;
    }
    if (options.giveBackAcquisition && context.acquisitionStopped) {
        if (const std::int32_t result = GiveBackAcquisition(link); result != 0) {
            return result;
        }
    }
    done = true;
    return results::Ok;
}

} // namespace

bool AskToStopAcquisition(shell::MessageSink& sink) {
    return shell::ShowMessage(sink, "Logger is acquiring data.\r\nMay I stop operation?",
                              shell::buttons::YesNo,
                              shell::icons::Information) == shell::answers::Yes;
}

std::int32_t GiveBackAcquisition(LoggerLink& link) {
    if (const std::int32_t result = ControlLogging(link, 0); result != 0) {
        return result;
    }
    return WaitLoggerReady(link);
}

ActionResult RunLoggerAction(LoggerLink& link, const ActionOptions& options,
                             const LoggerAction& action) {
    link.status = TlmStatus{};
    ActionResult outcome;
    outcome.result = OpenLogger(link, options.quiet);
    if (outcome.result == 0) {
        outcome.result = RunOpenLink(link, options, action, outcome.done);
    }
    FinishLink(link, outcome.result);
    return outcome;
}

} // namespace torvane::logger
