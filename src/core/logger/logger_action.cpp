#include "logger/logger_action.h"

#include "logger/driver_calls.h"
#include "logger/link_messages.h"
#include "logger/wait_ready.h"

#include <string>

namespace torvane::logger {
namespace {

enum class StateCheck { GoOn, Stop, End };

StateCheck CheckState(LoggerLink& link, const ActionOptions& options) {
    switch (link.Status.bytState) {
    case TLM_STATE_IDLE:
    case TLM_STATE_READY:
        return StateCheck::GoOn;
    case TLM_STATE_ACQUIRING:
        if (options.WhenAcquiring == WhenAcquiring::LetThrough) {
            return StateCheck::GoOn;
        }
        return AskToStopAcquisition(link.Sink) ? StateCheck::Stop : StateCheck::End;
    default:
        if (!options.CheckState) {
            return StateCheck::GoOn;
        }
        if (options.TellStatusCode) {
            shell::ShowMessage(link.Sink,
                               "STATUS CODE : " + std::to_string(link.Status.bytState) + "\r",
                               shell::buttons::Ok, shell::icons::Stop);
            return StateCheck::End;
        }
        ShowLoggerState(link);
        return StateCheck::End;
    }
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
    LoggerActionFrame frame(link, options);
    if (!frame.Begin()) {
        return frame.Result();
    }
    return frame.End(action(frame.Context()));
}

bool LoggerActionFrame::Begin() {
    link_.Status = TlmStatus{};
    result_ = ActionResult{};
    prepared_ = false;
    result_.Result = OpenLogger(link_, options_.Quiet);
    if (result_.Result == 0) {
        result_.Result = PrepareLogger();
        if (result_.Result == 0 && prepared_) {
            return true;
        }
    }
    FinishLink(link_, result_.Result);
    return false;
}

std::int32_t LoggerActionFrame::PrepareLogger() {
    if (const std::int32_t result = GetLoggerStatus(link_); result != 0) {
        return result;
    }
    context_.AcquisitionStopped = false;
    context_.FlagsAtStart = link_.Status.bytFlags;
    const StateCheck check = CheckState(link_, options_);
    if (check == StateCheck::End) {
        return results::Ok;
    }
    if (check == StateCheck::Stop || options_.AlwaysStopAcquisition) {
        if (const std::int32_t result = ControlLogging(link_, 1); result != 0) {
            return result;
        }
        context_.AcquisitionStopped = true;
    }
    if (options_.WaitUntilReady) {
        if (const std::int32_t result = WaitLoggerReady(link_); result != 0) {
            return result;
        }
    }
    prepared_ = true;
    return results::Ok;
}

const ActionResult& LoggerActionFrame::End(std::int32_t actionResult) {
    result_.Result = actionResult;
    if (result_.Result == 0 && options_.GiveBackAcquisition && context_.AcquisitionStopped) {
        result_.Result = GiveBackAcquisition(link_);
    }
    result_.Done = result_.Result == 0;
    FinishLink(link_, result_.Result);
    return result_;
}

} // namespace torvane::logger
