#include "logger/clear_logger.h"

#include "logger/driver_calls.h"
#include "logger/logger_action.h"
#include "logger/wait_ready.h"

namespace torvane::logger {

ClearOutcome ClearLogger(LoggerLink& link) {
    using namespace shell;
    if (ShowMessage(link.Sink, "Do you want to clear all data in the logger ?", buttons::OkCancel,
                    icons::Information) == answers::Cancel) {
        return ClearOutcome::Declined;
    }
    const ActionOptions options{.AlwaysStopAcquisition = true, .GiveBackAcquisition = false};
    const ActionResult result = RunLoggerAction(link, options, [&](ActionContext&) {
        for (const auto& step : {ClearLogFiles, WaitLoggerReady}) {
            if (const std::int32_t stepResult = step(link); stepResult != 0) {
                return stepResult;
            }
        }
        // The logger is given back without waiting: the link ends here.
        if (const std::int32_t stepResult = ControlLogging(link, 0); stepResult != 0) {
            return stepResult;
        }
        // Both buttons mean the same.
        ShowMessage(link.Sink, "Completed.", buttons::OkCancel, icons::Information);
        return logger::results::Ok;
    });
    return result.Done ? ClearOutcome::Cleared : ClearOutcome::NotCleared;
}

} // namespace torvane::logger
